"""Sessions that build: running, stopping, rehearsing, and the states that are left."""

import os
import shutil
import subprocess

from person import hands, in_front, wait_for
from place import (
    expect, expect_same_file, answer_file_dialog, wait_for_state, expect_log, states, tiny_project)


def test_running_the_example(place):
    """F5 on the example, with a real engine: stamped, built, the raised numbers saved as the command line does."""
    place.host("options", "DevEnv2005Location=" + place.seen(place.path("work")), options="options.xml")
    shutil.copytree(place.path("work"), place.path("twin"))
    with place.desktop("Hello.build.xml") as desktop:
        wait_for("the action", lambda: desktop.texts("actions"))
        desktop.key("F5")
        wait_for_state(desktop, "Succeeded", patience=120)
        expect_log(desktop, "Build VS.Net Solution: succeeded")
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
        wait_for_state(desktop, "Failed")
        wait_for("the message", lambda: "Stopped" in desktop.say("status"))
        desktop.key("F5")
        wait_for_state(desktop, "Running")
        desktop.key("ctrl+q")
        wait_for("the question", lambda: in_front("A build is running"))
        desktop.key("alt+g")  # go on
        wait_for("the end of the question", lambda: not in_front("A build is running"))
        expect("the state", desktop.texts("actions")[0].split("|")[-1], "Running")
        desktop.key("ctrl+q")
        wait_for("the question", lambda: in_front("A build is running"))
        desktop.key("alt+s")  # stop and close
        expect("the exit code", desktop.process.wait(timeout=30), 0)


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
        wait_for("the other project", lambda: desktop.title() == "other.xml - qxhost")
        expect("its states", states(desktop), ["", ""])
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
