"""Sessions in which something is refused, given up or taken back: nothing else is lost, nothing is done unseen."""

import re
import subprocess

from editing import drag, middle, press, press_button_of, quit_without_saving, select_property, type_value, value
from person import hands, in_front, wait_for
from place import ACTION, expect, go_to_page, open_pages, read, tiny_project


def dismiss(desktop, name):
    """Ends a message of that title, once it has come."""
    wait_for(f"the message {name}", lambda: in_front(name))
    desktop.key("Return")
    wait_for(f"the end of {name}", lambda: not in_front(name))


def test_giving_up_pages_that_cannot_be_written(place):
    """A page refuses to write: what the pages before it have written by then goes with Cancel."""
    place.host("new", "half.xml")
    place.host("add", "half.xml", ACTION, "Solution=Hello/Hello.sln", "SolutionConFiguration=Debug|Mixed Platforms")
    place.host("set", "half.xml", "--action", "1", "UseEnv=False")  # written by who has read it
    before = read(place.path("work", "half.xml"))
    with place.desktop("half.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        open_pages(desktop)
        desktop.replace("cboConfigs", "Release|Mixed Platforms")
        go_to_page(desktop, "Version Info")
        desktop.click("cbIncludeVerInfo")
        wait_for("the code page", lambda: desktop.where("txtCodePage")["enabled"])
        desktop.replace("txtCodePage", "abc")
        press(desktop, "OK")
        dismiss(desktop, "qxhost")
        desktop.window("pages")
        press(desktop, "Cancel")
        desktop.gone("pages")
        expect("the title", desktop.title(), "half.xml - qxhost")
        desktop.key("ctrl+s")  # whatever the action was left with
        wait_for("the saving", lambda: "Saved" in (desktop.say("status") or ""))
        expect("the exit code", desktop.close(), 0)
    expect("the file", read(place.path("work", "half.xml")), before)


def test_taking_back_what_is_typed(place):
    """The key that undoes takes back what is typed into the grid, and no edit before it; elsewhere it edits nothing."""
    with tiny_project(place, "typed.xml", []) as desktop:
        desktop.focus_row("actions")
        type_value(desktop, "Text", "an edit")
        desktop.key("Return")
        wait_for("the edit", lambda: value(desktop, "Text") == "an edit")
        type_value(desktop, "Count", "41")
        desktop.key("ctrl+z")
        wait_for("the number of before", lambda: value(desktop, "Count") == "0")
        expect("the edit", value(desktop, "Text"), "an edit")
        desktop.key("ctrl+y", "Return")
        wait_for("the number again", lambda: value(desktop, "Count") == "41")

        desktop.focus("logFilter")
        desktop.key("ctrl+z")
        desktop.settle()
        expect("the number", value(desktop, "Count"), "41")
        expect("the edit", value(desktop, "Text"), "an edit")
        quit_without_saving(desktop)


def test_staying_in_place(place):
    """Of a long list the selected action stays in sight, whatever is edited, added or deleted."""
    def in_sight(wanted):
        area, row = desktop.where("actions"), desktop.rows("actions")[wanted]
        return row["height"] > 0 and area["y"] <= row["y"] and row["y"] + row["height"] <= area["y"] + area["height"]

    with tiny_project(place, "long.xml", *([[]] * 31)) as desktop:
        desktop.focus_row("actions")
        desktop.key("End")
        wait_for("the last one", lambda: in_sight(30))
        type_value(desktop, "Text", "an edit")
        desktop.key("Return")
        wait_for("the edit", lambda: value(desktop, "Text") == "an edit")
        wait_for("the last one again", lambda: in_sight(30))
        expect("the first one is in sight", in_sight(0), False)
        desktop.click_row("catalogue", "Tiny Task", times=2)
        wait_for("the new one", lambda: len(desktop.texts("actions")) == 32 and in_sight(31))
        quit_without_saving(desktop)


def test_variables_that_are_refused(place):
    """The reason is told, and what was typed stands there to be corrected; the key Tab leaves the grid."""
    place.host("new", "named.xml")
    with place.desktop("named.xml") as desktop:
        desktop.key("alt+e")
        desktop.key("v")
        desktop.window("variables")
        for text in ("One", "first", "ONE", "second"):
            desktop.type(text)
            desktop.key("Tab")
        press(desktop, "OK")
        dismiss(desktop, "The variables were not set")
        desktop.window("variables")
        desktop.focus("variablesGrid")
        desktop.key("ctrl+Home", "Down")
        desktop.type("Two")
        desktop.key("Return", "ctrl+End")
        desktop.key("Tab")
        wait_for("the keyboard outside the grid", lambda: not desktop.where("variablesGrid")["focus"])
        press(desktop, "OK")
        desktop.gone("variables")
        desktop.key("ctrl+s")
        wait_for("the saved state", lambda: desktop.title() == "named.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    saved = read(place.path("work", "named.xml")).decode()
    expect("the variables", re.findall(r'<Variable name="(.*?)">(.*?)<', saved), [("One", "first"), ("Two", "second")])


def test_lists_in_the_grid(place):
    """The line of a list cannot be typed into, for items have commas; its button leads to no pages."""
    with tiny_project(place, "lists.xml", ["Lines=a,b;c"]) as desktop:
        before = read(place.path("work", "lists.xml"))
        desktop.focus_row("actions")
        select_property(desktop, "Lines")
        desktop.key("End")
        desktop.type("d")
        desktop.key("Return")
        desktop.settle()
        press_button_of(desktop, "Lines")
        wait_for("the dialog", lambda: len(desktop.windows()) == 2)
        desktop.key("Escape")
        wait_for("its end", lambda: len(desktop.windows()) == 1)
        desktop.settle()
        expect("no message", in_front("lists.xml - qxhost"), True)
        expect("the exit code", desktop.close(), 0)
    expect("the file", read(place.path("work", "lists.xml")), before)


def test_dropping_elsewhere(place):
    """A text takes no action that is dropped on it."""
    with tiny_project(place, "drag.xml", [], []) as desktop:
        desktop.widget("logFilter")
        drag(desktop.rows("actions")[1], middle(desktop.where("logFilter")))
        desktop.settle()
        expect("the text", desktop.say("logFilter"), "")
        expect("the actions", len(desktop.texts("actions")), 2)
        expect("the title", desktop.title(), "drag.xml - qxhost")
        expect("the exit code", desktop.close(), 0)


def test_telling_where_nobody_reads(place):
    """Where standard error leads nowhere, wrong arguments are told in a box."""
    with open("/dev/full", "w", encoding="utf-8") as nowhere:
        process = subprocess.Popen([*place.program("qxhost-desktop"), "one.xml", "two.xml"], stderr=nowhere,
                                   cwd=place.path("work"))
    try:
        wait_for("the message", lambda: in_front("qxhost cannot start"))
        hands("key", "Return")
        expect("the exit code", process.wait(timeout=30), 2)
    finally:
        process.kill()
