"""Sessions that build: running, stopping, rehearsing, and the states that are left."""

import os
import re
import shutil
import subprocess

from person import hands, in_front, wait_for
from place import (
    ACTION, expect, expect_same_file, answer_file_dialog, wait_for_state, expect_log, states, tiny_project)


def test_running_the_example(place):
    """F5 on the example, with a real engine: stamped, built, the raised numbers saved as the command line does."""
    place.host("options", "DevEnv2005Location=" + place.seen(place.path("work")), options="options.xml")
    shutil.copytree(place.path("work"), place.path("twin"))
    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded", patience=120)
        expect_log(desktop, "4 of 4 projects were built as they should be")
        wait_for("the verdict", lambda: re.fullmatch(r"Succeeded at \d\d:\d\d in \d+\.\d s",
                                                               desktop.say("runVerdict") or ""))
        lines = run_lines(desktop)
        expect(f"the versions in {lines}", any("AssemblyVersion: 1.2.0.0 -> 1.2.1.0" in line for line in lines), True)
        expect(f"the programs in {lines}", any("projects were built as they should be" in line for line in lines), True)
        expect(f"the counts in {lines}", any("0 errors" in line for line in lines), True)
        expect("the exit code", desktop.close(), 0)
    os.rename(place.path("work"), place.path("seen"))
    os.rename(place.path("twin"), place.path("work"))
    place.host("run", "Hello.build.xml", options="options.xml")
    expect_same_file(place.path("seen", "Hello.build.xml"), place.path("work", "Hello.build.xml"))
    for file in ("Hello/Greeting/Properties/AssemblyInfo.cs", "Hello/Banner/Banner.rc"):
        expect_same_file(place.path("seen", file), place.path("work", file))


def test_stopping_a_run(place):
    """Shift+F5 ends an action that would take a minute; closing the window during a run asks, stops and waits."""
    with tiny_project(place, "slow.xml", ["Deed=tdSleep", "Seconds=60"]) as desktop:
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.key("shift+F5")
        wait_for_state(desktop, "Stopped")
        wait_for("the message", lambda: "Stopped" in desktop.say("status"))
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.key("ctrl+q")
        wait_for("the question", lambda: in_front("A build is running"))
        desktop.key("alt+g")  # go on
        wait_for("the end of the question", lambda: not in_front("A build is running"))
        expect("the state", states(desktop), ["Running"])
        desktop.key("ctrl+q")
        wait_for("the question", lambda: in_front("A build is running"))
        desktop.key("alt+s")  # stop and close
        expect("the exit code", desktop.process.wait(timeout=30), 0)


def run_lines(desktop):
    """What the summary says in the window."""
    lines = []
    while (line := desktop.say(f"runLine{len(lines)}")) is not None:
        lines.append(line)
    return lines


def test_the_truth_about_runs(place):
    """When and how the last run went, which neither validating nor rehearsing changes; both leave the log as it is."""
    with tiny_project(place, "truth.xml", [], ["Deed=tdSleep", "Seconds=3"]) as desktop:
        expect("the states at first", states(desktop), ["Never", "Never"])
        expect("no verdict", desktop.where("runVerdict"), None)
        desktop.key("F5")
        wait_for("the bar", lambda: desktop.where("runProgress"))
        wait_for_state(desktop, "Succeeded", row=1)
        wait_for("the verdict", lambda: (desktop.say("runVerdict") or "").startswith("Succeeded at "))
        expect("no bar", desktop.where("runProgress"), None)
        seen = desktop.texts("actions")
        expect(f"time and duration in {seen[1]}",
               bool(re.search(r"\|Succeeded \d\d:\d\d \([3-9]\.\d s\)$", seen[1])), True)
        expect("the lines of the log", desktop.say("logCounts"), "4 lines")
        desktop.key("F7")
        wait_for("the validation", lambda: desktop.say("runVerdict") == "Every action can run as it is set")
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        desktop.key("Escape")
        desktop.gone("dryRun")
        expect("the last run", desktop.texts("actions"), seen)
        wait_for("the lines that came to the log", lambda: desktop.say("logCounts") == "10 lines")
        expect_log(desktop, "Tiny Task: succeeded (3.", "Validation at ", "Dry run at ")
        expect("the exit code", desktop.close(), 0)
    place.host(*place.tiny(), "set", "truth.xml", "Deed=tdWrite", "Text=new")
    place.host(*place.tiny(), "run", "truth.xml")
    with place.desktop(*place.tiny(), place.seen(place.path("work", "truth.xml"))) as desktop:
        wait_for("the last run", lambda: (desktop.say("runVerdict") or "").startswith("The last run: Succeeded at "))
        expect("the states", states(desktop), ["", ""])
        place.host(*place.tiny(), "restore", "truth.xml", "--numbers")
        expect("the exit code", desktop.close(), 0)


