#!/usr/bin/python3
"""The figures of docs/scaling.md: what Buildbot adds to a build, how fast it takes a log, and builds on 1, 2 and 4 workers.

usage: bench/farm.py [--bin FOLDER] [--builds N] [--seconds S] [--lines N] [--real FOLDER-OF-TREES]
The compiler is a stand-in that sleeps S seconds, so that workers who share this machine's processors behave like machines of
their own; what is left above builds * S / workers is what the master and the protocol add. With --real the builds are of a
real solution, with the engine, and the workers share the processors.
"""

from __future__ import annotations

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/farm"))
import standin  # noqa: E402
from local_farm import LocalFarm, repository, why_not  # noqa: E402

OFF = '[projects.Many]\ncheck_built = "off"\n'
REAL, REAL_SOLUTION = "midicsv", "Midicsv.sln"
# A line as compilers write it, so often as LINES says.
_TALKER = r"""#!/bin/sh
seq -f 'c:\sources\many\part%.0f.cpp(12) : warning C4996: this function may be unsafe, consider another one' "$LINES_WANTED"
echo '========== Build: 1 succeeded, 0 failed, 0 skipped =========='
"""


class Bench:
    """A farm of so many workers on one build project."""

    def __init__(self, scratch: Path, qxhost: str, workers: int, environment: dict[str, str], real: Path | None = None,
                 compiler: str = "") -> None:
        projects = scratch / "projects"
        self.builder = "Many"
        if real is None:
            standin.solution(projects, 4)
        else:
            self.builder = REAL
            shutil.copytree(real / REAL, projects / REAL)
            subprocess.run([qxhost, "init", projects / REAL / REAL_SOLUTION, projects / f"{REAL}.build.xml"], check=True,
                           stdout=subprocess.DEVNULL)
        sources = repository(scratch, projects)
        named = {f"w{at}": {"environment": {"QX_SEEN": str(scratch / "seen"), "QX_HALF": "", **environment}} for at in range(workers)}
        self.farm = LocalFarm(scratch, projects, sources, named, qxhost, "" if real else OFF)
        if real is None:
            standin.compiler(scratch / "compiler", qxhost, scratch / "options.xml", *([compiler] if compiler else []))

    def measure(self, builds: int) -> tuple[float, float]:
        """Orders so many builds at once and gives the seconds until the last has ended, and the master's processor time."""
        with self.farm as farm:
            farm.order(*[self.builder] * self.workers_warm(farm))
            warm = farm.ended(len(farm.settings), self.builder, 600)
            began, busy = time.monotonic(), processor_seconds(farm)
            farm.order(*[self.builder] * builds)
            ended = farm.ended(len(warm) + builds, self.builder, 3600)[len(warm):]
            taken, busy = time.monotonic() - began, processor_seconds(farm) - busy
        for each in ended:
            if each["result"] not in ("success", "warnings"):
                raise SystemExit(f"a build failed: {each}")
        numbers = {each["build_number"] for each in ended}
        if len(numbers) != builds:
            raise SystemExit(f"{builds} builds, {len(numbers)} numbers")
        return taken, busy

    @staticmethod
    def workers_warm(farm: LocalFarm) -> int:
        """The first build of each worker clones the sources, which is not what is measured."""
        return len(farm.settings)


def processor_seconds(farm: LocalFarm) -> float:
    """What the master has used; other than the time on the clock it does not grow when others use the machine."""
    fields = Path(f"/proc/{farm.master.child.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def alone(qxhost: str, scratch: Path) -> float:
    """Seconds of one build on the command line, with a compiler that takes no time."""
    standin.solution(scratch / "projects", 4)
    standin.compiler(scratch / "compiler", qxhost, scratch / "options.xml")
    began = time.monotonic()
    for _ in range(5):
        subprocess.run([qxhost, "--options", scratch / "options.xml", "run", scratch / "projects/Many.build.xml", "--no-save",
                        "--check-built", "off"], env={**os.environ, "QX_SEEN": str(scratch / "seen"), "QX_HALF": "", "QX_SECONDS": "0",
                                                      "XDG_STATE_HOME": str(scratch / "kept")},
                       check=True, stdout=subprocess.DEVNULL)
    return (time.monotonic() - began) / 5


def row(*cells: object) -> None:
    print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", default=str(ROOT / "build/release/bin"))
    parser.add_argument("--builds", type=int, default=60)
    parser.add_argument("--seconds", type=float, default=3)
    parser.add_argument("--lines", type=int, default=1_000_000)
    parser.add_argument("--real", type=Path)
    words = parser.parse_args()
    if reason := why_not():
        print(f"SKIPPED: {reason}")
        return 77
    qxhost = str((Path(words.bin) / "qxhost").resolve())

    def bench(workers: int, builds: int, environment: dict[str, str], **more: object) -> tuple[float, float]:
        with tempfile.TemporaryDirectory(prefix="qxhost-farm-") as folder:
            return Bench(Path(folder), qxhost, workers, environment, **more).measure(builds)

    row("measured", "result")
    row("---", "---")
    row("load of the machine meanwhile (1 minute)", f"{os.getloadavg()[0]:.1f} on {os.cpu_count()} processors")
    with tempfile.TemporaryDirectory(prefix="qxhost-farm-") as folder:
        row("a build on the command line, compiler of no time", f"{alone(qxhost, Path(folder)):.2f} s")
    taken, busy = bench(1, 10, {"QX_SECONDS": "0"})
    row("the same as a build of the farm, sources and reports with it", f"{taken / 10:.2f} s, {busy / 10:.2f} s of the master's processor")
    taken, busy = bench(1, 1, {"LINES_WANTED": str(words.lines)}, compiler=_TALKER)
    row(f"{words.lines:,} lines of log through the master", f"{taken:.0f} s, {words.lines / taken:,.0f} lines/s; {busy:.1f} s of the master's processor")
    for workers in (1, 2, 4):
        if words.real:
            taken, _ = bench(workers, words.builds, {}, real=words.real)
            row(f"{words.builds} builds of a real solution, {workers} workers", f"{taken:.0f} s")
        taken, busy = bench(workers, words.builds, {"QX_SECONDS": str(words.seconds)})
        ideal = words.builds * words.seconds / workers
        row(f"{words.builds} builds of {words.seconds:g} s, {workers} workers",
            f"{taken:.0f} s (without any overhead {ideal:.0f} s; {(taken - ideal) * workers / words.builds:.1f} s a build added), {busy / words.builds:.2f} s of the master's processor a build")
    return 0


if __name__ == "__main__":
    sys.exit(main())
