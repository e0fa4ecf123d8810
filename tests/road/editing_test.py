"""A page made the way a person makes it, in the program itself with mouse and keys: text blocks, a bold word, a link,
pictures of three kinds, a table, a background, moves, and the source.

Usage: editing_test.py --build FOLDER [--out FOLDER]
Pictures of every stage and the page's folder are left in the second folder, or in reports/editing of the first.
Skipped with exit code 77 where there is no virtual display.
"""

import os
import re
import shutil
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from road import Editor, png, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, wait_for  # noqa: E402


def text_blocks(editor, check):
    program = editor.program
    program.click_into_page(600, 300)
    editor.type("first words")
    editor.desktop.keys("Return")
    editor.type("second line")
    check.true("the typed text", editor.page().startswith("first words<br />second line"), editor.page())
    editor.drag((8, 106), (95, 106))
    editor.list_entry(986, 73, 4)  # Courier New
    body = editor.page()
    check.true("the first line has its face", '<font face="Courier New">first words</font>' in body, body)
    editor.list_entry(1090, 73, 4)  # 5
    check.true("and its size, being still selected",
               '<font face="Courier New" size="5">first words</font>' in editor.page(), editor.page())
    editor.shot("face-and-size")


def colour(editor, check, color):
    """The colour dialog, by its own field for the colour's text."""
    editor.desktop.click(1144, 73)
    dialog = wait_for("the colour dialog", lambda: [one for one in editor.desktop.windows("Select Color")], 20)[0]
    editor.settle()
    editor.shot("colour-dialog")
    editor.desktop.keys("alt+h")
    editor.desktop.keys("ctrl+a")
    editor.type(color)
    editor.desktop.keys("Return")
    wait_for("the colour dialog closes", lambda: dialog not in editor.desktop.windows())
    body = editor.page()
    check.true("the selected text has the colour", 'color="%s"' % color.upper() in body, body)


def second_line(editor):
    return wait_for("the second line", lambda: editor.desktop.find_color(0x000000, 6, 120, 100, 160))[1] + 4


def bold_and_link(editor, check):
    """A word of the second line bold, another one a link."""
    y = second_line(editor)
    editor.double_click(300, 500)  # nothing is selected any more
    editor.drag((8, y), (58, y))
    editor.desktop.click(1237, 73)
    body = editor.page()
    check.true("the word is bold", re.search(r"<b>sec[\w ]*</b>", body) is not None, body)
    editor.drag((68, y), (110, y))
    editor.press("link")
    editor.window("Create Link")
    editor.type("example.org/")
    editor.desktop.keys("Return")
    editor.closed()
    body = editor.page()
    check.true("a word is a link", re.search(r'<a href="[^"]*example\.org/">', body) is not None, body)
    editor.shot("bold-and-link")


def second_block(editor, check):
    """Another face and colour for a word of the second line."""
    editor.drag((8, second_line(editor)), (58, second_line(editor)))
    editor.list_entry(986, 73, 5)  # Tahoma
    colour(editor, check, "#008800")
    body = editor.page()
    check.true("two blocks in different fonts and colours",
               re.search(r'<font face="Tahoma" color="#008800">(<b>)?sec', body) is not None
               and 'face="Courier New" size="5" color="#CC0000"' in body, body)
    editor.shot("two-blocks")


def pictures(editor, check, folder):
    files = {"pic one.gif": None, "pic.jpg": None, "pic.png": png(60, 40, (0, 120, 60))}
    for name, data in files.items():
        path = os.path.join(folder, name)
        if data:
            with open(path, "wb") as file:
                file.write(data)
        else:
            editor.desktop.call("convert", "-size", "70x50", "xc:orange" if "gif" in name else "xc:steelblue", path)
    editor.program.click_into_page(600, 400)
    for name in files:
        editor.press("picture")
        editor.choose_file(os.path.join(folder, name))
        if not name.endswith("png"):
            editor.window("View Image")
            editor.shot("view-image")
            editor.desktop.keys("Return")
            editor.closed()
        body = editor.page()
        check.true("%s is in the page" % name, 'src="%s"' % name.replace(" ", "_") in body, body)
        check.true("%s lies beside the page" % name,
                   os.path.isfile(editor.program.card(name.replace(" ", "_"))), os.listdir(editor.program.card("")))
    check.true("a GIF has its sizes", re.search(r'<img src="pic_one.gif" width="70" height="50" />', body) is not None,
               body)
    check.true("a PNG has none", '<img src="pic.png" />' in body, body)
    editor.shot("pictures")


