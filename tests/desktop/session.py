"""Whole sessions at the window, as a person has them: a build project is made, set up on its pages, saved, run and
stopped, and what was saved is what the command line makes of the same settings.

usage: session.py FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER NAME [EMULATOR]
NAME is one of the functions below without "test_"."""

import os
import re
import shutil
import subprocess
import sys

from person import Desktop, Fault, hands, wait_for

ACTION = "Build VS.Net Solution"


class Place:
    """A folder of its own for one session, with the programs to run in it."""

    def __init__(self, programs, examples, scratch, emulator):
        self.programs, self.emulator = programs, emulator
        self.ending = ".exe" if emulator else ""
        self.folder = scratch
        shutil.rmtree(scratch, ignore_errors=True)
        os.makedirs(scratch)
        shutil.copytree(examples, self.path("work"))

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def seen(self, path):
        """The path as the program sees it."""
        return ("Z:" + path).replace("/", "\\") if self.emulator else path

    def program(self, name):
        return [*self.emulator, os.path.join(self.programs, name + self.ending)]

    def host(self, *words, options="expected.xml", code=0):
        """Runs the command line in the folder "work"."""
        done = subprocess.run([*self.program("qxhost"), "--options", self.seen(self.path(options)), *words],
                              cwd=self.path("work"), capture_output=True, text=True, stdin=subprocess.DEVNULL)
        if done.returncode != code:
            raise Fault(f"qxhost {words} gave {done.returncode}: {done.stderr}{done.stdout}")
        return done.stdout

    def desktop(self, *arguments, options="options.xml"):
        return Desktop(self.program("qxhost-desktop"),
                       ["--options", self.seen(self.path(options)), *arguments], folder=self.path("work"),
                       environment={"XDG_CONFIG_HOME": self.path("config"),
                                    "APPDATA": self.seen(self.path("config"))})

    def tiny(self):
        """The package of the tests, whose action does what a test wants."""
        return ["--package", self.seen(os.path.join(self.programs, "tiny" + (".dll" if self.emulator else ".so")))]


def expect(what, found, wanted):
    if found != wanted:
        raise Fault(f"{what}: found {found!r}, wanted {wanted!r}")


def read(path):
    with open(path, "rb") as file:
        return file.read()


def expect_same_file(found, wanted):
    if read(found) != read(wanted):
        raise Fault(f"{found}:\n{read(found).decode()}\n{wanted}:\n{read(wanted).decode()}")


def answer_file_dialog(desktop, place, path):
    """Types a path into the system's file dialog."""
    import time
    time.sleep(0.7)  # it belongs to the system and cannot be asked
    if not place.emulator:
        hands("key", "ctrl+a")
    desktop.type(place.seen(path))
    time.sleep(0.3)
    desktop.key("Return")


def add_action(desktop, name):
    count = len(desktop.texts("actions"))
    desktop.click_row("catalogue", name, times=2)
    wait_for(f"{name} in the list", lambda: len(desktop.texts("actions")) == count + 1)


def open_pages(desktop):
    desktop.focus_row("actions")
    desktop.key("alt+Return")
    desktop.window("pages")


def go_to_page(desktop, name):
    desktop.focus("Pages")
    desktop.key("Home")
    for _ in range(desktop.texts("Pages").index(name)):
        desktop.key("Down")
    wait_for(f"the page {name}", lambda: desktop.where(name))


def press(desktop, caption):
    desktop.click("=" + caption)


def set_up(desktop, place):
    """Picks the example, its configuration and a project, and turns stamping on."""
    open_pages(desktop)
    desktop.click("txtSolution#1")
    answer_file_dialog(desktop, place, place.path("work", "Hello", "Hello.sln"))
    wait_for("the picked file", lambda: "Hello.sln" in (desktop.say("txtSolution") or ""))
    desktop.replace("cboConfigs", "Release|Mixed Platforms")
    choose(desktop, "cboVSVersion", "VS.NET 2005")
    desktop.click("optBuildSelectedProjects")
    wait_for("the list of projects", lambda: desktop.where("lstProjects")["enabled"])
    desktop.tick("lstProjects", 1)
    go_to_page(desktop, "Assembly Info")
    desktop.click("chkUpdateAssemblyInfo")
    desktop.click("chkUpdateCompany")
    wait_for("the edit of the company", lambda: desktop.where("txtAssemblyCompany")["enabled"])
    desktop.replace("txtAssemblyCompany", "The Hello people")
    press(desktop, "OK")
    desktop.gone("pages")


def choose(desktop, name, text):
    """Picks an item of a drop-down list with the keyboard."""
    desktop.open_list(name)
    items = desktop.texts(name)
    desktop.key("Home")
    for _ in range(items.index(text)):
        desktop.key("Down")
    desktop.key("Return")
    wait_for(f"{text} in {name}", lambda: desktop.say(name) == text)


def save_as(desktop, place, name):
    desktop.key("ctrl+s")
    answer_file_dialog(desktop, place, place.path("work", name))
    wait_for("the saved file", lambda: os.path.exists(place.path("work", name)))
    wait_for("the title", lambda: desktop.ask("windows")[0]["title"] == f"{name} - qxhost")


def expected_project(place, guid):
    place.host("new", "expected.xml")
    place.host("add", "expected.xml", ACTION, "Solution=" + place.seen(place.path("work", "Hello", "Hello.sln")),
               "SolutionConFiguration=Release|Mixed Platforms", "VStudioVersion=vs2005", "UseMSBuild=True",
               "BuildType=btSelectedProjects", "SelectedProjects=" + guid, "UpdateAssemblyInfo=True",
               "UpdateAssemblyCompany=True", "AssemblyCompany=The Hello people")


def test_making_a_build_project(place):
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        set_up(desktop, place)
        save_as(desktop, place, "made.xml")
        desktop.close()
    finally:
        desktop.kill()
    projects = re.findall(r'^Project\(.*?\) = ".*?", ".*?", "(.*?)"',
                          read(place.path("work", "Hello", "Hello.sln")).decode(), re.M)
    expected_project(place, projects[1])
    expect_same_file(place.path("work", "made.xml"), place.path("work", "expected.xml"))


TESTS = {name[5:]: function for name, function in list(globals().items()) if name.startswith("test_")}


def main():
    programs, examples, scratch, name, *emulator = sys.argv[1:]
    place = Place(os.path.abspath(programs), os.path.abspath(examples), os.path.abspath(scratch), emulator)
    TESTS[name](place)
    print(f"{name}: as it should be")


if __name__ == "__main__":
    main()
