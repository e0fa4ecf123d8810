"""Does what the help says, step by step, in the program itself. The steps are read out of the help's own text: whoever
changes one there has to change here what a hand does for it.

Usage: help_steps_test.py --build FOLDER [--out FOLDER]
Pictures are left in the second folder, or in reports/help_steps of the first.
Skipped with exit code 77 where there is no virtual display.
"""

import html
import os
import re
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from icon_test import IconEditor  # noqa: E402
from picture_test import TITLE as PICTURE_EDITOR, PictureEditor, make_photo  # noqa: E402
from road import Editor, png, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

PART = re.compile(r'<h[23] id="([^"]+)">|<ol class="steps">(.*?)</ol>', re.S)
BOX_SIZE = 1104, 66
BOX_COLOR = 1154, 66


def steps_of(help_file):
    """Chapter -> the words of its steps."""
    with open(help_file, encoding="utf-8") as file:
        text = file.read()
    chapter, found = None, {}
    for name, steps in PART.findall(text):
        chapter = name or chapter
        if steps:
            words = [re.sub(r"\s+", " ", re.sub(r"<[^>]+>", "", step)).strip()
                     for step in re.findall(r"<li>(.*?)</li>", steps, re.S)]
            found[chapter] = [html.unescape(one) for one in words]
    return found


# Places in the settings window's content.
ICON_SETTINGS, CUSTOM_OPTIONS = (336, 22), (364, 402)
CUSTOM_ICON, APPLY_ICON = (207, 224), (252, 402)
BROWSE_ICON, ADD_ICON = (227, 203), (352, 203)
FIRST_ICON, USE_ICON, CUSTOM_OK = (90, 252), (287, 402), (391, 402)


