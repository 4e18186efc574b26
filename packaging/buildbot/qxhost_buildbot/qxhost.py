"""The step that runs a build project on a worker."""

from __future__ import annotations

import io
import json
import posixpath
from collections.abc import Mapping, Sequence
from typing import Any

from buildbot.process import buildstep, remotecommand
from buildbot.process.remotetransfer import FileReader
from buildbot.process.results import CANCELLED, FAILURE, RETRY, statusToString
from buildbot.steps.transfer import MultipleFileUpload
from buildbot.steps.worker import CompositeStepMixin
from buildbot.worker.protocols.base import FileWriterImpl
from twisted.internet import defer

from .projects import ENDING, VARIABLE, name_of, numbered, parse, takes_number
from .runlog import Progress, is_problem
from .steps import NUMBER, holding, lock_of
from .verdict import Verdict, judge, stamped_version

VARIABLE_PREFIX = "set_"
"""Build properties of this beginning become variables of the run: set_CONFIGURATION is --set CONFIGURATION=..."""

_REPORT_FILES = {"html": "report.html", "junit": "junit.xml", "sarif": "report.sarif", "json": "report.json"}
_LOG_FILE = "log.jsonl"


class _Bytes(FileWriterImpl):
    """Takes a worker's file. Buildbot's own taker makes text of each block, and a character may lie between two."""

    def __init__(self) -> None:
        self.content = b""

    def remote_write(self, data: bytes | str) -> None:
        self.content += data.encode() if isinstance(data, str) else data

    def remote_close(self) -> None:
        pass


class _Streamed(remotecommand.RemoteShellCommand):
    """A command whose standard output is handed to the step line by line instead of being kept as it is."""

    taker: QxHost

    def add_stdout_lines(self, data: str, is_flushed: bool) -> defer.Deferred:
        return self.taker.take_lines(data)


