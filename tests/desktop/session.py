"""Whole sessions at the window, as a person has them: a build project is made, set up on its pages, saved, run and
stopped, and what was saved is what the command line makes of the same settings.

usage: session.py FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER NAME [EMULATOR]
NAME is one of the functions below without "test_"."""

import os
import re
import shutil
import subprocess
import sys
import time

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
    wait_for(f"the dialog {title}", lambda: hands_see(title))
    time.sleep(0.5)  # until it takes keys
    hands("key", "--delay", 25, *(["Home", "shift+End"] if place.emulator else ["ctrl+a"]))
    desktop.type(place.seen(path))
    time.sleep(0.3)
    desktop.key("Return")
    wait_for(f"the end of the dialog {title}", lambda: not hands_see(title))


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


def hands_see(title):
    """Whether a window of that title, the system's own ones too, is on the screen."""
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^" + title],
                          capture_output=True).returncode == 0


def click_in_menu(desktop, menu, letter):
    desktop.key("alt+" + menu)
    desktop.key(letter)


def press(desktop, caption):
    desktop.click("=" + caption)


def set_up(desktop, place):
    """Picks the example, its configuration and a project, and turns stamping on."""
    open_pages(desktop)
    desktop.click("txtSolution#1")
    answer_file_dialog(desktop, place, "Select Solution", place.path("work", "Hello", "Hello.sln"))
    wait_for("the picked file", lambda: "Hello.sln" in (desktop.say("txtSolution") or ""))
    desktop.replace("cboConfigs", "Release|Mixed Platforms")
    choose(desktop, "cboVSVersion", "VS.NET 2005")
    desktop.click("optBuildSelectedProjects")
    wait_for("the list of projects", lambda: desktop.where("lstProjects")["enabled"])
    press(desktop, "Uncheck All")
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
    answer_file_dialog(desktop, place, "Save the build project", place.path("work", name))
    wait_for("the saved file", lambda: os.path.exists(place.path("work", name)))
    wait_for("the title", lambda: desktop.ask("windows")[0]["title"] == f"{name} - qxhost")


def expected_project(place):
    """The same settings by the command line; the page shows code page and keys of its own, which it saves."""
    projects = re.findall(r'^Project\(.*?\) = ".*?", ".*?", "(.*?)"',
                          read(place.path("work", "Hello", "Hello.sln")).decode(), re.M)
    place.host("new", "expected.xml")
    place.host("add", "expected.xml", ACTION, "Solution=" + place.seen(place.path("work", "Hello", "Hello.sln")),
               "SolutionConFiguration=Release|Mixed Platforms", "VStudioVersion=vs2005", "UseMSBuild=True",
               "BuildType=btSelectedProjects", "SelectedProjects=" + projects[1], "UpdateAssemblyInfo=True",
               "UpdateAssemblyCompany=True", "AssemblyCompany=The Hello people", "CodePage=1252", "VersionInfoKeys=FileVersion=0.0.0.0\r\n")


def wait_for_state(desktop, state, row=0, patience=60):
    wait_for(f"the state {state}", lambda: desktop.texts("actions")[row].endswith("|" + state), patience)


def expect_log(desktop, *lines):
    log = "\n".join(desktop.texts("log"))
    for line in lines:
        if line not in log:
            raise Fault(f"the log lacks {line!r}:\n{log}")


def test_making_and_saving(place):
    """Everything by mouse and keyboard: the file is the one that the command line writes."""
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        set_up(desktop, place)
        save_as(desktop, place, "made.xml")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    expected_project(place)
    expect_same_file(place.path("work", "made.xml"), place.path("work", "expected.xml"))


