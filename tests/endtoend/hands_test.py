"""A person's hands at the page, with real keys and buttons: held keys, keys that go down elsewhere, the mouse's extra
buttons, typing beyond the window's edge, and a renderer that dies while somebody types.

Usage: hands_test.py --build FOLDER [--out FOLDER]
Pictures are left in the second folder, or in reports/hands of the first.
Skipped with exit code 77 where there is no virtual display.
"""

import os
import random
import signal
import string
import subprocess
import sys
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import Editor, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, wait_for  # noqa: E402

WORK_WINDOW_TOP = 1024 - 189


def new_page(editor, number):
    """Page > New; every hand begins with an empty page, and an insertion point in it."""
    editor.menu("p", "n")
    editor.program.click_into_page(600, 300)


def held_keys(editor, check):
    """An X server sends releases between the repeats of a key unless it is asked not to."""
    editor.program.click_into_page(600, 300)
    for key, seconds in (("x", 2), ("y", 1.5)):
        editor.desktop.call("xdotool", "keydown", key, "sleep", str(seconds), "keyup", key)
    check.same("a key held for two seconds types one letter", editor.page(), "xy")
    editor.desktop.call("xdotool", "keydown", "BackSpace", "sleep", "1.5", "keyup", "BackSpace")
    check.same("and a held Backspace takes one", editor.page(), "x")


def keys_of_other_programs(editor, check):
    """Down in another program's window, which closes, and up over ours."""
    desktop = editor.desktop
    for seconds in (0.2, 1.5):  # the second one long enough for repeats, which come to our window
        other = subprocess.Popen(["xev"], env=desktop.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        window = wait_for("the other program's window",
                          lambda: [one for one in map(lambda text: int(text, 16), desktop.windows())
                                   if one != editor.program.window])[0]
        desktop.call("xdotool", "windowactivate", "--sync", str(window))
        desktop.wait_active("the other program has the keys", lambda now: now == window)
        # Who has the keys for less than half a second has never had them, as far as our program is told.
        desktop.call("xdotool", "sleep", "1", "keydown", "Return")
        other.terminate()
        other.wait()
        desktop.wait_active("ours has them again", lambda now: now == editor.program.window)
        desktop.call("xdotool", "sleep", str(seconds), "keyup", "Return")
        editor.settle()
        check.same("Return from elsewhere, held %g s, types nothing" % seconds, editor.page(), "x")
    editor.type("z")
    check.same("the next key does", editor.page(), "xz")


def extra_buttons(editor, check):
    new_page(editor, 2)
    editor.type("page two")
    for button in ("8", "9"):
        editor.desktop.call("xdotool", "mousemove", "600", "400", "click", button)
        editor.settle()
        check.same("button %s leaves the page" % button, editor.page(2), "page two")
    editor.desktop.call("xdotool", "mousemove", "600", "400", "keydown", "ctrl", "click", "4", "click", "5", "click",
                        "4", "keyup", "ctrl")
    editor.type("x")
    check.same("and typing goes on", editor.page(2), "page twox")


def typing_beyond_the_edge(editor, check):
    """The last lines stay above the Work Window, which lies over the page's lower edge."""
    new_page(editor, 3)
    for _ in range(60):
        editor.desktop.call("xdotool", "key", "--delay", "10", "Return")
    editor.desktop.call("xdotool", "type", "--delay", "40", "the last line")
    editor.settle()
    editor.shot("typed-beyond-the-edge")
    bar = editor.desktop.find_line(0x0000FF, 12, 2, 80, 700, WORK_WINDOW_TOP)
    check.true("the insertion point is in view, above the Work Window",
               bar is not None and bar[1] > 400 and bar[1] + 17 <= WORK_WINDOW_TOP, bar)
    check.true("with what was typed", "the last line" in editor.page(3))


def dying_renderers(editor, check):
    """Ten deaths while somebody types at 33 keys a second."""
    new_page(editor, 4)
    chance = random.Random(4)
    letters, typing, deaths = "", None, 0
    while deaths < 10:
        if typing is None or typing.poll() is not None:
            more = "".join(chance.choice(string.ascii_lowercase) for _ in range(100))
            typing = subprocess.Popen(["xdotool", "type", "--delay", "30", more], env=editor.desktop.environment)
            letters += more
        victim = editor.program.renderer()
        if victim:
            os.kill(victim, signal.SIGKILL)
            deaths += 1
            wait_for("a new renderer", lambda: editor.program.renderer() not in (None, victim), 60)
        time.sleep(0.4)
    typing.wait()
    check.same("every letter is there", editor.page(4), letters)
    editor.shot("behind-ten-deaths")


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = Editor(desktop, program, out)
        program.start()
        try:
            held_keys(editor, check)
            keys_of_other_programs(editor, check)
            extra_buttons(editor, check)
            typing_beyond_the_edge(editor, check)
            dying_renderers(editor, check)
        except BaseException:
            editor.shot("failed")
            raise
        check.true("the program ended well", program.exit_without_saving() == 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "hands", play, ["xev"]))
