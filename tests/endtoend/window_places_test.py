"""The program's windows on a desktop: where they open, what stays in front of what, and how the program goes when
somebody outside ends it.

Usage: window_places_test.py --build FOLDER [--out FOLDER]
Pictures are left in the second folder, or in reports/window_places of the first.
Skipped with exit code 77 where there is no virtual display.
"""

import os
import re
import signal
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import Editor, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, wait_for  # noqa: E402

# Title, and the keys that open it from the main window.
DIALOGS = (("Make Web-Pack File", ("alt+t", "c")), ("Email Current Page", ("alt+t", "m")),
           ("Settings", ("alt+t", "s")), ("Corvane - Quick Tips", ("alt+q", "Return")),
           ("About Corvane", ("alt+q", "Right", "a")), ("Open Saved Project", ("alt+r", "o")))
EDITORS = (("Corvane Picture Editor", ("alt+t", "e")), ("Icon Editor", ("alt+t", "i")))


def place(desktop, window):
    """Left, top, width and height of a window with its frame."""
    told = desktop.ask("xwininfo", "-id", str(window), "-frame")
    return tuple(int(re.search(name + ": *(-?\\d+)", told).group(1))
                 for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))


def stacking(desktop):
    told = desktop.ask("xprop", "-root", "_NET_CLIENT_LIST_STACKING").partition("#")[2]
    return [int(part, 16) for part in told.split(",") if part.strip()]


def is_inside(desktop, at):
    left, top, width, height = at
    return left >= 0 and top >= 0 and left + width <= desktop.width and top + height <= desktop.height


def open_by(editor, title, keys):
    editor.desktop.call("xdotool", "windowactivate", "--sync", str(editor.program.window))
    for key in keys:
        editor.desktop.keys(key)
        editor.settle()
    return editor.window(title)


def still(desktop, window):
    """Where the window is once it moves no more."""
    seen = {"at": None}

    def rests():
        before, seen["at"] = seen["at"], place(desktop, window)
        return before == seen["at"] and before
    return wait_for("the window stands", rests, 20, 0.3)


def dialogs_over_the_page(editor, check):
    desktop = editor.desktop
    middle = desktop.width // 2, desktop.height // 2
    for title, keys in DIALOGS:
        window = open_by(editor, title, keys)
        at = still(desktop, window)
        editor.shot(title.replace(" ", "-").lower())
        check.true(title + " opens on the screen", is_inside(desktop, at), at)
        off = max(abs(at[0] + at[2] // 2 - middle[0]), abs(at[1] + at[3] // 2 - middle[1]))
        # The three panels share a window, which is where the user left it from the second one on.
        if title not in ("Email Current Page", "Open Saved Project"):
            check.true(title + " opens in the middle of the main window", off <= 24, at)
        desktop.click(60, desktop.height - 260)
        desktop.wait_active("the page has the keys", lambda now: now == editor.program.window)
        order = stacking(desktop)
        check.true(title + " stays in front when the page is clicked",
                   order.index(window) > order.index(editor.program.window), order)
        desktop.call("xdotool", "windowmove", "--sync", str(window), "150", "170")
        moved = still(desktop, window)
        desktop.call("xdotool", "windowactivate", "--sync", str(window))
        desktop.keys("Escape")
        wait_for("the window goes", lambda: window not in stacking(desktop))
        again = open_by(editor, title, keys)
        check.same(title + " comes back where the user left it", still(desktop, again), moved)
        desktop.keys("Escape")
        wait_for("the window goes again", lambda: again not in stacking(desktop))


def tool_window(editor, check):
    """Always at the same height, the first time too."""
    desktop = editor.desktop
    tops = {}
    for times in (1, 2, 3):
        for title, keys in (("Page Source", ("alt+v", "s")),):
            window = open_by(editor, title, keys)
            at = still(desktop, window)
            check.true("%s is on the screen" % title, is_inside(desktop, at), at)
            tops.setdefault(title, []).append(at)
            desktop.call("xdotool", "windowactivate", "--sync", str(window), "key", "alt+F4")
            wait_for("the tool window goes", lambda: window not in stacking(desktop))
        editor.press("props")
        window = editor.window("Page Properties")
        tops.setdefault("Page Properties", []).append(still(desktop, window))
        desktop.keys("Escape")
        wait_for("the page's properties go", lambda: window not in stacking(desktop))
    for title, places in tops.items():
        check.same(title + " opens at the same place each time", len(set(places)), 1)
        print(title, places)


def editors_beside(editor, check):
    """Windows of their own, which the main window may cover and the menu brings back."""
    desktop = editor.desktop
    for title, keys in EDITORS:
        window = open_by(editor, title, keys)
        at = still(desktop, window)
        check.true(title + " opens on the screen", is_inside(desktop, at), at)
        # The picture editor fills the screen below its edge.
        is_full = at[2] == desktop.width
        check.true(title + " leaves the menu free or covers all", is_full or min(at[:2]) > 60, at)
        desktop.call("xdotool", "windowactivate", "--sync", str(editor.program.window))
        desktop.wait_active("the main window", lambda now: now == editor.program.window)
        wait_for("the main window is in front", lambda: stacking(desktop)[-1] == editor.program.window)
        again = open_by(editor, title, keys)
        check.same(title + " comes to the front", (again, stacking(desktop)[-1]), (window, window))
        desktop.call("xdotool", "windowactivate", "--sync", str(window), "key", "alt+F4")
        wait_for("the editor goes", lambda: window not in stacking(desktop))


def ended_from_outside(editor, check):
    """The workspace stays, and nothing is asked."""
    program, desktop = editor.program, editor.desktop
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        program.click_into_page(600, 300)
        desktop.keys("x")
        editor.settle()
        saved = program.save()
        desktop.keys("y")
        program.process.send_signal(number)
        check.same("%s ends the program as it ends itself" % number.name, program.process.wait(30), 0)
        with open(program.card("wgcard.html"), "rb") as file:
            check.same("%s leaves the page as it was saved" % number.name, file.read(), saved)
        program.start()


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        os.makedirs(os.path.join(program.folder, "saved", "ann"))
        editor = Editor(desktop, program, out)
        program.start()
        program.wait_for_page()
        tool_window(editor, check)
        dialogs_over_the_page(editor, check)
        editors_beside(editor, check)
        ended_from_outside(editor, check)
        check.same("the exit", program.exit_without_saving(), 0)
        check.same("no words on the way", re.findall(r"(?i)warning.*|critical.*", program.messages()), [])


if __name__ == "__main__":
    sys.exit(run(__doc__, "window_places", play))
