"""The small steps around a run: who may be built, when the copy is free, the product's number."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

from buildbot.process import buildstep, remotecommand
from buildbot.process.results import FAILURE, SUCCESS, WARNINGS
from twisted.internet import defer, threads

from .numbers import NumbersUsedUp, take
from .projects import VARIABLE

NUMBER = VARIABLE.lower()
"""The build property that holds the number."""


class Admit(buildstep.BuildStep):
    """Lets a build begin only with a branch that is trusted and without a stranger's patch, and only so many times.

    Buildbot begins a build anew whose worker was lost, without end. ``retries`` is how often it may: then the build
    fails and says so. Sets the property ``attempt``, from 1. Runs on the master before anything of the build does.
    """

    name = "admit"
    haltOnFailure = True
    flunkOnFailure = True
    # Runs before the worker has done anything, and says in the build's own line why it may not begin.
    updateBuildSummaryPolicy = [FAILURE]

    def __init__(self, branches: Sequence[str] | None = None, retries: int = 2, **kwargs: Any) -> None:
        """``branches``: None trusts all of them; a request without a branch means the first."""
        self.branches = branches
        self.retries = retries
        super().__init__(**kwargs)

    @defer.inlineCallbacks
    def run(self):
        request = self.build.requests[0].id
        builds = yield self.master.data.get(("buildrequests", str(request), "builds"))
        attempt = len(list(builds))
        self.setProperty("attempt", attempt, self.name)
        if attempt > self.retries + 1:
            self.descriptionDone = f"lost {attempt - 1} times"
            return FAILURE
        for stamp in self.build.getAllSourceStamps():
            if self.branches is not None and stamp.branch is not None and stamp.branch not in self.branches:
                self.descriptionDone = f"branch {stamp.branch} is not trusted here"
                return FAILURE
            # An order by jobs brings an empty patch along; whoever reads it may not mistake it for one.
            if self.branches is not None and stamp.patch and stamp.patch[1]:
                self.descriptionDone = "a patch is not trusted here"
                return FAILURE
        if attempt > 1:
            self.descriptionDone = f"attempt {attempt}: the worker was lost"
            return WARNINGS
        return SUCCESS

    warnOnWarnings = False


def lock_of(copy: str) -> str:
    """The file whose lock means that somebody works in the copy, beside its folder."""
    return f"{copy}/.in-use"


def holding(system: str, lock: str, seconds: int) -> list[str]:
    """What stands before a command that shall hold the lock with everything it starts, and end with the worker."""
    if system != "posix":
        return []
    return ["flock", "--no-fork", "--wait", str(seconds), lock, "setpriv", "--pdeathsig", "TERM"]


class Free(buildstep.ShellMixin, buildstep.BuildStep):
    """Waits until nothing of an earlier build works in the copy any more.

    A worker that was killed or cut off leaves a run behind that ends a moment later. Until then it may still stamp, so
    nobody may clean the copy. On Windows the run's job object takes it along with the worker's service.
    """

    name = "free"
    haltOnFailure = True
    flunkOnFailure = True

    def __init__(self, seconds: int = 600, **kwargs: Any) -> None:
        self.seconds = seconds
        kwargs = self.setupShellMixin({**kwargs, "logEnviron": False}, prohibitArgs=["command"])
        super().__init__(**kwargs)

    @defer.inlineCallbacks
    def run(self):
        if self.worker.worker_system != "posix":
            return SUCCESS
        command = ["flock", "--wait", str(self.seconds), lock_of(self.getProperty("builddir")), "true"]
        running: remotecommand.RemoteShellCommand = yield self.makeRemoteShellCommand(
            command=command, workdir=self.build.builder.config.workerbuilddir)
        yield self.runCommand(running)
        return SUCCESS if running.rc == 0 else FAILURE


class Number(buildstep.BuildStep):
    """Takes the product's next number and sets the property ``build_number``. A number that was taken is gone."""

    name = "number"
    haltOnFailure = True
    flunkOnFailure = True

    def __init__(self, folder: str, product: str, first: int = 1, **kwargs: Any) -> None:
        self.folder = folder
        self.product = product
        self.first = first
        super().__init__(**kwargs)

    @defer.inlineCallbacks
    def run(self):
        try:
            # It waits for the disk, so it does so on a thread of its own.
            number = yield threads.deferToThread(take, self.folder, self.product, self.first)
        except NumbersUsedUp as fault:
            yield self.addCompleteLog("problem", str(fault))
            self.descriptionDone = "numbers are used up"
            return FAILURE
        self.setProperty(NUMBER, number, self.name)
        self.descriptionDone = f"number {number}"
        return SUCCESS
