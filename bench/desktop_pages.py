"""What the widgets of the property pages add to their rules: a solution of 1,000 projects opened, and ticks in it.

usage: scripts/screen python3 bench/desktop_pages.py FOLDER-OF-PROGRAMS"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "desktop"))
from place import ACTION, Place  # noqa: E402

PROJECTS, TICKS, ROUNDS = 1000, 50, 7


def write_solution(folder):
    """Visual Studio 2005's; each project with an empty file of its own."""
    rows, projects = [], []
    for i in range(PROJECTS):
        guid = f"{{{i:08X}-1111-2222-3333-444444444444}}"
        os.makedirs(os.path.join(folder, f"Project{i}"))
        with open(os.path.join(folder, f"Project{i}", f"Project{i}.csproj"), "w", encoding="ascii") as file:
            file.write("<Project/>")
        projects.append(f'Project("{{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}}") = "Project{i}", '
                        f'"Project{i}\\Project{i}.csproj", "{guid}"\nEndProject\n')
        rows += [f"\t\t{guid}.{row} = Debug|Any CPU\n" for row in ("Debug|Any CPU.ActiveCfg", "Debug|Any CPU.Build.0")]
    with open(os.path.join(folder, "Large.sln"), "w", encoding="ascii", newline="\r\n") as file:
        file.write("\nMicrosoft Visual Studio Solution File, Format Version 9.00\n# Visual Studio 2005\n"
                   + "".join(projects) + "Global\n"
                   "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\n\t\tDebug|Any CPU = Debug|Any CPU\n"
                   "\tEndGlobalSection\n\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\n"
                   + "".join(rows) + "\tEndGlobalSection\nEndGlobal\n")


def seconds(place, program, commands):
    """From start to end, and what it answered."""
    begin = time.monotonic()
    done = subprocess.run([*place.program(program), "--options", place.path("options.xml"), "drive", "large.xml"],
                          cwd=place.path("work"), input="\n".join(commands), capture_output=True, text=True, check=True)
    return time.monotonic() - begin, done.stdout


def main():
    examples = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples")
    ticks = [f"tick Solution.lstProjects {i} on" for i in range(TICKS)]
    with tempfile.TemporaryDirectory() as scratch:
        place = Place(os.path.abspath(sys.argv[1]), examples, os.path.join(scratch, "pages"), [])
        write_solution(place.path("work"))
        place.host("new", "large.xml")
        place.host("add", "large.xml", ACTION, "Solution=Large.sln", "SolutionConFiguration=Debug|Any CPU",
                   "BuildType=btSelectedProjects")
        times = {}
        for _ in range(ROUNDS):
            for program in ("qxhost", "qx_view_driver"):
                opened, _ = seconds(place, program, ["quit"])
                ticked, said = seconds(place, program, [*ticks, "quit"])
                if "error" in said:
                    sys.exit(f"{program} says {said}")
                times.setdefault(program, []).append((opened * 1000, (ticked - opened) * 1000 / TICKS))
    for program, what in (("qxhost", "the rules alone"), ("qx_view_driver", "their widgets")):
        opened, ticked = (statistics.median(column) for column in zip(*times[program]))
        print(f"{what + ':':<16} started and opened in {opened:4.0f} ms, a tick {ticked:5.2f} ms")


if __name__ == "__main__":
    main()