def test_undoing_and_redoing(place):
    """Adds, duplicates, moves, deletes; undoes all of it and does it again: the file is the same each time."""
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        add_action(desktop, "Run MSTest")
        desktop.focus_row("actions", 1)
        desktop.key("ctrl+shift+Up")
        wait_for("the move", lambda: desktop.texts("actions")[0].startswith("Run MSTest"))
        desktop.key("ctrl+d")
        wait_for("the copy", lambda: len(desktop.texts("actions")) == 3)
        save_as(desktop, place, "three.xml")
        three = read(place.path("work", "three.xml"))
        expect("the types", re.findall(r'Action type="(.*?)"', three.decode()), ["Run MSTest", "Run MSTest", ACTION])
        desktop.focus_row("actions", 0)
        desktop.key("Delete")
        wait_for("the deletion", lambda: len(desktop.texts("actions")) == 2)
        for count in (3, 2, 2, 1, 0):
            desktop.key("ctrl+z")
            wait_for(f"{count} actions", lambda: len(desktop.texts("actions")) == count)
        for count in (1, 2, 2, 3):
            desktop.key("ctrl+y")
            wait_for(f"{count} actions again", lambda: len(desktop.texts("actions")) == count)
        wait_for("the saved state", lambda: desktop.ask("windows")[0]["title"] == "three.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    expect("the file", read(place.path("work", "three.xml")), three)


def test_asking_for_unsaved_changes(place):
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        desktop.key("ctrl+q")
        wait_for("the question", lambda: hands_see("Unsaved changes"))
        desktop.key("Escape")
        wait_for("the end of the question", lambda: not hands_see("Unsaved changes"))
        expect("the actions", len(desktop.texts("actions")), 1)
        desktop.key("ctrl+q")
        wait_for("the question", lambda: hands_see("Unsaved changes"))
        desktop.key("alt+d")  # do not save
        expect("the exit code", desktop.process.wait(timeout=30), 0)
    finally:
        desktop.kill()


def test_running_the_example(place):
    """F5 on the example, with a real engine: stamped, built, the raised numbers saved as the command line does."""
    place.host("options", "DevEnv2005Location=" + place.seen(place.path("work")), options="options.xml")
    shutil.copytree(place.path("work"), place.path("twin"))
    desktop = place.desktop("Hello.build.xml")
    try:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded", patience=120)
        expect_log(desktop, "Build VS.Net Solution: succeeded")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    os.rename(place.path("work"), place.path("seen"))
    os.rename(place.path("twin"), place.path("work"))
    place.host("run", "Hello.build.xml", options="options.xml")
    expect_same_file(place.path("seen", "Hello.build.xml"), place.path("work", "Hello.build.xml"))
    for file in ("Hello/Greeting/Properties/AssemblyInfo.cs", "Hello/Banner/Banner.rc"):
        expect_same_file(place.path("seen", file), place.path("work", file))


def test_stopping_a_run(place):
    """Shift+F5 ends an action that would take a minute; closing the window during a run asks, stops and waits."""
    place.host(*place.tiny(), "new", "slow.xml")
    place.host(*place.tiny(), "add", "slow.xml", "Tiny Task", "Deed=tdSleep", "Seconds=60")
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", "slow.xml")))
    try:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.key("shift+F5")
        wait_for_state(desktop, "Failed")
        wait_for("the message", lambda: "Stopped" in desktop.say("status"))
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.key("ctrl+q")
        wait_for("the question", lambda: hands_see("A build is running"))
        desktop.key("alt+g")  # go on
        wait_for("the end of the question", lambda: not hands_see("A build is running"))
        expect("the state", desktop.texts("actions")[0].split("|")[-1], "Running")
        desktop.key("ctrl+q")
        wait_for("the question", lambda: hands_see("A build is running"))
        desktop.key("alt+s")  # stop and close
        expect("the exit code", desktop.process.wait(timeout=30), 0)
    finally:
        desktop.kill()


def test_rehearsing(place):
    """Ctrl+F5 shows the difference and touches nothing."""
    place.host("options", "DevEnv2005Location=" + place.seen(place.path("work")), options="options.xml")
    shutil.copytree(place.path("work"), place.path("before"))
    desktop = place.desktop("Hello.build.xml")
    try:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        lines = wait_for("the difference", lambda: desktop.texts("diff"))
        expect("its first line", lines[0].startswith("Would run in"), True)
        desktop.key("Escape")
        desktop.gone("dryRun")
        expect("the title", desktop.ask("windows")[0]["title"], "Hello.build.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    expect("what has changed",
           subprocess.run(["diff", "-r", place.path("before"), place.path("work")], capture_output=True).stdout, b"")


def test_changing_options(place):
    """The options dialog saves what "qxhost options" saves."""
    desktop = place.desktop()
    try:
        desktop.key("alt+t")
        desktop.key("o")
        desktop.window("pages")
        desktop.replace("txtMSDev2005Location", "/opt/vs8/ide")
        desktop.click("rbVS2005")
        press(desktop, "OK")
        desktop.gone("pages")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    place.host("options", "DevEnv2005Location=/opt/vs8/ide", "DefaultVSVersion=vs2005")
    expect_same_file(place.path("options.xml"), place.path("expected.xml"))


def test_a_million_lines(place):
    """All of them are counted and kept in the file, the newest are in the list, and the list can be searched."""
    place.host(*place.tiny(), "new", "flood.xml")
    place.host(*place.tiny(), "add", "flood.xml", "Tiny Task", "Deed=tdFlood", "Seconds=1000")
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", "flood.xml")))
    try:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.ask("ping")
        wait_for_state(desktop, "Succeeded", patience=120)
        wait_for("the count", lambda: re.sub("[^0-9]", "", desktop.say("logCounts").split(" ")[0]) == "1000002")
        expect_log(desktop, "File.cs(1000000,4)", "Tiny Task: succeeded")
        desktop.key("ctrl+f")
        wait_for("the search", lambda: desktop.where("logFind")["focus"])
        desktop.type("File.cs(990001,")
        desktop.key("Return")
        wait_for("the line that was looked for",
                 lambda: any("File.cs(990001,4)" in text for text in desktop.texts("log")))
        click_in_menu(desktop, "b", "l")  # Build, Save the log
        answer_file_dialog(desktop, place, "Save the log", place.path("work", "flood.log"))
        wait_for("the whole log", lambda: os.path.exists(place.path("work", "flood.log")))
        wait_for("its last line", lambda: read(place.path("work", "flood.log")).count(b"\n") == 1000002)
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    lines = read(place.path("work", "flood.log")).decode().splitlines()
    expect("the first line", lines[1], "Source/Folder/File.cs(1,4): one more line of the flood")
    expect("the last line but one", lines[1000000], "Source/Folder/File.cs(1000000,4): one more line of the flood")


def value(desktop, caption):
    return next(text.partition("=")[2] for text in desktop.texts("properties") if text.startswith(caption + "="))


def type_value(desktop, caption, text):
    """Types into the editor of a property, which stays open."""
    desktop.click_row("properties", caption + "=")
    time.sleep(0.2)  # the editor is made with the click
    desktop.key("ctrl+a")
    desktop.type(text)


def test_editing_properties(place):
    """What is typed into the grid is kept wherever the user goes next, or refused with the reason."""
    place.host(*place.tiny(), "new", "tiny.xml")
    for text in ("first", "second"):
        place.host(*place.tiny(), "add", "tiny.xml", "Tiny Task", "Text=" + text)
    desktop = place.desktop(*place.tiny(), "tiny.xml")
    saved = lambda: read(place.path("work", "tiny.xml")).decode()
    try:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        type_value(desktop, "Text", "another first")
        desktop.click_row("actions", "Tiny Task")  # the same one
        wait_for("the edit", lambda: value(desktop, "Text") == "another first")
        type_value(desktop, "Text", "the first")
        desktop.focus_row("actions", 1)
        wait_for("the other action", lambda: value(desktop, "Text") == "second")
        desktop.focus_row("actions", 0)
        wait_for("the kept value", lambda: value(desktop, "Text") == "the first")

        # A setter refuses: nothing is run, and the reason is told.
        type_value(desktop, "Count", "-5")
        desktop.key("F5")
        wait_for("the reason", lambda: len(desktop.windows()) > 1 or hands_see("Property Error"))
        desktop.key("Return")
        wait_for("the end of the message", lambda: len(desktop.windows()) == 1)
        desktop.key("Escape")
        expect("the states", [text.split("|")[2] for text in desktop.texts("actions")], ["", ""])

        type_value(desktop, "Count", "41")
        desktop.key("Tab")
        wait_for("the number", lambda: value(desktop, "Count") == "41")
        expect("the keyboard has left the grid", desktop.where("properties")["focus"], False)
        desktop.click_row("properties", "Loud=")  # a box, which must not keep keys to itself
        desktop.key("ctrl+s")
        wait_for("the saved file", lambda: "the first" in saved())
        desktop.click_row("properties", "Text=")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()
    expect("the texts", re.findall(r'name="Text">(.*?)<', saved()), ["the first", "second"])
    expect("the counts", re.findall(r'name="Count">(.*?)<', saved()), ["41", "0"])


def test_opening_pages_from_the_grid(place):
    """The button of a property opens the page that its editor names."""
    desktop = place.desktop("Hello.build.xml")
    try:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.click_row("properties", "AssemblyInfo=")
        time.sleep(0.3)
        row = next(row for row in desktop.rows("properties") if row["text"].startswith("AssemblyInfo="))
        desktop.click_at({**row, "x": row["x"] + row["width"] - 20, "width": 16})
        desktop.window("pages")
        expect("the page", desktop.say("Pages"), "Solution")  # its editor names none, so it is the first one
        desktop.key("Escape")
        desktop.gone("pages")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()


def test_a_narrow_window_with_large_fonts(place):
    """Every widget of the log's bar is inside the window and beside the others."""
    os.environ["GDK_DPI_SCALE"] = "2"
    desktop = tiny_project(place, "narrow.xml", ["Deed=tdFlood", "Seconds=25"])
    try:
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded")
        wait_for_count(desktop, 25002)
        window = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True, check=True).stdout.strip()
        hands("windowsize", "--sync", window, 660, 500)
        wait_for("the narrow window", lambda: desktop.where("mainWindow")["width"] < 680)
        names = ("logCounts", "logCopy", "logSave", "logFind", "logLeast", "logFilter", "log")
        places = {name: desktop.widget(name) for name in names}
        for name, at in places.items():
            expect(f"{name} has room", at["width"] > 50 and at["height"] > 0, True)
            expect(f"{name} is in the window", at["x"] >= 0 and at["x"] + at["width"] <= 662, True)
            for other, there in places.items():
                apart = (at["x"] + at["width"] <= there["x"] or there["x"] + there["width"] <= at["x"] or
                         at["y"] + at["height"] <= there["y"] or there["y"] + there["height"] <= at["y"])
                expect(f"{name} and {other} are apart", other == name or apart, True)
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()


