#!/usr/bin/python3
"""What goes wrong on a farm, and what has to come out right all the same.

usage: faults.py --bin FOLDER [--rounds N] [--seed N] [FAULT]...

Each round does one fault to a farm of its own kind and then looks (Farm.check): no number twice, no copy with two versions
used, no green build that did not see its own number in all of its files, every lost build told as lost and retried, nothing left
running. Exit 1 at the first promise that is broken, 77 when no fault can be made here.
"""

from __future__ import annotations

import argparse
import contextlib
import os
import random
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import standin  # noqa: E402
from local_farm import ROOT, LocalFarm, free_port, repository, why_not  # noqa: E402

FILES = 60
OFF = '[projects.Many]\ncheck_built = "off"\n'


class Proxy:
    """Stands between worker and master. cut() drops every connection, and refuses new ones until heal()."""

    def __init__(self, port: int) -> None:
        self.port = port
        self.target = 0
        self.open: list[socket.socket] = []
        self.down = False
        self.ear = socket.create_server(("127.0.0.1", port))
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self) -> None:
        while True:
            try:
                near, _ = self.ear.accept()
                if self.down:
                    near.close()
                    continue
                far = socket.create_connection(("127.0.0.1", self.target))
            except OSError:
                if self.ear.fileno() < 0:
                    return
                continue
            self.open += [near, far]
            for one, other in ((near, far), (far, near)):
                threading.Thread(target=self._carry, args=(one, other), daemon=True).start()

    def _carry(self, one: socket.socket, other: socket.socket) -> None:
        with contextlib.suppress(OSError):
            while data := one.recv(65536):
                other.sendall(data)
        for each in (one, other):
            with contextlib.suppress(OSError):
                each.shutdown(socket.SHUT_RDWR)

    def cut(self) -> None:
        self.down = True
        for each in self.open:
            with contextlib.suppress(OSError):
                each.shutdown(socket.SHUT_RDWR)
        self.open.clear()

    def heal(self) -> None:
        self.down = False

    def close(self) -> None:
        self.cut()
        self.ear.close()


class Farm:
    """A farm with one worker and the stand-in compiler, on which one kind of fault is made again and again."""

    def __init__(self, qxhost: str, scratch: Path, rng: random.Random, seconds: str = "0.1", half: str = "", settings: str = OFF,
                 **worker: object) -> None:
        self.rng = rng
        self.orders = 0
        self.refused = 0
        self.noted = scratch / "seen"
        self.mark = f"farm-{os.getpid()}-{scratch.name}"
        projects = scratch / "projects"
        standin.solution(projects, FILES)
        sources = repository(scratch, projects)
        self.times = {"QX_SECONDS": seconds, "QX_HALF": half, "QX_SEEN": str(self.noted), "QX_FARM_MARK": self.mark}
        environment = {**self.times, **worker.pop("environment", {})}
        self.farm = LocalFarm(scratch, projects, sources, {"one": {"environment": environment, **worker}}, qxhost,
                              projects_settings=settings, retries=3)
        standin.compiler(scratch / "compiler", qxhost, scratch / "options.xml")

    def __enter__(self) -> Farm:
        self.farm.__enter__()
        return self

    def __exit__(self, *_: object) -> None:
        self.farm.__exit__()

    @property
    def copy(self) -> Path:
        return self.farm.worker_folder("one") / "builds/Many/build/Many"

    def order(self) -> None:
        self.orders += 1
        self.ordered = time.time()
        self.farm.order("Many")

    def until_stamping(self) -> None:
        """Waits until some files are stamped; the fault that follows falls before, into or behind the last of them."""
        def begun() -> bool:
            with contextlib.suppress(OSError):  # an earlier build's are being cleaned away
                return any(each.stat().st_mtime > self.ordered for each in self.copy.glob("*/AssemblyInfo.cs.bak"))
            return False
        self.farm.until(begun, "stamping begins", 60)
        time.sleep(self.rng.uniform(0, 0.05))

    def until_compiling(self) -> None:
        builds = len(standin.seen(self.noted))
        self.farm.until(lambda: len(standin.seen(self.noted)) > builds, "the compiler runs", 60)
        time.sleep(self.rng.uniform(0, 0.3))

    def lost(self) -> int:
        return sum(each["result"] == "retry" for each in self.farm.events("finished"))

    def check(self, lost: int, greens: bool = True) -> None:
        """Looks at everything that was promised, over all rounds so far; ``lost``: how many builds more have to be told as lost."""
        ended = self.farm.ended(self.orders, "Many")
        told = self.farm.events("finished", "Many")
        expect(len(ended) == self.orders, f"{self.orders} orders, {len(ended)} ends")
        expect(not greens or all(each["result"] == "success" for each in ended[self.refused:]), f"not green: {ended[-1]}")
        expect(self.lost() >= lost, f"{self.lost()} builds were told as lost, {lost} were")
        numbers = [each["build_number"] for each in told if "build_number" in each]
        expect(len(numbers) == len(set(numbers)), f"a number was given twice: {numbers}")
        found = standin.seen(self.noted)
        expect(all(len(each) == 1 and set(each.values()) == {FILES} for each in found), f"a copy with two versions: {found[-2:]}")
        used = [number for each in found for number in each]
        expect(len(used) == len(set(used)), f"a number was stamped twice: {used}")
        for each in ended:
            if each["result"] in ("success", "warnings"):
                expect(each["build_number"] in used and each["version"] == f"3.1.{each['build_number']}.0", f"green without its number: {each}")

    def nothing_runs(self) -> None:
        """After the worker's end nothing of its builds may go on."""
        self.farm.until(lambda: not marked(self.mark), "everything that a build started has ended", 15)


