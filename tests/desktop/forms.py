"""Sessions in the property pages: what a form tells while it is filled in."""

import os

from person import hands, in_front, wait_for
from place import ACTION, expect, go_to_page, open_pages, read
from editing import add_action, choose, press, quit_without_saving


def wheel_over(desktop, name, clicks=3):
    place = desktop.widget(name)
    hands("mousemove", "--sync", place["x"] + place["width"] // 2, place["y"] + place["height"] // 2)
    hands("click", "--repeat", clicks, "--delay", 40, 5)
    desktop.settle()


def pages_of(desktop, place):
    """The pages of a new action."""
    add_action(desktop, ACTION)
    open_pages(desktop)


def leave_pages(desktop):
    desktop.key("Escape")
    desktop.gone("pages")
    quit_without_saving(desktop)


def test_the_wheel_changes_nothing_it_passes(place):
    """A list, an editable box and a number keep their values under the wheel; one with the focus follows it."""
    with place.desktop() as desktop:
        pages_of(desktop, place)
        desktop.replace("txtSolution", place.seen(place.path("work", "Hello", "Hello.sln")))
        desktop.key("Tab")
        wait_for("the configurations", lambda: desktop.say("cboConfigs"))
        if in_front("Question"):
            desktop.key("Escape")
        for name in ("cboAction", "cboVSVersion", "cboConfigs"):
            before = desktop.say(name)
            desktop.focus("txtSolution")
            wheel_over(desktop, name)
            expect(f"{name} under the wheel", desktop.say(name), before)
        go_to_page(desktop, "Version Info")
        desktop.click("cbIncludeVerInfo")
        wait_for("the numbers", lambda: desktop.where("spMajorVer")["enabled"])
        desktop.tab_to("spMinorVer")
        before = desktop.say("spMajorVer")
        hands("mousemove", "--sync", desktop.widget("spMajorVer")["x"] + 12, desktop.widget("spMajorVer")["y"] + 8)
        hands("click", "--repeat", 3, "--delay", 40, 4)
        desktop.settle()
        expect("the number under the wheel", desktop.say("spMajorVer"), before)
        leave_pages(desktop)


def test_a_typed_solution_fills_the_lists(place):
    """The key Tab is enough; the version of its format is offered, and a missing file is told of where one types."""
    with place.desktop() as desktop:
        pages_of(desktop, place)
        choose(desktop, "cboVSVersion", "VS.NET 2002")
        missing = place.seen(place.path("work", "Gone.sln"))
        desktop.replace("txtSolution", missing)
        desktop.key("Tab")
        wait_for("the reason", lambda: desktop.say("wrong") == "Solution File not found: " + missing)
        desktop.replace("txtSolution", place.seen(place.path("work", "Hello", "Hello.sln")))
        wait_for("no reason any more", lambda: desktop.say("wrong") == "")
        desktop.key("Tab")
        wait_for("the offer", lambda: in_front("Question"))
        desktop.key("alt+y")
        wait_for("the version", lambda: desktop.say("cboVSVersion") == "VS.NET 2005")
        expect("the projects", len(desktop.texts("lstProjects")), 4)
        expect("a configuration", desktop.say("cboConfigs") != "", True)
        leave_pages(desktop)


def test_a_version_part_that_is_no_number(place):
    """It is told of with the key that makes it so, and no longer with the one that puts it right."""
    with place.desktop() as desktop:
        pages_of(desktop, place)
        go_to_page(desktop, "Assembly Info")
        desktop.click("chkUpdateAssemblyInfo")
        desktop.click("chkUpdateAssemblyVersion")
        wait_for("the edit", lambda: desktop.where("txtAssemblyMajor")["enabled"])
        desktop.replace("txtAssemblyMajor", "1x")
        wait_for("the reason",
                 lambda: desktop.say("wrong") == 'the major part "1x" is no number from 0 to 65534')
        desktop.key("BackSpace")
        wait_for("the end of it", lambda: desktop.say("wrong") == "")
        leave_pages(desktop)


def test_asking_before_selections_are_emptied(place):
    """OK asks while the solution cannot be found: going back keeps the projects, writing empties them."""
    place.host("add", "Hello.build.xml", ACTION, "Solution=" + place.seen(place.path("work", "Gone.sln")),
               "BuildType=btSelectedProjects", "SelectedProjects={AAAAAAAA-0000-0000-0000-00000000000a}",
               options="options.xml")
    file = place.path("work", "Hello.build.xml")
    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.focus_row("actions", 1)
        desktop.key("alt+Return")
        wait_for("the message", lambda: not in_front("Hello.build.xml"))
        desktop.settle()
        desktop.key("Return")
        desktop.window("pages")
        wait_for("the name", lambda: "Gone.sln" in (desktop.say("wrong") or ""))
        press(desktop, "OK")
        wait_for("the question", lambda: in_front("Question"))
        desktop.key("Escape")
        wait_for("the end of the question", lambda: not in_front("Question"))
        expect("the pages", desktop.where("pages") is not None, True)
        desktop.key("Escape")
        desktop.gone("pages")
        expect("the title", desktop.title().startswith("*"), False)
        desktop.key("alt+Return")
        wait_for("the message", lambda: not in_front("Hello.build.xml"))
        desktop.settle()
        desktop.key("Return")
        desktop.window("pages")
        press(desktop, "OK")
        wait_for("the question", lambda: in_front("Question"))
        desktop.key("alt+w")
        desktop.gone("pages")
        desktop.key("ctrl+s")
        wait_for("the saved file", lambda: b"AAAAAAAA-0000" not in read(file))
        expect("the exit code", desktop.close(), 0)
