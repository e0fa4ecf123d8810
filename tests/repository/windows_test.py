"""The branches for Windows are read by a compiler for Windows, with Qt's own headers: every source in which systems are
told apart, and the rest of platform/.

It is a check of words, names and types, no more: nothing is linked, nothing is run, the headers of Qt are those of
Linux's packages, and the compiler isn't the one that the program is meant to be built with there.

Usage: windows_test.py --build FOLDER
"""
import argparse
import concurrent.futures
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
BUILD = ""
COMPILERS = ("x86_64-w64-mingw32-g++-posix", "x86_64-w64-mingw32-g++", "x86_64-w64-mingw32-g++-win32")
BRANCH = re.compile(rb"^\s*#\s*(?:el)?if.*\b(?:Q_OS_WIN\w*|_WIN32|_WIN64|WIN32|_MSC_VER)\b", re.MULTILINE)
# What is built for this machine alone, and the stub, which its own compiler for Windows reads at each build.
ELSEWHERE = {"tests", "tools", "benchmarks", "stub"}
# For headers of Qt that its packages for Linux may leave out; where they are there, those count.
STAND_INS = os.path.join(HOUSE, "tests", "repository", "windows")
SKIPPED = 77


def sources(room=None):
    """Paths of what the rooms are made of, below the house."""
    rooms = [room] if room else [name for name in sorted(os.listdir(HOUSE)) if os.path.isdir(os.path.join(HOUSE, name))
                                 and name not in ELSEWHERE and not name.startswith((".", "build"))]
    return [os.path.relpath(os.path.join(folder, name), HOUSE) for one in rooms
            for folder, _, names in os.walk(os.path.join(HOUSE, one)) for name in sorted(names)
            if name.endswith((".h", ".cpp", ".c"))]


def with_branch():
    found = []
    for path in sources():
        with open(os.path.join(HOUSE, path), "rb") as file:
            if BRANCH.search(file.read()):
                found.append(path)
    return found


def flags(path):
    """Folders of headers and definitions with which the build compiles a source, without what is this machine's own."""
    with open(os.path.join(BUILD, "compile_commands.json"), encoding="utf-8") as file:
        commands = [entry["command"] for entry in json.load(file) if entry["file"] == os.path.join(HOUSE, path)]
    words = shlex.split(commands[0])
    kept = []
    for at, word in enumerate(words):
        if word == "-isystem" and words[at + 1] != "/usr/include":
            kept += [word, words[at + 1]]
        elif word.startswith(("-I", "-D")):
            kept.append(word)
    return kept


def read_by_compiler(path, like=None):
    """What the compiler says, "" when it has nothing against it."""
    done = subprocess.run([COMPILER, "-std=c++20", "-fsyntax-only", "-DUNICODE", "-D_UNICODE", "-DNOMINMAX",
                           *flags(like or path), "-idirafter", STAND_INS, os.path.join(HOUSE, path)],
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=600, check=False)
    return "" if done.returncode == 0 else done.stderr or "exit code %d" % done.returncode


class Branches(unittest.TestCase):
    def test_only_sources_of_the_platform_have_branches(self):
        found = with_branch()
        self.assertGreater(len(found), 4)
        self.assertEqual([path for path in found if not re.match(r"platform/\w+\.cpp$", path)], [])

    def test_the_compiler_accepts_them(self):
        wanted = sorted({path for path in sources("platform") if path.endswith(".cpp")} | set(with_branch()))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for path, told in zip(wanted, pool.map(read_by_compiler, wanted)):
                with self.subTest(path):
                    self.assertEqual(told, "")


class MadeUp(unittest.TestCase):
    def told(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "MadeUp.cpp")
            with open(path, "w", encoding="ascii") as file:
                file.write("#include <QWidget>\n" + text)
            return read_by_compiler(path, "platform/HostShell.cpp")

    def test_it_is_windows(self):
        self.assertEqual("", self.told(
            "#include <windows.h>\n#if !defined(Q_OS_WIN) || defined(Q_OS_UNIX)\n#error no\n#endif\n"
            "HWND Of(QWidget* one) { return reinterpret_cast<HWND>(one->winId()); }\n"))

    def test_a_fault_in_a_branch_is_found(self):
        for text in ("int broken = \"text\";", "#include <unistd.h>\nint made = fork();", "#include <sys/socket.h>"):
            with self.subTest(text):
                self.assertNotEqual(self.told("#ifdef Q_OS_WIN\n%s\n#endif\n" % text), "")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = os.path.abspath(parser.parse_args().build)
    COMPILER = next(filter(None, map(shutil.which, COMPILERS)), None)
    if not COMPILER:
        print("skipped: no compiler for Windows is there, such as", COMPILERS[0])
        sys.exit(1 if os.environ.get("CI") == "true" else SKIPPED)
    unittest.main(argv=sys.argv[:1], verbosity=2)