def test_a_log_that_cannot_be_kept(place):
    """The log's file cannot be made: that is told where the lines are counted, and they are shown all the same."""
    os.environ["TMPDIR"] = place.path("none")
    desktop = tiny_project(place, "lost.xml", ["Deed=tdFlood", "Seconds=1"])
    try:
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded")
        expect_log(desktop, "Tiny Task: succeeded")
        told = wait_for("the counts", lambda: desktop.say("logCounts"))
        expect(f"'{told}' tells the reason", "Cannot make a temporary folder in " + place.path("none") in told, True)
        wait_for("the count", lambda: "1002 lines" in re.sub("[^0-9a-z ]", "", desktop.say("logCounts")))
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()


def tiny_project(place, file, *actions):
    """Makes a build project of the tests' actions, each of them a list of settings; the desktop that shows it."""
    place.host(*place.tiny(), "new", file)
    for settings in actions:
        place.host(*place.tiny(), "add", file, "Tiny Task", *settings)
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", file)))
    wait_for("the actions", lambda: len(desktop.texts("actions")) == len(actions))
    return desktop



def wait_for_count(desktop, lines):
    wait_for(f"the count {lines}",
             lambda: re.sub("[^0-9]", "", (desktop.say("logCounts") or "").split(" ")[0]) == str(lines), patience=60)



