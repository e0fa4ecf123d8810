"""One commit gives one package, byte for byte, wherever, when and by whom it is made.

To build all of the program twice takes long, so what runs among the tests is less, and this is what it covers:

- What is packed beside the program (theme pictures, help, icons, the web-packs' stub, the desktop's files) is made in
  two folders and compared whole.
- Of the program's sources a fresh sample is compiled in both, as it is shipped and without a cache, and so are embedded
  resources; the objects are compared.
- What is in the build folder is packed twice, with other times of its files, another time zone and other habits of
  whoever packs; the packages are compared.

That the linker makes the same of the same objects, and the sources outside of the sample, is left to --full: two clones
in two folders, two packages by tools/package from beginning to end.

Usage: same_bytes_test.py --build FOLDER [--full] [--seed NUMBER]
"""
import argparse
import concurrent.futures
import hashlib
import io
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
BUILD = ""
SAMPLE = 6
# Made for every package, whatever the sample is.
ALWAYS = ("custom_blocks.cpp", "qrc_Themes.cpp")
HABITS = ({"TZ": "UTC", "LC_ALL": "C"}, {"TZ": "Pacific/Auckland", "LC_ALL": "C.UTF-8", "USER": "somebody",
                                         "QT_HASH_SEED": "7", "PYTHONHASHSEED": "7"})
UMASKS = (0o022, 0o077)
FOLDERS = ("a", "another/place/with/a/longer/name")


def run(*command, cwd=HOUSE, habit=0, **more):
    done = subprocess.run(command, cwd=cwd, env={**os.environ, "CCACHE_DISABLE": "1", **HABITS[habit], **more},
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          umask=UMASKS[habit], check=False)
    if done.returncode != 0:
        raise AssertionError("%s: %s" % (" ".join(command), (done.stdout + done.stderr)[-3000:]))
    return done.stdout


def git(*arguments):
    return run("git", "-c", "safe.directory=*", *arguments)


def read(*names):
    with open(os.path.join(*names), "rb") as file:
        return file.read()


def copy_tree(target, habit):
    """The files as they are now, with times of their own."""
    for path in git("ls-files", "-z", "--cached", "--others", "--exclude-standard").split("\0"):
        if path and os.path.isfile(os.path.join(HOUSE, path)):
            copy = os.path.join(target, path)
            os.makedirs(os.path.dirname(copy), exist_ok=True)
            shutil.copy(os.path.join(HOUSE, path), copy)
            os.utime(copy, (1000000000 + 86400 * habit,) * 2)


