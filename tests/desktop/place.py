"""Where a session takes place: a folder of its own with the programs to run in it, and what sessions do again and again."""

import os
import re
import shutil
import subprocess

from person import Desktop, Fault, in_front, wait_for

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
        os.environ["XDG_STATE_HOME"] = self.path("state")  # what runs keep
        os.environ["LOCALAPPDATA"] = self.seen(self.path("state"))

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
        return ["--package", self.seen(os.path.join(self.programs, "testpackages", "tiny" + (".dll" if self.emulator else ".so")))]


def expect(what, found, wanted):
    if found != wanted:
        raise Fault(f"{what}: found {found!r}, wanted {wanted!r}")


def read(path):
    with open(path, "rb") as file:
        return file.read()


def expect_same_file(found, wanted):
    if read(found) != read(wanted):
        raise Fault(f"{found}:\n{read(found).decode()}\n{wanted}:\n{read(wanted).decode()}")


def answer_file_dialog(desktop, place, title, path):
    """Types a path into the system's file dialog, which cannot be asked, only seen."""
    wait_for(f"the dialog {title}", lambda: in_front(title))
    desktop.settle()
    desktop.key(*(["Home", "shift+End"] if place.emulator else ["ctrl+a"]))
    desktop.type(place.seen(path))
    desktop.settle()
    desktop.key("Return")
    wait_for(f"the end of the dialog {title}", lambda: not in_front(title))


def tiny_project(place, file, *actions):
    """Makes a build project of the tests' actions, each of them a list of settings; the desktop that shows it."""
    place.host(*place.tiny(), "new", file)
    for settings in actions:
        place.host(*place.tiny(), "add", file, "Tiny Task", *settings)
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", file)))
    wait_for("the actions", lambda: len(desktop.texts("actions")) == len(actions))
    return desktop


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


def wait_for_state(desktop, state, row=0, patience=60):
    wait_for(f"the state {state}", lambda: states(desktop)[row] == state, patience)


def expect_log(desktop, *lines):
    log = "\n".join(desktop.texts("log"))
    for line in lines:
        if line not in log:
            raise Fault(f"the log lacks {line!r}:\n{log}")


def states(desktop):
    """Without when it was and how long it took."""
    return [re.sub(r" [0-9(].*", "", text.split("|")[-1]) for text in desktop.texts("actions")]
