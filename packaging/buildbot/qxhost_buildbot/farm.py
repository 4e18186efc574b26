"""Makes a master's configuration from a folder of build projects."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

from buildbot.config import error
from buildbot.plugins import schedulers, steps, util, worker
from buildbot.process.results import FAILURE, SUCCESS, WARNINGS
from twisted.internet import defer

from .projects import ENDING, Project, name_of, parse
from .qxhost import VARIABLE_PREFIX, QxHost
from .results import ResultsFile
from .settings import ProjectSettings, Settings, SettingsFault, load
from .steps import Admit, Free, Number

NIGHTLY = "nightly"
STRANGERS = "-branch"
"""Ends the name of the builder that builds strangers' branches."""
_COORDINATOR = "coordinator"
_OUTPUTS = "outputs.tar"


def configure(folder: str | os.PathLike[str], settings: str | os.PathLike[str], sources: Any = None, **more: Any) -> dict[str, Any]:
    """Gives the configuration of a master that builds every ``*.build.xml`` of the folder.

    ``settings``: a farm.toml. ``sources``: any source step of Buildbot in mode "full"; by default git, from the settings.
    ``more`` goes into the configuration over what stands here (``www``, ``db``, ...). What cannot be is told as an error of
    the configuration, and the master does not start.
    """
    try:
        chosen = load(Path(settings))
        projects = [parse(path.read_bytes(), name_of(path.name)) for path in sorted(Path(folder).glob("*" + ENDING))]
    except (SettingsFault, ValueError, OSError) as fault:
        error(str(fault))
        return {}
    for name in chosen.projects.keys() - {project.name for project in projects}:
        error(f"[projects.{name}]: there is no {name}{ENDING} in {folder}")
    if sources is not None and getattr(sources, "mode", None) != "full":
        error("the source step must be in mode full: a stamped copy has to be clean before the next build")
    farm = _Farm(chosen, projects, sources)
    configuration: dict[str, Any] = {
        "buildbotNetUsageData": None,
        "title": "qxhost",
        "protocols": {"pb": {"port": chosen.listen}},
        "workers": farm.workers(),
        "builders": farm.builders(),
        "schedulers": farm.schedulers(),
        "services": [ResultsFile(path="results.jsonl", steps=True)],
        # A build per request: each gets a number, and whoever ordered it gets a result.
        "collapseRequests": False,
        "logMaxSize": 512 * 1024 * 1024,
    }
    return {**configuration, **more}


class Level(steps.Trigger):
    """Starts those build projects of the night whose producers succeeded, and waits for them."""

    def __init__(self, wanted: dict[str, tuple[str, ...]], **kwargs: Any) -> None:
        """``wanted``: the build projects and what each comes after."""
        self.wanted = wanted
        super().__init__(schedulerNames=[_trigger(name) for name in wanted], waitForFinish=True, haltOnFailure=False,
                         flunkOnFailure=True, **kwargs)

    def getSchedulersAndProperties(self) -> list[dict[str, Any]]:
        failed = set(self.getProperty("failed", []))
        left_out = {name for name, after in self.wanted.items() if failed & set(after)}
        if left_out:
            self.setProperty("failed", sorted(failed | left_out), "nightly")
            self.descriptionSuffix = ["not built, for what they need failed:", *sorted(left_out)]
        return [{"sched_name": _trigger(name), "props_to_set": {}, "unimportant": False}
                for name in self.wanted if name not in left_out]

    @defer.inlineCallbacks
    def run(self):
        result = yield super().run()
        failed = set(self.getProperty("failed", []))
        for request in self.brids:
            row = yield self.master.data.get(("buildrequests", request))
            if row["results"] not in (SUCCESS, WARNINGS):
                builder = yield self.master.data.get(("builders", row["builderid"]))
                failed.add(builder["name"])
        self.setProperty("failed", sorted(failed), "nightly")
        return FAILURE if set(self.wanted) & failed and result == SUCCESS else result