class Hand:
    """What a hand does for each step, and how it shows that it worked."""

    def __init__(self, editor, check, pictures, out):
        self.editor, self.check, self.pictures = editor, check, pictures
        self.desktop, self.program = editor.desktop, editor.program
        self.photo = PictureEditor(self.desktop, self.program, out)
        self.icon = IconEditor(self.desktop, self.program, out, 1)

    def saved(self, page):
        return os.path.join(self.program.folder, "saved", "tomorrow", page)

    def page_with(self, what, page, text):
        """Saves the page in view, and waits for its file to hold that text."""
        def is_there():
            self.editor.menu("p", "s")
            return text in (read(self.saved(page)) or b"")
        self.check.true(what, wait_for(what, is_there))

    # The first page.

    def type_a_title(self):
        self.program.click_into_page(640, 300)
        self.editor.type("my title")
        self.desktop.keys("Return")
        self.editor.type("a sentence")
        self.check.true("a title and a sentence stand in the page", "my title<br" in self.editor.page(),
                        self.editor.page())

    def make_the_title_large(self):
        self.editor.drag((9, 110), (200, 112))
        self.editor.list_entry(*BOX_SIZE, 4)
        self.desktop.click(*BOX_COLOR)
        self.editor.window("Select Color")
        self.desktop.keys("Return")
        self.editor.closed()
        page = self.editor.page()
        self.check.true("the title is a text block of its own size",
                        re.search(r'<font [^>]*size="5"[^>]*>[^<]*my', page), page)

    def add_a_picture_below(self):
        self.desktop.click(640, 600)
        self.editor.settle()
        self.editor.press("picture")
        self.editor.choose_file(self.pictures["gif"])
        self.editor.window("View Image")
        self.desktop.keys("Return")
        self.editor.closed()
        self.check.true("the picture is in the page", '<img src="pic.gif"' in self.editor.page(), self.editor.page())

    def choose_a_theme(self):
        self.editor.menu("h")
        self.desktop.keys("Down", "Down", "Down", "Return")
        self.editor.settle()
        body = re.search("<body[^>]*>", self.editor.whole_page()).group()
        self.check.true("the theme gives background and text color", 'background="forest.jpg"' in body, body)

    def save_the_project(self):
        self.program.save()
        self.editor.menu("r", "s")
        self.editor.window("Save Project")
        self.editor.type("tomorrow")
        self.desktop.keys("Return")
        wait_for("the caption names the project",
                 lambda: self.desktop.title(str(self.program.window)) == "Corvane - tomorrow")
        saved = read(os.path.join(self.program.folder, "saved", "tomorrow", "wgcard.html"))
        self.check.true("the work is found again", b"my title" in saved, saved)

    # A link, on a page of its own.

    def drag_over_words(self):
        self.editor.menu("p", "n")
        self.program.click_into_page(640, 300)
        self.editor.type("go there")
        self.editor.drag((9, 110), (120, 112))

    def press_make_link(self):
        self.editor.press("link")
        self.editor.window("Create Link")

    def type_behind_the_address(self):
        self.editor.type("www.example.org/a")
        self.desktop.keys("Return")
        self.editor.closed()
        page = read(os.path.join(self.program.folder, "saved", "tomorrow", "Page2.html"))
        before = page
        self.editor.menu("p", "s")
        page = wait_for("the page is written", lambda: (lambda now: now != before and now)(
            read(os.path.join(self.program.folder, "saved", "tomorrow", "Page2.html")))).decode("ascii")
        self.check.true("the link has the whole address", 'href="http://www.example.org/a"' in page, page)

    # Pictures, on a page of their own.

    def click_the_place(self):
        self.editor.menu("p", "n")
        self.program.click_into_page(640, 300)

    def choose_a_picture(self):
        self.editor.press("picture")
        self.editor.choose_file(self.pictures["gif"])

    def answer_view_image(self):
        self.editor.window("View Image")
        self.desktop.keys("Escape")
        self.editor.closed()
        self.choose_a_picture()
        self.editor.window("View Image")
        self.desktop.keys("Return")
        self.editor.closed()
        self.page_with("the GIF is in the page", "Page3.html", b'src="pic.gif"')
        self.check.same("and once", read(self.saved("Page3.html")).count(b"<img"), 1)
        self.editor.press("picture")
        self.editor.choose_file(self.pictures["png"])
        self.editor.closed()
        self.page_with("the PNG goes in at once", "Page3.html", b'src="pic.png"')

    # The picture editor.

    def open_a_photo(self):
        self.editor.menu("t", "e")
        self.photo.editor = self.editor.window(PICTURE_EDITOR)
        self.photo.settle()
        self.photo.press("open")
        self.photo.file_dialog("Select Picture", self.pictures["photo"])
        wait_for("the photo is shown", self.photo.viewer)
        self.photo.settle()

    def resize_twice(self):
        self.photo.fill("percent", "50")
        self.photo.press("resize")
        self.photo.wait_size(800, 550)
        self.photo.press("resize")
        self.photo.wait_size(400, 275)
        self.check.true("twice 50 makes a quarter", self.photo.place()[2:] == (400, 275), self.photo.place())

    def crop(self):
        self.photo.drag_slowly((50, 40), (350, 240))
        self.photo.press("crop")
        self.photo.wait_size(300, 200)

    def compress(self):
        self.photo.fill("quality", "80")
        self.photo.press("compress")
        jpeg = os.path.join(self.program.folder, "cvtemp.jpg")
        self.compressed = wait_for("the JPEG", lambda: read(jpeg))
        self.editor.shot("compressed")

    def save_and_add(self):
        self.photo.press("save")
        path = self.desktop.path("home", "small.jpg")
        self.photo.file_dialog("Save AS JPG File", path)
        wait_for("the saved file", lambda: os.path.isfile(path))
        self.photo.settle()
        self.check.true("what was seen is saved", read(path) == read(os.path.join(self.program.folder, "cvtemp.jpg")))
        self.photo.press("close")
        wait_for("the editor goes", lambda: not self.desktop.windows(PICTURE_EDITOR))
        self.editor.closed()
        self.check.true("nothing goes into the page by itself", b"small.jpg" not in read(self.saved("Page3.html")))
        self.editor.press("picture")
        self.editor.choose_file(path)
        self.editor.window("View Image")
        self.desktop.keys("Return")
        self.editor.closed()
        self.page_with("the small picture is in the page", "Page3.html", b'src="small.jpg"')

    # An icon of one's own, in the settings.

    def in_settings(self, place):
        left, top = self.editor.corner(self.editor.window("Settings"))
        self.desktop.click(left + place[0], top + place[1])
        self.editor.settle()

    def draw_an_icon(self):
        self.icon.open_window()
        self.icon.use("solid rectangle", "FF0000")
        self.icon.drag((4, 4), (20, 20))
        self.icon.menu("f", "s")
        self.drawn = self.desktop.path("home", "mine.ico")
        self.icon.choose_file("Save Icon", self.drawn)
        wait_for("the icon is saved", lambda: len(read(self.drawn) or b"") == 766)
        self.desktop.wait_active("the icon editor has the keys", lambda now: now == int(self.icon.window, 16))
        self.icon.menu("f", "x")
        wait_for("the window goes", lambda: not self.desktop.windows("Icon Editor"))
        self.editor.closed()

    def browse_for_it(self):
        self.editor.menu("t", "s")
        self.editor.window("Settings")
        self.in_settings(ICON_SETTINGS)
        self.in_settings(CUSTOM_OPTIONS)
        self.in_settings(BROWSE_ICON)
        self.editor.choose_file(self.drawn, "Select Icon File")
        self.editor.window("Settings")

    def add_it_to_the_list(self):
        self.in_settings(ADD_ICON)
        copy = os.path.join(self.program.folder, "icons", "mine.ico")
        wait_for("the icon is among the program's", lambda: os.path.isfile(copy))
        self.check.same("as it was drawn", read(copy), read(self.drawn))
        self.editor.shot("custom-icons")

    def use_it(self):
        self.in_settings(FIRST_ICON)
        self.in_settings(USE_ICON)
        self.editor.window("Corvane")
        self.desktop.keys("Return")
        self.editor.window("Settings")

    def apply_custom(self):
        self.in_settings(CUSTOM_OK)
        self.in_settings(CUSTOM_ICON)
        self.in_settings(APPLY_ICON)
        self.editor.shot("custom-applied")
        self.desktop.keys("Escape")
        self.editor.closed()

    # A web-pack.

    def choose_create(self):
        self.editor.menu("t", "c")
        self.editor.window("Make Web-Pack File")

    def fill_in_the_name(self):
        self.desktop.keys("Tab", "ctrl+a")
        self.editor.type("mine")

    def build(self):
        self.desktop.keys("Return")
        question = self.desktop.wait_active("the question about testing",
                                            lambda now: self.desktop.title(str(now)) == "Corvane", 60)
        self.editor.shot("question")
        self.desktop.keys("alt+n")
        wait_for("the question goes", lambda: self.desktop.active() != question)
        pack = read(os.path.join(self.desktop.desktop, "mine.exe"))
        self.check.true("the pack is there", pack is not None, os.listdir(self.desktop.desktop))
        # What stands in a pack is the icon file without its first 22 bytes.
        self.check.true("with the icon that was drawn", pack and read(self.drawn)[22:] in pack)

    def close(self):
        self.editor.window("Make Web-Pack File")
        self.desktop.keys("Escape")
        self.editor.closed()


