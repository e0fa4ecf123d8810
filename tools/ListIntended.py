"""Makes docs/intended.md: each behaviour that looks odd and is meant, its place in the code and the test that holds it.

A test is marked by a comment that ends right above it, in a Python test with "#":

    // Meant in FileNameOf: a path without a separator gives "", not the path.
    TEST(FileNameOf, APathWithoutSeparatorGivesNothing) {

The name before the colon is a routine, a class or a table of the rooms. One test may have several marks, each beginning
a line of its own. Beside the list this tells of marks that lead nowhere, and of comments in the rooms that call
something meant while no test is marked for that place.

Usage: ListIntended.py [--write | --check]; without either the list is printed.
"""
import os
import re
import subprocess
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
LIST = os.path.join("docs", "intended.md")
TITLES = {
    "app": "Start, end and settings",
    "mainwindow": "Main window, tool window and projects",
    "webpack": "Web-packs and the settings window",
    "email": "Email",
    "pictures": "Picture editor",
    "icons": "Icon editor",
    "help": "Quick tips and the about window",
    "pageview": "The page view",
    "engine": "The browser engine",
    "document": "The document",
    "core": "Files, texts and colours",
    "platform": "What the system provides",
    "resources": "Texts and pictures",
    "stub": "The web-pack's own program",
}
HEAD = """# What looks odd and is meant

The program does some things that look like mistakes and are none: people's projects and habits, and the order of the
windows' steps, rest on them. Whoever mends one breaks a test. `tools/ListIntended.py --write` makes this list from the
marks above the tests, and the test `house_intended` holds it; never edit it by hand.

To mark a test, write right above it `// Meant in ROUTINE: one sentence.` and make the list anew.
"""

CODE = (".cpp", ".h", ".c")
MARK = re.compile(r"^Meant in ([\w:~]+): (.*)$")
TEST = re.compile(r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)")
SAYS_MEANT = re.compile(r"\b(?:and|is|are)(?: that is)?(?: also| both)? meant\b(?! (?:to|by|for)\b)", re.IGNORECASE)
DEFINITION = re.compile(r"^[A-Za-z_].*?([\w:~]+)\(")


def tracked(root):
    listed = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "--cached", "--others", "--exclude-standard"],
                            cwd=root, capture_output=True, text=True, check=True).stdout
    return sorted(path for path in set(listed.splitlines()) if os.path.isfile(os.path.join(root, path)))


def read(root):
    """The lines of all sources by path: those of the rooms, and those of the tests."""
    rooms, tests = {}, {}
    for path in tracked(root):
        room = path.split("/")[0]
        if room == "tests" and path.endswith((".cpp", ".py")):
            kind = tests
        elif room in TITLES and path.endswith(CODE):
            kind = rooms
        else:
            continue
        with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
            kind[path] = file.read().splitlines()
    return rooms, tests


def comment_above(lines, at, sign):
    """The lines, without their sign, of the comment that ends right above line `at`."""
    first = at
    while first > 0 and lines[first - 1].strip().startswith(sign):
        first -= 1
    return [line.strip()[len(sign):].strip() for line in lines[first:at]]


def marks_of(comment):
    """[(name, sentence)] of a comment's lines."""
    found = []
    for line in comment:
        mark = MARK.match(line)
        if mark:
            found.append([mark[1], mark[2]])
        elif found:
            found[-1][1] += " " + line
    return [(name, sentence.strip()) for name, sentence in found]


def marked_tests(path, lines):
    """[(name, sentence, test)] of a file of tests, and the lines of marks that stand above no test."""
    found, used = [], 0
    sign = "#" if path.endswith(".py") else "//"
    suite = ""
    for at, line in enumerate(lines):
        if path.endswith(".py"):
            in_class = re.match(r"class (\w+)", line)
            suite = in_class[1] if in_class else suite
            test = re.match(r"\s+def (test_\w+)", line)
            name = "%s.%s" % (suite, test[1]) if test else ""
        else:
            test = TEST.match(line)
            name = "%s.%s" % (test[1], test[2]) if test else ""
        if test:
            marks = marks_of(comment_above(lines, at, sign))
            used += len(marks)
            found += [(place, sentence, name) for place, sentence in marks]
    lost = sum(1 for line in lines if re.match(r"\s*%s Meant\b" % sign, line)) - used
    return found, lost


