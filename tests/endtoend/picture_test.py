"""A photo made ready for a page in the picture editor, in the program itself with mouse and keys: opened, made smaller,
cropped by dragging, compressed, taken back, saved, and read by the JPEG library's own tool.

Usage: picture_test.py --build FOLDER [--out FOLDER]
Pictures of every stage are left in the second folder, or in reports/pictures of the first. Skipped with exit code 77
where there is no virtual display.
"""

import os
import re
import subprocess
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import Editor, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, wait_for  # noqa: E402

TITLE = "Corvane Picture Editor"
DIALOGS = ("", "Corvane", "Select Picture", "Save AS JPG File")
# The frame stands at the bottom of the display, in the middle; the places in it are from its top left.
FRAME = (190, 840)
PLACES = {"open": (73, 65), "save": (73, 120), "close": (73, 150), "close image": (402, 149), "percent": (642, 90),
          "resize": (831, 90), "quality": (642, 120), "compress": (831, 120), "crop": (741, 150), "undo": (831, 150)}


def make_photo(desktop, path):
    """Sky, sun, mountains and the grain of a camera."""
    desktop.call("convert", "-size", "1600x1100", "gradient:#4f86d0-#f7dcb4", "-fill", "#fff3c0", "-draw",
                 "circle 1010,330 1075,330", "-fill", "#7b86a8", "-draw",
                 "polygon 0,760 150,600 260,480 390,600 520,700 690,520 820,400 930,490 1150,720 1400,600 1600,520 "
                 "1600,1100 0,1100", "-fill", "#eef2fa", "-draw",
                 "polygon 740,470 820,400 885,453 850,470 815,452 780,480", "-fill", "#4f6b58", "-draw",
                 "polygon 0,900 400,720 900,860 1300,740 1600,830 1600,1100 0,1100", "-fill", "#31463a", "-draw",
                 "polygon 0,1010 500,930 1100,1010 1600,950 1600,1100 0,1100", "-blur", "0x1.2", "-attenuate", "0.2",
                 "+noise", "Gaussian", "-type", "truecolor", path)


