"""Sessions in which something is refused, given up or taken back: nothing else is lost, nothing is done unseen."""

import os
import re
import subprocess
import time

from editing import add_action, drag, middle, press, quit_without_saving, type_value, value
from person import in_front, wait_for
from place import ACTION, expect, go_to_page, open_pages, read


def title(desktop):
    return desktop.ask("windows")[0]["title"]


def tiny_project(place, name, count):
    place.host(*place.tiny(), "new", name)
    for number in range(1, count + 1):
        place.host(*place.tiny(), "add", name, "Tiny Task", f"Text=task {number}")
    return place.desktop(*place.tiny(), name)


def dismiss(desktop, name):
    """Ends a message of that title, once it has come."""
    wait_for(f"the message {name}", lambda: in_front(name))
    desktop.key("Return")
    wait_for(f"the end of {name}", lambda: not in_front(name))


def test_giving_up_pages_that_cannot_be_written(place):
    """A page refuses to write: what the pages before it have written by then goes with Cancel."""
    place.host("new", "half.xml")
    place.host("add", "half.xml", ACTION, "Solution=Hello/Hello.sln", "SolutionConFiguration=Debug|Mixed Platforms")
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
        wait_for("the reason", lambda: title_is_new(desktop))
        desktop.key("Return")
        desktop.window("pages")
        press(desktop, "Cancel")
        desktop.gone("pages")
        expect("the title", title(desktop), "half.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    expect("the file", read(place.path("work", "half.xml")), before)


def title_is_new(desktop):
    """Whether a message is in front of the pages."""
    return not in_front(ACTION) and not in_front("half.xml")


def test_taking_back_what_is_typed(place):
    """The key that undoes takes back what is typed into the grid, and no edit before it; elsewhere it edits nothing."""
    with tiny_project(place, "typed.xml", 1) as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
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
        time.sleep(0.5)
        expect("the number", value(desktop, "Count"), "41")
        expect("the edit", value(desktop, "Text"), "an edit")
        quit_without_saving(desktop)


def test_staying_in_place(place):
    """Of a long list the selected action stays in sight, whatever is edited, added or deleted."""
    def in_sight(wanted):
        area, row = desktop.where("actions"), desktop.rows("actions")[wanted]
        return row["height"] > 0 and area["y"] <= row["y"] and row["y"] + row["height"] <= area["y"] + area["height"]

    with tiny_project(place, "long.xml", 31) as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 31)
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
        wait_for("the saved state", lambda: title(desktop) == "named.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    saved = read(place.path("work", "named.xml")).decode()
    expect("the variables", re.findall(r'<Variable name="(.*?)">(.*?)<', saved), [("One", "first"), ("Two", "second")])


def test_lists_in_the_grid(place):
    """The line of a list cannot be typed into, for items have commas; its button leads to no pages."""
    place.host(*place.tiny(), "new", "lists.xml")
    place.host(*place.tiny(), "add", "lists.xml", "Tiny Task", "Lines=a,b;c")
    before = read(place.path("work", "lists.xml"))
    with place.desktop(*place.tiny(), "lists.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.focus_row("actions")
        desktop.click_row("properties", "Lines=")
        time.sleep(0.3)
        desktop.key("End")
        desktop.type("d")
        desktop.key("Return")
        time.sleep(0.5)
        row = next(row for row in desktop.rows("properties") if row["text"].startswith("Lines="))
        desktop.click_at({**row, "x": row["x"] + row["width"] - 20, "width": 16})
        wait_for("the dialog", lambda: len(desktop.windows()) == 2)
        desktop.key("Escape")
        wait_for("its end", lambda: len(desktop.windows()) == 1)
        time.sleep(0.5)
        expect("no message", in_front("lists.xml - qxhost"), True)
        expect("the exit code", desktop.close(), 0)
    expect("the file", read(place.path("work", "lists.xml")), before)


def test_dropping_elsewhere(place):
    """A text takes no action that is dropped on it."""
    with tiny_project(place, "drag.xml", 2) as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.widget("logFilter")
        drag(desktop.rows("actions")[1], middle(desktop.where("logFilter")))
        time.sleep(0.5)
        expect("the text", desktop.say("logFilter"), "")
        expect("the actions", len(desktop.texts("actions")), 2)
        expect("the title", title(desktop), "drag.xml - qxhost")
        expect("the exit code", desktop.close(), 0)


def test_telling_where_nobody_reads(place):
    """Where standard error leads nowhere, wrong arguments are told in a box."""
    with open("/dev/full", "w", encoding="utf-8") as nowhere:
        process = subprocess.Popen([*place.program("qxhost-desktop"), "one.xml", "two.xml"], stderr=nowhere,
                                   cwd=place.path("work"))
    try:
        wait_for("the message", lambda: in_front("qxhost"))
        subprocess.run(["xdotool", "key", "Return"], check=True)
        expect("the exit code", process.wait(timeout=30), 2)
    finally:
        process.kill()
