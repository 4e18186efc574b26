#!/usr/bin/python3
"""A stranger's branch on a farm: the trusted builder refuses it before the worker does anything; the builder for branches builds it on
the untrusted worker alone, where the trusted worker's secret is not.

usage: security.py BIN-FOLDER
"""

from __future__ import annotations

import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import standin  # noqa: E402
from local_farm import LocalFarm, git, repository, why_not  # noqa: E402

# The stranger's compiler tells every secret that it can find.
_THIEF = '#!/bin/sh\necho "secret: $QX_SECRET" >>"$QX_SEEN"\necho "========== Build: 1 succeeded, 0 failed, 0 skipped =========="\n'


def main() -> int:
    if reason := why_not():
        print(f"SKIPPED: {reason}")
        return 77
    qxhost = str(Path(sys.argv[1]).resolve() / "qxhost")
    with tempfile.TemporaryDirectory(prefix="qxhost-farm-") as folder:
        scratch = Path(folder)
        projects, stolen = scratch / "projects", scratch / "stolen"
        standin.solution(projects, 2)
        sources = repository(scratch, projects)
        git(projects, "push", "-q", str(sources), "main:theirs")
        seen = {"QX_SEEN": str(stolen)}
        workers = {"ours": {"environment": {**seen, "QX_SECRET": "ours"}}, "open": {"trusted": False, "environment": seen}}
        with LocalFarm(scratch, projects, sources, workers, qxhost, '[projects.Many]\ncheck_built = "off"\n') as farm:
            standin.compiler(scratch / "compiler", qxhost, scratch / "options.xml", _THIEF)
            farm.order("Many", branch="theirs")
            refused = farm.ended(1, "Many")[0]
            expect(refused["result"] == "failure" and "branch theirs is not trusted here" in refused["says"], refused)
            expect("build_number" not in refused and not stolen.exists(), f"it went on: {refused}")
            expect(not (farm.worker_folder("ours") / "builds/Many/build").exists(), "the stranger's sources came to our worker")
            farm.order("Many-branch", branch="theirs")
            built = farm.ended(1, "Many-branch")[0]
            expect(built["result"] == "success" and built["worker"] == "open" and "build_number" not in built, built)
            expect(stolen.read_text() == "secret: \n", stolen.read_text())
            farm.order("Many")
            expect(farm.ended(2, "Many")[-1]["result"] == "success", "our own branch")
            expect(stolen.read_text() == "secret: \nsecret: ours\n", stolen.read_text())
    print("A stranger's branch got neither our worker, nor a number, nor the secret")
    return 0


def expect(promise: bool, otherwise: object) -> None:
    if not promise:
        print(f"FAILED: {otherwise}")
        sys.exit(1)


if __name__ == "__main__":
    sys.exit(main())
