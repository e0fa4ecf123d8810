"""Takes the pictures of the help text from the program itself, worked with mouse and keys on a display of its own.

Usage: MakeHelpPictures.py --build FOLDER [--only NAME ...]
Leaves NAME.png in resources/help, with few colours and small. A window that can't be taken is told and left as it was;
the exit code is the number of those.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import Editor  # noqa: E402
from virtual_desktop import Corvane, Desktop, TooLate, missing_tools, wait_for  # noqa: E402

OUT = os.path.join(HOUSE, "resources", "help")
WIDTH, HEIGHT = 1000, 740
COLORS = 96
# A window with no more colours than this has nothing in it yet.
EMPTY = 12
PROJECT = "Summer"
# Folders that are seen in the pictures.
PICTURES = os.path.join(tempfile.gettempdir(), "Pictures")
SHOWN_FOLDER = "/home/anna/Desktop"

PAGE = """<html><head><title>Summer at the lake</title></head>
<body bgcolor="#FFFFFF" text="#3D0264" link="#0000FF" vlink="#0000FF" background="parchment.jpg"
style="font-size: small; font-family: Arial, Helvetica; text-align: center;"><font size="6" face="Times New Roman"
color="#740140"><b>Summer at the lake</b></font><br />&nbsp;<br /><img src="lake.jpg" width="300" height="190" /><br
/>&nbsp;<br /><font size="4">Dear Anna, this is where we were in July.</font><br /><font size="3">We went swimming every
morning, and the boat is still afloat.</font><br />&nbsp;<br /><table align="center" width="420" height="60" border="1"
bgcolor="#F9F3EE" cellpadding="10"><tr><td align="center" valign="center"><font face="Arial, Helvetica" size="3"
color="#3D0264">More pictures are on the next page.</font></td></tr></table></body></html>"""


def make_photo(desktop, path, size="300x190"):
    """Sky, sun, mountains and a lake."""
    desktop.call("convert", "-size", "1200x760", "gradient:#4f86d0-#f7dcb4", "-fill", "#fff3c0", "-draw",
                 "circle 850,200 900,200", "-fill", "#7b86a8", "-draw",
                 "polygon 0,460 150,340 260,240 390,360 520,440 690,280 820,180 930,260 1200,440 1200,520 0,520",
                 "-fill", "#eef2fa", "-draw", "polygon 745,240 820,180 878,222 850,235 815,220 780,248", "-fill",
                 "#4f6b58", "-draw", "polygon 0,520 250,450 600,505 1000,440 1200,500 1200,560 0,560", "-fill",
                 "#5f90b8", "-draw", "polygon 0,545 1200,540 1200,760 0,760", "-fill", "#7fb0d0", "-draw",
                 "polygon 300,600 900,590 820,605 380,612", "-blur", "0x1.2", "-resize", size, "-type", "truecolor",
                 path)


def make_icon_picture(desktop, path):
    desktop.call("convert", "-size", "32x32", "xc:#e1e1e1", "+antialias", "-fill", "#ff0000", "-draw",
                 "polygon 4,10 8,5 13,5 16,9 19,5 24,5 28,10 28,14 16,27 4,14", "-fill", "#ffffff", "-draw",
                 "polygon 8,10 11,8 12,9 9,12", "-type", "truecolor", "BMP3:" + path)


class Photographer(Editor):
    """Works the program and keeps what is seen of it."""

    WORK = ((WIDTH - 357) // 2, HEIGHT - 189)

    def __init__(self, desktop, program, only):
        super().__init__(desktop, program, desktop.path("shots"))
        self.only = only
        self.left = []

    def place(self, window):
        """Left, top, width and height with the frame round the window."""
        lines = self.desktop.ask("xwininfo", "-id", str(window)).splitlines()

        def number(label):
            return int(next(line for line in lines if label in line).split()[-1])
        left, top, width, height = (number(label) for label in ("Absolute upper-left X", "Absolute upper-left Y",
                                                                "Width:", "Height:"))
        extents = self.desktop.ask("xprop", "-id", str(window), "_NET_FRAME_EXTENTS").partition("=")[2]
        wide = [int(part) for part in extents.split(",")] if extents.strip() else [0] * 4
        return left - wide[0], top - wide[2], width + wide[0] + wide[1], height + wide[2] + wide[3]

    def keep(self, name, area, window=True):
        """Crops the display to the area; one that is empty inside is no picture."""
        if self.only and name not in self.only:
            return
        self.settle(0.5)
        shot = os.path.join(self.pictures, "shot.png")
        self.desktop.shot(shot)
        crop = "%dx%d+%d+%d" % (area[2], area[3], max(area[0], 0), max(area[1], 0))
        inside = self.desktop.ask("convert", shot, "-crop", crop, "+repage", "-shave", "12x30", "-format", "%k",
                                  "info:")
        if window and int(inside) <= EMPTY:
            self.miss(name, "the window is empty")
            return
        self.desktop.call("convert", shot, "-crop", crop, "+repage", "+dither", "-colors", str(COLORS), "-strip",
                          "-define", "png:exclude-chunks=date,time", "-define", "png:compression-level=9",
                          "PNG8:" + os.path.join(OUT, name + ".png"))
        print("%-16s %5d bytes" % (name, os.path.getsize(os.path.join(OUT, name + ".png"))), flush=True)

    def keep_window(self, name, window):
        self.desktop.call("xdotool", "mousemove", str(WIDTH - 2), str(HEIGHT // 2))
        self.keep(name, self.place(window))

    def miss(self, name, why):
        self.left.append(name)
        print("left out: %s, %s" % (name, why), flush=True)

    def take(self, routine, *names):
        """Whatever stands in the way of a window, the others are taken."""
        if self.only and not self.only & set(names):
            return
        try:
            routine()
        except (TooLate, subprocess.SubprocessError, ValueError, StopIteration) as problem:
            for name in names:
                self.miss(name, str(problem))
            self.desktop.shot(os.path.join(self.pictures, "failed-%s.png" % names[0]))
        finally:
            self.back_to_main()

    def back_to_main(self):
        """Closes what is open, by Escape and then by its box, until the main window has the keys."""
        for _ in range(4):
            now = self.desktop.active()
            if now == self.program.window:
                break
            self.desktop.keys("Escape")
            self.settle()
            if self.desktop.active() == now and now:
                self.desktop.call("xdotool", "key", "alt+F4")
                self.settle()
        self.desktop.keys("Escape")
        self.settle()

    def find_window(self, title):
        return wait_for(title, lambda: self.desktop.windows(title), 10)[-1]


def put_project(program, desktop, samples):
    """A saved project beside the program, as Save Current Project would have left it."""
    folder = os.path.join(program.folder, "saved", PROJECT)
    os.makedirs(folder)
    os.makedirs(os.path.join(program.folder, "saved", "Recipes"))
    with open(os.path.join(folder, "wgcard.html"), "w", encoding="ascii") as file:
        file.write(PAGE.replace("\n", " "))
    make_photo(desktop, os.path.join(folder, "lake.jpg"))
    if os.path.isdir(samples):
        shutil.copytree(samples, os.path.join(program.folder, "samples"))
        shutil.copy(os.path.join(samples, "parchment.jpg"), folder)


def open_project(hand):
    hand.menu("r", "o")
    window = hand.window("Open Saved Project")
    hand.settle()
    hand.type(PROJECT)
    hand.keep_window("open-project", window)
    hand.desktop.keys("Tab", "space")
    hand.desktop.wait_active("the project", lambda now: now == hand.program.window)
    wait_for("the project's name", lambda: PROJECT in hand.desktop.title(str(hand.program.window)))
    hand.settle(1)


def main_window(hand):
    hand.program.click_into_page(500, 400)
    hand.desktop.call("xdotool", "mousemove", str(WIDTH - 200), "300")
    hand.settle(0.6)
    hand.keep("main", (0, 0, WIDTH, HEIGHT))
    hand.keep("strip", (0, 41, 246, 28), window=False)
    hand.keep("font-controls", (WIDTH - 453, 42, 453, 44), window=False)


def work_window(hand):
    hand.double_click(400, 118)  # the heading
    hand.desktop.call("xdotool", "mousemove", "500", "300")
    hand.keep("work-window", (*hand.WORK, 357, 189))


def popup(hand):
    hand.double_click(400, 118)
    hand.desktop.call("xdotool", "mousemove", "460", "118", "click", "3")
    hand.keep("popup", (250, 80, 420, 300))
    hand.desktop.keys("Escape")


def menus(hand):
    for name, keys, area in (("menu-page", ("p",), (0, 16, 330, 130)), ("menu-themes", ("h",), (200, 16, 440, 325))):
        hand.menu(*keys)
        if name == "menu-themes":
            hand.desktop.keys("Up", "Right")
        hand.keep(name, area)
        hand.desktop.keys("Escape", "Escape", "Escape")
        hand.settle()


def tool_panels(hand):
    hand.press("props")
    hand.keep_window("page-properties", hand.window("Page Properties"))
    hand.desktop.keys("Escape")
    hand.closed()
    hand.press("table")
    window = hand.window("Tables")
    hand.type("420")
    hand.desktop.keys("Tab")
    hand.type("60")
    hand.keep_window("table", window)
    hand.desktop.keys("Escape")
    hand.closed()


def view_image(hand):
    path = os.path.join(PICTURES, "lake.jpg")
    make_photo(hand.desktop, path)
    hand.press("picture")
    hand.choose_file(path)
    hand.keep_window("view-image", hand.window("View Image"))
    hand.desktop.keys("Escape")
    hand.closed()


def source(hand):
    hand.menu("v", "s")
    hand.keep_window("source", hand.window("Page Source"))
    hand.desktop.call("xdotool", "key", "alt+F4")
    hand.closed()


def web_pack(hand):
    hand.menu("t", "c")
    panel = hand.window("Make Web-Pack File")
    hand.desktop.keys("ctrl+a")
    hand.type(SHOWN_FOLDER)
    hand.keep_window("web-pack", panel)
    hand.desktop.keys("Escape")
    hand.closed()


def settings(hand):
    hand.menu("t", "s")
    window = hand.window("Settings")
    hand.settle(0.6)
    left, top, width, _ = hand.place(window)
    hand.desktop.click(left + width // 2, top + 139)
    hand.desktop.keys("ctrl+a")
    hand.type(SHOWN_FOLDER)
    hand.keep_window("settings", window)
    hand.desktop.click(left + width * 3 // 4, top + 45)
    hand.settle()
    hand.keep_window("settings-icon", window)
    hand.desktop.keys("Escape")
    hand.closed()


def email(hand):
    hand.menu("t", "m")
    window = hand.window("Email Current Page")
    hand.settle(0.6)
    for text in ("anna@example.org", "Anna", "tom@example.org", "Tom", "mail.example.org", "Summer at the lake"):
        hand.type(text)
        hand.desktop.keys("Tab")
    hand.keep_window("email", window)
    hand.desktop.call("xdotool", "key", "alt+F4")
    hand.closed()


def picture_editor(hand):
    photo = os.path.join(PICTURES, "photo.jpg")
    make_photo(hand.desktop, photo, "480x304")
    hand.menu("t", "e")
    hand.window("Corvane Picture Editor")
    hand.settle(0.6)
    hand.desktop.keys("space")  # Open File has the keys
    hand.choose_file(photo)
    wait_for("the picture", lambda: hand.desktop.windows("photo.jpg"), 10)
    hand.settle(0.6)
    viewer = hand.place(hand.find_window("photo.jpg"))
    start = (viewer[0] + 120, viewer[1] + 90)
    hand.drag(start, (start[0] + 220, start[1] + 150))
    hand.desktop.call("xdotool", "mousemove", str(WIDTH - 2), "60")
    hand.keep("picture-editor", (0, 0, WIDTH, HEIGHT))


def icon_editor(hand):
    picture = os.path.join(PICTURES, "heart.bmp")
    make_icon_picture(hand.desktop, picture)
    hand.menu("t", "i")
    window = hand.window("Icon Editor")
    hand.settle()
    hand.desktop.keys("alt+f", "o")
    hand.choose_file(picture)
    hand.settle(0.6)
    hand.keep_window("icon-editor", window)
    hand.desktop.call("xdotool", "key", "alt+F4")
    hand.closed()


def quick_tip(hand):
    hand.menu("q")
    hand.desktop.keys("Down", "Down", "Down", "Return")
    hand.keep_window("quick-tip", hand.window("Corvane - Quick Tips"))
    hand.desktop.keys("Escape")
    hand.closed()


ROUTINES = ((main_window, ("main", "strip", "font-controls")),
            (work_window, ("work-window",)), (popup, ("popup",)), (menus, ("menu-page", "menu-themes")),
            (tool_panels, ("page-properties", "table")), (view_image, ("view-image",)), (source, ("source",)),
            (web_pack, ("web-pack",)), (settings, ("settings", "settings-icon")), (email, ("email",)),
            (icon_editor, ("icon-editor",)), (quick_tip, ("quick-tip",)), (picture_editor, ("picture-editor",)))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="folder that was built into")
    parser.add_argument("--only", nargs="*", default=[], metavar="NAME", help="these pictures alone")
    given = parser.parse_args()
    build = os.path.abspath(given.build)
    missing = missing_tools() + [tool for tool in ("convert", "xwininfo") if not shutil.which(tool)]
    if missing:
        sys.exit("not there: " + " ".join(missing))
    with Desktop(WIDTH, HEIGHT) as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        put_project(program, desktop, os.path.join(build, "bin", "samples"))
        hand = Photographer(desktop, program, set(given.only))
        os.makedirs(PICTURES, exist_ok=True)
        try:
            program.start()
            hand.settle(1)
            open_project(hand)
            for routine, names in ROUTINES:
                hand.take(lambda routine=routine: routine(hand), *names)
        finally:
            shutil.rmtree(PICTURES, ignore_errors=True)
    return len(hand.left)


if __name__ == "__main__":
    sys.exit(main())
