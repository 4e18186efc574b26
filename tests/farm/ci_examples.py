#!/usr/bin/python3
"""The examples for other systems: the shell lines inside them are run, with that system's own variables, on the real example; the
number that the system gave is in the programs, and the reports are what the system reads.

usage: ci_examples.py BIN-FOLDER [NODE-MODULES]
With a folder of npm's that holds @action-validator/core the workflow is held against its published schema too.
"""

from __future__ import annotations

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples/ci"
NUMBER = "417"


def yaml_of(name: str) -> dict:
    import yaml
    return yaml.safe_load((EXAMPLES / name).read_text(encoding="utf-8"))


def github() -> str:
    return "\n".join(step["run"] for step in yaml_of("github.yml")["jobs"]["build"]["steps"] if "run" in step)


def gitlab() -> str:
    return "\n".join(yaml_of(".gitlab-ci.yml")["build"]["script"])


def azure() -> str:
    # The agent puts the value in the place of $(Build.BuildId) before any shell sees it.
    scripts = [step["script"] for step in yaml_of("azure-pipelines.yml")["steps"] if "script" in step]
    return "\n".join(scripts).replace("$(Build.BuildId)", NUMBER)


def jenkins() -> str:
    return "\n".join(re.findall(r"sh '''(.*?)'''", (EXAMPLES / "Jenkinsfile").read_text(encoding="utf-8"), re.DOTALL))


# What each system's machine sets for its scripts.
SYSTEMS = {"github": (github, {"GITHUB_RUN_NUMBER": NUMBER}), "gitlab": (gitlab, {"CI_PIPELINE_IID": NUMBER}), "azure": (azure, {}),
           "jenkins": (jenkins, {"BUILD_NUMBER": NUMBER})}


def fail(why: str) -> None:
    print(f"FAILED: {why}")
    sys.exit(1)


def sources(folder: Path, qxhost: Path, options: Path) -> None:
    """The example as a team has it whose numbers come from its build system."""
    shutil.copytree(ROOT / "examples/Tally", folder / "Tally")
    shutil.copy(ROOT / "examples/Tally.build.xml", folder / "App.build.xml")
    subprocess.run([qxhost, "--options", options, "set", folder / "App.build.xml", "AssemblyVersion=2|0|%BUILD_NUMBER%|0",
                    "AutoIncAssemblyBuildNumber=False"], check=True)


def run(system: str, qxhost: Path, scratch: Path) -> None:
    script, variables = SYSTEMS[system]
    folder = scratch / system
    folder.mkdir()
    sources(folder, qxhost, scratch / "options.xml")
    environment = {**os.environ, **variables, "PATH": f"{qxhost.parent}:{os.environ['PATH']}", "QXHOST_OPTIONS": str(scratch / "options.xml"),
                   "XDG_STATE_HOME": str(scratch / "kept")}
    lines = script()
    if lines.count("qxhost run") != 1:
        fail(f"{system}: the shell lines were not found")
    done = subprocess.run(["bash", "-e", "-c", lines], cwd=folder, env=environment, capture_output=True, text=True)
    if done.returncode:
        fail(f"{system}: {done.returncode}\n{done.stdout}{done.stderr}")
    built = json.loads(subprocess.run([qxhost.parent / "vsinspect", "binary", folder / "Tally/bin/Release/Tally.exe", "--json"],
                                      check=True, capture_output=True).stdout)
    if built["assemblyVersion"] != f"2.0.{NUMBER}.0":
        fail(f"{system}: Tally.exe is {built['assemblyVersion']}")
    if not list(xml.parse(folder / "report/junit.xml").iter("testcase")):
        fail(f"{system}: no test case in junit.xml")
    if json.loads((folder / "report/qxhost.sarif").read_text())["version"] != "2.1.0":
        fail(f"{system}: the SARIF report")
    if system in ("github", "azure") and not re.search(r"^(::|##vso\[|##\[)", done.stdout, re.MULTILINE):
        fail(f"{system}: the log has none of its messages\n{done.stdout}")


WORKFLOW_CHECK = """
const fs = require('fs'); const v = require('@action-validator/core');
const state = v.validateWorkflow(fs.readFileSync(process.argv[1], 'utf8'));
if (state.errors.length) { console.log(JSON.stringify(state.errors, null, 1)); process.exit(1); }
"""


def lint(modules: Path) -> None:
    environment = {**os.environ, "NODE_PATH": str(modules)}
    done = subprocess.run(["node", "-e", WORKFLOW_CHECK, str(EXAMPLES / "github.yml")], env=environment, capture_output=True, text=True)
    if done.returncode:
        fail(f"github.yml: {done.stdout}{done.stderr}")
    print("github.yml holds against the published schema")


def main() -> int:
    qxhost = Path(sys.argv[1]).resolve() / "qxhost"
    for tool in ("mcs", "ninja", "i686-w64-mingw32-g++"):
        if not shutil.which(tool):
            print(f"SKIPPED: no {tool} on this machine")
            return 77
    try:
        import yaml  # noqa: F401
    except ImportError:
        print("SKIPPED: no python3-yaml on this machine")
        return 77
    with tempfile.TemporaryDirectory(prefix="qxhost-ci-") as folder:
        for system in SYSTEMS:
            run(system, qxhost, Path(folder))
        if len(sys.argv) > 2:
            lint(Path(sys.argv[2]).resolve())
    print(f"The shell lines of {', '.join(SYSTEMS)} build and number the example")
    return 0


if __name__ == "__main__":
    sys.exit(main())