def selected_in_log(desktop):
    """The text of the selected line, by way of the clipboard."""
    desktop.click("logCopy")
    desktop.focus("logFind")
    desktop.key("ctrl+a", "ctrl+v")
    time.sleep(0.3)
    return desktop.say("logFind").strip()



def test_reading_while_lines_go(place):
    """What a person reads stays in its place while the oldest lines make room for new ones."""
    desktop = tiny_project(place, "reading.xml", ["Deed=tdFlood", "Seconds=25"], ["Deed=tdSleep", "Seconds=6"],
                           ["Deed=tdFlood", "Seconds=5"])
    try:
        desktop.key("F5")
        wait_for_state(desktop, "Running", row=1)
        wait_for("the end of the first flood", lambda: "File.cs(25000,4)" in "\n".join(desktop.texts("log")))
        desktop.focus_row("log", 2)
        desktop.key(*["Prior"] * 12)
        time.sleep(0.3)
        before = desktop.texts("log")
        expect("the flood's last line is in sight", any("(25000,4)" in text for text in before), False)
        desktop.click_at(desktop.rows("log")[2], narrow=True)
        wait_for_state(desktop, "Succeeded", row=2)
        wait_for_count(desktop, 30006)
        expect("what is in sight", desktop.texts("log"), before)
        expect("the selected line", selected_in_log(desktop), before[2])
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()



