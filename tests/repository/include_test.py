"""Holds every #include against the floors that the rooms' links declare, and the other rules of the house.

Usage: include_test.py --build FOLDER, where BUILD/rooms.txt tells `room floor link link ...` a line.
"""
import argparse
import os
import re
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
BUILD = ""
NO_PART = re.compile(r"^(\..*|build|build-.*|tour)$")
TOP = ("app", 6.0)
START = os.path.join("app", "start")  # the program's main function, which chooses what stands behind interfaces
APART = "stub"  # a program of its own, for Windows alone
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
MADE = re.compile(r"^(moc_.*\.cpp|.*\.moc|ui_.*\.h)$")
PLATFORM_SWITCH = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b.*\b(Q_OS_\w+|_?_?WIN(32|64)\w*|__linux\w*|__unix\w*|"
                             r"__APPLE__|__MACH__)\b")
SYSTEM = re.compile(r"^((sys|netinet|arpa|net|linux|X11|mach)/.*|(windows|windowsx|winsock2|ws2tcpip|shellapi|shlobj|"
                    r"unistd|fcntl|dlfcn|pwd|grp|netdb|poll|spawn|termios|pthread|dirent|io|direct)\.h)$")
# Components that know each other because the DOM's interfaces do: document.selection.createRange().select(); and the
# main window with the rows that say which of its members a command is.
RINGS = [{"document/HTMLDocument", "document/HTMLElement", "document/HTMLSelectionObject", "document/HTMLTxtRange",
          "document/HTMLWindow2"},
         {"mainwindow/FWeb", "mainwindow/FWebTables", "mainwindow/WorkWindow"}]
BROWSER_ENGINE = re.compile(r"^(QtWebEngine.*|QWebEngine.*)$")


def source_files(root):
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(name for name in folders if not NO_PART.match(name))
        for name in sorted(files):
            if name.endswith((".h", ".cpp", ".c")):
                yield os.path.relpath(os.path.join(folder, name), root)


def parse_rooms(text):
    """{room: (floor, links)} of all lines; links to what is no room are other people's libraries."""
    rooms = {}
    for line in text.splitlines():
        words = line.split()
        if words:
            rooms[words[0]] = (float(words[1]), words[2:])
    return {room: (floor, [link for link in links if link in rooms]) for room, (floor, links) in rooms.items()}


def reached(room, rooms):
    found, waiting = set(), list(rooms[room][1])
    while waiting:
        link = waiting.pop()
        if link not in found:
            found.add(link)
            waiting.extend(rooms[link][1])
    return found


def rings(includes):
    """Sets of components of which each reaches each: the strongly connected ones of {component: components}."""
    def reach(start):
        found, waiting = set(), [start]
        while waiting:
            for name in includes.get(waiting.pop(), ()):
                if name not in found:
                    found.add(name)
                    waiting.append(name)
        return found
    reaches = {name: reach(name) for name in includes}
    found = []
    for name in sorted(includes):
        ring = {other for other in reaches[name] if name in reaches.get(other, ())}
        if len(ring) > 1 and ring not in found:
            found.append(ring)
    return found


def problems(root, rooms_text, allowed_rings=()):
    """What is against the rules, a line each. A header and the source of its name are one component, and those of a
    room stand in no ring but the allowed ones, of which all are there."""
    rooms = parse_rooms(rooms_text)
    if not rooms:
        return ["there are no rooms"]
    rooms.setdefault(TOP[0], (TOP[1], list(rooms)))
    wrong = []
    for room, (floor, links) in rooms.items():
        wrong += ["%s (floor %g) links %s (floor %g)" % (room, floor, link, rooms[link][0])
                  for link in links if rooms[link][0] >= floor]
    files = list(source_files(root))
    owner = {}
    for path in files:
        name = os.path.basename(path)
        if name.endswith(".h"):
            if name in owner:
                wrong.append("two headers have one name: %s and %s" % (owner[name], path))
            owner.setdefault(name, path)
    allowed = {room: reached(room, rooms) | {room} for room in rooms}
    allowed[APART] = {APART}
    allowed[START] = set(rooms)
    includes = {}
    for path in files:
        folder = START if path.startswith(START + os.sep) else path.split(os.sep)[0]
        component = os.path.splitext(path)[0]
        with open(os.path.join(root, path), encoding="utf-8") as file:
            lines = file.read().splitlines()
        for at, line in enumerate(lines, 1):
            place = "%s:%d: " % (path, at)
            if folder not in ("platform", APART) and PLATFORM_SWITCH.match(line):
                wrong.append(place + "a platform is told apart outside platform/")
            include = INCLUDE.match(line)
            if not include or folder not in allowed:
                continue
            kind, name = include.groups()
            if folder not in ("platform", APART) and SYSTEM.match(name):
                wrong.append(place + "a system header outside platform/: " + name)
            if folder != "engine" and BROWSER_ENGINE.match(name.split("/")[0]):
                wrong.append(place + "the browser engine outside engine/: " + name)
            if kind == '"' and not MADE.match(name):
                if name not in owner:
                    wrong.append(place + "no header of the project: " + name)
                elif os.path.splitext(owner[name])[0] != component and owner[name].split(os.sep)[0] == folder:
                    includes.setdefault(component, set()).add(os.path.splitext(owner[name])[0])
                elif owner[name].split(os.sep)[0] not in allowed[folder]:
                    wrong.append(place + "%s may not include %s" % (folder, owner[name]))
    for ring in rings(includes):
        if ring not in allowed_rings:
            wrong.append("components that need each other: " + ", ".join(sorted(ring)))
    for ring in allowed_rings:
        if ring not in rings(includes):
            wrong.append("no ring any more: " + ", ".join(sorted(ring)))
    return wrong


