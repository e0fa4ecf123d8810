"""The guided tour: the whole road from an empty page to three recipients, in the program itself with mouse and keys. A
photo is made ready, a page gets theme, text, photo, table and link, a project keeps it, an icon is drawn, a web-pack
with that icon is opened under wine, and an email arrives at a mail server.

Usage: tour_test.py --build FOLDER [--out FOLDER]
Named pictures of every stage and the products are left in the second folder, or in reports/tour of the first. Where
there is no wine or no mail port, that stop of the tour is left out and told. Skipped with exit code 77 where there is
no virtual display.
"""

import os
import shutil
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
HOUSE = os.path.normpath(os.path.join(HERE, "..", ".."))
sys.path[:0] = [HERE] + [os.path.join(HOUSE, "tests", folder) for folder in ("support", "email")]
import email_test  # noqa: E402
import icon_test  # noqa: E402
import mail_messages  # noqa: E402
import mail_servers  # noqa: E402
import picture_test  # noqa: E402
import road_test  # noqa: E402
from road import Editor, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

PROJECT = "Our trip"
ICON_PLACE = 0x124B0
# Places in the settings window, in pixels.
SETTINGS = {"icons": (318, 21), "custom icons": (365, 402), "browse": (226, 203), "add": (351, 203),
            "first icon": (99, 250), "use": (286, 404), "ok": (390, 404), "custom": (208, 223), "apply": (252, 402)}


