"""What the tests of the program on its display share: checks, a hand that works the editor, and the way such a test
runs."""

import argparse
import os
import re
import shutil
import struct
import subprocess
import sys
import time
import traceback
import zlib

from virtual_desktop import TooLate, missing_tools, wait_for

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
SKIPPED = 77


class Checks:
    """Counts what is as it should be, and tells each."""

    def __init__(self):
        self.count = self.failed = 0
        self.begin = time.monotonic()

    def same(self, what, found, wanted):
        self.true(what, found == wanted, "found %.600r, wanted %.600r" % (found, wanted))

    def true(self, what, good, found=""):
        self.count += 1
        self.failed += not good
        after = "%6.1f " % (time.monotonic() - self.begin)
        print(after + ("ok     " + what if good else "FAILED %s: %s" % (what, found)), flush=True)


def where(problem):
    """The places in the tests' own files that led to it, outermost first."""
    steps = [step for step in traceback.extract_tb(problem.__traceback__) if step.filename.startswith(HOUSE)]
    return ", ".join("%s:%d" % (os.path.basename(step.filename), step.lineno) for step in steps)


def run(document, name, play, needs=(), refusal=None):
    """The whole of such a test: play(build, out, check) with the folder for its pictures; gives the exit code.
    `refusal` tells why the machine itself can't run it, or None."""
    parser = argparse.ArgumentParser(description=document, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="folder that was built into")
    parser.add_argument("--out", help="folder for the pictures, reports/%s of the other one if not given" % name)
    given = parser.parse_args()
    build = os.path.abspath(given.build)
    out = os.path.abspath(given.out or os.path.join(build, "reports", name))
    missing = missing_tools() + [tool for tool in needs if not shutil.which(tool)]
    if missing:
        print("skipped, not there:", *missing)
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    reason = refusal() if refusal else None
    if reason:
        print("skipped:", reason)
        return SKIPPED
    shutil.rmtree(out, ignore_errors=True)
    check = Checks()
    try:
        play(build, out, check)
    except (TooLate, subprocess.TimeoutExpired) as problem:
        check.true("all happens in time", False, problem)
    except Exception as problem:  # whatever it was: one line that says what and where
        check.true("goes on to the end", False, "%s: %s (%s)" % (type(problem).__name__, problem, where(problem)))
    print("%d checks, %d failed" % (check.count, check.failed))
    return 1 if check.failed else 0


def png(width, height, color):
    """A picture of one colour."""
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))
    rows = (b"\0" + bytes(color) * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Editor:
    """What a hand does in the main window at 1280 by 1024."""

    # The Work Window stands at the bottom of the display, in the middle.
    WORK = (461, 835)
    BUTTONS = {"cut": (25, 56), "copy": (54, 56), "paste": (85, 56), "link": (129, 56), "picture": (185, 56),
               "table": (230, 56), "props": (303, 56), "left": (25, 124), "up": (63, 124), "right": (101, 124),
               "down": (139, 124), "back": (277, 124), "forward": (323, 124)}

    def __init__(self, desktop, program, pictures):
        self.desktop, self.program, self.pictures = desktop, program, pictures
        self.stage = 0

    def settle(self, quiet=0.3):
        """As far as it comes to rest: a text box in use blinks."""
        try:
            self.desktop.settle(quiet, 1.5)
        except TooLate:
            pass

    def shot(self, name):
        self.stage += 1
        self.settle(0.6)
        self.desktop.shot(os.path.join(self.pictures, "%02d-%s.png" % (self.stage, name)))

    def press(self, button):
        x, y = self.BUTTONS[button]
        self.desktop.click(self.WORK[0] + x, self.WORK[1] + y)
        self.settle()

    def drag(self, start, end):
        self.desktop.call("xdotool", "mousemove", *map(str, start), "mousedown", "1", "mousemove",
                          str((start[0] + end[0]) // 2), str(end[1]), "mousemove", *map(str, end), "mouseup", "1")
        self.settle()

    def double_click(self, x, y):
        self.desktop.double_click(x, y)
        self.settle()

    def type(self, text):
        self.desktop.call("xdotool", "type", "--delay", "40", text)
        self.settle()

    def menu(self, *keys):
        """Opens a menu of the bar by its letter and goes to an entry by its own: menu("p", "n")."""
        self.desktop.keys("alt+" + keys[0])
        self.settle()
        for key in keys[1:]:
            self.desktop.keys(key)
        self.settle()

    def page(self, number=1):
        """The saved page's body."""
        return re.search(r"<body[^>]*>(.*)</body>", self.whole_page(number), re.S).group(1)

    def whole_page(self, number=1):
        self.settle()
        return self.program.save(number).decode("ascii")

    def window(self, title):
        """Waits for a window with that title to have the keys."""
        return self.desktop.wait_active(title, lambda now: self.desktop.title(str(now)) == title)

    def corner(self, window):
        """Left and top of a window's content on the display."""
        told = self.desktop.ask("xwininfo", "-id", str(window))
        return tuple(int(re.search("Absolute upper-left %s: *(-?\\d+)" % axis, told).group(1)) for axis in "XY")

    def closed(self):
        self.desktop.wait_active("the main window has the keys again", lambda now: now == self.program.window)

    def choose_file(self, path, title="Select Picture"):
        self.window(title)
        self.settle()
        self.type(path)
        self.desktop.keys("Return")
        self.settle()

    def list_entry(self, x, y, downs):
        """Opens a list and goes to an entry, counted from the first."""
        self.desktop.click(x, y)
        self.settle()
        self.desktop.keys("Home", *(["Down"] * downs), "Return")
        self.settle()