def test_filtering_the_log(place):
    """Hidden lines are counted; a line that stays when the filter changes stays selected; a search goes around."""
    desktop = tiny_project(place, "filtered.xml", ["Deed=tdFlood", "Seconds=2"])
    try:
        desktop.focus("logFilter")
        desktop.type("(1500,")
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded")
        wait_for_count(desktop, 2002)
        line = "Source/Folder/File.cs(1500,4): one more line of the flood"
        expect("what passes", [text.strip() for text in desktop.texts("log")], [line])
        desktop.focus_row("log", 0)
        expect("what a screen reader calls it", desktop.ask("called"), "Log of the build")
        desktop.replace("logFilter", "500,")
        wait_for("the other lines", lambda: len(desktop.texts("log")) == 2)
        expect("the selected line", selected_in_log(desktop), line)
        desktop.focus("logFilter")
        desktop.key("ctrl+a", "Delete")
        wait_for("all lines", lambda: len(desktop.texts("log")) > 2)
        expect("the selected line among all", selected_in_log(desktop), line)
        desktop.replace("logFind", "0,4)")
        desktop.focus_row("log", 0)
        desktop.key("ctrl+End", "F3")
        expect("the first match", selected_in_log(desktop),
               "Source/Folder/File.cs(10,4): one more line of the flood")
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()



def states(desktop):
    return [text.split("|")[-1] for text in desktop.texts("actions")]



def test_states_go_with_their_actions(place):
    """What a run made of an action is told where the action is now, and of no other one."""
    for name, deeds in (("mixed.xml", ("tdSucceed", "tdFail")), ("other.xml", ("tdSucceed", "tdSucceed"))):
        place.host(*place.tiny(), "new", name)
        for deed in deeds:
            place.host(*place.tiny(), "add", name, "Tiny Task", "Deed=" + deed)
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", "mixed.xml")))
    try:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        expect("the states after a dry run", states(desktop), ["", ""])
        desktop.key("Escape")
        desktop.gone("dryRun")
        desktop.key("F5")
        wait_for("the states", lambda: states(desktop) == ["Succeeded", "Failed"])
        wait_for("the end", lambda: "failed" in desktop.say("status"))
        desktop.focus_row("actions", 1)
        desktop.key("ctrl+shift+Up")
        wait_for("the move", lambda: states(desktop) == ["Failed", "Succeeded"])
        desktop.key("ctrl+d")
        wait_for("the copy", lambda: states(desktop) == ["Failed", "", "Succeeded"])
        desktop.focus_row("actions", 0)
        desktop.key("Delete")
        wait_for("the deletion", lambda: states(desktop) == ["", "Succeeded"])
        desktop.key("ctrl+z")
        wait_for("three actions", lambda: states(desktop) == ["", "", ""])
        desktop.key("F5")
        wait_for("the states", lambda: states(desktop)[0] == "Failed")
        wait_for("the end", lambda: "failed" in desktop.say("status"))
        desktop.key("ctrl+o")
        answer_file_dialog(desktop, place, "Open a build project", place.path("work", "other.xml"))
        wait_for("the other project", lambda: desktop.ask("windows")[0]["title"] == "other.xml - qxhost")
        expect("its states", states(desktop), ["", ""])
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()



def drag(start, end):
    """From the middle of one row to a point, at a person's pace."""
    x, y = start["x"] + 30, start["y"] + start["height"] // 2
    hands("mousemove", "--sync", x, y)
    hands("mousedown", 1)
    for step in range(1, 13):
        hands("mousemove", x + (end[0] - x) * step // 12, y + (end[1] - y) * step // 12)
        time.sleep(0.04)
    time.sleep(0.3)  # until the list has seen where the mouse rests
    hands("mouseup", 1)



def middle(row):
    return row["x"] + 40, row["y"] + row["height"] // 2



def test_dragging(place):
    """Dropped on a row an action comes before it, from the catalogue and from above and below; on its
    lower edge it comes behind it, under the last one last."""
    place.host(*place.tiny(), "new", "drag.xml")
    for letter in "abcd":
        place.host(*place.tiny(), "add", "drag.xml", "Tiny Task", "Text=" + letter)
    desktop = place.desktop(*place.tiny(), place.seen(place.path("work", "drag.xml")))

    def order():
        desktop.key("ctrl+s")
        wait_for("the saved state", lambda: not desktop.ask("windows")[0]["title"].startswith("*"))
        actions = read(place.path("work", "drag.xml")).decode().split("<Action ")[1:]
        return "".join((re.findall('name="Text">(.)<', action) or ["+"])[0] for action in actions)

    def drop(start, end, wanted):
        before = order()
        drag(start, end)
        wait_for("the drop", lambda: desktop.ask("windows")[0]["title"].startswith("*"))
        expect(f"the order after {before}", order(), wanted)

    def rows():
        return desktop.rows("actions")

    try:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 4)
        desktop.widget("actions")
        drop(rows()[3], middle(rows()[1]), "adbc")
        drop(rows()[0], middle(rows()[3]), "dbac")
        last = rows()[3]
        drop(rows()[1], (last["x"] + 40, last["y"] + 3 * last["height"]), "dacb")
        new = next(row for row in desktop.rows("catalogue") if row["text"].startswith("Tiny Task"))
        drop(new, middle(rows()[2]), "da+cb")
        below = rows()[1]
        drop(rows()[4], (below["x"] + 40, below["y"] + below["height"] - 3), "dab+c")  # its lower edge: behind it
        expect("the exit code", desktop.close(), 0)
    finally:
        desktop.kill()



