"""Pages made by chance out of what could turn a message against its sender, as they are and as the program saves them,
sent to a strict server: one mail in, one mail out, of the same text, and not a byte that a server has to interpret.

Usage: fuzz_pages_test.py --build FOLDER [--pages N]
"""
import argparse
import email
import email.policy
import json
import os
import random
import re
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.join(HERE, "..", "support")]
import mail_messages  # noqa: E402
from random_seed import random_seed  # noqa: E402

BUILD = ""
PAGES = 300
# Without pictures, whose references a message changes.
REFUSED = "Error. Unable to read current page file."
PIECES = ["\r\n", "\n", "\r", "\n.\n", "\r\n.\r\n", "\r.\r", ".\n", "\n.", "..", ".", "&#13;", "&#10;",
          "&#13;&#10;.&#13;&#10;", "&#46;", "&#x2e;", "&NewLine;", "&#10;&#46;&#10;", "MAIL FROM:<ceo@example.org>",
          "RCPT TO:<victim@example.net>", "DATA", "QUIT", "RSET", "--CVN2_A_3435FE2_6617A_AA",
          "\n--CVN2_B_3435FE2_6617B_BB--\n", "=2E", "=0D=0A.=0D=0A", "=", "=\r\n", " ", "  ", "\t", "x" * 69, "y" * 70,
          "word ", "\u00e4\u20ac", "\u4e2d", "&auml;", "&#128;", "\x0b", "\x0c", "\x7f", ">", "-->", "<b>", "</b>",
          "<br>", "<p title=\"", "\">", "<a href=\"http://x.y/?a=1&amp;b=2\">", "</a>",
          "<pre>\n", "</pre>", "<textarea>", "</textarea>", "<!-- ", " -->", "<script>", "</script>",
          "<style>", "</style>", "<title>", "</title>", "'", "\u2028", "\u0085", "&nbsp;"]


def make_page(numbers):
    text = "".join(numbers.choice(PIECES) for _ in range(numbers.randrange(1, 60)))
    return "<html><head></head><body>%s</body></html>" % text if numbers.random() < 0.7 else text


class StrictServer:
    """Takes one message a client, in the order of the standard and with its line ends. `problems` are what isn't so."""
    STEPS = (rb"EHLO ann", rb"MAIL FROM: <ann@example\.org>", rb"RCPT TO: <bob@example\.net>", rb"DATA")

    def __init__(self):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.messages, self.problems = [], []
        threading.Thread(target=self.run, daemon=True).start()

    def run(self):
        while True:
            client, _ = self.listener.accept()
            with client:
                client.settimeout(30)
                try:
                    self.talk(client)
                except OSError as error:
                    self.problems.append(repr(error))

    def until(self, client, mark):
        """Exactly up to the mark, as the client has to wait for the answer."""
        data = b""
        while mark not in data:
            more = client.recv(65536)
            if not more:
                raise OSError("closed in %r" % data[-60:])
            data += more
        if not data.endswith(mark) or data.count(mark) != 1:
            self.problems.append("more than was asked for: %r" % data[-200:])
        return data[:-len(mark)]

    def talk(self, client):
        client.sendall(b"220 here\r\n")
        for step in self.STEPS:
            line = self.until(client, b"\r\n")
            if not re.fullmatch(step, line):
                self.problems.append("%r where %r belongs" % (line, step))
            client.sendall(b"354 go on\r\n" if step == b"DATA" else b"250 fine\r\n")
        message = self.until(client, b"\r\n.\r\n") + b"\r\n"
        self.messages.append(message)
        if re.search(rb"\r(?!\n)|(?<!\r)\n|\0", message):
            self.problems.append("a bare line end or a NUL")
        client.sendall(b"250 taken\r\n")
        if self.until(client, b"\r\n") != b"QUIT":
            self.problems.append("no QUIT")
        client.sendall(b"221 bye\r\n")
        if client.recv(100):
            self.problems.append("more behind the end")


def tool(*arguments):
    return subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), *arguments], capture_output=True, text=True,
                          check=True, timeout=250)


class Pages(unittest.TestCase):
    def play(self, is_saved):
        """Gives how many were sent and how many refused."""
        numbers = random.Random(random_seed("saved pages" if is_saved else "pages"))
        server = StrictServer()
        with tempfile.TemporaryDirectory() as scratch:
            folders = [os.path.join(scratch, str(number)) for number in range(PAGES)]
            for folder in folders:
                os.mkdir(folder)
                with open(os.path.join(folder, "wgcard.html"), "wb") as file:
                    file.write(make_page(numbers).encode("utf-8"))
            if is_saved:
                tool("save", *folders)
            ran = tool("send", "127.0.0.1:%d" % server.port, "", "ann@example.org", "bob@example.net", "", "", *folders)
            outcomes = [json.loads(line) for line in ran.stdout.splitlines()]
            self.assertEqual(server.problems, [])
            self.assertEqual(len(outcomes), PAGES)
            sent = []
            for folder, outcome in zip(folders, outcomes):
                if outcome == {"code": 100, "success": True, "text": ""}:
                    sent.append(folder)
                    continue
                with open(os.path.join(folder, "wgcard.html"), "rb") as file:
                    page = file.read()
                if is_saved:
                    # Nothing but what can have no references is ever refused.
                    self.assertRegex(page, rb"<!--|<script|<style|--CVN2_")
                self.assertIn(outcome, ({"code": 0, "text": REFUSED},
                                        {"code": 160, "text": "Text of email is missing."}))
            self.assertEqual(len(server.messages), len(sent))
            for folder, message in zip(sent, server.messages):
                with open(os.path.join(folder, "wgcard.html"), "rb") as file:
                    page = file.read()
                sent_page = mail_messages.html_in(message)[0]
                self.assertEqual(sent_page, mail_messages.as_sent(page, []), repr(page))
                # A break may come into a quoted sign, and that is meant.
                if not re.search(rb"==\r\n3D|=3=\r\nD", sent_page):
                    found = mail_messages.where_different(self.read(message), self.trimmed(page))
                    self.assertEqual(found, -1, repr(page))
        return len(sent), PAGES - len(sent)

    @staticmethod
    def trimmed(page):
        return mail_messages.with_wire_ends(page.strip(b" "))

    @staticmethod
    def read(message):
        """The page as the recipient's reader has it."""
        parts = list(email.message_from_bytes(message, policy=email.policy.default).walk())
        assert [part.get_content_type() for part in parts] == ["multipart/alternative", "text/plain", "text/html"]
        # The empty line in front of the next part belongs to the form.
        return parts[2].get_payload(decode=True).removesuffix(b"\r\n")

    def test_as_they_are(self):
        sent, refused = self.play(False)
        self.assertGreater(min(sent, refused), PAGES / 10)

    def test_as_the_program_saves_them(self):
        sent, refused = self.play(True)
        print("%d sent, %d refused" % (sent, refused))
        self.assertGreater(min(sent, refused), PAGES / 10)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    parser.add_argument("--pages", type=int, default=PAGES)
    told = parser.parse_args()
    BUILD, PAGES = told.build, told.pages
    unittest.main(argv=sys.argv[:1])
