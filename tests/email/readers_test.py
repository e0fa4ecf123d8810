"""Messages of the program, in the form that is sent and in the one that is saved, read by Python's email package and by
munpack.

Usage: readers_test.py --build FOLDER
"""
import argparse
import email
import email.policy
import html
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.join(HERE, "..", "support")]
import mail_messages  # noqa: E402
from random_seed import random_seed  # noqa: E402

BUILD = ""
ROUNDS = 8
DOT = b".\r\n"


class Messages(unittest.TestCase):
    """Every kind of page, several times over."""

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.projects = {}
        first = random_seed("pages")
        for seed in range(first, first + ROUNDS):
            for kind in mail_messages.KINDS:
                folder = os.path.join(cls.scratch.name, "%s%d" % (kind, seed))
                cls.projects[folder] = mail_messages.make_project(folder, kind, seed)
        subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "compose", *cls.projects], check=True, timeout=120)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def each(self, ending):
        for folder, (page, pictures) in self.projects.items():
            with open(folder + ending, "rb") as file:
                yield os.path.basename(folder) + ending, file.read(), page, pictures

    def test_what_is_sent_is_read_by_python(self):
        for name, raw, page, pictures in self.each(".wire"):
            self.assertTrue(raw.endswith(b"--\r\n" + DOT))
            self.assertEqual(mail_messages.problems(raw[:-len(DOT)], page, pictures), [], name)

    def test_what_is_saved_is_read_by_python(self):
        for name, raw, page, pictures in self.each(".eml"):
            self.assertTrue(raw.startswith(b"FROM: Ann Lee<ann@example.org>\r\n"))
            self.assertEqual(mail_messages.problems(raw, page, pictures), [], name)

    def test_pictures_of_any_name_are_found_by_what_the_page_says(self):
        names = ["M\u00fcller.gif", "stra\u00dfe.gif", "\u5199\u771f.png", "\u00e9t\u00e9.jpg"]
        folder = os.path.join(self.scratch.name, "names")
        os.makedirs(folder)
        page = "<html><head></head><body>%s</body></html>" % "".join(
            '<img src="%s" alt="%s" />' % (name, name) for name in names)
        with open(os.path.join(folder, "wgcard.html"), "wb") as file:
            file.write(page.encode("ascii", "xmlcharrefreplace"))
        for name in names:
            with open(os.path.join(folder, name), "wb") as file:
                file.write(name.encode("utf-8"))
        subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "compose", folder], check=True, timeout=120)
        with open(folder + ".eml", "rb") as file:
            message = email.message_from_bytes(file.read(), policy=email.policy.default)
        parts = {part["Content-ID"].strip("<>"): part.get_payload(decode=True) for part in message.walk()
                 if part["Content-ID"]}
        body = [part for part in message.walk() if part.get_content_type() == "text/html"][0]
        shown = re.findall('SRC="cid:([^"]*)" alt="([^"]*)"', html.unescape(body.get_content()))
        self.assertEqual([alt for _, alt in shown], names)
        self.assertEqual([parts[identifier].decode("utf-8") for identifier, _ in shown], names)

    def test_letters_in_links_and_texts_are_read_under_the_told_charset(self):
        """By Python's parser and by libxml2's."""
        letters = ["http://m\u00fcller.de/\u5199?q=\u00df", "Gr\u00f6\u00dfe", "\u20ac\u2019\u0416",
                   "\U0001f600 \u00e9"]
        folder = os.path.join(self.scratch.name, "letters")
        os.makedirs(folder)
        link, *texts = letters
        page = ('<html><head><meta charset="utf-8"></head><body><a href="%s" title="%s">%s</a>'
                '<img src="a.gif" alt="%s"></body></html>')
        with open(os.path.join(folder, "wgcard.html"), "w", encoding="utf-8") as file:
            file.write(page % (link, *texts))
        tool = os.path.join(BUILD, "bin", "mail_tool")
        subprocess.run([tool, "save", folder], check=True, timeout=60)
        subprocess.run([tool, "compose", folder], check=True, timeout=60)
        with open(folder + ".wire", "rb") as file:
            raw = file.read()
        body = [part for part in email.message_from_bytes(raw, policy=email.policy.default).walk()
                if part.get_content_type() == "text/html"][0]
        self.assertEqual(body.get_content_charset(), "iso-8859-1")
        found = mail_messages.Tokens(body.get_content(), is_exact=True).found
        self.assertIn(("a", sorted({"href": link, "title": texts[0]}.items())), found)
        self.assertIn(("text", texts[1]), found)
        self.assertEqual([dict(told[1])["alt"] for told in found if told[0] == "img"], [texts[2]])
        # Every letter of it is the same in all that a reader could take it for.
        body.get_payload(decode=True).decode("ascii")
        for path, wanted in (("//a/@href", link), ("//a/@title", texts[0]), ("//a/text()", texts[1]),
                             ("//img/@alt", texts[2])):
            ran = subprocess.run(["xmllint", "--html", "--xpath", "string(%s)" % path, "-"], capture_output=True,
                                 input=body.get_payload(decode=True), check=True, timeout=60)
            self.assertEqual(ran.stdout.decode("utf-8").rstrip("\n"), wanted, path)

    def test_both_are_read_by_munpack(self):
        if not shutil.which("munpack"):
            self.fail("munpack isn't there; tools/setup installs it")
        for ending in (".wire", ".eml"):
            for name, raw, _, pictures in self.each(ending):
                self.assertEqual(mail_messages.munpack_problems(raw, pictures), [], name)

    def test_nuls_and_dots_occur(self):
        """What the messages are to be read in spite of is in them."""
        sent = [raw for _, raw, _, _ in self.each(".wire")]
        self.assertTrue(any(b"\0\0" in raw for raw in sent))
        self.assertTrue(any(len(line) > 76 for raw in sent for line in raw.split(b"\r\n")))


