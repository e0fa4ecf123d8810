"""A page made the way a person makes it, in the program itself with mouse and keys: text blocks, a bold word, a link,
pictures of three kinds, a table, a background, moves, and the source; and typing in a page from elsewhere.

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
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402


HEAD = ('<html><head><title>My page</title></head><body bgcolor="#FFFFFF" text="#000000" link="#0000FF" vlink="#0000FF"'
        ' background="pic.png" style="font-size: small; font-family: Arial, Helvetica;">')
TABLE = ('<table align="Left" width="300" height="80" border="0" bgcolor="#E0E0E0" cellpadding="0"><tbody><tr>'
         '<td align="Left" valign="Top"><font face="Arial, Helvetica" size="3" color="#000000">%s</font>%s</td></tr>'
         "</tbody></table>")
FOREIGN = b"<!DOCTYPE html>\n<html><head><title>n</title></head><body>\nhello\n</body></html>"
SOURCE = "<html><head><title>n</title></head><body><font size=4>new source</font></body></html>"


def without_tags(body):
    return re.sub("<[^>]*>", "", body)


def text_blocks(editor, check):
    program = editor.program
    program.click_into_page(600, 300)
    editor.type("first words")
    editor.desktop.keys("Return")
    editor.type("second line")
    # A Return leaves a blank behind what is typed then.
    check.same("the typed text", editor.page(), "first words<br />second line&nbsp;")
    editor.drag((8, 106), (95, 106))
    editor.list_entry(986, 73, 4)  # Courier New
    check.same("the first line has its face", editor.page(),
               '<font face="Courier New">first words</font><br />second line&nbsp;')
    editor.list_entry(1090, 73, 4)  # 5
    check.same("and its size, being still selected", editor.page(),
               '<font face="Courier New" size="5">first words</font><br />second line&nbsp;')
    editor.shot("face-and-size")


def colour(editor, color):
    """The colour dialog, by its own field for the colour's text; gives the page behind it."""
    editor.desktop.click(1144, 73)
    dialog = wait_for("the colour dialog", lambda: [one for one in editor.desktop.windows("Select Color")], 20)[0]
    editor.settle()
    editor.shot("colour-dialog")
    editor.desktop.keys("alt+h")
    editor.desktop.keys("ctrl+a")
    editor.type(color)
    editor.desktop.keys("Return")
    wait_for("the colour dialog closes", lambda: dialog not in editor.desktop.windows())
    return editor.page()


def second_line(editor):
    return wait_for("the second line", lambda: editor.desktop.find_color(0x000000, 6, 120, 100, 160))[1] + 4


def bold_and_link(editor, check):
    """A word of the second line bold, another one a link."""
    y = second_line(editor)
    editor.double_click(300, 500)  # nothing is selected any more
    editor.drag((8, y), (58, y))
    editor.desktop.click(1237, 73)
    # How many letters lie below a drag, the fonts of the machine decide.
    block = '<font face="Courier New" size="5" color="#CC0000">first words</font><br />'
    text = "first wordssecond line&nbsp;"
    body = editor.page()
    check.true("the word is bold", re.fullmatch(block + r"<b>sec[\w ]*</b>[\w ]*&nbsp;", body) is not None
               and without_tags(body) == text, body)
    editor.drag((68, y), (110, y))
    editor.press("link")
    editor.window("Create Link")
    editor.type("example.org/")
    editor.desktop.keys("Return")
    editor.closed()
    body = editor.page()
    linked = block + r'<b>sec[\w ]*</b>[\w ]*<a href="http://example\.org/">[\w ]+(&nbsp;)?</a>[\w ]*(&nbsp;)?'
    check.true("a word is a link", re.fullmatch(linked, body) is not None and without_tags(body) == text, body)
    editor.shot("bold-and-link")


