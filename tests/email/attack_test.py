"""Pages that try to be more than one message, sent to two mail servers of other hands on port 25: as they are, and as
the program saves them. Each is one message of the same text, or none at all where the program refuses it.

Usage: attack_test.py --build FOLDER
Skipped with exit code 77 where the machine lets no program of this user have the port.
"""
import argparse
import json
import os
import subprocess
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path[:0] = [os.path.dirname(os.path.abspath(__file__)), os.path.join(HOUSE, "tests", "support")]
import mail_messages  # noqa: E402
import mail_servers  # noqa: E402

BUILD = ""
REFUSED = "Error. Unable to read current page file.\n"
COMMANDS = ("MAIL FROM:&lt;ceo@example.org&gt;%(end)sRCPT TO:&lt;victim@example.net&gt;%(end)s"
            "DATA%(end)sSubject: smuggled")
LINE_ENDS = ("\r\n", "\n", "\r", "&#13;&#10;", "&#10;", "&#13;", "&#x0d;&#x0a;", "&NewLine;", "\n\r", "\r\r\n")
# Where a page can hold text; the attack stands in each.
PLACES = {
    "attribute": '<p title="%s">x</p>',
    "unquoted": "<p title=a%s>x</p>",
    "link": '<a href="http://example.org/%s">x</a>',
    "alt": '<img src="x.gif" alt="%s" >',
    "text": "<p>%s</p>",
    "pre": "<pre>%s</pre>",
    "textarea": "<textarea>%s</textarea>",
    "title": "<title>%s</title>",
    "comment": "<!-- %s -->",
    "script": "<script>%s</script>",
    "style": "<style>%s</style>",
    "behind": "</body></html>%s",
    "before": "%s<html>",
    "long": "<p>" + "x" * 3000 + "%s" + "y" * 3000 + "</p>",
    "link and stop": '<p>%s</p>\n<p>stands <a href="http://example.org/page">here</a>.\n'
                     "The second half of it goes on</p>",
}


def attacks():
    """Pairs of a name and a page."""
    for place, around in PLACES.items():
        for end in LINE_ENDS:
            commands = COMMANDS % {"end": end}
            if place in ("comment", "script", "style"):
                commands = commands.replace("&lt;", "<").replace("&gt;", ">")
            for dot in (".", "&#46;") if end in ("\n", "&#13;&#10;") else (".",):
                text = "a" + end + dot + end + commands + end + dot + end + "QUIT" + end
                page = around % text
                if "<html>" not in page and "</html>" not in page:
                    page = "<html><head></head><body>%s</body></html>" % page
                yield "%s, %r, %s" % (place, end, dot), page
    # A dot that the wrap puts onto a line of its own.
    for before in ("<b>" + "x" * 64 + ">", "x" * 40 + " " + "y" * 28 + " ", "z" * 70):
        for shift in range(0, 8):
            yield "wrapped %d" % shift, "<!--%s%s.\n%s\n-->" % ("w" * shift, before, COMMANDS % {"end": "\n"})


def tool(task, *arguments):
    return subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), task, *arguments], capture_output=True, text=True,
                          check=False, timeout=250)


class Peers:
    """What holds with each of the servers."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.server = self.enterContext(self.make())
        self.folders = []
        for number, (name, page) in enumerate(attacks()):
            folder = os.path.join(scratch.name, "page%d" % number)
            os.mkdir(folder)
            with open(os.path.join(folder, "wgcard.html"), "w", encoding="utf-8", newline="") as file:
                file.write(page)
            self.folders.append((name, folder))

    def send_all(self):
        """The outcome of each page, in their order."""
        ran = tool("send", "127.0.0.1", "", "ann@example.org", "bob@example.net", self.server.user,
                   self.server.password, *(folder for _, folder in self.folders))
        self.assertEqual(ran.returncode, 0, ran.stderr)
        return [json.loads(line) for line in ran.stdout.splitlines()]

    def check(self, outcomes):
        """Gives the number of pages that were refused."""
        self.assertEqual(len(outcomes), len(self.folders))
        arrived = self.server.messages()
        sent = [folder for outcome, (_, folder) in zip(outcomes, self.folders) if outcome["code"] == 100]
        self.assertEqual([outcome for outcome in outcomes if outcome["code"] == 100 and not outcome["success"]], [])
        self.assertEqual(len(arrived), len(sent))
        for folder, raw in zip(sent, arrived):
            with open(os.path.join(folder, "wgcard.html"), "rb") as file:
                page = file.read().decode("latin-1")
            with open(folder + ".eml", "rb") as file:
                raw, _ = mail_messages.with_taken_dots(raw, file.read())
            self.assertNotIn(b"Delivered-To: victim", raw)
            self.assertEqual(mail_messages.tokens_of(raw), mail_messages.Tokens(page).found, page[:200])
        for outcome in outcomes:
            if outcome["code"] != 100:
                self.assertEqual((outcome["code"], outcome["text"]), (0, REFUSED.strip()))
        return len(outcomes) - len(sent)

    def test_as_they_are(self):
        refused = self.check(self.send_all())
        self.assertGreater(refused, 20)
        self.assertLess(refused, len(self.folders) - 20)

    def test_as_the_program_saves_them(self):
        ran = tool("save", *(folder for _, folder in self.folders))
        self.assertEqual(ran.returncode, 0, ran.stderr)
        outcomes = self.send_all()
        self.check(outcomes)
        # Comments, scripts and styles have no references, so a dot stands there as it is.
        refused = {name.split(",")[0].split(" ")[0] for outcome, (name, _) in zip(outcomes, self.folders)
                   if outcome["code"] != 100}
        self.assertLessEqual(refused, {"comment", "script", "style", "wrapped"})
        self.assertTrue(refused)


class Login(Peers, unittest.TestCase):
    make = mail_servers.LoginServer


class Plain(Peers, unittest.TestCase):
    make = mail_servers.PlainServer


def main():
    global BUILD
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = parser.parse_args().build
    skipped = mail_servers.skips()
    if skipped is not None:
        return skipped
    return 0 if unittest.main(argv=sys.argv[:1], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
