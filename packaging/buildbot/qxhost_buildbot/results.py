"""Writes what happens on the farm into one file, a JSON object a line: builds begun, steps that run, builds ended.

Debian has Buildbot without its web pages, and a file is what scripts, mails and tests read anyway.
"""

from __future__ import annotations

import json
import time
from pathlib import Path
from typing import Any

from buildbot.data.resultspec import Filter
from buildbot.process.results import RETRY, Results
from buildbot.util.service import BuildbotService
from twisted.internet import defer

_CAUGHT_UP = 1000
"""How many lost builds are looked at when the master starts: more than it can have been running."""


class ResultsFile(BuildbotService):
    """The service. Events: started, step, finished."""

    name = "results-file"

    def reconfigService(self, path: str, steps: bool = False) -> defer.Deferred:
        """``path``: the file, below the master's folder; ``steps``: whether the progress of steps is told too."""
        self.path = path
        self.steps = steps
        return super().reconfigService()

    @defer.inlineCallbacks
    def startService(self):
        yield super().startService()
        self._consumers = []
        for take, key in ((self._begun, ("builds", None, "new")), (self._ended, ("builds", None, "finished")),
                          (self._stepped, ("steps", None, "updated"))):
            consumer = yield self.master.mq.startConsuming(take, key)
            self._consumers.append(consumer)
        yield self._catch_up()

    # A master that was killed finds its builds cut off when it starts, before anybody listens: they are told here.
    @defer.inlineCallbacks
    def _catch_up(self):
        file = Path(self.master.basedir) / self.path
        if not file.exists():
            return
        records = [json.loads(line) for line in file.read_text(encoding="utf-8").splitlines() if line.startswith("{") and line.endswith("}")]
        told = {(each["builder"], each["build"]) for each in records if each["event"] == "finished"}
        builds = yield self.master.data.get(("builds",), filters=[Filter("results", "eq", [RETRY])], order=["-buildid"], limit=_CAUGHT_UP)
        for build in reversed(list(builds)):
            facts = yield self._facts(build)
            if (facts["builder"], facts["build"]) not in told:
                yield self._ended(("builds",), build)

    @defer.inlineCallbacks
    def stopService(self):
        for consumer in self._consumers:
            yield consumer.stopConsuming()
        yield super().stopService()

    def _write(self, event: str, **what: Any) -> None:
        record = {"event": event, "at": round(time.time(), 3), **what}
        with open(Path(self.master.basedir) / self.path, "a", encoding="utf-8") as out:
            out.write(json.dumps(record, ensure_ascii=False) + "\n")

    @defer.inlineCallbacks
    def _facts(self, build: dict[str, Any]):
        builder = yield self.master.data.get(("builders", build["builderid"]))
        worker = yield self.master.data.get(("workers", build["workerid"]))
        return {"builder": builder["name"], "build": build["number"], "worker": worker["name"] if worker else "",
                "request": build["buildrequestid"]}

    @defer.inlineCallbacks
    def _begun(self, _key: object, build: dict[str, Any]):
        facts = yield self._facts(build)
        self._write("started", **facts)

    @defer.inlineCallbacks
    def _ended(self, _key: object, build: dict[str, Any]):
        facts = yield self._facts(build)
        properties = yield self.master.data.get(("builds", build["buildid"], "properties"))
        told = {name: properties[name][0] for name in ("build_number", "version", "attempt", "branch") if name in properties}
        seconds = round((build["complete_at"] - build["started_at"]).total_seconds(), 1)
        self._write("finished", **facts, result=Results[build["results"]], says=build["state_string"], seconds=seconds, **told)

    @defer.inlineCallbacks
    def _stepped(self, _key: object, step: dict[str, Any]):
        if not self.steps or step["name"] != "qxhost":
            return
        build = yield self.master.data.get(("builds", step["buildid"]))
        facts = yield self._facts(build)
        self._write("step", **facts, says=step["state_string"])