class _Farm:
    """The settings and build projects together; each method makes one part of the configuration."""

    def __init__(self, settings: Settings, projects: list[Project], sources: Any) -> None:
        self.settings = settings
        self.projects = projects
        self.sources = sources

    def workers(self) -> list[Any]:
        made: list[Any] = [
            worker.Worker(name, each.password, max_builds=each.builds, keepalive_interval=60, notify_on_missing=[],
                          properties={"qxhost": each.qxhost})
            for name, each in self.settings.workers.items()]
        return [*made, worker.LocalWorker(_COORDINATOR)]

    def builders(self) -> list[Any]:
        made = []
        for project in self.projects:
            made.append(self._builder(project, trusted=True))
            if any(not each.trusted for each in self.settings.workers.values()):
                made.append(self._builder(project, trusted=False))
        night = util.BuildFactory([Level({name: self._of(name).after for name in level}, name=f"level {at}")
                                   for at, level in enumerate(self._levels(), 1)])
        return [*made, util.BuilderConfig(name=NIGHTLY, workernames=[_COORDINATOR], factory=night)]

    def schedulers(self) -> list[Any]:
        branch = self.settings.branch
        names = [project.name for project in self.projects]
        strangers = [each.name for each in self.builders() if each.name.endswith(STRANGERS)]
        made: list[Any] = [schedulers.Triggerable(name=_trigger(name), builderNames=[name]) for name in names]
        orders = schedulers.Try_Jobdir(name="orders", builderNames=[*names, *strangers, NIGHTLY], jobdir="jobs")
        orders.watcher.pollinterval = 1  # seconds; ten are long for whoever waits before a terminal
        made.append(orders)
        if self.settings.nightly:
            hour, minute = self.settings.nightly.split(":")
            made.append(schedulers.Nightly(name="night", builderNames=[NIGHTLY], branch=branch, hour=int(hour), minute=int(minute)))
        for project in self.projects:
            made.append(schedulers.ForceScheduler(
                name=f"force-{_plain(project.name)}", builderNames=[project.name],
                codebases=[util.CodebaseParameter("", branch=util.FixedParameter("branch", default=branch))],
                properties=[util.StringParameter(name=VARIABLE_PREFIX + name, label=f"--set {name}", default=value, size=60)
                            for name, value in project.variables.items()]))
        return made

    def _of(self, name: str) -> ProjectSettings:
        return self.settings.projects.get(name, ProjectSettings())

    def _builder(self, project: Project, trusted: bool) -> Any:
        name = project.name if trusted else project.name + STRANGERS
        copy = util.WorkerLock(f"copy of {name}", maxCount=1)
        return util.BuilderConfig(
            name=name, workernames=self._workers_for(project, trusted), factory=self._factory(project, trusted),
            tags=sorted(project.products), locks=[copy.access("exclusive")], collapseRequests=False)

    def _workers_for(self, project: Project, trusted: bool) -> list[str]:
        of = self._of(project.name)
        found = [name for name, each in self.settings.workers.items()
                 if each.trusted == trusted and set(of.needs) <= set(each.tags)
                 and ("engine" in each.tags or project.products <= set(each.tags))]
        if not found:
            needed = ", ".join(sorted(project.products | set(of.needs)))
            error(f"{project.name}{ENDING} needs {needed or 'a worker'}, and no {'' if trusted else 'untrusted '}worker has it")
        return found

    # In the order of the steps: who may, where, which sources, which number, the run, its outputs.
    def _factory(self, project: Project, trusted: bool) -> Any:
        of, chosen = self._of(project.name), self.settings
        file = "/".join(part for part in (chosen.subfolder, project.name + ENDING) if part)
        made = [Admit(branches=[chosen.branch] if trusted else None, retries=chosen.retries), Free(), self._sources()]
        if trusted:
            for producer in of.after:
                made += _take_outputs(chosen.state, producer)
            if of.numbered:
                made.append(Number(f"{chosen.state}/numbers", of.product or project.name, of.first))
        reports = util.Interpolate(f"{chosen.state}/reports/%(prop:buildername)s/%(prop:buildnumber)s")
        made.append(QxHost(file, upload_to=reports, check_built=of.check_built))
        if trusted and of.outputs:
            made += _keep_outputs(chosen.state, project.name, of.outputs)
        return util.BuildFactory(made)

    def _sources(self) -> Any:
        if self.sources is not None:
            return self.sources
        return steps.Git(repourl=self.settings.repository, branch=self.settings.branch, mode="full", method="fresh",
                         haltOnFailure=True, logEnviron=False, retry=(5, 2))

    def _levels(self) -> list[list[str]]:
        """The build projects in levels: each comes after everything that it consumes."""
        left = {project.name: set(self._of(project.name).after) for project in self.projects}
        for name, after in left.items():
            if unknown := after - left.keys():
                error(f"[projects.{name}]: after: there is no build project {', '.join(sorted(unknown))}")
                return []
        levels: list[list[str]] = []
        while left:
            ready = sorted(name for name, after in left.items() if not after & left.keys())
            if not ready:
                error(f"these build projects wait for one another: {', '.join(sorted(left))}")
                return []
            levels.append(ready)
            left = {name: after for name, after in left.items() if name not in ready}
        return levels


def _trigger(name: str) -> str:
    return f"build {name}"


def _plain(name: str) -> str:
    return "".join(each if each.isascii() and each.isalnum() else "-" for each in name)


# The worker's own Python packs and unpacks: it is there wherever a worker is.
def _python(*words: str) -> Any:
    @util.renderer
    def command(properties: Any) -> list[str]:
        system = properties.getBuild().workerforbuilder.worker.worker_system
        return ["python3" if system == "posix" else "python", *words]
    return command


def _keep_outputs(state: str, name: str, outputs: tuple[str, ...]) -> list[Any]:
    return [
        steps.ShellCommand(name="pack outputs", command=_python("-m", "tarfile", "-c", f"../{_OUTPUTS}", *outputs),
                           haltOnFailure=True, logEnviron=False),
        steps.FileUpload(name="keep outputs", workersrc=f"../{_OUTPUTS}", masterdest=f"{state}/outputs/{name}.tar", mode=0o644,
                         haltOnFailure=True)]


def _take_outputs(state: str, producer: str) -> list[Any]:
    return [
        steps.FileDownload(name=f"outputs of {producer}", mastersrc=f"{state}/outputs/{producer}.tar", workerdest=f"../{_OUTPUTS}",
                           haltOnFailure=True),
        steps.ShellCommand(name=f"unpack {producer}", command=_python("-m", "tarfile", "-e", f"../{_OUTPUTS}", "."),
                           haltOnFailure=True, logEnviron=False)]
