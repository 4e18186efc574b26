"""A person at the window: real mouse and keyboard events through the X server, and eyes that ask the program
where its widgets are and what they show (qxhost-desktop --probe). Needs a display with a window manager
(scripts/screen) and xdotool; the program may run under Wine on the same display."""

import json
import os
import queue
import subprocess
import threading
import time

PATIENCE = 30  # seconds until something that must happen is given up


class Fault(AssertionError):
    pass


def wait_for(what, condition, patience=PATIENCE):
    """The first true answer of the condition."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.03)
    raise Fault(f"waited {patience} s in vain for {what}")


def hands(*words):
    subprocess.run(["xdotool", *map(str, words)], check=True, stdout=subprocess.DEVNULL)


def title_with_keyboard():
    """Of the program's window that the screen sends keys to; empty: to none, they go to the window manager."""
    process, _, title = subprocess.run(
        ["xdotool", "getwindowfocus", "getwindowpid", "getwindowname"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        encoding="utf-8", errors="replace").stdout.partition("\n")
    return title.strip() if process.isdigit() else ""


def in_front(title):
    """Whether keys go to a window whose title begins so, the toolkit's own ones too."""
    return title_with_keyboard().startswith(title)


def windows_on_screen():
    """Those that are seen, with the lists and menus that drop down, which the program cannot be asked for."""
    return set(subprocess.run(["xdotool", "search", "--onlyvisible", "--maxdepth", "1", "--class", ".*"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout.split())


class Desktop:
    """A running qxhost-desktop. `program` is a list: an emulator may stand before the file."""

    def __init__(self, program, arguments=(), folder=None, environment=None):
        self.process = subprocess.Popen(
            [*program, "--probe", *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
            encoding="utf-8", errors="replace", cwd=folder, env={**os.environ, **(environment or {})})
        self.answers = queue.Queue()
        self.titles = set()  # of the program's windows that were there
        threading.Thread(target=self._listen, daemon=True).start()
        self.window("mainWindow", patience=90)
        wait_for("the keyboard in the window", lambda: self.ask("focus"))
        self.widget("log")

    def _listen(self):
        for line in self.process.stdout:
            self.answers.put(line)
        self.answers.put(None)

    # Eyes.

    def ask(self, question, patience=PATIENCE):
        self.process.stdin.write(question + "\n")
        self.process.stdin.flush()
        try:
            line = self.answers.get(timeout=patience)
        except queue.Empty:
            raise Fault(f"no answer to '{question}' within {patience} s") from None
        if line is None:
            raise Fault(f"the program ended at '{question}' with {self.process.wait()}")
        return json.loads(line)

    def where(self, name):
        return self.ask("where " + name)

    def widget(self, name):
        """Where a widget is, once it is shown and stays in its place."""
        wait_for(f"the widget {name}", lambda: self.where(name))
        return wait_for(f"the place of {name}", lambda: self.still(name, lambda: self.where(name)))

    def say(self, name):
        return (self.ask("say " + name) or {}).get("text")

    def rows(self, name):
        return self.ask("rows " + name) or []

    def texts(self, name):
        return [row["text"] for row in self.rows(name)]

    def windows(self):
        windows = self.ask("windows")
        self.titles.update(window["title"] for window in windows)
        return [window["name"] for window in windows]

    def title(self):
        """Of the main window."""
        return self.ask("windows")[0]["title"]

    def settle(self):
        """Until the program has done what keys and mouse were sent for: it answers when it has nothing else to do, and
        may do so once before what was sent has reached it."""
        for _ in range(3):
            self.ask("ping")

    def still(self, what, look):
        """What is seen, once it stays as it is."""
        def same():
            before = look()
            self.settle()
            time.sleep(0.06)
            return (before,) if before == look() else None
        return wait_for(f"{what} to stay", same)[0]

    def window(self, name, patience=PATIENCE):
        return wait_for(f"the window {name}", lambda: name in self.windows(), patience)

    def gone(self, name):
        wait_for(f"the end of {name}", lambda: not self.where(name))

    # Hands.

    def click(self, name, times=1, button=1):
        self.click_at(self.widget(name), times, button)

    def click_row(self, name, text, times=1):
        """A click on the row of a list that begins with the text."""
        self.widget(name)
        row = wait_for(f"the row '{text}' of {name}",
                       lambda: next((row for row in self.rows(name)
                                     if row["text"].startswith(text) and row["height"] > 0), None))
        self.click_at(row, times, narrow=True)

    @staticmethod
    def click_at(place, times=1, button=1, narrow=False):
        x = place["x"] + (min(40, place["width"] // 2) if narrow else place["width"] // 2)
        hands("mousemove", "--sync", x, place["y"] + place["height"] // 2)
        hands("click", "--repeat", times, "--delay", 60, button)

    def focus(self, name):
        """Puts the keyboard into a widget by a click into it."""
        self.click(name)
        self.wait_for_focus(name)

    def has_keyboard(self):
        """Whether keys reach a window that is there. A program believes to have the keyboard before the screen sends it
        keys, and the screen still sends them to a window that the program has closed."""
        title = title_with_keyboard()
        if title not in self.titles:
            return title != ""  # one of the toolkit's own
        return any(window["title"] == title for window in self.ask("windows"))

    def key(self, *keys):
        wait_for("the keyboard", self.has_keyboard)
        hands("key", "--delay", 25, *keys)

    def type(self, text):
        wait_for("the keyboard", self.has_keyboard)
        hands("type", "--delay", 12, "--", text)

    def replace(self, name, text):
        """Types a text in the place of the one that stands in an edit."""
        self.focus(name)
        self.key("Home", "shift+End")
        self.type(text)

    def wait_for_focus(self, name):
        wait_for(f"the focus in {name}", lambda: (self.where(name) or {}).get("focus"))

    def focus_row(self, name, row=0):
        """Puts the keyboard into a list, on a row."""
        self.widget(name)
        self.click_at(self.rows(name)[row], narrow=True)
        self.wait_for_focus(name)

    def open(self, what, act):
        """Does what opens a list or a menu, which is a window of the toolkit's own."""
        before = windows_on_screen()
        act()
        wait_for(what, lambda: windows_on_screen() - before)
        self.settle()

    def open_list(self, name):
        self.open(f"the list of {name}", lambda: self.click(name))

    def tab_to(self, name):
        """Goes to a widget with the key Tab alone."""
        for _ in range(60):
            if self.where(name)["focus"]:
                return
            self.key("Tab")
        raise Fault(f"the key Tab does not lead to {name}")

    def tick(self, name, row):
        """Ticks or unticks a row of a check list with the keyboard."""
        self.tab_to(name)
        self.key("Down", "Home")  # a list without a selected row does not know where it is
        for _ in range(row):
            self.key("Down")
        self.key("space")

    # The end.

    def close(self):
        """Ends the program as a person would; its exit code."""
        self.key("ctrl+q")
        return self.process.wait(timeout=PATIENCE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