def expect(promise: bool, otherwise: str) -> None:
    if not promise:
        raise AssertionError(otherwise)


def marked(mark: str) -> list[int]:
    """The processes of builds: those that bear the mark, but for the worker itself."""
    found = []
    for entry in Path("/proc").iterdir():
        with contextlib.suppress(OSError):
            if entry.name.isdigit() and f"QX_FARM_MARK={mark}".encode() in (entry / "environ").read_bytes().split(b"\0"):
                if b"worker.tac" not in (entry / "cmdline").read_bytes():
                    found.append(int(entry.name))
    return found


def killed(made: Farm, when: object) -> None:
    """The worker is killed, and started again."""
    before = made.lost()
    made.order()
    when()
    made.farm.workers["one"].end(signal.SIGKILL)
    made.nothing_runs()
    made.farm.start_worker("one")
    made.check(before + 1)


def worker_killed_building(make: object, rounds: object) -> None:
    with make(seconds="2") as made:
        for _ in rounds:
            killed(made, made.until_compiling)


def worker_killed_stamping(make: object, rounds: object) -> None:
    with make(seconds="0.3") as made:
        for _ in rounds:
            killed(made, made.until_stamping)


def worker_killed_in_a_log_line(make: object, rounds: object) -> None:
    with make(seconds="1", half="yes") as made:
        for _ in rounds:
            killed(made, made.until_compiling)


def master_restarted(make: object, rounds: object) -> None:
    with make(seconds="1.5") as made:
        for at in rounds:
            before = made.lost()
            made.order()
            (made.until_compiling if at % 2 else made.until_stamping)()
            made.farm.master.end(signal.SIGKILL if made.rng.random() < 0.5 else signal.SIGTERM)
            made.farm.start_master()
            made.check(before + 1)


def network_cut(make: object, rounds: object) -> None:
    proxy = Proxy(free_port())
    made = make(seconds="1.5", port=proxy.port, keepalive=2)
    proxy.target = made.farm.port
    with contextlib.closing(proxy), made:
        for at in rounds:
            proxy.heal()
            before = made.lost()
            made.order()
            (made.until_compiling if at % 2 else made.until_stamping)()
            proxy.cut()
            made.farm.until(lambda: made.lost() > before, "the build is told as lost", 60)
            time.sleep(made.rng.uniform(0, 2))
            proxy.heal()
            made.check(before + 1)


def disk_full(make: object, rounds: object) -> None:
    if os.geteuid() != 0:
        raise SkippedFault("a disk of its own is made by root")
    disk = Path(tempfile.mkdtemp(prefix="qxhost-farm-disk-"))
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8m", "tmpfs", str(disk)], check=True)
    filler = disk / "filler"
    try:
        with make(folder=disk / "one") as made:
            for _ in rounds:
                room = made.rng.choice([0, 4096, 65536, 300000])
                fill(filler, disk, room)
                made.order()
                ended = made.farm.ended(made.orders, "Many")
                filler.unlink()
                green = ended[-1]["result"] == "success"
                expect(not green or room >= 300000, f"green with {room} bytes left: {ended[-1]}")
                made.check(0, greens=False)
                made.order()
                expect(made.farm.ended(made.orders, "Many")[-1]["result"] == "success", "a build after the disk was full")
                made.check(0, greens=False)
    finally:
        subprocess.run(["umount", "--lazy", str(disk)], check=False)
        disk.rmdir()


