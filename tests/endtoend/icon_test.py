"""The icon editor in the program itself, with mouse and keys: an icon drawn with each tool, undone, moved, saved,
opened, pasted over; once in plain pixels and once with two pixels for one.

Usage: icon_test.py --build FOLDER [--out FOLDER]
Pictures of every stage and the icons are left in the second folder, or in reports/icon_editor of the first. Skipped
with exit code 77 where there is no virtual display.
"""

import os
import shutil
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

CELL, SIDE = 7, 32
SEE_THROUGH = 0xE1E1E1
# Places in the window's content, in its own pixels.
AREA = (275, 63)
TOOLS = {"line": 44, "rectangle": 84, "solid rectangle": 124, "ellipse": 164, "solid ellipse": 204}
TOOLS_Y = 95
MOVES = {"right": 44, "down": 84, "left": 124, "up": 164}
MOVES_Y = 166
WIDTHS = {1: 229, 2: 251, 3: 273, 4: 295}
OPTION_X, BAR_X = 34, 140
UNDO, CLEAR = (559, 277), (559, 305)
TRANSPARENT = (38, 375)
COLORS_Y, FIRST_COLOR, COLOR_STEP = 375, 128, 30
COLORS = ["000000", "000080", "008000", "008080", "800000", "800080", "808000", "C0C0C0",
          "808080", "0000FF", "00FF00", "00FFFF", "FF0000", "FF00FF", "FFFF00", "FFFFFF"]


