"""What the farm has to know of a build project: its variables, the products it needs, the numbers it raises."""

from __future__ import annotations

import xml.etree.ElementTree as xml
from dataclasses import dataclass, field
from pathlib import Path

ENDING = ".build.xml"
VARIABLE = "BUILD_NUMBER"
"""The variable that holds the master's number; a version may name it: 2|1|%BUILD_NUMBER%|0."""

# Which part of which version an action raises by itself, by the property that switches it on.
_RAISED_PARTS = {
    "AutoIncAssemblyBuildNumber": ("AssemblyVersion", 2),
    "AutoIncAssemblyRevisionNo": ("AssemblyVersion", 3),
    "AutoIncAssemblyFileBuildNumber": ("AssemblyFileVersion", 2),
    "AutoIncAssemblyFileRevisionNo": ("AssemblyFileVersion", 3),
}


@dataclass(frozen=True)
class Project:
    """A build project as its file has it."""

    name: str
    variables: dict[str, str] = field(default_factory=dict)
    actions: list[dict[str, str]] = field(default_factory=list)
    """The stored properties of each action; none of one that is disabled."""
    text: str = ""

    @property
    def products(self) -> frozenset[str]:
        """The versions of Visual Studio that its actions ask for, as tags of workers."""
        return frozenset(action["VStudioVersion"] for action in self.actions if "VStudioVersion" in action)

    @property
    def stamps(self) -> bool:
        """Whether a run of it writes versions into sources."""
        return any(is_on(action, "UpdateAssemblyInfo") or is_on(action, "UpdateWin32Resource") for action in self.actions)


def is_on(action: dict[str, str], name: str) -> bool:
    """Whether a boolean property of the action is stored as true."""
    return action.get(name, "").lower() == "true"


def name_of(path: str) -> str:
    """The build project's name: its file's, without the ending."""
    return Path(path.replace("\\", "/")).name.removesuffix(ENDING)


def parse(content: bytes, name: str) -> Project:
    """Reads a build project. Raises ValueError for what is none."""
    try:
        root = xml.fromstring(content)
    except xml.ParseError as fault:
        raise ValueError(f"{name}: {fault}") from None
    if root.tag != "BuildProject":
        raise ValueError(f"{name}: a <{root.tag}>, not a build project")
    variables = {each.get("name", ""): each.text or "" for each in root.iterfind("Variables/Variable")}
    actions = [
        {} if action.get("enabled") == "False" else {each.get("name", ""): "".join(each.itertext()) for each in action.iterfind("Property")}
        for action in root.iterfind("Actions/Action")
    ]
    return Project(name, variables, actions, content.decode("utf-8", "replace"))


def numbered(project: Project, number: int) -> dict[int, list[str]]:
    """What makes each action stamp the master's number: by its place, from 1, what `qxhost set` takes.

    The part that an action would raise by itself becomes the master's number and is raised no longer. A version text takes
    the variable; the number of resource scripts takes digits only.
    """
    changes: dict[int, list[str]] = {}
    for place, action in enumerate(project.actions, 1):
        versions: dict[str, list[str]] = {}
        words = []
        for switch, (version, part) in _RAISED_PARTS.items():
            if not is_on(action, switch):
                continue
            parts = versions.setdefault(version, (action.get(version, "").split("|") + [""] * 4)[:4])
            parts[part] = f"%{VARIABLE}%"
            words.append(f"{switch}=False")
        words += [f"{version}={'|'.join(parts)}" for version, parts in versions.items()]
        if is_on(action, "AutoIncBuild"):
            words += ["AutoIncBuild=False", f"BuildVersion={number}"]
        if words:
            changes[place] = words
    return changes


def takes_number(project: Project) -> bool:
    """Whether the master's number gets into what it stamps: by a switch that raises a number, or by the variable."""
    return bool(numbered(project, 1)) or f"%{VARIABLE}%" in project.text
