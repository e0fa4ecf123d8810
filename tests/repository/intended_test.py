"""docs/intended.md is what tools/ListIntended.py makes of the marks above the tests, and each mark leads somewhere."""
import difflib
import os
import re
import sys
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tools"))
import ListIntended  # noqa: E402

LINE = re.compile(r"^\| (.+\.) \| `([^`]+)` in \[([^\]]+)\]\(\.\./([^)]+)\) \| \[`([^`]+)`\]\(\.\./([^)]+)\) \|$")


class Intended(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.rooms, cls.tests = ListIntended.read(HOUSE)
        cls.entries, cls.wrong = ListIntended.entries_of(cls.rooms, cls.tests)
        with open(os.path.join(HOUSE, ListIntended.LIST), encoding="utf-8") as file:
            cls.page = file.read()

    def test_every_mark_stands_above_a_test_and_names_a_place(self):
        self.assertEqual(self.wrong, [])
        self.assertGreater(len(self.entries), 150)

    def test_what_the_code_calls_meant_has_a_test(self):
        self.assertGreater(len(ListIntended.meant_comments(self.rooms)), 20)
        self.assertEqual(ListIntended.without_test(self.rooms, self.entries), [])

    def test_the_list_is_what_the_tool_makes(self):
        made = ListIntended.page(self.entries)
        differing = [line for line in difflib.unified_diff(self.page.splitlines(), made.splitlines(), "as it is",
                                                           "as it should be", lineterm="", n=0)]
        self.assertEqual(differing, [], "run tools/ListIntended.py --write")

    # Reads the list by itself, so that it would tell of a tool that writes what isn't there.
    def test_each_line_of_the_list_names_a_test_and_a_place_that_are_there(self):
        lines = [LINE.match(line) for line in self.page.splitlines() if line.startswith("| ") and "`" in line]
        self.assertGreater(len(lines), 150)
        for line in lines:
            _, name, shown, code, test, path = line.groups()
            suite, _, case = test.partition(".")
            with self.subTest(test):
                self.assertEqual(shown, code)
                with open(os.path.join(HOUSE, path), encoding="utf-8") as file:
                    marked = re.search(r"(?m)^TEST(_F|_P)?\(%s,\s*%s\)|^\s+def %s\(" % (suite, case, case),
                                       file.read())
                self.assertTrue(marked, "%s has no test of that name" % path)
                with open(os.path.join(HOUSE, code), encoding="utf-8") as file:
                    self.assertTrue(re.search(r"\b%s\b" % re.escape(name), file.read()),
                                    "%s has no %s" % (code, name))


class MadeUp(unittest.TestCase):
    ROOMS = {"core/A.cpp": ["#include \"A.h\"", "", "// It is odd, and that is meant.", "int Odd(int x) {",
                            "  return x;", "}", "", "int Room::Plain() {",
                            "  // Nothing comes of it, and that", "  // is meant.",
                            "  return Odd(1);", "}", "", "// Where it is meant to go.", "int Far() {", "}"],
             "core/A.h": ["// A thing that falls silent, and that is meant.", "#pragma once", "", "class Room {",
                          "  // -1 is no row, and that is meant.", "  int Row() const;", "};"],
             "email/B.cpp": ["constexpr int kRows = 3;", "  return Odd(2);"]}

    def entries(self, *lines, path="tests/core/ATest.cpp"):
        return ListIntended.entries_of(self.ROOMS, {path: list(lines)})

    def test_a_mark_becomes_a_line_of_the_list(self):
        found, wrong = self.entries("// Why this stands here.", "// Meant in Odd: what goes in | comes",
                                    "// out.", "// Meant in kRows: there are three.", "TEST(Suite, Case) {")
        self.assertEqual(wrong, [])
        self.assertEqual(found, [
            ("email", "kRows", "email/B.cpp", "There are three.", "Suite.Case", "tests/core/ATest.cpp"),
            ("core", "Odd", "core/A.cpp", "What goes in | comes out.", "Suite.Case", "tests/core/ATest.cpp")])
        self.assertIn("| What goes in \\| comes out. | `Odd` in [core/A.cpp](../core/A.cpp) | "
                      "[`Suite.Case`](../tests/core/ATest.cpp) |\n", ListIntended.page(found))

    def test_a_python_test_is_marked_too(self):
        found, wrong = self.entries("class Some(unittest.TestCase):", "    # Meant in Room::Plain: nothing.",
                                    "    def test_it(self):", path="tests/core/a_test.py")
        self.assertEqual(wrong, [])
        self.assertEqual([entry[4] for entry in found], ["Some.test_it"])

    def test_wrong_marks_are_told(self):
        for lines in (("// Meant in Nobody: it isn't there.", "TEST(Suite, Case) {"),
                      ("// Meant in Odd: no sentence", "TEST(Suite, Case) {"),
                      ("// Meant in Odd: above nothing.", "", "TEST(Suite, Case) {"),
                      ("// Meant: without a place.", "TEST(Suite, Case) {")):
            with self.subTest(lines[0]):
                found, wrong = self.entries(*lines)
                self.assertEqual((found, len(wrong)), ([], 1))

    def test_what_is_called_meant_is_found_with_its_routine(self):
        self.assertEqual(ListIntended.meant_comments(self.ROOMS),
                         [("core/A.cpp", 3, "Odd"), ("core/A.cpp", 9, "Room::Plain"), ("core/A.h", 1, ""),
                          ("core/A.h", 5, "Row")])

    def test_what_is_called_meant_without_a_test_is_told(self):
        found, _ = self.entries("// Meant in Odd: it is odd.", "TEST(Suite, Case) {")
        # The head of a file is held by any mark for that file.
        self.assertEqual(ListIntended.without_test(self.ROOMS, found),
                         ['core/A.cpp:9: no test is marked "Meant in Room::Plain"',
                          'core/A.h:5: no test is marked "Meant in Row"'])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