class IconEditor:
    """What a hand does in the icon editor; places are in the window's own pixels."""

    def __init__(self, desktop, program, out, scale):
        self.desktop, self.program, self.out, self.scale = desktop, program, out, scale
        self.stage = 0

    def open_window(self):
        self.desktop.keys("alt+t")
        self.desktop.settle(0.3)
        self.desktop.keys("i")
        self.window = wait_for("the icon editor", lambda: self.desktop.windows("Icon Editor"))[0]
        self.desktop.wait_active("the icon editor has the keys", lambda now: now == int(self.window, 16))
        self.desktop.settle(0.3)
        lines = self.desktop.ask("xdotool", "getwindowgeometry", "--shell", self.window).splitlines()
        place = dict(line.split("=") for line in lines)
        self.left, self.top = int(place["X"]), int(place["Y"])
        corner = wait_for("the rulers", lambda: self.rulers(int(place["WIDTH"]), int(place["HEIGHT"])))
        self.area = tuple(at + 8 * self.scale for at in corner)
        # Where the content begins, whatever the frame round it.
        self.left, self.top = (at - place * self.scale for at, place in zip(self.area, AREA))

    def rulers(self, width, height):
        """The corner of the rulers: a square whose first stripes stand a margin off."""
        margin, ground, stripe = 8 * self.scale, 0xD0D0D0, 0xD8D8D8
        for y in range(self.top, self.top + height - margin):
            for x in range(self.left, self.left + width - margin):
                if (self.desktop.color_at(x, y) == ground and self.desktop.color_at(x + margin, y) == stripe
                        and self.desktop.color_at(x, y + margin) == stripe):
                    return x, y
        return None

    def at(self, x, y):
        return self.left + x * self.scale, self.top + y * self.scale

    def click(self, place):
        self.desktop.click(*self.at(*place))
        self.desktop.settle(0.15)

    def use(self, tool, color=None, width=1):
        self.click((TOOLS[tool], TOOLS_Y))
        self.click((OPTION_X, WIDTHS[width]))
        if color is not None:
            self.click((FIRST_COLOR + COLOR_STEP * COLORS.index(color), COLORS_Y))

    def on_screen(self, cell):
        return tuple(self.area[axis] + (cell[axis] * CELL + 2) * self.scale for axis in (0, 1))

    def drag(self, start, end, hold=None):
        """A drag from cell to cell; what is to be seen while the button is down may be looked at."""
        begin, finish = self.on_screen(start), self.on_screen(end)
        self.desktop.call("xdotool", "mousemove", *map(str, begin), "mousedown", "1", "mousemove",
                          str((begin[0] + finish[0]) // 2), str((begin[1] + finish[1]) // 2), "mousemove",
                          *map(str, finish))
        if hold:
            self.desktop.settle(0.15)
            hold()
        self.desktop.call("xdotool", "mouseup", "1")
        self.desktop.settle(0.15)

    def cell(self, x, y):
        """The colour that is seen in the middle of a cell."""
        return self.desktop.color_at(*(self.area[axis] + (2 * place + 1) * CELL * self.scale // 2
                                       for axis, place in ((0, x), (1, y))))

    def cells(self):
        self.point_away()
        return {(x, y): self.cell(x, y) for y in range(SIDE) for x in range(SIDE)}

    def drawn(self):
        return {place for place, color in self.cells().items() if color != SEE_THROUGH}

    def point_away(self):
        """The pointer is part of what is seen."""
        self.desktop.call("xdotool", "mousemove", str(self.desktop.width - 2), str(self.desktop.height - 2))
        self.desktop.settle(0.15)

    def is_crisp(self):
        """Every cell is a block of one colour."""
        self.point_away()
        side = CELL * self.scale
        for y in range(SIDE):
            for x in range(SIDE):
                left, top = self.area[0] + x * side, self.area[1] + y * side
                if len({self.desktop.color_at(left + column, top + row)
                        for row in range(side) for column in range(side)}) != 1:
                    return False
        return True

    def shot(self, name):
        self.stage += 1
        self.desktop.settle(0.3)
        os.makedirs(self.out, exist_ok=True)
        self.desktop.call("import", "-window", self.window, os.path.join(self.out, "%02d-%s.png" % (self.stage, name)))

    def menu(self, head, entry):
        self.desktop.keys("alt+" + head)
        self.desktop.settle(0.2)
        self.desktop.keys(entry)

    def choose_file(self, title, path):
        self.desktop.wait_active(title, lambda now: self.desktop.title(str(now)) == title)
        self.desktop.settle(0.3)
        self.desktop.call("xdotool", "type", "--delay", "30", path)
        self.desktop.keys("Return")

    def title(self):
        return self.desktop.title(self.window)


def box(left, top, right, bottom):
    return {(x, y) for y in range(top, bottom + 1) for x in range(left, right + 1)}


def opaque(data):
    """Places that an icon file shows."""
    return {(x, y) for y in range(SIDE) for x in range(SIDE)
            if not data[638 + (SIDE - 1 - y) * 4 + x // 8] >> (7 - x % 8) & 1}


def draw_with_each_tool(editor, check):
    check.true("the work area starts blank", not editor.drawn())
    editor.use("line", "FF0000")
    editor.drag((2, 2), (12, 2), hold=lambda: editor.shot("rubber-line"))
    check.true("a line", editor.drawn() == box(2, 2, 12, 2), sorted(editor.drawn()))
    editor.shot("line")
    editor.use("rectangle", "0000FF")
    editor.drag((2, 5), (12, 14))
    check.true("an outline rectangle", editor.drawn() == box(2, 2, 12, 2) | box(2, 5, 12, 14) - box(3, 6, 11, 13),
               sorted(editor.drawn()))
    editor.shot("rectangle")
    editor.use("solid rectangle", "FFFF00")
    editor.drag((16, 2), (29, 10))
    check.true("a solid rectangle", box(16, 2, 29, 10) <= editor.drawn())
    editor.shot("solid-rectangle")
    editor.use("ellipse", "800080", 2)
    editor.drag((2, 17), (14, 29))
    drawn = editor.drawn()
    check.true("an outline ellipse", (8, 17) in drawn and (2, 23) in drawn and (8, 23) not in drawn)
    editor.shot("ellipse")
    editor.use("solid ellipse", "008000")
    editor.drag((17, 14), (30, 29))
    drawn = editor.drawn()
    check.true("a solid ellipse", (23, 21) in drawn and (17, 21) in drawn and (17, 14) not in drawn)
    editor.shot("solid-ellipse")
    editor.click((BAR_X, WIDTHS[4]))
    editor.click(TRANSPARENT)
    editor.drag((23, 21), (23, 21))
    check.true("a see-through hole", (23, 21) not in editor.drawn() and (22, 20) not in editor.drawn())
    editor.shot("hole")
    check.true("the cells are crisp", editor.is_crisp())


def undo_and_move(editor, check):
    with_hole = editor.cells()
    editor.click(UNDO)
    before = editor.cells()
    check.true("undo brings the hole's place back", before[(23, 21)] == 0x008000, hex(before[(23, 21)]))
    check.true("and nothing else changes", {place for place in before if before[place] != with_hole[place]}
               <= box(20, 18, 26, 24))
    editor.click(UNDO)
    check.true("a second undo does nothing", editor.cells() == before)
    editor.click((MOVES["right"], MOVES_Y))
    editor.click((MOVES["down"], MOVES_Y))
    moved = editor.cells()
    check.true("moved right and down", all(moved[(x + 1, y + 1)] == color for (x, y), color in before.items()
                                           if x < SIDE - 1 and y < SIDE - 1))
    editor.shot("moved")
    editor.click((MOVES["left"], MOVES_Y))
    editor.click((MOVES["up"], MOVES_Y))
    check.true("and back", {place: color for place, color in editor.cells().items() if max(place) < SIDE - 1}
               == {place: color for place, color in before.items() if max(place) < SIDE - 1})


def save_and_open(editor, check, folder):
    path = os.path.join(folder, "drawn.ico")
    drawn, shown = editor.drawn(), editor.cells()
    editor.menu("f", "s")
    editor.choose_file("Save Icon", path)
    data = wait_for("the icon is saved", lambda: (lambda now: now and len(now) == 766 and now)(read(path)))
    check.true("the file shows what was drawn", opaque(data) == drawn)
    wait_for("the title has the file's name", lambda: editor.title() == "Icon Editor - " + path)
    shutil.copy(path, editor.out)
    editor.click(CLEAR)
    check.true("Clear blanks the area", not editor.drawn())
    wait_for("the title", lambda: editor.title() == "Icon Editor")
    editor.menu("f", "o")
    editor.choose_file("Select Picture", path)
    wait_for("the title", lambda: editor.title() == "Icon Editor - " + path)
    editor.desktop.settle(0.3)
    check.true("the icon is back, white where it is see-through",
               editor.cells() == {place: color if place in drawn else 0xFFFFFF for place, color in shown.items()})
    editor.shot("opened")
    os.remove(path)
    editor.desktop.wait_active("the icon editor has the keys", lambda now: now == int(editor.window, 16))
    editor.menu("f", "a")
    editor.choose_file("Save Icon", path)
    again = wait_for("the icon is saved again", lambda: (lambda now: now and len(now) == 766 and now)(read(path)))
    check.true("what was opened is saved as it was", again == data)


def replace_question(editor, check, folder):
    path = os.path.join(folder, "drawn.ico")
    before = read(path)
    editor.desktop.wait_active("the icon editor has the keys", lambda now: now == int(editor.window, 16))
    editor.click(CLEAR)
    editor.menu("f", "a")
    editor.choose_file("Save Icon", path)
    editor.desktop.wait_active("the question", lambda now: editor.desktop.title(str(now)) == "Corvane")
    editor.desktop.settle(0.3)
    editor.desktop.keys("alt+n")
    editor.desktop.wait_active("the icon editor has the keys", lambda now: now == int(editor.window, 16))
    check.true("No leaves the file", read(path) == before)


def paste(editor, check, build, folder):
    picture = os.path.join(folder, "clip.png")
    editor.desktop.call("convert", "-size", "12x9", "xc:#0000FF", picture)
    with open(os.path.join(folder, "offer.log"), "wb") as log:
        offer = editor.desktop.start([os.path.join(build, "bin", "icon_tool"), "offer", picture], stdout=log)
    wait_for("the picture is offered", lambda: read(os.path.join(folder, "offer.log")))
    editor.menu("e", "p")
    wait_for("the picture is pasted", lambda: editor.cell(0, 0) == 0x0000FF)
    editor.point_away()
    check.true("beside it the work area is white", editor.cell(20, 20) == 0xFFFFFF, hex(editor.cell(20, 20)))
    check.true("the clipboard has been emptied", wait_for("the offer is over", lambda: offer.poll() is not None))
    editor.shot("pasted")
    editor.click(UNDO)
    check.true("undo takes the paste back", not editor.drawn())


def play(build, out, scale, check):
    size = (1280, 1024) if scale == 1 else (2560, 1600)
    with Desktop(*size) as desktop:
        desktop.environment["QT_SCALE_FACTOR"] = str(scale)
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = IconEditor(desktop, program, os.path.join(out, "scale-%d" % scale), scale)
        program.start()
        desktop.settle(0.5)
        folder = desktop.path("icons")
        os.makedirs(folder)
        editor.open_window()
        try:
            draw_with_each_tool(editor, check)
            undo_and_move(editor, check)
            if scale == 1:
                save_and_open(editor, check, folder)
                replace_question(editor, check, folder)
                paste(editor, check, build, folder)
        except BaseException:
            editor.shot("failed")
            raise
        editor.menu("f", "x")
        wait_for("the window goes", lambda: not desktop.windows("Icon Editor"))
        desktop.wait_active("the main window has the keys", lambda now: now == program.window)
        check.true("the program ended well", program.exit_without_saving() == 0)


def at_both_scales(build, out, check):
    for scale in (1, 2):
        play(build, out, scale, check)


if __name__ == "__main__":
    sys.exit(run(__doc__, "icon_editor", at_both_scales, ["convert"]))
