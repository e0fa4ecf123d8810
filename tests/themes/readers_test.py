"""The themes' pictures in another program's readers, and made twice over.

Usage: readers_test.py --build BUILD
"""
import argparse
import os
import subprocess
import sys
import tempfile
import unittest

BUILD = ""
BANNER = "hearttop.gif"


def samples():
    return os.path.join(BUILD, "bin", "samples")


def contents(folder):
    found = {}
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as file:
            found[name] = file.read()
    return found


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, timeout=120, check=False)


class Readers(unittest.TestCase):
    def test_imagemagick_reads_them_without_a_warning(self):
        names = sorted(os.listdir(samples()))
        self.assertEqual(len(names), 15)
        for name in names:
            with self.subTest(name):
                # All pixels are read, not the head alone.
                told = run("identify", "-regard-warnings", "-format", "%m|%w|%h|%[channels]|%n|%#\n",
                           os.path.join(samples(), name))
                self.assertEqual((told.returncode, told.stderr), (0, ""))
                kind, width, height, channels, count, _ = told.stdout.split("|")
                channels = channels.split()[0]  # version 7 tells their number besides
                self.assertEqual(count, "1")
                if name == BANNER:
                    self.assertEqual((kind, width, height, channels), ("GIF", "400", "80", "srgba"))
                else:
                    self.assertEqual((kind, channels), ("JPEG", "srgb"))
                    self.assertEqual((int(width) % 16, int(height) % 16), (0, 0), "its last block would be cut")
                    self.assertTrue(192 <= int(width) <= 640 and 192 <= int(height) <= 640)

    def test_a_broken_file_would_be_told(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, data in contents(samples()).items():
                if name not in ("forest.jpg", BANNER):
                    continue
                path = os.path.join(folder, name)
                with open(path, "wb") as file:
                    file.write(data[: len(data) // 2])
                with self.subTest(name):
                    told = run("identify", "-regard-warnings", "-format", "%#", path)
                    self.assertNotEqual((told.returncode, told.stderr), (0, ""))


class Maker(unittest.TestCase):
    def tool(self):
        return os.path.join(BUILD, "tools", "theme_pictures")

    def test_the_same_bytes_every_time(self):
        with tempfile.TemporaryDirectory() as folder:
            first, second = os.path.join(folder, "one"), os.path.join(folder, "two", "below")
            made = [subprocess.Popen([self.tool(), target]) for target in (first, second)]
            self.assertEqual([one.wait(timeout=240) for one in made], [0, 0])
            self.assertEqual(len(contents(first)), 15)
            self.assertTrue(contents(first) == contents(second), "two runs differ")
            self.assertTrue(contents(first) == contents(samples()), "not what lies beside the program")

    def test_what_cannot_be_written_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            blocked = os.path.join(folder, "a file")
            with open(blocked, "w") as file:
                file.write("in the way")
            told = run(self.tool(), blocked, BANNER)
            self.assertEqual(told.returncode, 1)
            self.assertIn("not all pictures could be made", told.stderr)
        self.assertEqual(run(self.tool()).returncode, 2)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    BUILD = os.path.abspath(parser.parse_args().build)
    unittest.main(argv=sys.argv[:1])
