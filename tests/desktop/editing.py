"""Sessions that edit: projects, their actions, properties and pages, and what is saved of it."""

import os
import re
import time

from person import hands, in_front, wait_for
from place import (
    ACTION, expect, read, expect_same_file, answer_file_dialog, open_pages, go_to_page, states, tiny_project)


def add_action(desktop, name):
    count = len(desktop.texts("actions"))
    desktop.click_row("catalogue", name, times=2)
    wait_for(f"{name} in the list", lambda: len(desktop.texts("actions")) == count + 1)


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
    wait_for("the title", lambda: desktop.title() == f"{name} - qxhost")


def expected_project(place):
    """The same settings by the command line; the page shows code page and keys of its own, which it saves."""
    projects = re.findall(r'^Project\(.*?\) = ".*?", ".*?", "(.*?)"',
                          read(place.path("work", "Hello", "Hello.sln")).decode(), re.M)
    place.host("new", "expected.xml")
    place.host("add", "expected.xml", ACTION, "Solution=" + place.seen(place.path("work", "Hello", "Hello.sln")),
               "SolutionConFiguration=Release|Mixed Platforms", "VStudioVersion=vs2005", "UseMSBuild=True",
               "BuildType=btSelectedProjects", "SelectedProjects=" + projects[1], "UpdateAssemblyInfo=True",
               "UpdateAssemblyCompany=True", "AssemblyCompany=The Hello people", "CodePage=1252", "VersionInfoKeys=FileVersion=0.0.0.0\r\n")


def value(desktop, caption):
    return next(text.partition("=")[2] for text in desktop.texts("properties") if text.startswith(caption + "="))


def row_of(desktop, caption):
    return next(row for row in desktop.rows("properties") if row["text"].startswith(caption + "="))


def select_property(desktop, caption):
    """Its editor, and the button at the end of its row, are there with the selection."""
    desktop.click_row("properties", caption + "=")
    wait_for(f"the selection of {caption}", lambda: row_of(desktop, caption)["selected"])
    desktop.settle()


def type_value(desktop, caption, text):
    """Types into the editor of a property, which stays open."""
    select_property(desktop, caption)
    desktop.wait_for_focus("properties")
    desktop.key("ctrl+a")
    desktop.type(text)


def press_button_of(desktop, caption):
    """The one at the end of a property's row."""
    select_property(desktop, caption)
    row = row_of(desktop, caption)
    desktop.click_at({**row, "x": row["x"] + row["width"] - 20, "width": 16})