def photo(editor, check, folder):
    """Opened, made smaller, cropped, compressed and saved in the picture editor; gives the path."""
    hand = picture_test.PictureEditor(editor.desktop, editor.program, editor.pictures)
    hand.stage = editor.stage
    raw = os.path.join(folder, "camera.jpg")
    picture_test.make_photo(editor.desktop, raw)
    editor.menu("t", "e")
    hand.editor = hand.window(picture_test.TITLE)
    hand.press("open")
    hand.file_dialog("Select Picture", raw)
    wait_for("the picture's window", hand.viewer)
    hand.fill("percent", "35")
    hand.press("resize")
    hand.wait_size(560, 385)
    hand.drag_slowly((60, 40), (500, 330), lambda: hand.shot("photo-cropping"))
    hand.press("crop")
    hand.wait_size(440, 290)
    hand.fill("quality", "80")
    hand.press("compress")
    wait_for("the JPEG", lambda: read(os.path.join(editor.program.folder, "cvtemp.jpg")))
    hand.settle(0.6)
    hand.shot("photo-compressed")
    path = os.path.join(folder, "mountains.jpg")
    hand.press("save")
    hand.file_dialog("Save AS JPG File", path)
    wait_for("the photo is saved", lambda: read(path))
    hand.press("close")
    editor.closed()
    editor.stage = hand.stage
    check.true("the photo is smaller than it was", os.path.getsize(path) < os.path.getsize(raw) // 4)
    return path


def page(editor, check, picture):
    """Theme, heading, photo, table and link."""
    desktop = editor.desktop
    editor.menu("h", "Up", "Right", "Return")  # Stationery, Parchment
    editor.program.click_into_page(600, 300)
    editor.type("a day in the mountains")
    desktop.keys("Return")
    editor.type("greetings from all of us, more on the web")
    editor.drag((8, 106), (165, 106))
    editor.list_entry(986, 73, 5)
    editor.list_entry(1090, 73, 5)
    editor.shot("page-heading")
    body = editor.page()
    check.true("the heading is a text block of its own", '<font face="Tahoma" size="6">' in body, body)
    line = wait_for("the second line", lambda: desktop.find_color(0x3D0264, 6, 140, 60, 200))[1] + 4
    desktop.click(600, 500)
    editor.drag((257, line), (284, line))
    editor.press("link")
    editor.window("Create Link")
    editor.type("example.org/trip")
    desktop.keys("Return")
    editor.closed()
    editor.program.click_into_page(600, 500)
    desktop.keys("Return")
    editor.press("picture")
    editor.choose_file(picture)
    editor.window("View Image")
    editor.shot("page-picture")
    desktop.keys("Return")
    editor.closed()
    editor.press("table")
    editor.window("Tables")
    editor.settle()
    editor.type("420")
    desktop.keys("Tab")
    editor.type("50")
    editor.shot("page-table")
    desktop.keys("Return")
    editor.closed()
    editor.settle(0.6)
    cell = wait_for("the table", lambda: desktop.find_color(0xE0E0E0, 6, 90, 500, 700))
    desktop.click(cell[0] + 200, cell[1] + 25)
    editor.settle()
    editor.type("see you soon")
    whole = editor.whole_page()
    editor.shot("page")
    for what, piece in (("its theme", 'background="parchment.jpg"'), ("its photo", 'src="mountains.jpg"'),
                        ("its table", "see you soon"), ("its link", 'href="http://example.org/trip"')):
        check.true("the page has " + what, piece in whole or piece.replace("http://", "") in whole, whole)


def project(editor, check):
    """A second page, and both kept."""
    editor.menu("p", "n")
    editor.program.click_into_page(600, 300)
    editor.type("and this is page two")
    editor.page(2)
    editor.menu("r", "s")
    editor.window("Save Project")
    editor.type(PROJECT)
    editor.shot("project")
    editor.desktop.keys("Return")
    wait_for("the caption names the project",
             lambda: editor.desktop.title(str(editor.program.window)) == "Corvane - " + PROJECT)
    saved = os.path.join(editor.program.folder, "saved", PROJECT)
    check.same("the project has all its files", sorted(os.listdir(saved)),
               ["Page2.html", "mountains.jpg", "parchment.jpg", "wgcard.html"])
    return saved


def icon(editor, check, folder):
    """Drawn, saved, and chosen for web-packs in the settings window."""
    desktop = editor.desktop
    hand = icon_test.IconEditor(desktop, editor.program, editor.pictures, 1)
    hand.open_window()
    hand.use("solid ellipse", "FFFF00")
    hand.drag((3, 3), (28, 28))
    hand.use("ellipse", "0000FF", 2)
    hand.drag((3, 3), (28, 28))
    hand.use("solid rectangle", "0000FF")
    hand.drag((10, 10), (12, 14))
    hand.drag((19, 10), (21, 14))
    hand.use("line", "FF0000", 2)
    hand.drag((10, 20), (21, 20))
    editor.shot("icon")
    hand.menu("f", "a")
    path = os.path.join(folder, "smile.ico")
    hand.choose_file("Save Icon", path)
    data = wait_for("the icon is saved", lambda: (lambda now: now and len(now) == 766 and now)(read(path)))
    desktop.wait_active("the icon editor has the keys", lambda now: now == int(hand.window, 16))
    hand.menu("f", "x")
    editor.closed()
    assign_icon(editor, path)
    check.true("an icon of 766 bytes", len(data) == 766)
    return path


def assign_icon(editor, path):
    """In the settings window: added to the custom icons, used, and chosen."""
    desktop = editor.desktop
    editor.menu("t", "s")
    window = editor.window("Settings")
    editor.settle()
    left, top = editor.corner(window)

    def press(name):
        x, y = SETTINGS[name]
        desktop.click(left + x, top + y)
        editor.settle()
    press("icons")
    press("custom icons")
    press("browse")
    editor.choose_file(path, "Select Icon File")
    editor.window("Settings")
    press("add")
    press("first icon")
    press("use")
    desktop.wait_active("the icon is taken", lambda now: desktop.title(str(now)) == "Corvane")
    desktop.keys("Return")
    editor.window("Settings")
    press("ok")
    press("custom")
    press("apply")
    editor.shot("icon-chosen")
    desktop.keys("Escape")
    editor.closed()


def pack(editor, build, check, icon_file):
    """Gives the web-pack, and the folder that wine unpacked it into or None."""
    program, desktop = editor.program, editor.desktop
    made = road_test.make_pack(desktop, program, check, editor.pictures)
    check.same("it has the icon that was drawn", read(made)[ICON_PLACE:ICON_PLACE + 744], read(icon_file)[22:])
    return made, road_test.run_pack(desktop, build, made, check)


def mail(editor, check):
    """Gives the message as the server has it; None where the machine has no mail port."""
    reason = email_test.refusal()
    if reason:
        print("left out, the email:", reason)
        return None
    with mail_servers.LoginServer() as server:
        email_test.open_panel(editor)
        email_test.fill_panel(editor, server)
        editor.desktop.keys("space")
        raw = email_test.arrived(server, 1)
        editor.shot("email-sent")
        email_test.close_panel(editor)
    saved = os.path.join(editor.program.folder, "saved", PROJECT)
    pictures = {name: read(os.path.join(saved, name)) for name in ("mountains.jpg", "parchment.jpg")}
    found = mail_messages.problems(raw, read(os.path.join(saved, "wgcard.html")), pictures)
    check.true("the message arrives whole, with both pictures", found == [], found)
    return raw


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        shutil.copytree(os.path.join(build, "bin", "samples"), os.path.join(program.folder, "samples"))
        shutil.copy(os.path.join(build, "bin", "cvn2.hlp"), program.folder)
        editor = Editor(desktop, program, out)
        folder = desktop.path("pictures")
        os.makedirs(folder)
        try:
            program.start()
            editor.shot("start")
            picture = photo(editor, check, folder)
            page(editor, check, picture)
            saved = project(editor, check)
            icon_file = icon(editor, check, folder)
            editor.list_entry(860, 66, 0)
            editor.settle(0.6)
            raw = mail(editor, check)
            made, unpacked = pack(editor, build, check, icon_file)
        except BaseException:
            editor.shot("failed")
            print(program.messages())
            raise
        shutil.copytree(saved, os.path.join(out, "project"))
        for product in (picture, icon_file, made):
            shutil.copy(product, out)
        if raw:
            with open(os.path.join(out, "message.eml"), "wb") as file:
                file.write(raw)
        if unpacked:
            check.same("the recipient has the whole project", sorted(os.listdir(unpacked)), sorted(os.listdir(saved)))
            shutil.copytree(unpacked, os.path.join(out, "unpacked"))
        else:
            print("left out, the web-pack at its recipient: this machine runs no wine")
        check.same("the program ends well", program.exit_without_saving(), 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "tour", play, ["convert", "munpack", "qpsmtpd-forkserver"]))