def second_block(editor, check):
    """Another face and colour for a word of the second line."""
    editor.drag((8, second_line(editor)), (58, second_line(editor)))
    editor.list_entry(986, 73, 5)  # Tahoma
    before = editor.page()
    body = colour(editor, "#008800")
    check.same("the face first", before.replace('<font face="Tahoma">', ""), body.replace(
        '<font face="Tahoma" color="#008800">', ""))
    check.same("two blocks in different fonts and colours, and no others", re.findall("<font[^>]*>", body),
               ['<font face="Courier New" size="5" color="#CC0000">', '<font face="Tahoma" color="#008800">'])
    check.same("the text is that of before", without_tags(body), "first wordssecond line&nbsp;")
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
    body = editor.page()
    there = ["wgcard.html"]
    for name in files:
        editor.press("picture")
        editor.choose_file(os.path.join(folder, name))
        if not name.endswith("png"):
            editor.window("View Image")
            editor.shot("view-image")
            editor.desktop.keys("Return")
            editor.closed()
        # Only a PNG isn't measured.
        size = "" if name.endswith("png") else ' width="70" height="50"'
        body += '<img src="%s"%s />' % (name.replace(" ", "_"), size)
        check.same("%s is in the page" % name, editor.page(), body)
        there.append(name.replace(" ", "_"))
        check.same("%s lies beside the page" % name, sorted(os.listdir(editor.program.card(""))), sorted(there))
        check.same("and is whole", read(editor.program.card(there[-1])), read(os.path.join(folder, name)))
    editor.shot("pictures")


def table(editor, check):
    before = editor.page()
    editor.press("table")
    editor.window("Tables")
    editor.settle()
    editor.type("300")
    editor.desktop.keys("Tab")
    editor.type("80")
    editor.shot("table-panel")
    editor.desktop.keys("Return")
    editor.closed()
    check.same("the table stands at the end", editor.page(), before + TABLE % ("&nbsp;", ""))
    editor.settle()
    editor.shot("table")


def fill_table(editor, check, folder):
    """Text and a picture into the table's cell; the cell holds a text block, so a click anywhere in it will do."""
    before = editor.page()
    cell = wait_for("the table", lambda: editor.desktop.find_color(0xE0E0E0, 6, 90, 300, 300))
    editor.desktop.click(cell[0] + 200, cell[1] + 40)
    editor.settle()
    editor.type("in a cell")
    editor.press("picture")
    editor.choose_file(os.path.join(folder, "pic.png"))
    body = editor.page()
    around = before[:-len(TABLE % ("&nbsp;", ""))]
    check.true("text and picture are in the cell", body in [
        around + TABLE % (text, '<img src="pic.png" />') for text in ("&nbsp;in a cell", "in a cell&nbsp;")], body)
    editor.shot("filled-table")


def switch(editor, check):
    """The first text block changes places with the next one and comes back."""
    before = editor.page()
    editor.double_click(30, 108)
    editor.press("forward")
    block, neighbour = re.findall("<font[^>]*>[^<]*</font>", before)[:2]
    check.same("the block has gone behind the next one", editor.page(),
               before.replace(block, "").replace(neighbour, neighbour + block))
    editor.shot("forward")
    word = wait_for("the block elsewhere", lambda: editor.desktop.find_color(0xCC0000, 4, 90, 700, 400))
    editor.double_click(word[0] + 2, word[1] + 5)
    editor.press("back")
    check.same("and has gone back before it", editor.page(),
               before.replace(block, "").replace(neighbour, block + neighbour))