def places_of(name, rooms):
    """The files of the rooms that define a routine, a class or a table."""
    word = re.escape(name)
    routine = re.compile(r"^(?:[A-Za-z_].*?[\s*&])?%s\((?!.*;\s*$)" % word)
    table = re.compile(r"^(?:inline |static )?(?:constexpr|const) [^(]*\b%s\b[^(]*=" % word)
    declared = re.compile(r"^\s*(?!//)(?:(?:class|struct|enum class) %s\b(?!.*;)|.*\b%s\(.*;)" % (word, word))
    code, headers = [], []
    for path, lines in rooms.items():
        candidates = [line for line in lines if name in line]
        if path.endswith(".h"):
            headers += [path] if any(declared.match(line) or table.match(line) for line in candidates) else []
        else:
            code += [path] if any(routine.match(line) or table.match(line) for line in candidates) else []
    return code or headers


def capital(sentence):
    return sentence[:1].upper() + sentence[1:]


def entries_of(rooms, tests):
    """[(room, name, path, sentence, test, path of the test)], and what is wrong with the marks."""
    found, wrong = [], []
    for path, lines in tests.items():
        marked, lost = marked_tests(path, lines)
        if lost:
            wrong.append("%s: %d marks stand right above no test or name no place" % (path, lost))
        for name, sentence, test in marked:
            places = places_of(name, rooms)
            if len(places) != 1:
                wrong.append("%s: %s: %s is defined in %s" % (path, test, name, " and ".join(places) or "no room"))
            elif not sentence.endswith("."):
                wrong.append("%s: %s: the mark is no sentence" % (path, test))
            else:
                found.append((places[0].split("/")[0], name, places[0], capital(sentence), test, path))
    rank = list(TITLES)
    return sorted(found, key=lambda entry: (rank.index(entry[0]), entry[2], entry[1], entry[3], entry[4])), wrong


def routine_at(lines, first, behind):
    """The routine to which the comment of lines `first` up to `behind` belongs; "" where it heads the whole file."""
    if not lines[first].startswith((" ", "\t")):
        for line in lines[behind:]:
            if not line.strip() or line.startswith("#"):
                return ""
            named = DEFINITION.match(line) or re.match(r"^.*\b(k[A-Z]\w*)\b.*=", line)
            return named[1] if named else ""
    for line in reversed(lines[:first]):
        named = DEFINITION.match(line)
        if named:
            return named[1]
        if line.startswith(("class", "struct")):
            following = re.search(r"([\w~]+)\(", "".join(lines[behind:behind + 2]))
            return following[1] if following else ""
    return ""


def meant_comments(rooms):
    """[(path, line, routine)] of the comments in the rooms that call something meant."""
    found = []
    for path, lines in rooms.items():
        first = None
        for at, line in enumerate(lines + [""]):
            if line.strip().startswith("//"):
                first = at if first is None else first
                continue
            if first is not None and SAYS_MEANT.search(" ".join(part.strip()[2:].strip() for part in lines[first:at])):
                found.append((path, first + 1, routine_at(lines, first, at)))
            first = None
    return found


def last(name):
    return name.rpartition("::")[2]


def without_test(rooms, entries):
    """Places whose comment calls something meant while no marked test names them."""
    missing = []
    for path, line, routine in meant_comments(rooms):
        stem = os.path.splitext(path)[0]
        if not any(last(routine) == last(entry[1]) or (not routine and stem == os.path.splitext(entry[2])[0])
                   for entry in entries):
            missing.append("%s:%d: no test is marked \"Meant in %s\"" % (path, line, routine or os.path.basename(stem)))
    return missing


def page(entries):
    text = [HEAD]
    room = None
    for entry in entries:
        if entry[0] != room:
            room = entry[0]
            text.append("\n## %s\n\n| What happens | In the code | Held by |\n|---|---|---|\n" % TITLES[room])
        text.append("| %s | `%s` in [%s](../%s) | [`%s`](../%s) |\n" % (
            entry[3].replace("|", "\\|"), entry[1], entry[2], entry[2], entry[4], entry[5]))
    return "".join(text)


def main(arguments):
    rooms, tests = read(HOUSE)
    entries, wrong = entries_of(rooms, tests)
    wrong += without_test(rooms, entries)
    made = page(entries)
    target = os.path.join(HOUSE, LIST)
    if arguments == ["--write"]:
        with open(target, "w", encoding="utf-8", newline="\n") as file:
            file.write(made)
    elif arguments == ["--check"]:
        with open(target, encoding="utf-8") as file:
            if file.read() != made:
                wrong.append("%s is out of date: run tools/ListIntended.py --write" % LIST)
    elif arguments:
        sys.exit(__doc__)
    else:
        print(made, end="")
    for line in wrong:
        print(line, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
