"""Sessions that look: at long logs, in small windows and large fonts, and where the window stands."""

import os
import re
import subprocess

from person import hands, wait_for
from place import (
    expect, read, answer_file_dialog, wait_for_state, expect_log, tiny_project)


def click_in_menu(desktop, menu, letter):
    desktop.key("alt+" + menu)
    desktop.key(letter)


def wait_for_count(desktop, lines):
    wait_for(f"the count {lines}",
             lambda: re.sub("[^0-9]", "", (desktop.say("logCounts") or "").split(" ")[0]) == str(lines), patience=60)


def selected_in_log(desktop):
    """The text of the selected line, by way of the clipboard."""
    desktop.click("logCopy")
    desktop.focus("logFind")
    desktop.key("ctrl+a", "Delete")
    wait_for("the empty field", lambda: desktop.say("logFind") == "")
    desktop.key("ctrl+v")
    return wait_for("the pasted text", lambda: desktop.say("logFind").strip())


def test_a_million_lines(place):
    """All of them are counted and kept in the file, the newest are in the list, and the list can be searched."""
    with tiny_project(place, "flood.xml", ["Deed=tdFlood", "Seconds=1000"]) as desktop:
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
    lines = read(place.path("work", "flood.log")).decode().splitlines()
    expect("the first line", lines[1], "Source/Folder/File.cs(1,4): one more line of the flood")
    expect("the last line but one", lines[1000000], "Source/Folder/File.cs(1000000,4): one more line of the flood")


def test_a_narrow_window_with_large_fonts(place):
    """Every widget of the log's bar is inside the window and beside the others."""
    os.environ["GDK_DPI_SCALE"] = "2"
    with tiny_project(place, "narrow.xml", ["Deed=tdFlood", "Seconds=25"]) as desktop:
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


def test_a_log_that_cannot_be_kept(place):
    """The log's file cannot be made: that is told where the lines are counted, and they are shown all the same."""
    os.environ["TMPDIR"] = place.path("none")
    with tiny_project(place, "lost.xml", ["Deed=tdFlood", "Seconds=1"]) as desktop:
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded")
        expect_log(desktop, "Tiny Task: succeeded")
        told = wait_for("the counts", lambda: desktop.say("logCounts"))
        expect(f"'{told}' tells the reason", "Cannot make a temporary folder in " + place.path("none") in told, True)
        wait_for("the count", lambda: "1002 lines" in re.sub("[^0-9a-z ]", "", desktop.say("logCounts")))
        expect("the exit code", desktop.close(), 0)


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
        before = desktop.still("the lines in sight", lambda: desktop.texts("log"))
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
    with tiny_project(place, "filtered.xml", ["Deed=tdFlood", "Seconds=2"]) as desktop:
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


def test_counting_what_is_found(place):
    """A search tells the how manieth of how many it has found; a filter that nothing passes says so."""
    with tiny_project(place, "found.xml", ["Deed=tdFlood", "Seconds=1"]) as desktop:
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded")
        wait_for_count(desktop, 1002)
        desktop.focus("logFind")
        desktop.type("File.cs(10")
        desktop.key("Return")
        wait_for("the hits", lambda: re.match(r"\d+ of 12\. ", desktop.say("logCounts")))
        desktop.focus("logFind")
        desktop.key("ctrl+a", "Delete")
        wait_for("no hits", lambda: desktop.say("logCounts").startswith("1"))
        desktop.type("nowhere")
        desktop.key("Return")
        wait_for("the word", lambda: desktop.say("logCounts").startswith("Not found. "))
        desktop.key("ctrl+a", "Delete")
        desktop.focus("logFilter")
        desktop.type("nowhere")
        wait_for("the word", lambda: desktop.say("logCounts").startswith("No line passes the filter. "))
        expect("the exit code", desktop.close(), 0)


def test_standing_where_it_stood(place):
    """The window's place and size are the same at the next start, and at the one after it."""
    def standing(desktop):
        return {key: desktop.where("mainWindow")[key] for key in ("x", "y", "width", "height")}

    for start in range(3):
        with place.desktop() as desktop:
            if start == 0:
                found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Untitled - qxhost"],
                                       capture_output=True, text=True, check=True).stdout.split()
                hands("windowsize", found[0], 900, 700)
                hands("windowmove", found[0], 60, 90)
                wait_for("the size", lambda: standing(desktop)["width"] < 950)
                wait_for("the move", lambda: 30 < standing(desktop)["x"] < 90 and 30 < standing(desktop)["y"] < 150)
                seen = desktop.still("the window", lambda: standing(desktop))
            else:
                wait_for(f"the window where it stood, {seen}, at start {start}", lambda: standing(desktop) == seen)
                expect(f"the window at start {start}", desktop.still("the window", lambda: standing(desktop)), seen)
            expect("the exit code", desktop.close(), 0)