class PictureEditor(Editor):
    """What a hand does in the picture editor."""

    def at(self, place):
        x, y = PLACES[place]
        return FRAME[0] + x, FRAME[1] + y

    def press(self, button):
        self.desktop.click(*self.at(button))
        self.settle()

    def fill(self, box, text):
        x, y = self.at(box)
        self.desktop.call("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "3", "--delay", "60", "1")
        self.type(text)

    def viewer(self):
        """Id of the window that shows the picture, None while it doesn't."""
        known = (self.program.window, self.editor)
        found = [one for one in self.desktop.windows()
                 if int(one, 16) not in known and self.desktop.title(one) not in DIALOGS]
        return found[0] if found else None

    def viewer_id(self):
        """As a number, None while there is none."""
        viewer = self.viewer()
        return int(viewer, 16) if viewer else None

    def place(self):
        """Left, top, width and height of the picture's window, without its border."""
        text = self.desktop.ask("xwininfo", "-id", self.viewer())
        return tuple(int(re.search(name + r": +(-?\d+)", text).group(1))
                     for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def wait_size(self, width, height):
        return wait_for("a picture of %d by %d" % (width, height),
                        lambda: self.viewer() and self.place()[2:] == (width, height))

    def is_on_top(self):
        return "_NET_WM_STATE_ABOVE" in self.desktop.ask("xprop", "-id", self.viewer(), "_NET_WM_STATE")

    def drag_slowly(self, start, end, between=None):
        """A drag on the picture; `between` runs while the button is down."""
        left, top = self.place()[:2]
        call = self.desktop.call
        call("xdotool", "mousemove", str(left + start[0]), str(top + start[1]), "mousedown", "1")
        for part in (1, 2, 3):
            call("xdotool", "mousemove", str(left + start[0] + (end[0] - start[0]) * part // 3),
                 str(top + start[1] + (end[1] - start[1]) * part // 3))
        self.settle()
        if between:
            between()
        call("xdotool", "mouseup", "1")
        self.settle()

    def file_dialog(self, title, path):
        self.window(title)
        self.settle()
        if path:
            self.type(path)
            self.desktop.keys("Return")
        else:
            self.desktop.keys("Escape")
        self.settle()

    def is_above(self, upper, lower):
        pile = self.desktop.ask("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        pile = [int(one, 16) for one in re.findall(r"0x[0-9a-f]+", pile)]
        return upper in pile and (lower not in pile or pile.index(upper) > pile.index(lower))

    def box(self):
        """Waits for a message box, and tells whether it stands above the picture."""
        dialog = self.desktop.wait_active("a message box", lambda now: self.desktop.title(str(now)) == "Corvane")
        return self.is_above(dialog, self.viewer_id())


def open_editor(editor, check):
    editor.desktop.keys("alt+t")
    editor.settle()
    editor.desktop.keys("e")
    editor.editor = editor.window(TITLE)
    editor.settle()
    editor.shot("editor")
    editor.press("resize")
    check.true("without a picture a box says so", editor.box())
    editor.desktop.keys("Return")
    editor.window(TITLE)


def open_photo(editor, check, photo):
    editor.press("open")
    editor.file_dialog("Select Picture", photo)
    viewer = wait_for("the picture's window", editor.viewer)
    editor.settle()
    check.true("a window cut to the screen says so",
               editor.desktop.title(viewer) == "Note: Image has been cropped to fit screen.",
               editor.desktop.title(viewer))
    check.true("it takes nine tenths of the screen's width", editor.place()[2] == 1152, editor.place())
    check.true("it stands above all", editor.is_on_top())
    check.true("the keys stay with the editor", editor.desktop.active() == editor.editor)
    editor.shot("photo")


def resize(editor, check):
    editor.fill("percent", "50")
    editor.press("resize")
    editor.wait_size(800, 550)
    editor.shot("resized")
    editor.fill("percent", "abc")
    editor.press("resize")
    check.true("a message stands above the picture", editor.box())
    editor.shot("message")
    editor.desktop.keys("Return")
    editor.window(TITLE)


def crop(editor, check):
    editor.press("crop")
    check.true("without an area a box says so", editor.box())
    editor.desktop.keys("Return")
    editor.window(TITLE)
    before = [editor.desktop.color_at(editor.place()[0] + x, editor.place()[1] + 60) for x in (100, 300)]
    editor.drag_slowly((100, 60), (700, 500), lambda: editor.shot("cropping"))
    after = [editor.desktop.color_at(editor.place()[0] + x, editor.place()[1] + 60) for x in (100, 300)]
    check.true("the band is the picture inverted", [a ^ 0xFFFFFF for a in before] == after, (before, after))
    editor.shot("area")
    editor.press("crop")
    editor.wait_size(600, 440)
    editor.shot("cropped")


def compress(editor, check, program):
    jpeg = os.path.join(program.folder, "cvtemp.jpg")
    editor.fill("quality", "75")
    editor.press("compress")
    wait_for("the JPEG", lambda: os.path.isfile(jpeg) and os.path.getsize(jpeg) > 0)
    editor.settle()
    editor.shot("compressed")
    editor.press("undo")
    wait_for("Undo takes the JPEG away", lambda: not os.path.exists(jpeg))
    editor.press("compress")
    wait_for("the JPEG again", lambda: os.path.isfile(jpeg) and os.path.getsize(jpeg) > 0)
    check.true("the picture is still as large", editor.place()[2:] == (600, 440), editor.place())


def save(editor, check, program, folder):
    path = os.path.join(folder, "mountains")
    editor.press("save")
    wait_for("the picture's window hides", lambda: not editor.viewer())
    editor.file_dialog("Save AS JPG File", path)
    saved = path + ".jpg"
    wait_for("the saved file", lambda: os.path.isfile(saved))
    wait_for("the picture's window comes back", editor.viewer)
    editor.settle()
    with open(saved, "rb") as file, open(os.path.join(program.folder, "cvtemp.jpg"), "rb") as last:
        check.true("what was compressed is saved, byte for byte", file.read() == last.read())
    read = subprocess.run(["djpeg", "-ppm", saved], capture_output=True, check=False)
    check.true("the JPEG library's tool reads it", read.returncode == 0 and read.stderr == b"", read.stderr)
    check.true("in its size", read.stdout.startswith(b"P6\n600 440\n255\n"), read.stdout[:20])
    check.true("the picture stands above all again", editor.is_on_top())
    editor.shot("saved")
    editor.press("save")
    editor.file_dialog("Save AS JPG File", saved)
    check.true("a file that is there is asked about", editor.box())
    editor.shot("replace")
    editor.desktop.keys("Escape")
    wait_for("the picture's window comes back", editor.viewer)


def cancel_open(editor, check):
    editor.press("open")
    editor.file_dialog("Select Picture", None)
    editor.window(TITLE)
    check.true("after Cancel the picture stays out of the top layer", not editor.is_on_top())
    editor.desktop.click(FRAME[0] + 500, FRAME[1] + 36)
    check.true("but not behind the editor", editor.is_above(editor.viewer_id(), editor.editor))
    editor.shot("cancelled")
    editor.press("undo")
    check.true("after a save by copy there is nothing to undo", editor.box())
    editor.desktop.keys("Return")
    editor.window(TITLE)


def close(editor, check):
    editor.press("close image")
    wait_for("the picture's window goes", lambda: not editor.viewer())
    editor.settle()
    editor.shot("image-closed")
    editor.press("close")
    wait_for("the editor goes", lambda: hex(editor.editor) not in editor.desktop.windows())
    editor.closed()


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = PictureEditor(desktop, program, out)
        folder = desktop.path("pictures")
        os.makedirs(folder)
        photo = os.path.join(folder, "photo.jpg")
        make_photo(desktop, photo)
        program.start()
        try:
            open_editor(editor, check)
            open_photo(editor, check, photo)
            resize(editor, check)
            crop(editor, check)
            compress(editor, check, program)
            save(editor, check, program, folder)
            cancel_open(editor, check)
            close(editor, check)
        except BaseException:
            editor.shot("failed")
            raise
        check.true("the program ended well", program.exit_without_saving() == 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "pictures", play, ["convert", "djpeg", "xwininfo"]))
