"""The project's files stand for themselves: none points to papers, places or people that its reader doesn't have.

Looks at every text file that git tracks or would track. The patterns are put together from pieces, so that this file
passes its own test.
"""
import os
import re
import subprocess
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

# A standard's name before the word tells whose it is.
PATTERNS = {
    "a chapter of another paper": r"\b[Pp]ar" + r"ts? [1-9]\.[0-9]",
    "another paper": r"(?<!HTML )(?<!DOM )(?<!CSS )\b[Ss]pe" + r"c(ification)?s?\b",
    "another paper's file": r"\b(spe" + r"c|decis" + r"ions|develop" + r"ers?)\.md\b",
    "a numbered ruling": r"\b(D[0-9]{1,3}|X(?!11\b)[0-9]{1,2})[a-z]?\b",
    "a numbered issue": r"\b[Ii]ss" + r"ue #?[0-9]+",
    "a place of one machine": r"/(wo" + r"rk|fa" + r"rm|ro" + r"ot)/|\.lib" + r"rary\b",
    "a host of packages": r"\b(deb\.deb" + r"ian\.org|py" + r"pi\.org|npm" + r"js\.|crates\." + r"io|proxy\.gol" + r"ang)",
    "who wrote it": r"\b(sub" + r"agent|help" + r"er agent)s?\b",
    "when it was written": r"\bses" + r"sions?\b",
}
# A talk between a mail program and its server has that name.
MAIL = re.compile(r"^(tests/)?email/|^tests/.*[Mm]ail|^tests/.*[Ss]mtp")
MAIL_WORDS = {"when it was written"}
NO_TEXT = (".svg", ".png", ".jpg", ".gif", ".ico", ".json")


def problems(root):
    listed = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others",
                             "--exclude-standard"], cwd=root, capture_output=True, check=True).stdout
    wrong = []
    paths = sorted(path for path in listed.decode().split("\0") if path)
    if not paths:
        return ["there are no files"]
    for path in paths:
        whole = os.path.join(root, path)
        if path.endswith(NO_TEXT) or not os.path.isfile(whole):
            continue
        with open(whole, "rb") as file:
            data = file.read()
        if b"\0" in data:
            continue
        for at, line in enumerate(data.decode("utf-8", "replace").splitlines(), 1):
            wrong += ["%s:%d: %s: %s" % (path, at, what, line.strip()[:100]) for what, pattern in PATTERNS.items()
                      if re.search(pattern, line) and not (what in MAIL_WORDS and MAIL.match(path))]
    return wrong


class Project(unittest.TestCase):
    def test_every_file_stands_for_itself(self):
        self.assertEqual(problems(HOUSE), [])


class MadeUp(unittest.TestCase):
    def told(self, path, line):
        with tempfile.TemporaryDirectory() as root:
            subprocess.run(["git", "init", "-q", root], check=True)
            os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
            with open(os.path.join(root, path), "w") as file:
                file.write("int value;\n" + line + "\n")
            return problems(root)

    def test_each_pattern_is_found(self):
        examples = {
            "a chapter of another paper": "// as in Pa" + "rt 2.1",
            "another paper": "// the spe" + "cification asks for it",
            "another paper's file": "// see decis" + "ions.md",
            "a numbered ruling": "// by D" + "14",
            "a numbered issue": "// iss" + "ue #7",
            "a place of one machine": "open('/wo" + "rk/x')",
            "a host of packages": "fetch(deb.deb" + "ian.org)",
            "who wrote it": "// by a sub" + "agent",
            "when it was written": "// in this ses" + "sion",
        }
        self.assertEqual(set(examples), set(PATTERNS))
        for what, line in examples.items():
            with self.subTest(what):
                self.assertEqual(self.told("core/A.cpp", line), ["core/A.cpp:2: %s: %s" % (what, line)])

    def test_what_may_stand(self):
        for path, line in (("core/A.cpp", "// the HTML spe" + "c's rules, special cases, 0xD8" + "00, X11, working"),
                           ("email/A.cpp", "// the mail ses" + "sion"), ("a/B.svg", "<path d='D" + "14'/>")):
            with self.subTest(line):
                self.assertEqual(self.told(path, line), [])

    def test_an_empty_tree_is_none(self):
        with tempfile.TemporaryDirectory() as root:
            subprocess.run(["git", "init", "-q", root], check=True)
            self.assertEqual(problems(root), ["there are no files"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
