# Starts a worker: twistd3 -y worker.tac (Windows: buildbot-worker's service with this file as buildbot.tac). Beside it lie
# worker.json {"name": "linux1", "master": "tls:farm.example:9989:trustRoots=/etc/qxhost-worker/roots"} and "password",
# which only this user may read: it never stands on a command line.
import json
import os
import stat
from pathlib import Path

from buildbot_worker.bot import Worker
from twisted.application import service

here = Path(os.path.abspath(__file__)).parent
settings = json.loads((here / "worker.json").read_text(encoding="utf-8"))
password = here / "password"
if os.name == "posix" and stat.S_IMODE(password.stat().st_mode) & 0o077:
    raise SystemExit(f"{password}: others may read it; chmod 600 {password}")

application = service.Application("buildbot-worker")
Worker(
    None, None, settings["name"], password.read_text(encoding="utf-8").strip(), str(here / "builds"), settings.get("keepalive", 60),
    umask=0o027, maxdelay=settings.get("maxdelay", 60), connection_string=settings["master"],
).setServiceParent(application)
