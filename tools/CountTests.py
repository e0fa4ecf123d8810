"""Adds up the cases of a ctest run from its JUnit report: `N passed, N failed`, and `, N skipped` where there are any.

Each test program counts with the cases that its own output tells: those of GoogleTest, of Python's unittest, or a line
`N passed, N failed` of its own. A program that tells nothing counts as one. A program that failed has at least one
failed case, and one that passed without having run a case of its own has failed.

Usage: CountTests.py REPORT [PASSED FAILED SKIPPED]
The three numbers are added to the sums. The exit code tells whether anything failed.
"""
import re
import sys
import xml.etree.ElementTree

SKIP_REASONS = ("SKIP_RETURN_CODE", "SKIP_REGULAR_EXPRESSION", "Disabled")


def number(pattern, text):
    """The sum of the pattern's number over the text."""
    return sum(int(found) for found in re.findall(pattern, text, re.MULTILINE))


def told(output):
    """(passed, failed, skipped) by the program's own words, or None where it tells nothing."""
    if re.search(r"^\[==========\] Running \d+ tests? from", output, re.MULTILINE):
        passed = len(re.findall(r"^\[       OK \] ", output, re.MULTILINE))
        failed = len(re.findall(r"^\[  FAILED  \] \S+.* \(\d+ ms\)$", output, re.MULTILINE))
        skipped = len(re.findall(r"^\[  SKIPPED \] \S+ \(\d+ ms\)$", output, re.MULTILINE))
        return passed, failed, skipped
    if re.search(r"^Ran \d+ tests? in ", output, re.MULTILINE):
        ran = number(r"^Ran (\d+) tests? in ", output)
        ends = "\n".join(re.findall(r"^(?:OK|FAILED) \(.*\)$", output, re.MULTILINE))
        failed = number(r"\b(?:failures|errors|unexpected successes)=(\d+)", ends)
        skipped = number(r"\bskipped=(\d+)", ends)
        return ran - failed - skipped, failed, skipped
    lines = re.findall(r"\b(\d+) passed, (\d+) failed\b(?:, (\d+) skipped)?", output)
    if lines:
        return tuple(sum(int(line[at] or 0) for line in lines) for at in range(3))
    return None


def count(case):
    """(passed, failed, skipped) of one test program."""
    status = case.get("status")
    if status in ("notrun", "disabled"):
        reason = case.find("skipped")
        message = reason.get("message", "") if reason is not None else ""
        meant = status == "disabled" or message.startswith(SKIP_REASONS)
        return (0, 0, 1) if meant else (0, 1, 0)
    cases = told(case.findtext("system-out") or "")
    if status == "run":
        if cases is None:
            return 1, 0, 0
        passed, failed, skipped = cases
        return cases if passed + failed + skipped > 0 else (0, 1, 0)
    passed, failed, skipped = cases or (0, 0, 0)
    return passed, max(failed, 1), skipped


def main():
    sums = [int(word) for word in sys.argv[2:5]] or [0, 0, 0]
    try:
        cases = list(xml.etree.ElementTree.parse(sys.argv[1]).iter("testcase"))
    except (OSError, xml.etree.ElementTree.ParseError) as error:
        print("there is no report of the tests: %s" % error, file=sys.stderr)
        cases = []
    if not cases:
        sums[1] += 1
    for case in cases:
        sums = [total + own for total, own in zip(sums, count(case))]
    passed, failed, skipped = sums
    print("%d passed, %d failed" % (passed, failed) + (", %d skipped" % skipped if skipped else ""))
    sys.exit(1 if failed or not passed else 0)


if __name__ == "__main__":
    main()