def popups(editor, check):
    """A right click's menu cuts the selected block, and the menu of the Paste button puts it at the end of the page."""
    desktop = editor.desktop
    before = editor.page()
    block = re.findall("<font[^>]*>[^<]*</font>", before)[0]
    word = wait_for("the block", lambda: desktop.find_color(0xCC0000, 4, 90, 700, 400))
    editor.double_click(word[0] + 2, word[1] + 5)

    def opened(x, y, button):
        """Left, top, right and bottom of what a click brings up."""
        desktop.call("xdotool", "mousemove", str(x), str(y))
        editor.settle(0.6)
        bare = [desktop.row(line) for line in range(desktop.height)]
        desktop.call("xdotool", "click", str(button))
        editor.settle(0.6)
        lines = [line for line in range(desktop.height) if desktop.row(line) != bare[line]]
        columns = {at // 4 for line in lines for at in range(0, 4 * desktop.width, 4)
                   if desktop.row(line)[at:at + 3] != bare[line][at:at + 3]}
        return (min(columns), lines[0], max(columns), lines[-1]) if lines else None

    place = opened(500, 400, 3)
    editor.shot("right-click")
    check.true("a right click's menu is centred under the mouse", place is not None
               and abs((place[0] + place[2]) / 2 - 500) <= 2 and abs(place[1] - 400) <= 1, place)
    desktop.keys("t")
    check.same("it cuts the selected block", editor.page(), before.replace(block, ""))
    editor.program.click_into_page(600, 600)
    x, y = editor.BUTTONS["paste"]
    place = opened(editor.WORK[0] + x, editor.WORK[1] + y, 1)
    editor.shot("paste-menu")
    check.true("the Paste button's menu comes up", place is not None and place[3] - place[1] > 40, place)
    desktop.keys("e")
    check.same("it pastes the block at the end", editor.page(), before.replace(block, "") + block)


def properties(editor, check, folder):
    body = editor.page()
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
    check.same("the page has its background and its title", page, HEAD + body + "</body></html>")


def moves(editor, check):
    """The first text block is double clicked, moved by spaces and lines, and back."""
    before = editor.page()
    editor.double_click(30, 108)
    editor.press("right")
    editor.press("down")
    check.same("a space and a line before the block", editor.page(), "&nbsp;<br />" + before)
    editor.press("up")
    editor.press("left")
    check.same("both are taken back", editor.page(), before)
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
    editor.type(SOURCE)
    editor.shot("source-changed")
    editor.desktop.keys("Tab", "Tab", "space")
    wait_for("the page is written", lambda: b"new source" in open(editor.program.card("wgcard.html"), "rb").read())
    editor.settle()
    check.same("the page is what was typed", read(editor.program.card("wgcard.html")), SOURCE.encode("ascii"))
    editor.shot("source-shown")
    editor.desktop.keys("shift+Tab", "space")
    editor.closed()
    editor.shot("source-closed")


def foreign_page(editor, check, folder):
    """A page made by somebody else: a line end stands behind its text, and BODY has no colours."""
    path = os.path.join(folder, "foreign.html")
    with open(path, "wb") as file:
        file.write(FOREIGN)
    editor.menu("f", "o")
    editor.choose_file(path, "Select HTML file")
    wait_for("the page comes", lambda: os.path.isfile(editor.program.card("Page2.html")))
    editor.program.click_into_page(600, 300)
    editor.desktop.keys("space")
    check.same("a blank is typed behind the text", editor.page(2), "\nhello \n")
    editor.desktop.keys("BackSpace")
    check.same("a Backspace takes just the blank", editor.page(2), "\nhello\n")
    editor.desktop.keys("BackSpace")
    check.same("and the next one a letter", editor.page(2), "\nhell\n")
    editor.type("o")
    editor.drag((7, 103), (60, 103))
    editor.menu("e", "w", "t")
    check.same("the selected text is a block", editor.page(2), '\n<font color="#000000">hello</font>\n')
    editor.shot("foreign-page")


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = Editor(desktop, program, out)
        program.start()
        folder = desktop.path("pictures")
        os.makedirs(folder)
        try:
            text_blocks(editor, check)
            check.same("the selected text has the colour", colour(editor, "#cc0000"),
                       '<font face="Courier New" size="5" color="#CC0000">first words</font><br />second line&nbsp;')
            bold_and_link(editor, check)
            second_block(editor, check)
            pictures(editor, check, folder)
            table(editor, check)
            fill_table(editor, check, folder)
            moves(editor, check)
            switch(editor, check)
            popups(editor, check)
            properties(editor, check, folder)
            shutil.copytree(program.card(""), os.path.join(out, "page"))
            source(editor, check)
            foreign_page(editor, check, folder)
        except BaseException:
            editor.shot("failed")
            raise
        check.true("the program ended well", program.exit_without_saving() == 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "editing", play, ["convert"]))
