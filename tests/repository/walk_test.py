"""The guide for new developers names only what is there: files by their paths, routines by their names.

Whatever stands in backticks in docs/walk.md is looked up in the sources. The links of all other pages are followed too.
"""
import os
import re
import subprocess
import sys
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
GUIDE = os.path.join("docs", "walk.md")
# Words of other people's languages, and what the build or the user makes.
NO_NAMES = {"a", "EHLO", "DATA", "QUIT", "card.zip"}
LINK = re.compile(r"\]\((?!https?:)([^)#]*)(#[^)]*)?\)")


def tracked():
    listed = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "--cached", "--others", "--exclude-standard"],
                            cwd=HOUSE, capture_output=True, text=True, check=True).stdout
    return listed.splitlines()


def sources():
    found = []
    for path in tracked():
        whole = os.path.join(HOUSE, path)
        if path.endswith((".cpp", ".h", ".c", ".txt")) and os.path.isfile(whole):
            with open(whole, encoding="utf-8", errors="replace") as file:
                found.append(file.read())
    return "\n".join(found)


def missing(guide, code):
    """Names of the guide that nothing in the project bears."""
    wrong = []
    for name in sorted(set(re.findall(r"`([^`]+)`", guide)) - NO_NAMES):
        if name.startswith("build/bin/"):
            target = name.rpartition("/")[2]
            good = re.search(r"add_executable\(%s\b" % re.escape(target), code)
        elif "/" in name:
            good = os.path.exists(os.path.join(HOUSE, name))
        else:
            # A member is defined under its whole name, everything else is a word of the sources.
            good = re.search(r"(?<![\w:])%s\b" % re.escape(name), code)
        if not good:
            wrong.append(name)
    return wrong


def headings(path):
    with open(path, encoding="utf-8") as file:
        found = re.findall(r"^#+ (.*)$", file.read(), re.MULTILINE)
    return {"#" + re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in found}


class Walk(unittest.TestCase):
    def setUp(self):
        with open(os.path.join(HOUSE, GUIDE), encoding="utf-8") as file:
            self.guide = file.read()

    def test_every_name_is_there(self):
        self.assertGreater(len(set(re.findall(r"`([^`]+)`", self.guide))), 60)
        self.assertEqual(missing(self.guide, sources()), [])

    def test_every_link_of_every_page_leads_to_a_file_and_a_heading(self):
        pages = [path for path in tracked() if path.endswith(".md") and not path.startswith("tests/")]
        self.assertGreater(len(pages), 5)
        for page in pages:
            with open(os.path.join(HOUSE, page), encoding="utf-8") as file:
                links = LINK.findall(file.read())
            for path, place in sorted(set(links)):
                target = os.path.normpath(os.path.join(HOUSE, os.path.dirname(page), path))
                with self.subTest(page + ": " + path + place):
                    self.assertTrue(os.path.exists(target))
                    self.assertTrue(not place or place in headings(target))

    def test_the_readme_leads_here(self):
        with open(os.path.join(HOUSE, "README.md"), encoding="utf-8") as file:
            self.assertIn("(docs/walk.md)", file.read())


class MadeUp(unittest.TestCase):
    def test_what_is_not_there_is_found(self):
        guide = "`FWeb::mNothing`, `core/Nothing.cpp`, `build/bin/nothing`, `FWeb::mExit`, `core/`, `QUIT`"
        self.assertEqual(missing(guide, "void FWeb::mExit() {"),
                         ["FWeb::mNothing", "build/bin/nothing", "core/Nothing.cpp"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
