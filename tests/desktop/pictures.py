"""Makes the pictures of the desktop that README shows, from the running program with the example: every page, the main
window during a build, the difference of a dry run.

The scratch folder's path is to be seen in them.

usage: pictures.py FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER FOLDER-OF-PICTURES light|dark"""

import os
import re
import shutil
import stat
import subprocess
import sys
import time

from person import wait_for
from place import Place, go_to_page, open_pages, wait_for_state

# Hands the build over to the machine's engine and then lingers, so that there is time to look.
SLOW_ENGINE = """#!/bin/sh
{engine} "$@"
code=$?
sleep 6
exit $code
"""


def main():
    programs, examples, scratch, pictures, theme = sys.argv[1:]
    place = Place(os.path.abspath(programs), os.path.abspath(examples), os.path.abspath(scratch), [])
    engine = subprocess.run(["which", "xbuild"], capture_output=True, text=True, check=True).stdout.strip()
    os.makedirs(place.path("framework"))
    with open(place.path("framework", "MSBuild.exe"), "w", encoding="utf-8") as script:
        script.write(SLOW_ENGINE.format(engine=engine))
    os.chmod(script.name, os.stat(script.name).st_mode | stat.S_IXUSR)
    os.environ["GTK_THEME"] = "Adwaita:dark" if theme == "dark" else "Adwaita"
    for file in ("Tests.dll", "Tests.testrunconfig", "MSTest.exe"):
        with open(place.path("work", "Hello", file), "w", encoding="utf-8"):
            pass
    tools = place.path("work", "Hello")
    place.host("options", "DevEnv2005Location=" + tools, "MSTestLocation=" + os.path.join(tools, "MSTest.exe"),
               "Framework.v2.0=" + place.path("framework"), options="options.xml")
    place.host("options", "DevEnvLocation=C:\\VS2002\\Common7\\IDE", "DevEnv2003Location=C:\\VS2003\\Common7\\IDE",
               "DevEnv2005Location=C:\\VS2005\\Common7\\IDE", "DefaultVSVersion=vs2005",
               "MSTestLocation=C:\\VS2005\\Common7\\IDE\\MSTest.exe", options="shown.xml")
    place.host("add", "Hello.build.xml", "Run MSTest", "AssemblyFileName=Hello\\Tests.dll",
               "ConfigFileName=Hello\\Tests.testrunconfig", "OutputFileName=Results\\Tests.trx", options="options.xml")
    with open(place.path("work", "Hello", "Hello.sln"), encoding="utf-8") as solution:
        guids = re.findall(r'^Project.*"(\{.*?\})"$', solution.read(), re.M)
    shutil.copy(place.path("work", "Hello.build.xml"), place.path("work", "Shown.build.xml"))
    place.host("set", "Shown.build.xml", "BuildType=btSelectedProjects", "SelectedProjects=" + ";".join(guids[:2]), "UpdateAssemblyCompany=True",
               "AssemblyCompany=The Hello people", "UpdateAssemblyProductName=True", "AssemblyProductName=Hello",
               options="options.xml")

    def take(name):
        time.sleep(0.8)  # until nothing moves any more
        window = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True, check=True).stdout.strip()
        subprocess.run(["import", "-window", window, "-strip", os.path.join(pictures, f"{name}-{theme}.png")], check=True)
        print(f"{name}-{theme}.png")

    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        desktop.key("Next", "Next")  # where lines are taken out and put in
        take("dry-run")
        desktop.key("Escape")
        desktop.gone("dryRun")
        desktop.focus_row("actions", 0)
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        wait_for("the engine's output", lambda: "Time Elapsed" in "\n".join(desktop.texts("log")))
        take("main-window")
        desktop.key("shift+F5")
        wait_for("the end", lambda: not desktop.texts("actions")[0].endswith("Running"))
        desktop.close()

    with place.desktop("Shown.build.xml") as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.focus_row("actions", 0)
        open_pages(desktop)
        for page in desktop.texts("Pages"):
            go_to_page(desktop, page)
            take("page-" + page.lower().replace(" ", "-"))
        desktop.key("Escape")
        desktop.gone("pages")
        desktop.focus_row("actions", 1)
        desktop.key("alt+Return")
        desktop.window("pages")
        take("page-mstest")
        desktop.key("Escape")

    with place.desktop(options="shown.xml") as desktop:
        desktop.key("alt+t")
        desktop.key("o")
        desktop.window("pages")
        take("page-options")


if __name__ == "__main__":
    main()
