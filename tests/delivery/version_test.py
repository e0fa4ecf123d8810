"""The version stands once, in CMakeLists.txt, and all that tells it takes it from there, but for the list of changes.

Usage: version_test.py --build FOLDER
"""
import argparse
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
BUILD = ""


def read(*names):
    with open(os.path.join(*names), "rb") as file:
        return file.read()


def declared():
    return re.search(rb"^project\(Corvane VERSION ([0-9.]+)", read(HOUSE, "CMakeLists.txt"), re.MULTILINE)[1]


class Version(unittest.TestCase):
    def packaged(self, name):
        return read(BUILD, "packaging", name)

    def test_it_has_three_numbers(self):
        self.assertRegex(declared(), rb"^[0-9]+\.[0-9]+\.[0-9]+$")

    def test_no_other_file_holds_it(self):
        listed = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], cwd=HOUSE, capture_output=True, check=True).stdout
        paths = [path for path in listed.decode().split("\0") if path and os.path.isfile(os.path.join(HOUSE, path))]
        self.assertEqual([path for path in paths if declared() in read(HOUSE, path)],
                         ["CHANGELOG.md", "CMakeLists.txt"])

    def test_the_changes_end_with_it(self):
        told = re.findall(rb"^## ([0-9.]+) - [0-9-]{10}$", read(HOUSE, "CHANGELOG.md"), re.MULTILINE)
        self.assertEqual(told[0], declared())

    def test_the_program_holds_it(self):
        self.assertIn(b"Version " + declared() + b"\0", read(BUILD, "bin", "corvane"))

    def test_metainfo(self):
        root = xml.etree.ElementTree.fromstring(self.packaged("example.corvane.corvane.metainfo.xml"))
        self.assertEqual([release.get("version") for release in root.find("releases")], [declared().decode()])

    def test_manual_page(self):
        self.assertIn(b'"Corvane ' + declared() + b'"', self.packaged("corvane.1").splitlines()[0])

    def test_changelog_and_package(self):
        self.assertTrue(self.packaged("changelog").startswith(b"corvane (" + declared() + b") "))
        self.assertIn(b'set(CPACK_PACKAGE_VERSION "' + declared() + b'")', read(BUILD, "CPackConfig.cmake"))

    def test_version_resource(self):
        """What a compiler of such resources makes of it, in numbers and as text."""
        compiler = shutil.which("i686-w64-mingw32-windres")
        if not compiler:
            self.assertNotEqual(os.environ.get("CI"), "true")
            self.skipTest("the command i686-w64-mingw32-windres is missing")
        # The icon is painted only where it is wanted.
        source = re.sub(rb"(?m)^1 ICON .*$", b"", self.packaged("corvane.rc"))
        with tempfile.TemporaryDirectory() as scratch:
            with open(os.path.join(scratch, "a.rc"), "wb") as file:
                file.write(source)
            subprocess.run([compiler, "-O", "res", os.path.join(scratch, "a.rc"), os.path.join(scratch, "a.res")],
                           check=True, capture_output=True)
            made = read(scratch, "a.res")
        first, second, third = (int(number) for number in declared().split(b"."))
        fixed = struct.pack("<II8H", 0xFEEF04BD, 0x10000, second, first, 0, third, second, first, 0, third)
        self.assertIn(fixed, made)
        for name in ("FileVersion", "ProductVersion"):
            self.assertIn((name + "\0").encode("utf-16-le"), made)
        self.assertEqual(made.count((declared().decode() + "\0").encode("utf-16-le")), 2)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = os.path.abspath(parser.parse_args().build)
    unittest.main(argv=sys.argv[:1], verbosity=2)
