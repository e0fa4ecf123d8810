"""What `cmake --install` lays down, and the build without the compiler of the stub.

Usage: install_test.py --build FOLDER
"""
import argparse
import configparser
import filecmp
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
BUILD = ""
ID = "example.corvane.corvane"
SIDES = (16, 22, 24, 32, 48, 64, 128, 256)


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120,
                          check=False)


def text_of(*names):
    with open(os.path.join(*names), encoding="utf-8") as file:
        return file.read()


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.prefix = cls.scratch.name
        done = run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        if done.returncode != 0:
            raise AssertionError(done.stdout)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def path(self, *names):
        return os.path.join(self.prefix, *names)

    def assert_good(self, *command):
        done = run(*command)
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_the_command_is_a_link_to_the_program_in_its_own_folder(self):
        self.assertTrue(os.path.islink(self.path("bin", "corvane")))
        self.assertEqual(os.path.realpath(self.path("bin", "corvane")),
                         os.path.realpath(self.path("lib", "corvane", "corvane")))
        self.assertTrue(os.access(self.path("bin", "corvane"), os.X_OK))

    def test_samples_and_help_lie_beside_the_program(self):
        built, laid = os.path.join(BUILD, "bin", "samples"), self.path("lib", "corvane", "samples")
        names = sorted(name for name in os.listdir(built) if name.endswith((".jpg", ".gif")))
        self.assertEqual(len(names), 15)
        self.assertEqual(sorted(os.listdir(laid)), names)
        self.assertEqual(filecmp.cmpfiles(built, laid, names, shallow=False)[0], names)
        self.assertTrue(filecmp.cmp(os.path.join(BUILD, "bin", "cvn2.hlp"), self.path("lib", "corvane", "cvn2.hlp"),
                                    shallow=False))

    def test_what_a_run_leaves_in_the_build_tree_stays_there(self):
        self.assertEqual(sorted(os.listdir(self.path("lib", "corvane"))),
                         ["corvane", "cvn2.hlp", "licenses.txt", "samples"])

    def test_the_licences_that_the_about_window_promises_lie_beside_the_program(self):
        for folder in (os.path.join(BUILD, "bin"), self.path("lib", "corvane")):
            with open(os.path.join(folder, "licenses.txt"), encoding="utf-8") as file:
                self.assertIn("Info-ZIP", file.read())

    def test_desktop_entry(self):
        entry = self.path("share", "applications", ID + ".desktop")
        self.assert_good("desktop-file-validate", entry)
        reader = configparser.ConfigParser(interpolation=None)
        reader.optionxform = str
        reader.read(entry, encoding="utf-8")
        values = reader["Desktop Entry"]
        self.assertTrue(os.access(self.path("bin", values["Exec"]), os.X_OK))
        icons = self.path("share", "icons", "hicolor")
        self.assertTrue(os.path.isfile(os.path.join(icons, "scalable", "apps", values["Icon"] + ".svg")))
        for side in SIDES:
            with self.subTest(side):
                with open(os.path.join(icons, "%dx%d" % (side, side), "apps", values["Icon"] + ".png"), "rb") as file:
                    head = file.read(26)
                self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
                self.assertEqual(struct.unpack(">II", head[16:24]), (side, side))
                self.assertEqual(head[25], 6, "colours with transparency")
        self.assertEqual(sorted(os.listdir(icons)), sorted(["%dx%d" % (side, side) for side in SIDES] + ["scalable"]))
        # The windows tell desktops the entry's name.
        self.assertIn('"%s"' % ID, text_of(HOUSE, "app", "start", "main.cpp"))

    def test_metainfo(self):
        file = self.path("share", "metainfo", ID + ".metainfo.xml")
        self.assert_good("appstreamcli", "validate", "--no-net", file)
        root = xml.etree.ElementTree.parse(file).getroot()
        self.assertEqual(root.findtext("id"), ID)
        self.assertEqual(root.findtext("launchable"), ID + ".desktop")
        version = re.search(r"^CMAKE_PROJECT_VERSION:\w+=(.+)$", text_of(BUILD, "CMakeCache.txt"), re.MULTILINE)[1]
        self.assertEqual(root.find("releases/release").get("version"), version)

    def test_manual_page(self):
        page = run("gzip", "-dc", self.path("share", "man", "man1", "corvane.1.gz")).stdout
        self.assertTrue(page.startswith(".TH CORVANE 1 "), page)
        self.assertNotIn("@", page)


class Stub(unittest.TestCase):
    def test_pieces_of_another_build_stand_in_for_its_compiler(self):
        pieces = os.path.join(BUILD, "resources", "stub")
        with tempfile.TemporaryDirectory() as other:
            done = run("cmake", "-S", HOUSE, "-B", other, "-G", "Ninja", "-DCORVANE_TESTS=OFF",
                       "-DCORVANE_STUB_PIECES=" + pieces)
            self.assertEqual(done.returncode, 0, done.stdout)
            self.assertNotIn("CORVANE_I686_CC", text_of(other, "CMakeCache.txt"))
            done = run("cmake", "--build", other, "--target", "stub")
            self.assertEqual(done.returncode, 0, done.stdout)
            names = ["STUB1", "STUB2", "STUB4", "STUB5"]
            made = os.path.join(other, "resources", "stub")
            self.assertEqual(sorted(os.listdir(made)), names)
            self.assertEqual(filecmp.cmpfiles(pieces, made, names, shallow=False)[0], names)
            self.assertFalse(os.path.exists(os.path.join(other, "bin", "stub.exe")))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = os.path.abspath(parser.parse_args().build)
    unittest.main(argv=sys.argv[:1], verbosity=2)
