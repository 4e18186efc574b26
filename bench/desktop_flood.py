"""How the window bears a build that writes a million lines, beside the command line that writes them to nobody.

usage: scripts/screen python3 bench/desktop_flood.py FOLDER-OF-PROGRAMS    (wants the package of the tests there)"""

import os
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "desktop"))
from person import wait_for  # noqa: E402
from place import Place  # noqa: E402


def memory(process, key):
    """Megabytes, as the system counts them."""
    with open(f"/proc/{process}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith(key)) / 1024


def main():
    examples = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples")
    with tempfile.TemporaryDirectory() as scratch:
        place = Place(os.path.abspath(sys.argv[1]), examples, os.path.join(scratch, "flood"), [])
        place.host(*place.tiny(), "new", "flood.xml")
        place.host(*place.tiny(), "add", "flood.xml", "Tiny Task", "Deed=tdFlood", "Seconds=1000")
        begin = time.monotonic()
        subprocess.run([*place.program("qxhost"), *place.tiny(), "run", "flood.xml"], cwd=place.path("work"),
                       stdout=subprocess.DEVNULL, check=True)
        floor = time.monotonic() - begin

        desktop = place.desktop(*place.tiny(), "flood.xml")
        wait_for("the action", lambda: desktop.texts("actions"))
        process = desktop.ask("pid")
        before = memory(process, "VmRSS")
        answers = []
        begin = time.monotonic()
        desktop.key("F5")
        while not desktop.texts("actions")[0].endswith("Succeeded"):
            for _ in range(20):
                asked = time.monotonic()
                desktop.ask("ping")
                answers.append((time.monotonic() - asked) * 1000)
                time.sleep(0.01)
        seconds = time.monotonic() - begin
        after, peak = memory(process, "VmRSS"), memory(process, "VmHWM")
        desktop.close()
    answers.sort()
    print(f"a million lines by the command line, to nobody: {floor:.1f} s")
    print(f"the same in the window:                         {seconds:.1f} s")
    print(f"the window's answers meanwhile ({len(answers)}): median {answers[len(answers) // 2]:.1f} ms, "
          f"99 of 100 within {answers[len(answers) * 99 // 100]:.1f} ms, slowest {answers[-1]:.1f} ms")
    print(f"its memory: {before:.0f} MB before, {after:.0f} MB after, {peak:.0f} MB at most")


if __name__ == "__main__":
    main()
