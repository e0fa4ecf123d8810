"""Work that is kept, in the program itself: three pages with pictures and a theme become a project, which a second run
of the program opens, changes, sends out and deletes.

Usage: projects_test.py --build FOLDER [--out FOLDER]
Pictures of every stage and the project are left in the second folder, or in reports/projects of the first.
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

BOX_PAGE = 860, 66
PAGE = ('<html><head><title></title></head><body bgcolor="#FFFFFF" text="%s" link="#0000FF" vlink="#0000FF"%s'
        ' style="font-size: small; font-family: Arial, Helvetica;">page number 3 <img src="pic.png" /></body></html>')
PICTURES = {"pic.gif": (70, 50, "xc:orange"), "pic.jpg": (90, 60, "xc:steelblue"), "pic.png": None}


def files(folder):
    """Name -> bytes of all files of a folder."""
    return {name: read(os.path.join(folder, name)) for name in os.listdir(folder)}


def make_pictures(desktop, folder):
    os.makedirs(folder)
    for name, look in PICTURES.items():
        path = os.path.join(folder, name)
        if look:
            desktop.call("convert", "-size", "%dx%d" % look[:2], look[2], path)
        else:
            with open(path, "wb") as file:
                file.write(png(60, 40, (0, 120, 60)))


def add_picture(editor, path):
    editor.press("picture")
    editor.choose_file(path)
    if not path.endswith("png"):
        editor.window("View Image")
        editor.settle()
        editor.desktop.keys("Return")
        editor.closed()


def make_pages(editor, check, folder):
    program = editor.program
    for number, name in enumerate(PICTURES, 1):
        if number > 1:
            editor.menu("p", "n")
            wait_for("page %d is there" % number, lambda: os.path.isfile(program.card("Page%d.html" % number)))
        program.click_into_page(600, 300)
        editor.type("page number %d " % number)
        add_picture(editor, os.path.join(folder, name))
    saved = editor.whole_page(3)
    check.same("page 3 has its text and its picture", saved, PAGE % ("#000000", ""))
    editor.menu("h")
    editor.shot("themes-menu")
    editor.desktop.keys("Down", "Down", "Down", "Return")
    editor.settle()
    editor.shot("theme")
    saved = editor.whole_page(3)
    check.same("page 3 has its theme", saved, PAGE % ("#F9F3EE", ' background="forest.jpg"'))
    check.same("the theme's picture lies beside the pages", read(program.card("forest.jpg")),
               read(os.path.join(program.folder, "samples", "forest.jpg")))


def save_project(editor, check, name):
    program = editor.program
    before = files(program.card(""))
    editor.menu("r")
    editor.shot("project-menu")
    editor.desktop.keys("s")
    editor.window("Save Project")
    editor.type(name)
    editor.shot("name")
    editor.desktop.keys("Return")
    wait_for("the caption names the project",
             lambda: editor.desktop.title(str(program.window)) == "Corvane - " + name)
    saved = os.path.join(program.folder, "saved", name)
    check.same("the project has all files, byte for byte", files(saved), before)
    check.same("and the workspace keeps them", files(program.card("")), before)
    return saved


def leave(editor, check):
    program = editor.program
    check.same("the program ends well", program.exit_without_saving(), 0)
    check.same("the workspace is gone", os.path.exists(program.card("")), False)


def open_panel(editor, name):
    editor.menu("r", "o")
    editor.window("Open Saved Project")
    editor.settle()
    # To the list and its first row.
    editor.desktop.keys("Home", "space")
    editor.settle()
    editor.shot(name)


def open_project(editor, check, name):
    program = editor.program
    open_panel(editor, "open-panel")
    editor.desktop.keys("Tab", "space")
    editor.closed()
    check.same("the caption names the project", editor.desktop.title(str(program.window)), "Corvane - " + name)
    editor.shot("opened")


def go_to_page(editor, number):
    editor.list_entry(*BOX_PAGE, number - 1)
    editor.settle(0.6)


def change_page_two(editor, check, saved):
    before = files(saved)
    go_to_page(editor, 2)
    editor.program.click_into_page(600, 300)
    editor.type("changed")
    editor.shot("changed")
    editor.menu("p", "s")
    path = os.path.join(saved, "Page2.html")
    wait_for("page 2 is saved", lambda: b"changed" in (read(path) or b""))
    changed = [name for name, data in files(saved).items() if before.get(name) != data]
    # Page 1, which was written when page 2 was chosen, is what it was.
    check.same("page 2 is written, and no picture", changed, ["Page2.html"])
    body = re.search(rb"<body[^>]*>(.*)</body>", read(path), re.S).group(1)
    check.same("page 2 keeps its text and its picture", body,
               b'page number 2 <img src="pic.jpg" width="90" height="60" />changed')
    check.same("all files are still there", sorted(files(saved)), sorted(before))


def send_out(editor, check, saved):
    folder = editor.desktop.path("out")
    os.makedirs(folder)
    editor.menu("f", "s")
    editor.choose_file(os.path.join(folder, "mine.html"), "Save Text to File")
    made = os.path.join(folder, "mine Files1")
    wait_for("the page is out", lambda: os.path.isdir(made) and len(os.listdir(made)) == 2)
    editor.closed()
    check.same("only its folder is made", os.listdir(folder), ["mine Files1"])
    out = files(made)
    check.same("the page is sent out with its picture", sorted(out), ["mine.html", "pic.jpg"])
    check.same("the picture is whole", out["pic.jpg"], read(os.path.join(saved, "pic.jpg")))
    check.same("the page is that of the project", out["mine.html"], read(os.path.join(saved, "Page2.html")))
    check.true("it names the picture without a path",
               re.search(rb'<img src="pic.jpg" ', out["mine.html"]) is not None, out["mine.html"])


def delete_project(editor, check, saved):
    open_panel(editor, "delete-panel")
    editor.desktop.keys("Tab", "Tab", "Tab", "space")
    editor.desktop.wait_active("the question", lambda now: editor.desktop.title(str(now)) == "Corvane")
    editor.shot("delete-question")
    check.same("nothing is gone before the answer", os.path.isdir(saved), True)
    editor.desktop.keys("Return")
    wait_for("the project is gone", lambda: not os.path.exists(saved))
    editor.window("Open Saved Project")
    editor.shot("deleted")
    check.same("the folder of projects stays", os.listdir(os.path.dirname(saved)), [])
    editor.desktop.keys("Escape")


def play(build, out, check):
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        shutil.copytree(os.path.join(build, "bin", "samples"), os.path.join(program.folder, "samples"))
        editor = Editor(desktop, program, out)
        folder = desktop.path("pictures")
        make_pictures(desktop, folder)
        try:
            program.start()
            make_pages(editor, check, folder)
            saved = save_project(editor, check, "trip")
            leave(editor, check)
            shutil.copytree(saved, os.path.join(out, "project"))
            program.start()
            open_project(editor, check, "trip")
            change_page_two(editor, check, saved)
            send_out(editor, check, saved)
            delete_project(editor, check, saved)
            leave(editor, check)
        except BaseException:
            editor.shot("failed")
            print(program.messages())
            raise


if __name__ == "__main__":
    sys.exit(run(__doc__, "projects", play, ["convert"]))
