# Starts the master that lies in this folder: twistd3 -y buildbot.tac, or buildbot start.
import os

from buildbot.master import BuildMaster
from twisted.application import service

application = service.Application('buildmaster')  # spelt as Buildbot's own commands look for it
BuildMaster(os.path.dirname(os.path.abspath(__file__)), "master.cfg", umask=0o027).setServiceParent(application)
