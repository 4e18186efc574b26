"""What a run's end means: its exit code, its log and its report together. Knows nothing of a running master."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

from buildbot.process.results import CANCELLED, EXCEPTION, FAILURE, SUCCESS, WARNINGS

from .runlog import Progress


@dataclass(frozen=True)
class Verdict:
    """A result of Buildbot's, and in a few words why."""

    result: int
    why: str


# What an exit code says by itself. 0 and 1 want a look at the report.
_PLAIN = {
    2: Verdict(FAILURE, "qxhost cannot use its command line or an input"),
    3: Verdict(EXCEPTION, "validation failed, nothing was executed"),
    4: Verdict(EXCEPTION, "an exception left an action"),
    5: Verdict(CANCELLED, "stopped"),
}


def judge(code: int | None, progress: Progress, summary: dict[str, Any] | None, number: int | None = None) -> Verdict:
    """Says what became of a run. ``summary`` is that of the report, None when there is none; ``number`` is what the
    stamped versions have to bear."""
    if code is None:
        return Verdict(EXCEPTION, "the run ended without an exit code")
    if code in _PLAIN:
        return _PLAIN[code]
    if code not in (0, 1):
        return Verdict(EXCEPTION, f"qxhost ended with {code}")
    if summary is None:
        return Verdict(EXCEPTION, "the run left no report")
    if wrong := _wrong_number(summary, number):
        return Verdict(FAILURE, wrong)
    lacking = [each for each in summary.get("projects", []) if each["status"] in ("missing", "stale", "differs")]
    missing = [each["name"] for each in lacking if each["status"] == "missing"]
    if missing:
        return Verdict(FAILURE, "no program of " + ", ".join(missing))
    # Every action succeeded, and what was built was found wanting: the check alone made the exit code.
    if lacking and progress.results and all(progress.results):
        return Verdict(WARNINGS, ", ".join(f"{each['name']} {each['status']}" for each in lacking))
    if code == 1 or not summary.get("success"):
        return Verdict(FAILURE, "an action failed")
    if unknown := [each["name"] for each in summary.get("projects", []) if each["status"] == "unknown"]:
        return Verdict(WARNINGS, "nobody can tell whether it was built: " + ", ".join(unknown))
    return Verdict(WARNINGS if summary.get("warnings") else SUCCESS, "")


def stamped_version(summary: dict[str, Any] | None, number: int | None) -> str:
    """The version that was stamped, that with the number before others; empty where nothing was."""
    if summary is None or not any(each.get("changed") for each in summary.get("files", [])):
        return ""
    versions = [each["to"] for each in summary.get("versions", []) if each["to"]]
    bearing = [version for version in versions if _bears(version, number)]
    return (bearing or versions or [""])[0]


def _bears(version: str, number: int | None) -> bool:
    return str(number) in version.split(".")


def _wrong_number(summary: dict[str, Any], number: int | None) -> str:
    """Why the number of the master is not what was stamped; empty when it is."""
    stamped = [each["to"] for each in summary.get("versions", [])]
    if number is None or not summary.get("files") or any(_bears(version, number) for version in stamped):
        return ""
    return f"number {number} was given, but stamped was {', '.join(stamped) or 'nothing that is known'}"
