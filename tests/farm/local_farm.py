"""A farm on this machine alone: a master and workers on 127.0.0.1, started as a user starts them, ended by process id."""

from __future__ import annotations

import datetime
import json
import os
import secrets
import shutil
import signal
import socket
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PYTHON = "/usr/bin/python3"
TWISTD = [PYTHON, "-c", "from twisted.scripts.twistd import run; run()", "--nodaemon", "--pidfile=", "--logfile=twistd.log", "-y"]


def why_not() -> str:
    """Why there can be no farm on this machine; empty when there can."""
    if not sys.platform.startswith("linux"):
        return "a farm is tried on Linux"
    for program in ("git", "flock", "setpriv"):
        if not shutil.which(program):
            return f"no {program} on this machine"
    tried = subprocess.run([PYTHON, "-c", "import buildbot.master, buildbot_worker.bot"], capture_output=True, text=True)
    return "Buildbot is not installed: apt-get install buildbot buildbot-worker" if tried.returncode else ""


def free_port() -> int:
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def git(folder: Path, *words: str) -> str:
    done = subprocess.run(["git", "-c", "user.name=farm", "-c", "user.email=farm@localhost", "-c", "init.defaultBranch=main",
                           *words], cwd=folder, capture_output=True, text=True)
    if done.returncode:
        raise RuntimeError(f"git {' '.join(words)}: {done.stderr}")
    return done.stdout


def repository(folder: Path, projects: Path) -> Path:
    """Puts all of a folder under version control and gives what workers clone."""
    git(projects, "init", "-q")
    # What solutions have of old stays as it is, line ends too.
    (projects / ".gitattributes").write_text("* -text\n")
    git(projects, "add", "-A")
    git(projects, "commit", "-q", "-m", "Everything as it was")
    bare = folder / "products.git"
    git(folder, "clone", "-q", "--bare", str(projects), str(bare))
    return bare


def certificate(key_file: Path, file: Path) -> None:
    """Makes a key and a certificate for localhost. It begins a day ago: a worker's clock may be behind."""
    from cryptography import x509
    from cryptography.hazmat.primitives import hashes, serialization
    from cryptography.hazmat.primitives.asymmetric import ec
    from cryptography.x509.oid import NameOID

    key = ec.generate_private_key(ec.SECP256R1())
    name = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, "localhost")])
    now = datetime.datetime.utcnow()
    made = (x509.CertificateBuilder().subject_name(name).issuer_name(name).public_key(key.public_key())
            .serial_number(x509.random_serial_number()).not_valid_before(now - datetime.timedelta(days=1))
            .not_valid_after(now + datetime.timedelta(days=2))
            .add_extension(x509.SubjectAlternativeName([x509.DNSName("localhost")]), critical=False)
            .sign(key, hashes.SHA256()))
    plain = key.private_bytes(serialization.Encoding.PEM, serialization.PrivateFormat.PKCS8, serialization.NoEncryption())
    secret(key_file, plain.decode())
    file.write_bytes(made.public_bytes(serialization.Encoding.PEM))


def secret(file: Path, text: str) -> None:
    """Writes a file that only this user can read, from its first moment on."""
    with open(os.open(file, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "w") as out:
        out.write(text)


class Process:
    """A child with its own group; ends when it is told to, at the latest by force, and when its starter dies."""

    def __init__(self, words: list[str], folder: Path, environment: dict[str, str]) -> None:
        self.child = subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *words], cwd=folder, env=environment,
                                      stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                      stderr=open(folder / "stderr.log", "a"), start_new_session=True)

    def end(self, how: int = signal.SIGTERM) -> None:
        if self.child.poll() is None:
            self.child.send_signal(how)
            try:
                self.child.wait(20)
            except subprocess.TimeoutExpired:
                self.child.kill()
                self.child.wait()


