"""Sessions on small and large screens with fonts of several sizes: nothing is cut, nothing off the screen."""

import os

from person import wait_for
from place import expect, go_to_page, open_pages

SCALES = ("1", "1.5", "2")


def whole(desktop, window, what):
    """What a person sees of the window is not cut."""
    desktop.widget(window)
    expect(f"what is cut of {what}", desktop.ask("cut " + window), [])


def test_nothing_is_cut(place):
    """The main window and every page of an action, at each size of the fonts, on the screen of this session."""
    for scale in SCALES:
        os.environ["GDK_DPI_SCALE"] = scale
        with place.desktop("Hello.build.xml", options=f"options{scale}.xml") as desktop:
            wait_for("the actions", lambda: desktop.texts("actions"))
            desktop.still("the window", lambda: desktop.where("mainWindow"))
            whole(desktop, "mainWindow", f"the window at {scale}")
            open_pages(desktop)
            for page in desktop.texts("Pages"):
                go_to_page(desktop, page)
                whole(desktop, "pages", f"the page {page} at {scale}")
            desktop.key("Escape")
            desktop.gone("pages")
            expect("the exit code", desktop.close(), 0)


def test_a_place_that_is_no_more(place):
    """A window that stood on a larger screen comes back whole on this one."""
    os.makedirs(place.path("config", "qxhost"))
    with open(place.path("config", "qxhost", "desktop.ini"), "w", encoding="utf-8") as file:
        file.write("[MainWindow]\nLeft=900\nTop=700\nWidth=1800\nHeight=1300\n")
    with place.desktop() as desktop:
        seen = desktop.still("the window", lambda: desktop.where("mainWindow"))
        expect("left and top", seen["x"] >= 0 and seen["y"] >= 0, True)
        expect(f"the right edge of {seen}", seen["x"] + seen["width"] <= 1280, True)
        expect(f"the lower edge of {seen}", seen["y"] + seen["height"] <= 1024, True)
        expect("the exit code", desktop.close(), 0)
