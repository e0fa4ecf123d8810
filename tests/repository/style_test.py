"""Lines are no longer than 120 characters in what no formatter holds: Python, shell and JavaScript."""
import os
import re
import unittest

from walk_test import HOUSE, tracked

LONGEST = 120
SHELL = re.compile(r"#!.*\b(ba)?sh\b")


def is_held(path, text):
    return path.endswith((".py", ".js")) or bool(SHELL.match(text))


def too_long(path, text):
    return ["%s:%d" % (path, number) for number, line in enumerate(text.splitlines(), 1) if len(line) > LONGEST]


class Style(unittest.TestCase):
    def test_no_line_is_too_long(self):
        found, held = [], []
        for path in tracked():
            try:
                with open(os.path.join(HOUSE, path), encoding="utf-8") as file:
                    text = file.read()
            except (OSError, UnicodeDecodeError):
                continue
            if is_held(path, text):
                held.append(path)
                found += too_long(path, text)
        self.assertLessEqual({"run", "tools/setup", "tools/Lint.py", "engine/Bridge.js"}, set(held))
        self.assertEqual([], found)

    def test_a_long_line_is_found(self):
        self.assertEqual(["a.py:2"], too_long("a.py", "x" * 120 + "\n" + "x" * 121 + "\n"))
        self.assertTrue(is_held("bench", "#!/bin/bash\n"))
        self.assertFalse(is_held("README.md", "# bash\n"))


if __name__ == "__main__":
    unittest.main()
