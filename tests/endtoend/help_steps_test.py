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
from road import Editor, run  # noqa: E402
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


class Hand:
    """What a hand does for each step, and how it shows that it worked."""

    def __init__(self, editor, check, pictures):
        self.editor, self.check, self.pictures = editor, check, pictures
        self.desktop, self.program = editor.desktop, editor.program

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
        self.check.true("the title is a text block of its own size", re.search(r'<font [^>]*size="5"[^>]*>[^<]*my', page),
                        page)

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
        self.check.true("the pack is there", os.path.isfile(os.path.join(self.desktop.desktop, "mine.exe")),
                        os.listdir(self.desktop.desktop))

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
    ("web-pack", (("Click , or choose Tools, Create Web-Pack File.", Hand.choose_create),
                  ("Make web-pack file in: is the folder that it goes into;", Hand.fill_in_the_name),
                  ("Click OK. Corvane tells where the file is and how large,", Hand.build),
                  ("Close closes the window.", Hand.close))),
)

# What other tests do with the same hands: picture_test and icon_test, and the first page for a picture.
ELSEWHERE = ("pictures", "settings", "picture-editor")


def play(build, out, check):
    told = steps_of(os.path.join(build, "bin", "cvn2.hlp"))
    check.same("chapters with steps", sorted(told), sorted([name for name, _ in FOLLOWED] + list(ELSEWHERE)))
    with Desktop() as desktop:
        pictures = {"gif": desktop.path("home", "pic.gif")}
        desktop.call("convert", "-size", "70x50", "xc:orange", pictures["gif"])
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        os.symlink(os.path.join(build, "bin", "samples"), os.path.join(program.folder, "samples"))
        editor = Editor(desktop, program, out)
        program.start()
        hand = Hand(editor, check, pictures)
        for chapter, steps in FOLLOWED:
            check.same("steps in " + chapter, len(told.get(chapter, [])), len(steps))
            for words, (begin, do) in zip(told.get(chapter, []), steps):
                check.true("%s: %s" % (chapter, begin), words.startswith(begin), words)
                do(hand)
            editor.shot(chapter)
        check.same("the exit", program.exit_without_saving(), 0)


if __name__ == "__main__":
    sys.exit(run(__doc__, "help_steps", play))
