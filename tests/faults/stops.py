#!/usr/bin/env python3
"""Stops runs of mean children at random moments, and looks whether what is promised holds.

usage: stops.py BIN-FOLDER TEST-CHILD [ROUNDS [SEED]]

Each round makes a tree of processes that leave their parents, sessions and environments and do not listen, lets
qxhost run it, sometimes with an output that nobody reads any more, and ends that by Ctrl-C, SIGTERM, a time-out or
SIGKILL. Then one function (check) looks: two seconds, exit code 5, a number raised once, nothing left running,
no lock and no file left behind. Prints what was done; exit code 1 at the first promise that is broken.
"""
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import time


def mean_orders(rng, pulse, depth):
    """The test child's orders of one process: leaves something behind, starts the next, and waits or ends."""
    orders = rng.sample(["new-session", "no-environment", "ignore-requests"], rng.randint(0, 3))
    inner = ["beat:" + pulse] if depth == 0 else mean_orders(rng, pulse, depth - 1)
    orders += [f"spawn:{len(inner)}"] + inner
    if rng.random() < 0.2:
        orders.append("flood:65536")
    return orders + [rng.choice(["exit:0", "sleep:60000"])]


def running_in(folder):
    """Processes whose current folder is this one: everything that a run starts."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and os.readlink(entry / "cwd") == folder:
                found.append(int(entry.name))
        except OSError:
            pass
    return found


def count_of(project):
    text = pathlib.Path(project).read_text()
    return int(text.split('<Property name="Count">')[1].split("<")[0])


def check(folder, how, code, seconds, before, after):
    """All that is promised; a list of what is broken."""
    broken = []
    if seconds > 2:
        broken.append(f"it took {seconds:.2f} s")
    if how == "kill":
        if after not in (before, before + 1):
            broken.append(f"the count went from {before} to {after}")
    else:
        if code != 5:
            broken.append(f"exit code {code}")
        if after != before + 1:
            broken.append(f"the count went from {before} to {after}")
        left = [name for name in os.listdir(folder) if name not in ("p.xml", "pulse", "log.txt", "o.xml")]
        if left:
            broken.append("files left: " + " ".join(left))
    for _ in range(100):
        if not running_in(folder):
            break
        time.sleep(0.01)
    else:
        broken.append(f"processes left: {running_in(folder)}")
    return broken


def one_round(rng, host, child, folder):
    project, pulse = folder + "/p.xml", folder + "/pulse"
    orders = " ".join(mean_orders(rng, pulse, rng.randint(0, 3)) + ["sleep:60000"])
    subprocess.run(host + ["set", "p.xml", "Deed=tdRun", f"Lines={child};{orders}"], cwd=folder, check=True)
    pathlib.Path(pulse).write_text("")
    before = count_of(project)
    how = rng.choice(["int", "term", "timeout", "kill"])
    unread = rng.random() < 0.3
    words = ["run", "p.xml", "--log-file", "log.txt"] + (["--timeout", "0.6"] if how == "timeout" else [])
    run = subprocess.Popen(host + words, cwd=folder, stderr=subprocess.DEVNULL,
                           stdout=subprocess.PIPE if unread else subprocess.DEVNULL)
    for _ in range(400):
        if os.path.getsize(pulse) > 0:
            break
        time.sleep(0.01)
    time.sleep(rng.random() * 0.3)
    begin = time.monotonic()
    if how != "timeout":
        run.send_signal({"int": signal.SIGINT, "term": signal.SIGTERM, "kill": signal.SIGKILL}[how])
    code = run.wait(timeout=20)
    seconds = time.monotonic() - begin
    broken = check(folder, how, code, seconds, before, count_of(project))
    for line in broken:
        print(f"BROKEN ({how}{', unread' if unread else ''}): {line}\n    {orders}")
    return how, seconds, not broken


def main():
    programs, child = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 12
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(10**9)
    rng = random.Random(seed)
    print(f"seed {seed}", flush=True)
    # A shell starts what it leaves in the background deaf to Ctrl-C, and what that starts would be deaf, too.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    slowest, done, good = 0.0, {}, True
    with tempfile.TemporaryDirectory(prefix="qx-faults-") as folder:
        folder = os.path.realpath(folder)
        host = [programs + "/qxhost", "--package", programs + "/testpackages/tiny.so", "--options", folder + "/o.xml"]
        subprocess.run(host + ["new", "p.xml"], cwd=folder, check=True)
        subprocess.run(host + ["add", "p.xml", "Tiny Task"], cwd=folder, check=True)
        for _ in range(rounds):
            how, seconds, fine = one_round(rng, host, child, folder)
            slowest, good = max(slowest, seconds), good and fine
            done[how] = done.get(how, 0) + 1
    print(f"{rounds} stops {done}, the slowest {slowest:.2f} s: " + ("nothing broken" if good else "BROKEN"))
    return 0 if good else 1


sys.exit(main())