class Reader(unittest.TestCase):
    """The reading itself finds what is wrong."""

    @staticmethod
    def page_with_bare_line_ends(scratch):
        """A page with letters of its own, its pictures, and its message."""
        for seed in range(1000):
            folder = os.path.join(scratch, "letters%d" % seed)
            page, pictures = mail_messages.make_project(folder, "letters", seed)
            if b"\r\n" not in page and b"\n<" in page and "\u00f6\u00df".encode() in page:
                break
        subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "compose", folder], check=True, timeout=60)
        with open(folder + ".eml", "rb") as file:
            return (page, pictures), file.read()

    def test_damage_is_found(self):
        with tempfile.TemporaryDirectory() as scratch:
            folder = os.path.join(scratch, "p")
            page, pictures = mail_messages.make_project(folder, "twenty", 3)
            subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "compose", folder], check=True, timeout=60)
            with open(folder + ".eml", "rb") as file:
                raw = file.read()
            others, other = self.page_with_bare_line_ends(scratch)
        self.assertEqual(mail_messages.problems(raw, page, pictures), [])
        self.assertEqual(mail_messages.problems(other, *others), [])
        for what, with_what in ((b"=3D", b"="), (b"cid:", b"cid:x"), (b"_BB--", b"_BB-"), (b"_AA--", b""),
                                (b"\tName=\"", b"\tName=\"x"), (b"Content-ID: <", b"Content-ID: <x"),
                                (b"base64\r\n", b"8bit\r\n"), (b"width", b"height")):
            with self.subTest(what):
                self.assertIn(what, raw)
                self.assertNotEqual(mail_messages.problems(raw.replace(what, with_what), page, pictures), [])
        # Line ends and letters of the page are told apart too.
        for damage in (lambda data: data.replace(b"\r\n<", b"\n<"), lambda data: data.replace(b"\r\n<", b"\r<"),
                       lambda data: data.replace(b">\r\n\r\n<", b"><"),
                       lambda data: data.replace("\u00f6".encode(), b"\xf6"),
                       lambda data: data.replace(b"</body>", b"</body >")):
            self.assertNotEqual(damage(other), other)
            self.assertNotEqual(mail_messages.problems(damage(other), *others), [])
        name = next(iter(pictures))
        self.assertNotEqual(mail_messages.problems(raw, page, {**pictures, name: b"other"}), [])
        self.assertNotEqual(mail_messages.munpack_problems(raw, {**pictures, name: b"other"}), [])


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = parser.parse_args().build
    unittest.main(argv=sys.argv[:1])
