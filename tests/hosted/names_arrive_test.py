"""Pictures with names of any script, put into a page by the program on its real engine: what their links and texts come
to at the recipient's, in the web-pack under 32-bit wine and in the mail.

Usage: names_arrive_test.py --build FOLDER
Skipped with exit code 77, after the mail, where wine can't run.
"""

import argparse
import email
import email.policy
import html.parser
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = ""
HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "stub"))
import webpack_wine_test  # noqa: E402

NAMES = ["M\u00fcller.gif", "stra\u00dfe.gif", "\u5199\u771f.png", "\u00e9t\u00e9.jpg", "\u00fcber.png"]
LEFT = ""


def read(*path):
    with open(os.path.join(LEFT, *path), "rb") as file:
        return file.read()


class Pictures(html.parser.HTMLParser):
    """Pairs of address and text of a page's pictures, in their order."""

    def __init__(self, page):
        super().__init__()
        self.found = []
        self.feed(page)
        self.close()

    def handle_starttag(self, tag, attrs):
        if tag == "img":
            self.found.append((dict(attrs)["src"], dict(attrs)["alt"]))

    handle_startendtag = handle_starttag


class Mail(unittest.TestCase):
    """The message of the page that the engine has saved."""

    def check(self, raw):
        message = email.message_from_bytes(raw, policy=email.policy.default)
        body, = [part for part in message.walk() if part.get_content_type() == "text/html"]
        parts = {part["Content-ID"].strip("<>"): part for part in message.walk() if part["Content-ID"]}
        shown = Pictures(body.get_content()).found
        self.assertEqual([text for _, text in shown], NAMES)
        self.assertEqual([address[:4] for address, _ in shown], ["cid:"] * len(NAMES))
        self.assertEqual(len({address for address, _ in shown}), len(NAMES))
        self.assertEqual(sorted(parts), sorted(address[4:] for address, _ in shown))
        for address, name in shown:
            part = parts[address[4:]]
            self.assertEqual(part.get_payload(decode=True), read("card", name), name)
            self.assertEqual(part.get_content_maintype(), "image")
            self.assertIn(self.file_name(name), raw)

    @staticmethod
    def file_name(name):
        """As the part's head tells it, in the one set of letters that it has."""
        return b'\tName="' + name.encode("cp1252", "replace") + b'"'

    def test_sent_and_saved_message_show_every_picture(self):
        subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "compose", os.path.join(LEFT, "card")], check=True,
                       timeout=120)
        sent = read("card.wire")
        self.assertTrue(sent.endswith(b"\r\n.\r\n"))
        self.check(sent[:-len(b".\r\n")])
        self.check(read("card.eml"))


class Pack(webpack_wine_test.WebPack):
    """The web-pack of that page, opened."""

    def test_the_recipient_sees_every_picture(self):
        self.assert_silent(self.start(read("pack.exe")))
        self.assert_opened_first_page()
        self.assertEqual(self.seen(), sorted([*NAMES, "wgcard.html", "Page2.html"]))
        with open(os.path.join(self.temp, "wgcard.html"), encoding="ascii") as file:
            self.assertEqual(Pictures(file.read()).found, [(name, name) for name in NAMES])
        found = webpack_wine_test.contents(self.temp)
        self.assertEqual({name: found[name] for name in NAMES},
                         webpack_wine_test.marks({name: read("card", name) for name in NAMES}))


def passes(test):
    return unittest.TextTestRunner(verbosity=2).run(unittest.TestSuite([test])).wasSuccessful()


def main():
    ran = subprocess.run([os.path.join(BUILD, "bin", "hosted_tests"),
                          "--gtest_filter=PictureNames.OfAnyScriptArriveEverywhere"],
                         env=dict(os.environ, CORVANE_LEAVE_IN=LEFT), timeout=300, check=False)
    if ran.returncode != 0 or not passes(Mail("test_sent_and_saved_message_show_every_picture")):
        return 1
    refused = webpack_wine_test.refusal()
    if refused is not None:
        return refused
    return 0 if passes(Pack("test_the_recipient_sees_every_picture")) else 1


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = webpack_wine_test.BUILD = os.path.abspath(parser.parse_args().build)
    LEFT = tempfile.mkdtemp(prefix="names-")
    try:
        sys.exit(main())
    finally:
        shutil.rmtree(LEFT)