def test_menu_by_key(place):
    """The menu of an action by both of its keys; its commands work from there."""
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        for count, key in ((2, "Menu"), (3, "shift+F10")):
            desktop.focus_row("actions")
            desktop.key(key)
            time.sleep(0.3)  # the menu is the toolkit's own window
            desktop.key("d")  # duplicate
            wait_for(f"{count} actions", lambda: len(desktop.texts("actions")) == count)
        desktop.key("ctrl+q")
        wait_for("the question", lambda: hands_see("Unsaved changes"))
        desktop.key("alt+d")
        expect("the exit code", desktop.process.wait(timeout=30), 0)
    finally:
        desktop.kill()



def test_keys_in_the_pages(place):
    """F1 and Help show the help over the pages, which go on; Apply leaves the keyboard in the dialog."""
    desktop = place.desktop()
    try:
        add_action(desktop, ACTION)
        open_pages(desktop)
        desktop.key("F1")
        desktop.window("help")
        expect("the focus in the help", desktop.where("help")["focus"], True)
        desktop.key("Escape")
        desktop.gone("help")
        press(desktop, "Help")
        desktop.window("help")
        press(desktop, "Close")
        desktop.gone("help")
        desktop.replace("txtSolution", "Other.sln")
        wait_for("Apply", lambda: desktop.where("=Apply")["enabled"])
        press(desktop, "Apply")
        wait_for("the end of Apply", lambda: not desktop.where("=Apply")["enabled"])
        wait_for("the focus in the dialog", lambda: desktop.where("pages")["focus"])
        desktop.key("Escape")
        desktop.gone("pages")
        wait_for("the title", lambda: desktop.ask("windows")[0]["title"].startswith("*"))
    finally:
        desktop.kill()



def test_standing_where_it_stood(place):
    """The window's place and size are the same at the next start, and at the one after it."""
    seen = []
    for start in range(3):
        desktop = place.desktop()
        try:
            if start == 0:
                found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Untitled - qxhost"],
                                       capture_output=True, text=True, check=True).stdout.split()
                hands("windowsize", found[0], 900, 700)
                hands("windowmove", found[0], 60, 90)
                wait_for("the move", lambda: desktop.where("mainWindow")["width"] < 950)
            time.sleep(1)  # until window manager and window agree
            seen.append({key: desktop.where("mainWindow")[key] for key in ("x", "y", "width", "height")})
            expect("the exit code", desktop.close(), 0)
        finally:
            desktop.kill()
    expect("the place of the second start", seen[1], seen[0])
    expect("the place of the third start", seen[2], seen[0])
    expect("that it is not the corner", seen[0]["x"] > 30 and seen[0]["y"] > 30, True)



def test_not_starting(place):
    """A package that cannot be loaded is told in a dialog, and the exit code is the one of bad arguments."""
    process = subprocess.Popen([*place.program("qxhost-desktop"), "--options", place.seen(place.path("options.xml")),
                                "--package", "missing"], cwd=place.path("work"))
    try:
        wait_for("the message", lambda: hands_see("qxhost cannot start"))
        time.sleep(0.3)
        hands("key", "Return")
        expect("the exit code", process.wait(timeout=30), 2)
    finally:
        process.kill()



TESTS = {name[5:]: function for name, function in list(globals().items()) if name.startswith("test_")}


def main():
    programs, examples, scratch, name, *emulator = sys.argv[1:]
    place = Place(os.path.abspath(programs), os.path.abspath(examples), os.path.abspath(scratch), emulator)
    TESTS[name](place)
    print(f"{name}: as it should be")


if __name__ == "__main__":
    main()
