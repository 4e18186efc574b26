"""Orders builds from the command line, on the master's machine: python3 -m qxhost_buildbot.ask MASTER BUILDER...

It writes a file into the master's folder of jobs, so whoever may write there may order builds, and nobody needs a
password.
"""

from __future__ import annotations

import argparse
import json
import os
import uuid
from pathlib import Path

from .qxhost import VARIABLE_PREFIX


def ask(master: str | os.PathLike[str], builder: str, variables: dict[str, str], branch: str = "") -> str:
    """Orders a build and gives the order's name. Raises OSError."""
    name = uuid.uuid4().hex
    order = {"jobid": name, "branch": branch, "baserev": "", "patch_level": 0, "patch_body": "", "repository": "", "project": "",
             "who": "", "comment": "", "builderNames": [builder],
             "properties": {VARIABLE_PREFIX + key: value for key, value in variables.items()}}
    body = json.dumps(order).encode()
    jobs = Path(master) / "jobs"
    fresh = jobs / "tmp" / name
    fresh.write_bytes(b"1:5,%d:%s," % (len(body), body))
    os.replace(fresh, jobs / "new" / name)
    return name


def main() -> None:
    """The command line."""
    parser = argparse.ArgumentParser(prog="python3 -m qxhost_buildbot.ask", description="Order builds of a farm.")
    parser.add_argument("master", help="the master's folder")
    parser.add_argument("builder", nargs="+", help='a build project\'s name, or "nightly" for all')
    parser.add_argument("--set", action="append", default=[], metavar="NAME=VALUE", help="a variable of the build project")
    parser.add_argument("--branch", default="", help="the branch to build (default: the trusted one)")
    words = parser.parse_args()
    variables = dict(each.split("=", 1) if "=" in each else parser.error(f"--set {each}: NAME=VALUE is wanted") for each in words.set)
    for builder in words.builder:
        ask(words.master, builder, variables, words.branch)


if __name__ == "__main__":
    main()