def fill(filler: Path, disk: Path, room: int) -> None:
    """Leaves so many bytes on the disk."""
    with open(filler, "wb") as out:
        free = os.statvfs(disk)
        os.posix_fallocate(out.fileno(), 0, max(free.f_bavail * free.f_frsize - room, 1))


def clock_off(make: object, rounds: object) -> None:
    """Real compilers on a worker whose clock is two hours before or behind: what was built is still told from what was not."""
    for tool in ("faketime", "mcs", "ninja", "i686-w64-mingw32-g++"):
        if not shutil.which(tool):
            raise SkippedFault(f"no {tool} on this machine")
    for at in rounds:
        with tempfile.TemporaryDirectory(prefix="qxhost-farm-clock-") as folder:
            scratch = Path(folder)
            projects = scratch / "projects"
            projects.mkdir()
            shutil.copytree(ROOT / "examples/Tally", projects / "Tally")
            shutil.copy(ROOT / "examples/Tally.build.xml", projects)
            sources = repository(scratch, projects)
            # The clock that cannot be set is left alone, as it would be; the times of files are the kernel's.
            words = ["env", "NO_FAKE_STAT=1", "DONT_FAKE_MONOTONIC=1", "FAKETIME_DONT_FAKE_MONOTONIC=1", "faketime", "-f", "+2h" if at % 2 else "-2h"]
            with LocalFarm(scratch, projects, sources, {"one": {"before": words}}, make.keywords["qxhost"]) as farm:
                for number in (1, 2):
                    farm.order("Tally")
                    ended = farm.ended(number, "Tally")[-1]
                    expect(ended["result"] == "success" and ended["version"] == f"2.0.{number}.0", f"{words}: {ended}")


def no_program(make: object, rounds: object) -> None:
    """The compiler says that it succeeded and made nothing: never green, and the number is gone."""
    with make(settings="") as made:
        for _ in rounds:
            made.order()
            ended = made.farm.ended(made.orders, "Many")[-1]
            expect(ended["result"] == "failure" and "no program of P1" in ended["says"], f"no program: {ended}")
            made.check(0, greens=False)


def stopped(make: object, rounds: object) -> None:
    """A build of a worker that is told to end ends with everything that it started."""
    with make(seconds="30") as made:
        for _ in rounds:
            made.order()
            made.until_compiling()
            made.farm.workers["one"].end(signal.SIGTERM)
            made.nothing_runs()
            made.farm.until(lambda: made.lost() >= made.orders, "the build is told as lost", 30)
            made.times["QX_SECONDS"] = "0.1"
            made.farm.settings["one"]["environment"]["QX_SECONDS"] = "0.1"
            made.farm.start_worker("one")
            made.check(1)
            made.farm.workers["one"].end()
            made.farm.settings["one"]["environment"]["QX_SECONDS"] = "30"
            made.farm.start_worker("one")


class SkippedFault(Exception):
    """The fault cannot be made on this machine."""


FAULTS = [worker_killed_building, worker_killed_stamping, worker_killed_in_a_log_line, master_restarted, network_cut, disk_full,
          clock_off, no_program, stopped]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--bin", required=True)
    parser.add_argument("--rounds", type=int, default=1)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("faults", nargs="*", metavar="FAULT", help=", ".join(each.__name__ for each in FAULTS))
    words = parser.parse_args()
    if reason := why_not():
        print(f"SKIPPED: {reason}")
        return 77
    qxhost = str((Path(words.bin) / "qxhost").resolve())
    done = 0
    for fault in FAULTS:
        if words.faults and fault.__name__ not in words.faults:
            continue
        began = time.monotonic()
        with tempfile.TemporaryDirectory(prefix="qxhost-farm-") as folder:
            make = Maker(qxhost, Path(folder), random.Random(words.seed))
            try:
                fault(make, range(words.rounds))
            except SkippedFault as reason:
                print(f"{fault.__name__}: SKIPPED: {reason}", flush=True)
                continue
            except AssertionError as broken:
                print(f"{fault.__name__} (seed {words.seed}) FAILED: {broken}", flush=True)
                return 1
        print(f"{fault.__name__}: {words.rounds} rounds, {time.monotonic() - began:.0f} s", flush=True)
        done += 1
    return 0 if done else 77


class Maker:
    """Makes the farm of a fault."""

    def __init__(self, qxhost: str, scratch: Path, rng: random.Random) -> None:
        self.keywords = {"qxhost": qxhost, "scratch": scratch, "rng": rng}

    def __call__(self, **more: object) -> Farm:
        return Farm(**self.keywords, **more)


if __name__ == "__main__":
    sys.exit(main())