class QxHost(buildstep.ShellMixin, CompositeStepMixin, buildstep.BuildStep):
    """Runs ``qxhost run`` on a build project of the working copy, and follows it while it runs.

    Logs: ``compiler`` (everything that was said), ``errors`` (lines that look like errors and warnings, the validation's
    findings), ``summary``. Statistics: errors, warnings, projects, seconds. Properties: ``version`` that was stamped. The
    reports and the whole log are uploaded when there is a folder for them.

    Results: 0 succeeds, with warnings where the compilers had some; 1 fails, or is a warning when every action succeeded and
    the check of what was built found programs that are stale or of another version (one that is missing fails, one of
    which nobody can tell is a warning); 2 fails; 3 and 4 are exceptions; 5 is cancelled. A run without a report, or that
    stamped another number than the master's, never succeeds. When the worker is lost the build is retried.
    """

    name = "qxhost"
    haltOnFailure = True
    flunkOnFailure = True
    warnOnWarnings = True
    renderables = ["variables"]

    def __init__(
        self,
        project: str,
        *,
        variables: Mapping[str, Any] | None = None,
        qxhost: str | None = None,
        reports: Sequence[str] = ("html", "junit", "sarif"),
        upload_to: Any = None,
        check_built: str = "fail",
        options: Sequence[str] = (),
        wait: int = 600,
        **kwargs: Any,
    ) -> None:
        """``project``: the build project's file, from the working copy's folder, with forward slashes.
        ``variables``: for --set; build properties set_NAME come on top. ``qxhost``: the program; None takes the worker's
        property "qxhost", else that on its path. ``upload_to``: the folder on the master (may be rendered) for the
        reports; None uploads nothing. ``options``: more words for ``qxhost run``. ``wait``: seconds for a copy that is in
        use."""
        self.project = project
        self.variables = dict(variables or {})
        self.qxhost = qxhost
        self.reports = tuple(reports)
        self.upload_to = upload_to
        self.check_built = check_built
        self.options = tuple(options)
        self.wait = wait
        self.progress_seen = Progress()
        self.verdict: Verdict | None = None
        self.progressMetrics = ("output", "projects")
        # SIGTERM first: qxhost then ends its whole tree, keeps what has to be kept and leaves with 5.
        settings = {"logEnviron": False, "interruptSignal": "TERM", "sigtermTime": 10, "timeout": 3600, **kwargs}
        super().__init__(**self.setupShellMixin(settings, prohibitArgs=["command"]))

    @defer.inlineCallbacks
    def run(self):
        self.compiler_log = yield self.addLog("compiler")
        self.errors_log = yield self.addLog("errors")
        self.rc_log = yield self.addLog("stdio")
        self.workdir = self.workdir or self.build.workdir
        builddir = self.getProperty("builddir")
        self.place = f"{builddir}/report"
        yield self.runRmdir(self.place)
        yield self.runMkdir(self.place)

        number = self.getProperty(NUMBER)
        file = self.project
        if number is not None:
            file = yield self._numbered_copy(int(number))
            if file is None:
                return FAILURE
        command = self._shell(self._words(file, number), lock_of(builddir))
        yield self.runCommand(command)
        summary = yield self._report()
        self.verdict = judge(command.rc, self.progress_seen, summary, number)
        yield self._tell(summary, number)
        if self.upload_to is not None:
            self._upload_reports()
        if command.interrupted:
            # A master that ends wants its builds retried; a user who stops one does not.
            return RETRY if self.build.results == RETRY else CANCELLED
        return self.verdict.result

    def take_lines(self, data: str) -> defer.Deferred:
        """Takes whole lines of the run's log."""
        told: list[str] = []
        problems: list[str] = []
        seen = self.progress_seen
        before = (seen.action, seen.project, seen.errors, seen.warnings, len(seen.validation))
        for line in data.splitlines():
            for text in seen.read(line):
                told.append(text)
                if is_problem(text):
                    problems.append(text)
        problems += seen.validation[before[4]:]
        if problems:
            self.errors_log.addStdout("\n".join(problems) + "\n")
        if (seen.action, seen.project, seen.errors, seen.warnings) != before[:4]:
            self.setProgress("projects", seen.projects)
            self.setStatistic("errors", seen.errors)
            self.setStatistic("warnings", seen.warnings)
            self.updateSummary()
        if told:
            return self.compiler_log.addStdout("\n".join(told) + "\n")
        return defer.succeed(None)

    def getCurrentSummary(self) -> dict[str, str]:
        seen = self.progress_seen
        parts = [name_of(self.project)]
        if seen.action:
            parts.append(f"action {seen.action}")
        if seen.project:
            parts.append(f"{seen.project} ({seen.projects})")
        if seen.errors or seen.warnings:
            parts.append(f"{seen.errors} errors, {seen.warnings} warnings")
        return {"step": ", ".join(parts)}

    def getResultSummary(self) -> dict[str, str]:
        parts = [name_of(self.project)]
        if version := self.getProperty("version"):
            parts.append(str(version))
        if self.verdict and self.verdict.why:
            parts.append(self.verdict.why)
        if self.results:
            parts.append(f"({statusToString(self.results)})")
        return {"step": " ".join(parts)}

    # The build project that takes the number: a copy beside the first, so that relative paths keep their meaning.
    @defer.inlineCallbacks
    def _numbered_copy(self, number: int):
        taker = _Bytes()
        arguments = {"workdir": self.workdir, "workersrc": self.project, "writer": taker, "maxsize": None, "blocksize": 65536}
        failed = yield self.runRemoteCommand("uploadFile", arguments, abandonOnFailure=False)
        if failed:
            self.verdict = Verdict(FAILURE, "is not in the sources")
            return None
        try:
            project = parse(taker.content, name_of(self.project))
        except ValueError as fault:
            yield self.rc_log.addStderr(f"{fault}\n")
            self.verdict = Verdict(FAILURE, "cannot be read")
            return None
        if project.stamps and not takes_number(project):
            self.verdict = Verdict(FAILURE, "stamps no number that could come from the master: switch an increment on, "
                                            f"or name %{VARIABLE}% in a version")
            return None
        copy = self.project.removesuffix(ENDING) + ".numbered" + ENDING
        arguments = {"workdir": self.workdir, "workerdest": copy, "reader": FileReader(io.BytesIO(taker.content)),
                     "maxsize": None, "blocksize": 65536, "mode": None}
        yield self.runRemoteCommand("downloadFile", arguments)
        for action, words in numbered(project, number).items():
            command = yield self.makeRemoteShellCommand(
                command=[self._program(), "set", copy, "--action", str(action), *words], workdir=self.workdir)
            yield self.runCommand(command)
            if command.results():
                self.verdict = Verdict(FAILURE, f"cannot take the number {number}")
                return None
        return copy

    def _program(self) -> str:
        return self.qxhost or self.getProperty("qxhost") or "qxhost"

    def _words(self, file: str, number: int | None) -> list[str]:
        words = [self._program(), "run", file, "--log", "json", "--log-file", f"{self.place}/{_LOG_FILE}", "--no-save",
                 "--check-built", self.check_built, "--wait", str(self.wait)]
        for kind in dict.fromkeys([*self.reports, "json"]):
            words += ["--report", f"{kind}={self.place}/{_REPORT_FILES[kind]}"]
        asked = {name.removeprefix(VARIABLE_PREFIX): value
                 for name, (value, _source) in self.build.getProperties().asDict().items() if name.startswith(VARIABLE_PREFIX)}
        given = {**self.variables, **asked}
        if number is not None:
            given[VARIABLE] = number
        for name, value in sorted(given.items()):
            words += ["--set", f"{name}={value}"]
        return [*words, *self.options]

    def _shell(self, words: list[str], lock: str) -> _Streamed:
        self.command = [*holding(self.worker.worker_system, lock, self.wait), *words]
        command = _Streamed(
            self.workdir, self.command, env=self.env, timeout=self.timeout, maxTime=self.maxTime, sigtermTime=self.sigtermTime,
            logEnviron=False, interruptSignal=self.interruptSignal, usePTY=False)
        command.taker = self
        command.useLog(self.rc_log, False)
        return command

    # The summary comes as a file, for a long line of the log may come cut.
    @defer.inlineCallbacks
    def _report(self):
        taker = _Bytes()
        arguments = {"workdir": self.workdir, "workersrc": f"{self.place}/{_REPORT_FILES['json']}", "writer": taker,
                     "maxsize": None, "blocksize": 65536}
        failed = yield self.runRemoteCommand("uploadFile", arguments, abandonOnFailure=False)
        if failed:
            return None
        try:
            report = json.loads(taker.content)
        except ValueError:
            return None
        return report.get("summary", report) if isinstance(report, dict) else None

    @defer.inlineCallbacks
    def _tell(self, summary: dict[str, Any] | None, number: int | None):
        if summary is None:
            return
        yield self.addCompleteLog("summary", json.dumps(summary, indent=2, ensure_ascii=False) + "\n")
        for name in ("errors", "warnings", "seconds"):
            self.setStatistic(name, summary.get(name, 0))
        self.setStatistic("projects", sum(each["status"] == "ok" for each in summary.get("projects", [])))
        if version := stamped_version(summary, number):
            self.setProperty("version", version, self.name)

    # Files of known names, one by one: nothing that a worker sends is unpacked on the master.
    def _upload_reports(self) -> None:
        names = [_REPORT_FILES[kind] for kind in dict.fromkeys([*self.reports, "json"])] + [_LOG_FILE]
        upload = MultipleFileUpload(
            workersrcs=[posixpath.join(self.place, name) for name in names], masterdest=self.upload_to, mode=0o644,
            maxsize=512 * 1024 * 1024, name="reports", alwaysRun=True, haltOnFailure=False, flunkOnFailure=False,
            warnOnFailure=False)
        self.build.addStepsAfterCurrentStep([upload])
