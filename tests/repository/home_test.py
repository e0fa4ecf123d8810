"""No test reads or writes the home of whoever runs it: neither those that ctest runs, nor a test program by itself.

Usage: home_test.py --build FOLDER
"""
import argparse
import json
import os
import subprocess
import sys
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
SUPPORT = os.path.join(HOUSE, "tests", "support")
sys.path.insert(0, SUPPORT)
from watched_home import WatchedHome  # noqa: E402

LAUNCHER = os.path.join(SUPPORT, "own_home.sh")
DATA = os.path.join(HOUSE, "tests", "cases", "data")
BUILD = ""
READS, WRITES = 'cat "$HOME/.config/QtProject.conf"', 'echo >"$XDG_DATA_HOME/corvane/new"'

# A program that is worked on a display, as the tests of the road do it.
ROAD = """
import sys
sys.path.insert(0, %r)
from virtual_desktop import Corvane, Desktop
with Desktop() as desktop:
    program = Corvane(desktop, %r)
    program.start()
    sys.exit(program.exit_without_saving())
"""


def run(command, environment):
    return subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=240, check=False)


def program(name):
    return os.path.join(BUILD, "bin", name)


class Watch(unittest.TestCase):
    """What is watched for is seen, or the rest of this file proves nothing."""

    def test_reading_and_writing_are_seen(self):
        for script, path in ((READS, ".config/QtProject.conf"), (WRITES, ".local/share/corvane/new"),
                             ('ls "$HOME/Desktop"', "Desktop"), ('rm "$HOME/.bashrc"', ".bashrc")):
            with self.subTest(script), WatchedHome() as home:
                run(["sh", "-c", script], home.environment)
                self.assertIn(path, home.touched())

    def test_leaving_it_alone_is_not(self):
        with WatchedHome() as home:
            run(["true"], home.environment)
            self.assertEqual(home.touched(), [])


class Launcher(unittest.TestCase):
    def test_what_runs_behind_it_has_a_home_of_its_own_that_goes(self):
        with WatchedHome() as home:
            done = run([LAUNCHER, "sh", "-c", 'echo "$HOME"; %s; mkdir "$XDG_DATA_HOME/corvane"; %s' % (READS, WRITES)],
                       home.environment)
            self.assertEqual(home.touched(), [])
            own = done.stdout.splitlines()[0]
            self.assertNotEqual(own, home.home)
            self.assertIn("corvane-home-", own)
            self.assertFalse(os.path.exists(own), done.stdout)

    def test_every_folder_of_a_user_lies_in_it(self):
        with WatchedHome() as home:
            told = run([LAUNCHER, "env"], home.environment).stdout
        values = dict(line.partition("=")[::2] for line in told.splitlines())
        own = values["HOME"]
        folders = {name: value for name, value in values.items() if name.startswith("XDG_") and value.startswith("/")}
        self.assertEqual(sorted(folders), ["XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR",
                                           "XDG_STATE_HOME"])
        for name, value in folders.items():
            self.assertTrue(value.startswith(own + "/"), name)
        self.assertNotIn("DBUS_SESSION_BUS_ADDRESS", values)
        self.assertEqual(values["CORVANE_CACHE"], os.path.join(home.environment["XDG_CACHE_HOME"], "corvane"))

    def test_the_exit_code_is_the_commands(self):
        for code in (0, 1, 77):
            self.assertEqual(run([LAUNCHER, "sh", "-c", "exit %d" % code], os.environ).returncode, code)


class Registered(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        told = subprocess.run(["ctest", "--test-dir", BUILD, "--show-only=json-v1"], capture_output=True, text=True,
                              check=True).stdout
        cls.tests = {test["name"]: test for test in json.loads(told)["tests"]}

    def test_every_test_runs_behind_the_launcher(self):
        self.assertGreater(len(self.tests), 70)
        self.assertEqual([name for name, test in self.tests.items() if test.get("command", [None])[0] != LAUNCHER], [])

    def test_every_case_file_of_a_known_kind_is_played(self):
        kinds = run([program("cases")], os.environ).stdout.split("kinds: ")[1].split()
        files = sorted(name for name in os.listdir(DATA) if name.endswith(".json"))
        self.assertGreater(len(files), 25)
        for name in files:
            kind = name[len("cases_"):-len(".json")]
            played = [test for test in self.tests.values() if os.path.join(DATA, name) in test["command"]]
            if kind in kinds:
                self.assertEqual(len(played), 1, name)

    def test_suites_of_others_are_played_or_skipped_with_the_reason(self):
        for name, file in (("cases_fragments", "html_fragments.json"), ("cases_documents", "html_documents.json"),
                           ("cases_formatting", "editing_commands.json")):
            command = self.tests[name]["command"]
            self.assertIn(77, [entry["value"] for entry in self.tests[name]["properties"]
                               if entry["name"] == "SKIP_RETURN_CODE"])
            at = [os.path.basename(word) for word in command].index("NeedsFile.sh")
            self.assertEqual(os.path.basename(command[at + 1]), file)
            done = run([*command[:at + 1], "/nonexistent/" + file, "true"], os.environ)
            self.assertEqual((done.returncode, done.stdout),
                             (77, "skipped: there is no file %s in /nonexistent\n" % file))
            there = run([*command[:at + 1], os.path.abspath(__file__), "sh", "-c", "exit 3"], os.environ)
            self.assertEqual(there.returncode, 3)


class ByHand(unittest.TestCase):
    """Test programs that are started without the launcher."""

    # The program itself, and four without an application, which know no user; so do those that look for crashes.
    HOMELESS = {"corvane", "stub_test", "stub_unpack", "figure_line", "tree_lease_threads"}

    def test_every_program_of_the_tests_brings_its_own_home(self):
        without = []
        names = sorted(os.listdir(os.path.join(BUILD, "bin")))
        for name in names:
            if not os.path.isfile(program(name)) or name.startswith("fuzz_") or name in self.HOMELESS:
                continue
            with open(program(name), "rb") as file:
                data = file.read()
            if data[:4] == b"\x7fELF" and b"corvane-home-" not in data:
                without.append(name)
        self.assertEqual(without, [])
        self.assertIn("core_tests", names)

    def test_the_home_is_left_alone(self):
        commands = [[program("core_tests"), "--gtest_filter=HostDialogs*:StandardFolders*:RealPlatform*:Settings*"],
                    [program("help_tests"), "--gtest_filter=AboutWindow*"],
                    [program("cases"), "settings", os.path.join(DATA, "cases_settings.json")]]
        for command in commands:
            self.assert_left_alone(command)

    def test_the_home_is_left_alone_on_a_display(self):
        if not os.environ.get("DISPLAY"):
            self.assertNotEqual(os.environ.get("CI"), "true", "a display is among what ./test starts")
            self.skipTest("there is no display")
        self.assert_left_alone([program("color_dialog_tests")], QT_QPA_PLATFORM="xcb")

    def test_the_home_is_left_alone_on_the_road(self):
        self.assert_left_alone([sys.executable, "-B", "-c", ROAD % (SUPPORT, program("corvane"))])

    def assert_left_alone(self, command, **more):
        with self.subTest(command[0]), WatchedHome() as home:
            done = run(command, {**home.environment, **more})
            self.assertEqual(done.returncode, 0, done.stdout)
            self.assertEqual(home.touched(), [])


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = os.path.abspath(parser.parse_args().build)
    unittest.main(argv=sys.argv[:1], verbosity=2)
