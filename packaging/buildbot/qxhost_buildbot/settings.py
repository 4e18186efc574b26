"""Reads farm.toml: the master's own settings, its workers, and what build projects do not say of themselves."""

from __future__ import annotations

import stat
import tomllib
from dataclasses import dataclass, field, replace
from pathlib import Path
from typing import Any


class SettingsFault(ValueError):
    """The file cannot be used; the message names it and what to do."""


@dataclass(frozen=True)
class WorkerSettings:
    """A machine that builds."""

    password_file: str
    tags: tuple[str, ...] = ("engine",)
    """Versions of Visual Studio that are there (vs2002, vs2003, vs2005), "engine" for all that the engine builds, and
    whatever build projects ask for by `needs`."""
    builds: int = 1
    qxhost: str = "qxhost"
    trusted: bool = True
    """Whether it may hold secrets. An untrusted one builds strangers' branches, and nothing else."""
    password: str = field(default="", repr=False)


@dataclass(frozen=True)
class ProjectSettings:
    """What the farm shall do with a build project."""

    product: str = ""
    """Whose numbers it takes; its own name by default."""
    first: int = 1
    needs: tuple[str, ...] = ()
    after: tuple[str, ...] = ()
    """Build projects whose outputs this one consumes; it waits for them, and is not built when one failed."""
    outputs: tuple[str, ...] = ()
    """Files and folders of the working copy that consumers get."""
    numbered: bool = True
    check_built: str = "fail"


@dataclass(frozen=True)
class Settings:
    """The whole file."""

    repository: str
    workers: dict[str, WorkerSettings]
    branch: str = "main"
    subfolder: str = ""
    """Where in the repository the build projects lie."""
    listen: str = "tcp:9989:interface=127.0.0.1"
    nightly: str = "02:00"
    """Hour and minute; empty for never."""
    retries: int = 2
    state: str = "state"
    """Numbers, outputs and reports, below the master's folder."""
    projects: dict[str, ProjectSettings] = field(default_factory=dict)


def load(path: Path) -> Settings:
    """Reads the file and the workers' passwords. Raises SettingsFault."""
    try:
        given = tomllib.loads(path.read_text(encoding="utf-8"))
    except (OSError, ValueError) as fault:
        raise SettingsFault(f"{path}: {fault}") from None
    workers = {name: _with_password(path, name, _fill(WorkerSettings, table, f"{path}: [workers.{name}]"))
               for name, table in given.pop("workers", {}).items()}
    projects = {name: _fill(ProjectSettings, table, f"{path}: [projects.{name}]")
                for name, table in given.pop("projects", {}).items()}
    return _fill(Settings, {**given, "workers": workers, "projects": projects}, str(path))


def _fill(kind: Any, table: dict[str, Any], where: str) -> Any:
    known = kind.__dataclass_fields__
    for name in table:
        if name not in known or name == "password":
            raise SettingsFault(f"{where}: there is no setting {name}; there are {', '.join(n for n in known if n != 'password')}")
    try:
        return kind(**{name: tuple(value) if isinstance(value, list) else value for name, value in table.items()})
    except TypeError as fault:
        raise SettingsFault(f"{where}: {fault}") from None


def _with_password(path: Path, name: str, worker: WorkerSettings) -> WorkerSettings:
    """Reads the worker's password, and refuses one that others can read."""
    file = path.parent / worker.password_file
    try:
        if stat.S_IMODE(file.stat().st_mode) & 0o077:
            raise SettingsFault(f"{file}: others may read the password of {name}; chmod 600 {file}")
        password = file.read_text(encoding="utf-8").strip()
    except OSError as fault:
        raise SettingsFault(f"{path}: [workers.{name}]: {fault}") from None
    if not password:
        raise SettingsFault(f"{file}: the password of {name} is empty")
    return replace(worker, password=password)