def compiled(build):
    """Sources of the program, each with its object and the command that makes it."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    found = {}
    for entry in entries:
        made = re.search(r" -o (\S+)", entry["command"])[1]
        if "/room_" in made or "/corvane.dir/" in made:
            found[os.path.relpath(entry["file"], build)] = made, entry["command"]
    return found


def compile_alone(build, commands, habit):
    """By the very commands of the build, without the order in which it comes to them."""
    def make(command):
        made = os.path.join(build, re.search(r" -o (\S+)", command)[1])
        os.makedirs(os.path.dirname(made), exist_ok=True)
        run("sh", "-c", command, cwd=build, habit=habit)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(make, commands))


def packed_beside(build):
    """What is packed beside the program, or embedded in it: all that the build made but its own means."""
    tops = ("bin/samples", "packaging", "resources/stub", "resources/icons")
    found = [os.path.join(folder, name) for top in tops for folder, _, names in os.walk(os.path.join(build, top))
             for name in names]
    # A link to the program, which isn't there, and what only Windows packs.
    left = {"packaging/corvane", "packaging/corvane.rc"}
    return sorted({os.path.relpath(path, build) for path in found} - left | {"bin/cvn2.hlp"})


def contents(package):
    """What a package holds, for telling where two differ."""
    told, data = {}, read(package)
    at = 8
    while at < len(data):
        name, when, size = data[at:at + 16].decode().strip(), data[at + 16:at + 28], int(data[at + 48:at + 58])
        body = data[at + 60:at + 60 + size]
        told[name] = "%s at %s" % (hashlib.sha256(body).hexdigest(), when.decode().strip())
        if ".tar" in name:
            with tarfile.open(fileobj=io.BytesIO(body)) as tar:
                for one in tar:
                    inner = tar.extractfile(one).read() if one.isreg() else one.linkname.encode()
                    told[name + " " + one.name] = "%o %d %s/%s %s" % (one.mode, one.mtime, one.uname, one.gname,
                                                                     hashlib.sha256(inner).hexdigest())
        at += 60 + size + size % 2
    return told


class Same(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="same-")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def assert_same_package(self, packages):
        first, second = packages
        one, other = contents(first), contents(second)
        self.assertEqual([(name, one.get(name), other.get(name)) for name in sorted({*one, *other})
                          if one.get(name) != other.get(name)], [])
        self.assertEqual(read(first), read(second), "they differ beside their contents")
        self.assertEqual(os.path.basename(first), os.path.basename(second))


class Parts(Same):
    def builds(self):
        """Two folders, configured for what is shipped."""
        houses = [os.path.join(self.scratch.name, name) for name in FOLDERS]
        for habit, house in enumerate(houses):
            copy_tree(house, habit)
        for habit, house in enumerate(houses):
            run("cmake", "--preset", "release", cwd=house, habit=habit)
        return [os.path.join(house, "build-release") for house in houses]

    def test_what_is_made_in_two_folders_is_the_same(self):
        first, second = builds = self.builds()
        objects = [compiled(build) for build in builds]
        made = {source: name for source, (name, _) in objects[0].items()}
        self.assertEqual(made, {source: name for source, (name, _) in objects[1].items()})
        self.assertGreater(len(made), 100)
        always = [source for source in sorted(made) if os.path.basename(source) in ALWAYS]
        self.assertEqual(len(always), len(ALWAYS))
        sample = random.Random(SEED).sample([source for source in sorted(made) if source.startswith("..")], SAMPLE)
        print("seed %d: %s" % (SEED, " ".join(sample)), flush=True)
        for habit, build in enumerate(builds):
            run("cmake", "--build", build, "--parallel", str(os.cpu_count()), "--target", "samples", "help_file",
                "app_icons", "stub", *(made[source] for source in always), habit=habit)
            compile_alone(build, [objects[habit][source][1] for source in sample], habit)
        for name in (made[source] for source in always + sample):
            with self.subTest(name):
                data = read(first, name)
                self.assertEqual(data, read(second, name))
                self.assertNotIn(os.fsencode(self.scratch.name), data)
        products = packed_beside(first)
        self.assertGreater(len(products), 35)
        self.assertEqual(products, packed_beside(second))
        for path in products:
            with self.subTest(path):
                self.assertEqual(read(first, path), read(second, path))

    def test_what_is_packed_twice_is_the_same(self):
        packages = []
        times = {}
        try:
            for habit in range(2):
                made = run(os.path.join(HOUSE, "tools", "package"), "--build", BUILD, habit=habit).strip()
                packages.append(os.path.join(self.scratch.name, str(habit), os.path.basename(made)))
                os.makedirs(os.path.dirname(packages[-1]))
                shutil.move(made, packages[-1])
                # Later, as a build elsewhere would have them; an earlier time would have the build make them anew.
                for name in ("bin/corvane", "bin/cvn2.hlp", "bin/samples/stars.jpg", "packaging/icons/48.png"):
                    path = os.path.join(BUILD, name)
                    times[path] = os.stat(path).st_mtime_ns
                    os.utime(path)
        finally:
            for path, time in times.items():
                os.utime(path, ns=(time, time))
        self.assert_same_package(packages)
        if "SOURCE_DATE_EPOCH" not in os.environ:
            self.assert_times(packages[0], int(git("log", "-1", "--format=%ct")))

    def assert_times(self, package, commit):
        """Nothing in it is younger than the commit, whose time it bears."""
        times = [int(value.split()[1]) for name, value in contents(package).items() if " " in name]
        self.assertEqual(max(times), commit)


class Full(Same):
    def test_two_packages_from_two_clones_are_the_same(self):
        packages = []
        for habit, name in enumerate(FOLDERS):
            house = os.path.join(self.scratch.name, name)
            git("clone", "-q", "--no-hardlinks", HOUSE, house)
            made = run(os.path.join(house, "tools", "package"), cwd=house, habit=habit).strip()
            packages.append(os.path.join(house, made))
            print(hashlib.sha256(read(packages[-1])).hexdigest(), packages[-1], flush=True)
        self.assert_same_package(packages)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--full", action="store_true", help="build all of it twice and compare the packages")
    parser.add_argument("--seed", type=int, help="take the sample that another run told of")
    given = parser.parse_args()
    BUILD = os.path.abspath(given.build)
    SEED = random.randrange(2 ** 31) if given.seed is None else given.seed
    unittest.main(argv=[sys.argv[0], "Full" if given.full else "Parts"], verbosity=2)
