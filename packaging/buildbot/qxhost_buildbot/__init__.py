"""Builds qxhost's build projects on a farm of machines, with Buildbot.

A master's whole configuration is two lines::

    from qxhost_buildbot import configure
    BuildmasterConfig = c = configure("/srv/projects", "/etc/qxhost-farm/farm.toml")

``configure`` makes a builder of each ``*.build.xml`` in the folder. Whoever writes a configuration by hand takes the
steps: ``QxHost`` runs a build project, ``Number`` takes the product's next number, ``Admit`` holds off strangers' branches
and builds that were lost too often, ``Free`` waits until nothing of an earlier build works in the copy any more.
"""

from .farm import configure
from .numbers import NumbersUsedUp, take
from .qxhost import QxHost
from .steps import Admit, Free, Number

__all__ = ["Admit", "Free", "Number", "NumbersUsedUp", "QxHost", "configure", "take"]
