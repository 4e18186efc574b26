"""Reads the log of `qxhost run --log json` while it streams. Knows nothing of Buildbot.

Buildbot's worker cuts lines of 4,096 characters and more and loses what is behind (3.7). So a line may be half an
object: it is shown as far as it came, and nothing is decided by it. The verdict comes from the run's report, a file.
"""

from __future__ import annotations

import json
import re
from dataclasses import dataclass, field
from typing import Any

_STARTED = re.compile(r"-{6} (?:\w+ )?started: Project: (.*?), Configuration: ")
_COUNTED = re.compile(r"(?:^|[:>\s])(?:fatal )?(error|warning)(?: [A-Z]+\d+\s*)?\s?: ")


@dataclass
class Progress:
    """How far the run is, as its log tells. Errors and warnings are counted roughly; the report has them exactly."""

    action: int = 0
    project: str = ""
    projects: int = 0
    errors: int = 0
    warnings: int = 0
    cut: int = 0
    """How many lines came broken."""
    validation: list[str] = field(default_factory=list)
    exceptions: list[str] = field(default_factory=list)
    results: list[bool] = field(default_factory=list)
    """Whether each action that ended succeeded."""
    summary: dict[str, Any] | None = None

    def read(self, line: str) -> list[str]:
        """Takes a line of the log and gives the lines of text that it stands for."""
        try:
            record = json.loads(line)
        except ValueError:
            return self._broken(line)
        if not isinstance(record, dict):
            return [line]
        self.action = max(self.action, record.get("action", 0))
        kind = record.get("kind")
        if kind == "validation":
            self.validation.append(f"{record.get('subject', '')}: {record.get('message', '')}")
            return [self.validation[-1]]
        if kind == "exception":
            self.exceptions.append(record.get("text", ""))
            return [self.exceptions[-1]]
        if kind == "result":
            self.results.append(bool(record.get("success")))
            return []
        if kind == "summary":
            self.summary = record
            return []
        return self._lines(record)

    def _lines(self, record: dict[str, Any]) -> list[str]:
        texts = [record.get("heading", ""), *record.get("details", ())] if record.get("kind") == "status" else [record.get("text", "")]
        if len(texts) > 1 and not texts[0]:
            texts = texts[1:]
        lines = [line for text in texts for line in text.splitlines() or [""]]
        for line in lines:
            self._look_at(line)
        return lines

    def _look_at(self, line: str) -> None:
        if started := _STARTED.search(line):
            self.project = started[1]
            self.projects += 1
        elif counted := _COUNTED.search(line):
            if counted[1] == "error":
                self.errors += 1
            else:
                self.warnings += 1

    def _broken(self, line: str) -> list[str]:
        if not line.strip():
            return []
        self.cut += 1
        return [line + " [...]"]


def is_problem(line: str) -> bool:
    """Whether a line of text looks like a compiler's error or warning."""
    return _COUNTED.search(line) is not None