def table(editor, check):
    editor.press("table")
    editor.window("Tables")
    editor.settle()
    editor.type("300")
    editor.desktop.keys("Tab")
    editor.type("80")
    editor.shot("table-panel")
    editor.desktop.keys("Return")
    editor.closed()
    body = editor.page()
    check.true("the table stands at the end", re.search(r'<table align="Left" width="300" height="80" border="0" '
                                                        r'bgcolor="#E0E0E0" cellpadding="0">', body) is not None, body)
    editor.settle()
    editor.shot("table")


def fill_table(editor, check, folder):
    """Text and a picture into the table's cell; the cell holds a text block, so a click anywhere in it will do."""
    cell = wait_for("the table", lambda: editor.desktop.find_color(0xE0E0E0, 6, 90, 300, 300))
    editor.desktop.click(cell[0] + 200, cell[1] + 40)
    editor.settle()
    editor.type("in a cell")
    editor.press("picture")
    editor.choose_file(os.path.join(folder, "pic.png"))
    body = editor.page()
    check.true("text and picture are in the cell",
               re.search(r'<td [^>]*><font [^>]*>(&nbsp;)?in a cell(&nbsp;)?</font><img src="pic.png" /></td>', body) is not None,
               body)
    editor.shot("filled-table")


def switch(editor, check):
    """The first text block changes places with the next one and comes back."""
    before = editor.page()
    editor.double_click(30, 108)
    editor.press("forward")
    body = editor.page()
    check.true("the block has gone behind the next one", not body.startswith("<font") and ">first words</font>" in body,
               body)
    editor.shot("forward")
    word = wait_for("the block elsewhere", lambda: editor.desktop.find_color(0xCC0000, 4, 90, 700, 400))
    editor.double_click(word[0] + 2, word[1] + 5)
    editor.press("back")
    body = editor.page()
    check.true("and has gone back over the picture", body.index(">first words<") < body.index("pic_one.gif"), body)
    check.true("nothing is lost", len(editor.page()) == len(before), editor.page())


def properties(editor, check, folder):
    editor.press("props")
    editor.window("Page Properties")
    editor.settle()
    editor.type("My page")
    editor.desktop.keys("Tab", "space")
    # From the title's OK over the two colours to Browse.
    editor.desktop.keys("Tab", "Tab", "Tab")
    editor.shot("page-properties")
    editor.desktop.keys("space")
    editor.choose_file(os.path.join(folder, "pic.png"))
    editor.window("Page Properties")
    editor.desktop.keys("Escape")
    editor.closed()
    editor.shot("background")
    page = editor.whole_page()
    check.true("the page has its background", 'background="pic.png"' in page, page[:300])
    check.true("the page has its title", "<title>My page</title>" in page, page[:200])


def moves(editor, check):
    """The first text block is double clicked, moved by spaces and lines, and back."""
    editor.double_click(30, 108)
    editor.press("right")
    editor.press("down")
    body = editor.page()
    check.true("a space and a line before the block", body.startswith("&nbsp;<br /><font"), body[:80])
    editor.press("up")
    editor.press("left")
    body = editor.page()
    check.true("both are taken back", body.startswith("<font"), body[:80])
    editor.shot("moved")


def source(editor, check):
    editor.desktop.keys("alt+v")
    editor.settle()
    editor.desktop.keys("s")
    editor.window("Page Source")
    editor.settle()
    editor.shot("source")
    editor.desktop.keys("ctrl+Home")
    editor.desktop.keys("ctrl+a")
    editor.type("<html><head><title>n</title></head><body><font size=4>new source</font></body></html>")
    editor.shot("source-changed")
    editor.desktop.keys("Tab", "Tab", "space")
    wait_for("the page is written", lambda: b"new source" in open(editor.program.card("wgcard.html"), "rb").read())
    editor.settle()
    editor.shot("source-shown")
    editor.desktop.keys("shift+Tab", "space")
    editor.closed()
    editor.shot("source-closed")


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = Editor(desktop, program, out)
        program.start()
        folder = desktop.path("pictures")
        os.makedirs(folder)
        try:
            text_blocks(editor, check)
            colour(editor, check, "#cc0000")
            bold_and_link(editor, check)
            second_block(editor, check)
            pictures(editor, check, folder)
            table(editor, check)
            fill_table(editor, check, folder)
            moves(editor, check)
            switch(editor, check)
            properties(editor, check, folder)
            shutil.copytree(program.card(""), os.path.join(out, "page"))
            source(editor, check)
        except BaseException:
            editor.shot("failed")
            raise
        check.true("the program ended well", program.exit_without_saving() == 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "editing", play, ["convert"]))