class Project(unittest.TestCase):
    def test_every_include_keeps_to_the_floors(self):
        with open(os.path.join(BUILD, "rooms.txt")) as file:
            self.assertEqual(problems(HOUSE, file.read(), RINGS), [])


class MadeUp(unittest.TestCase):
    """A small house of which each test breaks one rule."""

    ROOMS = "platform 0 Qt6::Core\ncore 1 platform\ndocument 2 core\nengine 3 document\nhelp 3 document\nicons 3 core\n"

    def told(self, files, rooms=ROOMS):
        whole = {"platform/Shell.h": "", "core/Colors.h": '#include "Shell.h"\n', "document/Node.h": "",
                 "help/Tip.h": "", "icons/Draw.h": ""}
        whole.update(files)
        with tempfile.TemporaryDirectory() as root:
            for path, text in whole.items():
                os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
                with open(os.path.join(root, path), "w") as file:
                    file.write(text)
            return problems(root, rooms)

    def assert_one(self, found, text):
        self.assertEqual(len(found), 1, found)
        self.assertIn(text, found[0])

    def test_good_house(self):
        self.assertEqual(self.told({
            "help/Tip.cpp": '#include "Tip.h"\n#include <QFile>\n#include "Colors.h"\n#include "Shell.h"\n',
            "engine/Page.cpp": "#include <QWebEngineView>\n#include \"Page.moc\"\n",
            "platform/Shell.cpp": "#ifdef Q_OS_WIN\n#include <windows.h>\n#endif\n",
            "stub/Main.c": "#include <windows.h>\n",
            "app/Main.cpp": '#include "Tip.h"\n#include "Draw.h"\n',
            "engine/Page.h": "",
            "app/start/main.cpp": '#include "Page.h"\n',
            "build/x/Tip.h": "",
            "tests/help/TipTest.cpp": "#include <unistd.h>\n#include \"Tip.h\"\n"}), [])

    def test_higher_floor(self):
        self.assert_one(self.told({"core/A.cpp": '#include "Node.h"\n'}), "core may not include document/Node.h")

    def test_same_floor(self):
        self.assert_one(self.told({"icons/A.cpp": '#include "Tip.h"\n'}), "icons may not include help/Tip.h")

    def test_lower_floor_without_a_link(self):
        self.assert_one(self.told({"icons/A.cpp": '  # include "Node.h"\n'}), "icons may not include document/Node.h")

    def test_application_from_below(self):
        self.assert_one(self.told({"app/Main.h": "", "help/A.cpp": '#include "Main.h"\n'}), "help may not include app")

    def test_stub_keeps_to_itself(self):
        self.assert_one(self.told({"stub/Main.c": '#include "Shell.h"\n'}), "stub may not include platform/Shell.h")

    def test_link_to_the_same_floor(self):
        self.assert_one(self.told({}, self.ROOMS.replace("icons 3 core", "icons 3 core help")),
                        "icons (floor 3) links help")

    def test_unknown_header(self):
        self.assert_one(self.told({"core/A.cpp": '#include "Nowhere.h"\n'}), "no header of the project")

    def test_path_in_an_include(self):
        self.assert_one(self.told({"core/A.cpp": '#include "platform/Shell.h"\n'}), "no header of the project")

    def test_two_headers_of_one_name(self):
        self.assert_one(self.told({"tests/support/Shell.h": ""}), "two headers have one name")

    def test_browser_engine(self):
        self.assert_one(self.told({"help/A.cpp": "#include <QWebEngineView>\n"}), "the browser engine")
        self.assert_one(self.told({"app/A.cpp": "#include <QtWebEngineCore/QWebEnginePage>\n"}), "the browser engine")

    def test_platform_switch(self):
        for line in ("#ifdef Q_OS_WIN", "#if defined(_WIN32)", "#ifndef __linux__", "#  elif defined(Q_OS_MACOS)"):
            with self.subTest(line):
                self.assert_one(self.told({"core/A.cpp": line + "\n"}), "a platform is told apart")

    def test_system_header(self):
        for name in ("windows.h", "unistd.h", "sys/stat.h"):
            with self.subTest(name):
                self.assert_one(self.told({"core/A.cpp": "#include <%s>\n" % name}), "a system header")

    def test_ring_of_components(self):
        self.assert_one(self.told({"core/A.h": "", "core/A.cpp": '#include "A.h"\n#include "B.h"\n', "core/B.h": "",
                                   "core/B.cpp": '#include "B.h"\n#include "C.h"\n', "core/C.h": '#include "A.h"\n'}),
                        "components that need each other: core/A, core/B, core/C")

    def test_ring_that_is_none_any_more(self):
        found = problems(HOUSE, self.ROOMS, [{"core/A", "core/B"}])
        self.assertIn("no ring any more: core/A, core/B", found)

    def test_no_rooms(self):
        self.assertEqual(problems(HOUSE, ""), ["there are no rooms"])


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = parser.parse_args().build
    unittest.main(argv=sys.argv[:1], verbosity=1)
