"""The whole road, in the program itself: a page is typed, saved, packed, unpacked under 32-bit wine and read again.

Usage: road_test.py --build FOLDER
Pictures of every stage are left in FOLDER/reports/road. Skipped with exit code 77 where there is no virtual display.
"""

import os
import shutil
import subprocess
import sys
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import SKIPPED, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

WINE = os.path.join(HOUSE, "tools", "wine32")
TEMP = "users/guest/Temp"

# The viewer of pages, and the folder for temporary files, which each version of wine has somewhere else.
HANDLER = r"""REGEDIT4

[HKEY_CLASSES_ROOT\.html]
@="webpacktest"

[HKEY_CLASSES_ROOT\webpacktest\shell\open\command]
@="C:\\viewer\\MarkOpened.exe \"%1\""

[HKEY_CURRENT_USER\Environment]
"TEMP"="C:\\users\\guest\\Temp"
"TMP"="C:\\users\\guest\\Temp"
"""

# The keys, each with what it leaves behind: `before` and `after` the insertion point.
NBSP = "&nbsp;"
KEYS = (["shift+h", "e", "l", "l", "o", "x", "BackSpace", "space"]
        + ["shift+comma", "shift+w", "o", "r", "l", "d", "shift+period"]
        + ["Return"]
        + ["shift+7", "space"]
        + ["shift+Return"]
        + ["Delete"]
        + ["shift+space"]
        + ["shift+apostrophe", "f", "r", "i", "e", "n", "d", "s", "shift+apostrophe"])
# A Return leaves a blank behind the insertion point, so there are two of them at the second one; Delete takes one away.
BODY = ("Hello " + "&lt;World&gt;" + "<br />" + "&amp; " + '<br clear="all" />' + NBSP + '"friends"' + NBSP)
# The head and the body's tag of a page that the program made with the values of a first start: size 3 is `small`.
HEAD = ('<html><head><title></title></head><body bgcolor="#FFFFFF" text="#000000" link="#0000FF" vlink="#0000FF"'
        ' style="font-size: small; font-family: Arial, Helvetica;">')
PAGE = (HEAD + BODY + "</body></html>").encode("ascii")
SEEN = ["Hello <World>", "&", '"friends"']


def type_page(desktop, program, check, pictures):
    program.start()
    program.click_into_page()
    desktop.shot(os.path.join(pictures, "1-started.png"))
    check.same("what is typed is in no file before it is saved", b"Hello" in read(program.card("wgcard.html")), False)
    desktop.keys(*KEYS)
    desktop.settle()
    saved = program.save()
    check.same("the saved page", saved, PAGE)
    desktop.shot(os.path.join(pictures, "2-typed.png"))
    return saved


def save_by_keys(desktop, program, check, saved):
    """The letter that picks an entry of a menu is not text."""
    path = program.card("wgcard.html")
    before = os.stat(path).st_mtime_ns
    desktop.keys("alt+p", "s")
    wait_for("the page is saved", lambda: os.stat(path).st_mtime_ns != before)
    desktop.settle()
    check.same("the page saved by keys", program.save(), saved)


def start_twice(desktop, program, check, other=()):
    """A second start beside the first; `other` is what it has otherwise in its environment, as NAME=VALUE."""
    windows = desktop.windows()
    before = sorted(os.listdir(program.card("")))
    begin = time.monotonic()
    second = desktop.start(["env", *other, program.program])
    appeared = set()
    while second.poll() is None and time.monotonic() < begin + 20:
        appeared |= set(desktop.windows()) - set(windows)
    check.same("a second start ends with code 0", second.poll(), 0)
    check.same("a second start shows nothing", (appeared, desktop.windows()), (set(), windows))
    check.same("the first goes on", program.process.poll(), None)
    check.same("with its work", sorted(os.listdir(program.card(""))), before)


def start_from_other_folders(desktop, program, check):
    """One program folder is one program, whatever runtime folder and home a start comes from."""
    runtime, home = desktop.path("runtime2"), desktop.path("home2")
    os.mkdir(runtime, 0o700)
    os.mkdir(home)
    start_twice(desktop, program, check, ["XDG_RUNTIME_DIR=" + runtime])
    start_twice(desktop, program, check, ["XDG_RUNTIME_DIR=" + os.path.join(runtime, "missing")])
    start_twice(desktop, program, check, ["XDG_RUNTIME_DIR=" + runtime, "HOME=" + home, "XDG_CONFIG_HOME=" + home,
                                          "XDG_CACHE_HOME=" + home, "XDG_DATA_HOME=" + home])