# The chapters in the order in which they are followed, each step by its first words.
FOLLOWED = (
    ("first-page", (("Click into the large white area.", Hand.type_a_title),
                    ("Drag the mouse over the title so that it is highlighted.", Hand.make_the_title_large),
                    ("Click below your text. In the Work Window click add picture,", Hand.add_a_picture_below),
                    ("Open the menu Themes and choose one.", Hand.choose_a_theme),
                    ("Click to save the page. Then choose Project, Save Current Project", Hand.save_the_project))),
    ("links", (("Drag over the words that are to be the link.", Hand.drag_over_words),
               ("Click make link.", Hand.press_make_link),
               ("Type the address behind the http:// that is there already and click OK.",
                Hand.type_behind_the_address))),
    ("pictures", (("Click the text block or picture that it is to follow.", Hand.click_the_place),
                  ("Click add picture in the Work Window", Hand.choose_a_picture),
                  ("A GIF or JPG is shown first, and the window View Image asks", Hand.answer_view_image))),
    ("picture-editor", (("Open File: choose a picture", Hand.open_a_photo),
                        ("Resize: type a percentage, for example 25, and click Resize.", Hand.resize_twice),
                        ("Crop: drag a rectangle on the picture and click Crop.", Hand.crop),
                        ("JPG Compress: type a quality from 5 to 100, for example 80,", Hand.compress),
                        ("Save as JPG: choose a name. Then add that file to your page", Hand.save_and_add))),
    ("settings", (("Draw an icon in the icon editor and save it.", Hand.draw_an_icon),
                  ("At Browse for icon (ICO) file: click Browse and choose it.", Hand.browse_for_it),
                  ("Click Add To Custom Icons List.", Hand.add_it_to_the_list),
                  ("Click it in the Custom Icons List:, then Use Selected Icon.", Hand.use_it),
                  ("Click OK, choose Custom and click Apply.", Hand.apply_custom))),
    ("web-pack", (("Click , or choose Tools, Create Web-Pack File.", Hand.choose_create),
                  ("Make web-pack file in: is the folder that it goes into;", Hand.fill_in_the_name),
                  ("Click OK. Corvane tells where the file is and how large,", Hand.build),
                  ("Close closes the window.", Hand.close))),
)


def play(build, out, check):
    told = steps_of(os.path.join(build, "bin", "cvn2.hlp"))
    check.same("chapters with steps", sorted(told), sorted(name for name, _ in FOLLOWED))
    with Desktop() as desktop:
        pictures = {kind: desktop.path("home", name)
                    for kind, name in (("gif", "pic.gif"), ("png", "pic.png"), ("photo", "photo.jpg"))}
        desktop.call("convert", "-size", "70x50", "xc:orange", pictures["gif"])
        with open(pictures["png"], "wb") as file:
            file.write(png(40, 30, (0, 128, 255)))
        make_photo(desktop, pictures["photo"])
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        os.symlink(os.path.join(build, "bin", "samples"), os.path.join(program.folder, "samples"))
        editor = Editor(desktop, program, out)
        program.start()
        hand = Hand(editor, check, pictures, out)
        for chapter, steps in FOLLOWED:
            check.same("steps in " + chapter, len(told.get(chapter, [])), len(steps))
            for words, (begin, do) in zip(told.get(chapter, []), steps):
                check.true("%s: %s" % (chapter, begin), words.startswith(begin), words)
                do(hand)
            editor.shot(chapter)
        check.same("the exit", program.exit_without_saving(), 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "help_steps", play))