def drag(start, end):
    """From the middle of one row to a point, at a person's pace."""
    x, y = start["x"] + 30, start["y"] + start["height"] // 2
    hands("mousemove", "--sync", x, y)
    hands("mousedown", 1)
    for step in range(1, 5):  # a hand begins on the row
        hands("mousemove", x + step, y)
    for step in range(1, 13):
        hands("mousemove", x + (end[0] - x) * step // 12, y + (end[1] - y) * step // 12)
        time.sleep(0.04)
    time.sleep(0.3)  # the hand rests: what the list has seen of the mouse by then is shown nowhere
    hands("mouseup", 1)


def middle(row):
    return row["x"] + 40, row["y"] + row["height"] // 2


def quit_without_saving(desktop):
    desktop.key("ctrl+q")
    wait_for("the question", lambda: in_front("Unsaved changes"))
    desktop.key("alt+d")  # do not save
    expect("the exit code", desktop.process.wait(timeout=30), 0)


def test_making_and_saving(place):
    """Everything by mouse and keyboard: the file is the one that the command line writes."""
    with place.desktop() as desktop:
        add_action(desktop, ACTION)
        set_up(desktop, place)
        save_as(desktop, place, "made.xml")
        expect("the exit code", desktop.close(), 0)
    expected_project(place)
    expect_same_file(place.path("work", "made.xml"), place.path("work", "expected.xml"))


def test_undoing_and_redoing(place):
    """Adds, duplicates, moves, deletes; undoes all of it and does it again: the file is the same each time."""
    with place.desktop() as desktop:
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
        wait_for("the saved state", lambda: desktop.title() == "three.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    expect("the file", read(place.path("work", "three.xml")), three)


def test_asking_for_unsaved_changes(place):
    with place.desktop() as desktop:
        add_action(desktop, ACTION)
        desktop.key("ctrl+q")
        wait_for("the question", lambda: in_front("Unsaved changes"))
        desktop.key("Escape")
        wait_for("the end of the question", lambda: not in_front("Unsaved changes"))
        expect("the actions", len(desktop.texts("actions")), 1)
        quit_without_saving(desktop)


def test_changing_options(place):
    """The options dialog saves what "qxhost options" saves."""
    with place.desktop() as desktop:
        desktop.key("alt+t")
        desktop.key("o")
        desktop.window("pages")
        desktop.replace("txtMSDev2005Location", "/opt/vs8/ide")
        desktop.click("rbVS2005")
        press(desktop, "OK")
        desktop.gone("pages")
        expect("the exit code", desktop.close(), 0)
    place.host("options", "DevEnv2005Location=/opt/vs8/ide", "DefaultVSVersion=vs2005")
    expect_same_file(place.path("options.xml"), place.path("expected.xml"))


def test_editing_properties(place):
    """What is typed into the grid is kept wherever the user goes next, or refused with the reason."""
    saved = lambda: read(place.path("work", "tiny.xml")).decode()
    with tiny_project(place, "tiny.xml", ["Text=first"], ["Text=second"]) as desktop:
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
        wait_for("the reason", lambda: in_front("Property Error"))
        desktop.key("Return")
        wait_for("the end of the message", lambda: not in_front("Property Error"))
        desktop.key("Escape")
        expect("the states", states(desktop), ["Never", "Never"])

        type_value(desktop, "Count", "41")
        desktop.key("Tab")
        wait_for("the number", lambda: value(desktop, "Count") == "41")
        expect("the keyboard has left the grid", desktop.where("properties")["focus"], False)
        desktop.click_row("properties", "Loud=")  # a box, which must not keep keys to itself
        desktop.key("ctrl+s")
        wait_for("the saved file", lambda: "the first" in saved())
        desktop.click_row("properties", "Text=")
        expect("the exit code", desktop.close(), 0)
    expect("the texts", re.findall(r'name="Text">(.*?)<', saved()), ["the first", "second"])
    expect("the counts", re.findall(r'name="Count">(.*?)<', saved()), ["41", "0"])


def test_opening_pages_from_the_grid(place):
    """The button of a property opens the page that its editor names."""
    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        press_button_of(desktop, "AssemblyInfo")
        desktop.window("pages")
        expect("the page", desktop.say("Pages"), "Solution")  # its editor names none, so it is the first one
        desktop.key("Escape")
        desktop.gone("pages")
        expect("the exit code", desktop.close(), 0)


def test_dragging(place):
    """Dropped on a row an action comes before it, from the catalogue and from above and below; on its
    lower edge it comes behind it, under the last one last."""
    def order():
        desktop.key("ctrl+s")
        wait_for("the saved state", lambda: not desktop.title().startswith("*"))
        actions = read(place.path("work", "drag.xml")).decode().split("<Action ")[1:]
        return "".join((re.findall('name="Text">(.)<', action) or ["+"])[0] for action in actions)

    def drop(start, end, wanted):
        before = order()
        drag(start, end)
        wait_for("the drop", lambda: desktop.title().startswith("*"))
        expect(f"the order after {before}", order(), wanted)

    def rows():
        return desktop.rows("actions")

    with tiny_project(place, "drag.xml", *(["Text=" + letter] for letter in "abcd")) as desktop:
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


def test_menu_by_key(place):
    """The menu of an action by both of its keys; its commands work from there."""
    with place.desktop() as desktop:
        add_action(desktop, ACTION)
        for count, key in ((2, "Menu"), (3, "shift+F10")):
            desktop.focus_row("actions")
            desktop.open("the menu", lambda: desktop.key(key))
            desktop.key("d")  # duplicate
            wait_for(f"{count} actions", lambda: len(desktop.texts("actions")) == count)
        quit_without_saving(desktop)


def test_keys_in_the_pages(place):
    """F1 and Help show the help over the pages, which go on; Apply leaves the keyboard in the dialog."""
    with place.desktop() as desktop:
        add_action(desktop, ACTION)
        open_pages(desktop)
        desktop.key("F1")
        desktop.window("help")
        desktop.wait_for_focus("help")
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
        wait_for("the title", lambda: desktop.title().startswith("*"))