def make_pack(desktop, program, check, pictures):
    desktop.keys("alt+t")
    desktop.settle(0.3)
    desktop.shot(os.path.join(pictures, "pack-menu.png"))
    desktop.keys("c")
    panel = desktop.wait_active("the panel", lambda now: desktop.title(str(now)) == "Make Web-Pack File")
    desktop.shot(os.path.join(pictures, "pack-panel.png"))
    # From the folder over the name to OK.
    desktop.keys("Tab", "Tab", "space")
    question = desktop.wait_active("the question about testing", lambda now: now not in (panel, program.window), 60)
    desktop.shot(os.path.join(pictures, "pack-question.png"))
    pack = os.path.join(desktop.desktop, "Greeting.exe")
    check.same("the pack is on the desktop", os.listdir(desktop.desktop), ["Greeting.exe"])
    desktop.keys("alt+n")
    desktop.wait_active("the question goes", lambda now: now == panel and now != question)
    # One further: Browse, Close.
    desktop.keys("Tab", "Tab", "space")
    desktop.wait_active("the panel closes", lambda now: now == program.window)
    return pack


def run_pack(desktop, build, pack, check):
    """Gives the folder that it was unpacked into, None where wine can't run."""
    if subprocess.run([WINE, "can-run"], capture_output=True, check=False).returncode == SKIPPED:
        return None
    if subprocess.run([WINE, "install"], capture_output=True, check=False).returncode != 0:
        check.same("wine is there", os.environ.get("CI") == "true", False)
        return None
    prefix = desktop.path("prefix")
    drive = os.path.join(prefix, "drive_c")
    handler = desktop.path("handler.reg")
    with open(handler, "w", encoding="ascii") as file:
        file.write(HANDLER)

    def wine(*command, copy=()):
        options = [part for name in copy for part in ("--copy-in", name)]
        return subprocess.run([WINE, "run", "--prefix", prefix, *options, "--", *command], stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=400,
                              env={**os.environ, "WINEDEBUG": "-all", "CORVANE_WINE_TIMEOUT": "300"})

    wine("regedit.exe", "/S", "C:\\handler.reg", copy=[handler])
    os.makedirs(os.path.join(drive, "viewer"))
    shutil.copy(os.path.join(build, "tests", "stub", "MarkOpened.exe"), os.path.join(drive, "viewer"))
    temp = os.path.join(drive, TEMP)
    shutil.rmtree(temp, ignore_errors=True)
    os.makedirs(temp)
    ran = wine("C:\\Greeting.exe", copy=[pack])
    check.same("the pack ends with code 0", ran.returncode, 0)
    opened = (read(os.path.join(drive, "viewer", "opened.txt")) or b"").decode().lower().splitlines()
    check.same("the page that was opened", opened[:1],
               ["c:\\viewer\\markopened.exe \"c:\\users\\guest\\temp\\wgcard.html\""])
    return temp


def read_page(desktop, build, page, check):
    ran = subprocess.run([os.path.join(build, "bin", "page_text"), page], env=desktop.environment, capture_output=True,
                         text=True, encoding="utf-8", check=False, timeout=90)
    lines = [line.replace("\u00a0", " ").strip() for line in ran.stdout.splitlines()]
    check.same("the recipient sees what was typed", lines, SEEN)


def whole_road(build, pictures, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        try:
            saved = type_page(desktop, program, check, pictures)
            start_twice(desktop, program, check)
            start_from_other_folders(desktop, program, check)
            pack = make_pack(desktop, program, check, pictures)
            desktop.shot(os.path.join(pictures, "6-closed.png"))
            temp = run_pack(desktop, build, pack, check)
            if temp:
                check.same("what is extracted", sorted(os.listdir(temp)), ["wgcard.html"])
                check.same("the extracted page is the saved one", read(os.path.join(temp, "wgcard.html")), saved)
                page = os.path.join(temp, "wgcard.html")
            else:
                print("skipped: wine can't run here, the saved page is read instead of the extracted one")
                page = program.card("wgcard.html")
            read_page(desktop, build, page, check)
            save_by_keys(desktop, program, check, saved)
            desktop.keys("alt+f", "x")
            desktop.wait_active("the question about saving", lambda now: now != program.window)
            desktop.shot(os.path.join(pictures, "7-exit.png"))
            desktop.keys("alt+n")
            check.same("the program ends with code 0", program.process.wait(60), 0)
            check.same("its work folder is gone", os.path.exists(os.path.join(program.folder, "card")), False)
        except BaseException:
            desktop.shot(os.path.join(pictures, "failed.png"))
            print(program.messages())
            raise


if __name__ == "__main__":
    sys.exit(run(__doc__, "road", whole_road))
