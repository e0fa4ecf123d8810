"""What tools/CountTests.py makes of the reports of test programs."""
import os
import subprocess
import sys
import tempfile
import unittest
from xml.sax.saxutils import escape

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
GOOGLE = """[==========] Running 3 tests from 1 test suite.
[       OK ] A.One (0 ms)
[       OK ] A.Two (0 ms)
%s
[==========] 3 tests from 1 test suite ran. (1 ms total)
"""


def program(output, status="run", inside=""):
    return '<testcase name="x" status="%s">%s<system-out>%s</system-out></testcase>' % (status, inside, escape(output))


def skipped(reason):
    return program("", "notrun", '<skipped message="%s"/>' % reason)


class Count(unittest.TestCase):
    def told(self, *programs, start=()):
        with tempfile.TemporaryDirectory() as folder:
            report = os.path.join(folder, "report.xml")
            with open(report, "w") as file:
                file.write("<testsuite>%s</testsuite>" % "".join(programs))
            return self.run_on(report, *start)

    def run_on(self, *arguments):
        ran = subprocess.run([sys.executable, "-B", os.path.join(HOUSE, "tools", "CountTests.py"), *arguments],
                             capture_output=True, text=True)
        return ran.stdout.strip(), ran.returncode

    def test_sums(self):
        self.assertEqual(self.told(program("hello"), program(GOOGLE % "[       OK ] A.Three (0 ms)"),
                                   program("..\n\nRan 2 tests in 0.1s\n\nOK\n"), program("4 passed, 0 failed"),
                                   start=("2", "0", "0")), ("12 passed, 0 failed", 0))

    def test_failed_cases(self):
        self.assertEqual(self.told(program(GOOGLE % "[  FAILED  ] A.Three (0 ms)\n[  FAILED  ] A.Three", "fail")),
                         ("2 passed, 1 failed", 1))
        self.assertEqual(self.told(program("Ran 9 tests in 1s\n\nFAILED (failures=1, errors=2, skipped=1)", "fail")),
                         ("5 passed, 3 failed, 1 skipped", 1))
        self.assertEqual(self.told(program("3 passed, 2 failed", "fail")), ("3 passed, 2 failed", 1))
        self.assertEqual(self.told(program("", "fail")), ("0 passed, 1 failed", 1))

    def test_a_crash_is_a_failure(self):
        crash = "[==========] Running 3 tests from 1 test suite.\n[       OK ] A.One (0 ms)\n[ RUN      ] A.Two\n"
        self.assertEqual(self.told(program(crash, "fail")), ("1 passed, 1 failed", 1))
        self.assertEqual(self.told(program("3 passed, 0 failed", "fail")), ("3 passed, 1 failed", 1))

    def test_skipped(self):
        self.assertEqual(self.told(program(""), skipped("SKIP_RETURN_CODE=77")), ("1 passed, 0 failed, 1 skipped", 0))
        self.assertEqual(self.told(program(GOOGLE % "[  SKIPPED ] A.Three (0 ms)\n[  SKIPPED ] 1 test, listed below:")),
                         ("2 passed, 0 failed, 1 skipped", 0))

    def test_a_program_that_is_not_there_is_a_failure(self):
        self.assertEqual(self.told(program(""), skipped("Unable to find executable")), ("1 passed, 1 failed", 1))

    def test_a_program_without_cases_is_a_failure(self):
        self.assertEqual(self.told(program("[==========] Running 0 tests from 0 test suites.\n")),
                         ("0 passed, 1 failed", 1))
        self.assertEqual(self.told(program("Ran 0 tests in 0.0s\n\nOK\n")), ("0 passed, 1 failed", 1))

    def test_no_tests_is_a_failure(self):
        self.assertEqual(self.told(start=("3", "0", "0")), ("3 passed, 1 failed", 1))
        self.assertEqual(self.run_on("/nowhere/report.xml"), ("0 passed, 1 failed", 1))

    def test_failed_checks_before(self):
        self.assertEqual(self.told(program(""), start=("1", "1", "0")), ("2 passed, 1 failed", 1))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