class LocalFarm:
    """Use it as a context: leaving it ends everything that it started."""

    def __init__(self, folder: Path, projects: Path, sources: Path, workers: dict[str, dict], qxhost: str,
                 projects_settings: str = "", retries: int = 2, tls: bool = True) -> None:
        """``projects``: the folder that the master reads; ``sources``: the repository. ``workers``: by name, with ``builds``,
        ``tags``, ``trusted`` and, for tests, ``port`` (what stands between), ``environment``, ``before`` (words that stand
        before its command) and ``folder``."""
        self.folder = folder
        self.settings = workers
        self.master_folder = folder / "master"
        self.port = free_port()
        self.tls = tls
        self.master: Process | None = None
        self.workers: dict[str, Process] = {}
        self.environment = {**os.environ, "PYTHONPATH": str(ROOT / "packaging/buildbot"), "QX_FARM_PROJECTS": str(projects),
                            "QXHOST_OPTIONS": str(folder / "options.xml"), "XDG_STATE_HOME": str(folder / "kept")}
        self._master(sources, qxhost, projects_settings, retries)
        for name in workers:
            self._worker(name)

    def _master(self, sources: Path, qxhost: str, projects_settings: str, retries: int) -> None:
        place = self.master_folder
        (place / "jobs").mkdir(parents=True)
        for file in ("master.cfg", "buildbot.tac"):
            shutil.copy(ROOT / "examples/farm" / file, place)
        listen = f"tcp:port={self.port}:interface=127.0.0.1"
        if self.tls:
            certificate(place / "master.key", place / "master.pem")
            roots = self.folder / "roots"
            roots.mkdir()
            shutil.copy(place / "master.pem", roots)
            listen = f"ssl:port={self.port}:interface=127.0.0.1:privateKey={place}/master.key:certKey={place}/master.pem"
        text = [f"repository = {json.dumps(str(sources))}", f'listen = "{listen}"', 'nightly = ""', f"retries = {retries}"]
        for name, each in self.settings.items():
            secret(place / f"{name}.password", secrets.token_hex(16))
            text += [f"[workers.{name}]", f'password_file = "{name}.password"', f"builds = {each.get('builds', 1)}",
                     f"tags = {json.dumps(each.get('tags', ['engine']))}", f"trusted = {str(each.get('trusted', True)).lower()}",
                     f"qxhost = {json.dumps(qxhost)}"]
        (place / "farm.toml").write_text("\n".join(text) + "\n" + projects_settings)
        done = subprocess.run([PYTHON, "/usr/bin/buildbot", "upgrade-master", "-q", str(place)], env=self.environment,
                              capture_output=True, text=True)
        if done.returncode:
            raise RuntimeError(f"the master's database cannot be made: {done.stdout}{done.stderr}")

    def _worker(self, name: str) -> None:
        place = self.worker_folder(name)
        place.mkdir(parents=True, exist_ok=True)
        shutil.copy(ROOT / "examples/farm/worker.tac", place)
        secret(place / "password", (self.master_folder / f"{name}.password").read_text())
        (place / "builds" / "info").mkdir(parents=True, exist_ok=True)
        port = self.settings[name].get("port", self.port)
        master = f"tcp:host=127.0.0.1:port={port}"
        if self.tls:
            master = f"tls:localhost:{port}:trustRoots={self.folder / 'roots'}"
        keepalive = self.settings[name].get("keepalive", 60)
        (place / "worker.json").write_text(json.dumps({"name": name, "master": master, "maxdelay": 2, "keepalive": keepalive}))

    def worker_folder(self, name: str) -> Path:
        return self.settings[name].get("folder", self.folder / name)

    def __enter__(self) -> LocalFarm:
        try:
            self.start_master()
            for name in self.settings:
                self.start_worker(name)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_: object) -> None:
        for each in [*self.workers.values(), self.master]:
            if each is not None:
                each.end()

    def start_master(self) -> None:
        log = self.master_folder / "twistd.log"
        begun = log.stat().st_size if log.exists() else 0
        self.master = Process([*TWISTD, "buildbot.tac"], self.master_folder, self.environment)
        running = b"BuildMaster is running"
        self.until(lambda: log.exists() and running in log.read_bytes()[begun:], "the master runs", 60)

    def start_worker(self, name: str) -> None:
        each = self.settings[name]
        environment = {**self.environment, **each.get("environment", {})}
        self.workers[name] = Process([*each.get("before", []), *TWISTD, "worker.tac"], self.worker_folder(name), environment)

    def order(self, *builders: str, variables: dict[str, str] | None = None, branch: str = "") -> None:
        """Orders a build of each builder, as a user does."""
        words = [PYTHON, "-m", "qxhost_buildbot.ask", str(self.master_folder), *builders]
        words += [word for name, value in (variables or {}).items() for word in ("--set", f"{name}={value}")]
        words += ["--branch", branch] if branch else []
        subprocess.run(words, env=self.environment, check=True)

    def events(self, event: str = "", builder: str = "") -> list[dict]:
        """What results.jsonl tells so far, of one kind or of all."""
        file = self.master_folder / "results.jsonl"
        lines = file.read_text(encoding="utf-8").splitlines() if file.exists() else []
        return [each for each in map(json.loads, lines) if event in ("", each["event"]) and builder in ("", each["builder"])]

    def finished(self, count: int, builder: str = "", seconds: float = 120) -> list[dict]:
        """Waits until so many builds have ended, those that were lost among them."""
        self.until(lambda: len(self.events("finished", builder)) >= count, f"{count} builds of {builder or 'all'} ended", seconds)
        return self.events("finished", builder)

    def ended(self, count: int, builder: str = "", seconds: float = 120) -> list[dict]:
        """Waits until so many orders have come to an end; what was lost and begun anew is no end."""
        def ends() -> list[dict]:
            return [each for each in self.events("finished", builder) if each["result"] != "retry"]
        self.until(lambda: len(ends()) >= count, f"{count} orders of {builder or 'all'} ended", seconds)
        return ends()

    def until(self, true: object, what: str, seconds: float) -> None:
        end = time.monotonic() + seconds
        while not true():
            if self.master is not None and self.master.child.poll() is not None:
                raise AssertionError(f"the master ended while waiting: {what}\n{self._tail()}")
            if time.monotonic() > end:
                raise AssertionError(f"not within {seconds:.0f} seconds: {what}\n{self._tail()}")
            time.sleep(0.05)

    def _tail(self) -> str:
        log = self.master_folder / "twistd.log"
        return "\n".join(log.read_text(errors="replace").splitlines()[-25:]) if log.exists() else ""