def test_a_run_that_cannot_begin(place):
    """An empty project and one that is not set up say what to do, and a click leads there."""
    with place.desktop() as desktop:
        desktop.key("F5")
        wait_for("the word", lambda: (desktop.say("runVerdict") or "").startswith("There is nothing to run yet"))
        desktop.click("runWay")
        wait_for("the file dialog", lambda: in_front("Open a"))
        desktop.key("Escape")
        wait_for("its end", lambda: not in_front("Open a"))
        expect("the exit code", desktop.close(), 0)
    place.host("new", "bare.xml")
    place.host("add", "bare.xml", ACTION, "Solution=Missing.sln", "SolutionConFiguration=Release")
    with place.desktop("bare.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for("the reason", lambda: (desktop.say("runVerdict") or "").startswith("Failed at "))
        expect("the reason in " + desktop.say("runVerdict"), ": Solution: " in desktop.say("runVerdict"), True)
        wait_for_state(desktop, "Failed")
        desktop.click("runWay")
        wait_for("the page's own word", lambda: in_front("qxhost"))
        desktop.key("Return")
        desktop.window("pages")
        expect("the page", desktop.where("txtSolution") is not None, True)
        desktop.key("Escape")
        desktop.gone("pages")
        expect("the exit code", desktop.close(), 0)


def test_rehearsing(place):
    """Ctrl+F5 shows the difference and touches nothing."""
    place.host("options", "DevEnv2005Location=" + place.seen(place.path("work")), options="options.xml")
    shutil.copytree(place.path("work"), place.path("before"))
    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        lines = wait_for("the difference", lambda: desktop.texts("diff"))
        expect("its first line", lines[0].startswith("Would run in"), True)
        desktop.key("Escape")
        desktop.gone("dryRun")
        expect("the title", desktop.title(), "Hello.build.xml - qxhost")
        expect("the exit code", desktop.close(), 0)
    expect("what has changed",
           subprocess.run(["diff", "-r", place.path("before"), place.path("work")], capture_output=True).stdout, b"")


def test_states_go_with_their_actions(place):
    """What a run made of an action is told where the action is now, and of no other one."""
    for name, deeds in (("mixed.xml", ("tdSucceed", "tdFail")), ("other.xml", ("tdSucceed", "tdSucceed"))):
        place.host(*place.tiny(), "new", name)
        for deed in deeds:
            place.host(*place.tiny(), "add", name, "Tiny Task", "Deed=" + deed)
    with place.desktop(*place.tiny(), place.seen(place.path("work", "mixed.xml"))) as desktop:
        wait_for("the actions", lambda: len(desktop.texts("actions")) == 2)
        desktop.key("ctrl+F5")
        desktop.window("dryRun")
        expect("the states after a dry run", states(desktop), ["Never", "Never"])
        desktop.key("Escape")
        desktop.gone("dryRun")
        desktop.key("F5")
        wait_for("the states", lambda: states(desktop) == ["Succeeded", "Failed"])
        wait_for("the end", lambda: "failed" in desktop.say("status"))
        desktop.focus_row("actions", 1)
        desktop.key("ctrl+shift+Up")
        wait_for("the move", lambda: states(desktop) == ["Failed", "Succeeded"])
        desktop.key("ctrl+d")
        wait_for("the copy", lambda: states(desktop) == ["Failed", "Never", "Succeeded"])
        desktop.focus_row("actions", 0)
        desktop.key("Delete")
        wait_for("the deletion", lambda: states(desktop) == ["Never", "Succeeded"])
        desktop.key("ctrl+z")
        wait_for("three actions", lambda: states(desktop) == ["", "", ""])
        desktop.key("F5")
        wait_for("the states", lambda: states(desktop)[0] == "Failed")
        wait_for("the end", lambda: "failed" in desktop.say("status"))
        desktop.key("ctrl+o")
        answer_file_dialog(desktop, place, "Open a build project", place.path("work", "other.xml"))
        wait_for("the other project", lambda: desktop.title() == "other.xml - qxhost")
        expect("its states", states(desktop), ["Never", "Never"])
        expect("the exit code", desktop.close(), 0)


def test_not_starting(place):
    """A package that cannot be loaded is told in a dialog, and the exit code is the one of bad arguments."""
    process = subprocess.Popen([*place.program("qxhost-desktop"), "--options", place.seen(place.path("options.xml")),
                                "--package", "missing"], cwd=place.path("work"))
    try:
        wait_for("the message", lambda: in_front("qxhost cannot start"))
        hands("key", "Return")
        expect("the exit code", process.wait(timeout=30), 2)
    finally:
        process.kill()
