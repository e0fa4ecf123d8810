"""What ./run and its like say and leave behind where a machine lacks something: the scripts in a folder of their own,
with stand-ins for apt-get, dpkg-query and cmake."""
import contextlib
import io
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import road  # noqa: E402

NOBODY = 65534
PACKAGES = """# A comment.
plain
newer | older (<< 6.5)  # of two names
"""
# Tells the version of each name in $INSTALLED, "name=version name=version".
DPKG_QUERY = """
for own in $INSTALLED; do
  [[ ${own%%=*} != "${@: -1}" ]] || { echo -n "installed ${own#*=}" && exit 0; }
done
exit 1
"""
APT_GET = """
printf '%s|' "$@" >>"$RECORD"
echo >>"$RECORD"
[[ " $* " != *" satisfy "* || -z ${APT_SAYS-} ]] || { echo "E: $APT_SAYS" && exit 100; }
"""
CMAKE = """
printf '%s|' "$@" >>"$RECORD"
echo >>"$RECORD"
case $1 in
  --preset)
    [[ -z ${CONFIGURE_SAYS-} ]] || { echo "$CONFIGURE_SAYS" && exit 1; }
    rm -f build/build.ninja
    for name in CMakeCache.txt build.ninja; do head -c 10000 /dev/zero >build/$name; done
    [[ -z ${LOSES-} ]] || rm "build/$LOSES"
    exit 0
    ;;
  --build)
    for ((step = 1; step <= 300; ++step)); do echo "[$step/300] Building"; done
    echo "it.cpp: warning: it is seen"
    [[ -z ${BUILD_SAYS-} ]] || { echo "$BUILD_SAYS" && exit 1; }
    ;;
esac
"""
EVERYTHING = {"INSTALLED": "plain=1 newer=6.8"}


def script(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write("#!/bin/bash\n" + text)
    os.chmod(path, 0o755)


class Commands(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        os.chmod(scratch.name, 0o755)
        self.top = os.path.join(scratch.name, "clone")
        for name in ("run", "tools/environment.sh", "tools/setup", ".ci/run"):
            os.makedirs(os.path.dirname(os.path.join(self.top, name)), exist_ok=True)
            shutil.copy(os.path.join(HOUSE, name), os.path.join(self.top, name))
        with open(os.path.join(self.top, "packages.txt"), "w", encoding="utf-8") as file:
            file.write(PACKAGES)
        self.fakes = os.path.join(scratch.name, "fakes")
        self.record = os.path.join(scratch.name, "record")
        for name, text in (("dpkg-query", DPKG_QUERY), ("apt-get", APT_GET), ("cmake", CMAKE),
                           ("sudo", '[[ $1 != -n ]] || shift\nexec "$@"\n')):
            script(os.path.join(self.fakes, name), text)
        script(os.path.join(self.top, "tests", "endtoend", "tour_test.py"), "")
        with open(os.path.join(self.top, "tests", "endtoend", "tour_test.py"), "w", encoding="utf-8") as file:
            file.write("print('the tour is taken')\n")
        script(os.path.join(self.top, "build", "bin", "corvane"), 'echo "started with $*"\n')

    def call(self, *command, before=(), **values):
        environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment.update({"PATH": self.fakes + ":" + os.environ["PATH"], "RECORD": self.record, **EVERYTHING,
                            **values})
        return subprocess.run([*before, *command], cwd=self.top, env=environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=60, check=False)

    def recorded(self):
        with contextlib.suppress(FileNotFoundError), open(self.record, encoding="utf-8") as file:
            return file.read().splitlines()
        return []

    def fails_with(self, done, *words):
        """Not 0, and the last line is one sentence with those words."""
        self.assertNotEqual(done.returncode, 0)
        self.assertNotIn("Traceback", done.stdout + done.stderr)
        last = done.stderr.strip().splitlines()[-1]
        for word in words:
            self.assertIn(word, last)

    # What is to be installed.

    def asked_for(self, installed):
        self.assertEqual(self.call("tools/setup", INSTALLED=installed).returncode, 0)
        asked = [line for line in self.recorded() if "|satisfy|" in line]
        return asked[0].strip("|").partition("--no-install-recommends|")[2].split("|") if asked else []

    def test_nothing_is_asked_for_where_all_is_there(self):
        self.assertEqual(self.asked_for("plain=1 newer=6.8"), [])
        self.assertEqual(self.call("tools/setup").stderr, "")

    def test_either_name_will_do(self):
        self.assertEqual(self.asked_for("plain=1 older=6.4.2-1"), [])

    def test_a_version_that_will_not_do_is_not_enough(self):
        self.assertEqual("|".join(self.asked_for("plain=1 older=6.8.2-3")), "newer | older (<< 6.5)")

    def test_what_is_missing_is_asked_for(self):
        self.assertEqual(self.asked_for("newer=6.8"), ["plain"])

    # What a machine can lack.

    def test_without_network(self):
        done = self.call("./run", INSTALLED="", APT_SAYS="Could not resolve 'deb.example'")
        self.fails_with(done, "setup: ", "network")

    def test_without_the_packages(self):
        done = self.call("./run", INSTALLED="", APT_SAYS="Unable to locate package plain")
        self.fails_with(done, "setup: ", "don't have them all")

    def test_without_room_for_the_packages(self):
        done = self.call("./run", INSTALLED="",
                         APT_SAYS="You don't have enough free space in /var/cache/apt/archives/.")
        self.fails_with(done, "setup: ", "the disk is full")

    def test_without_debian(self):
        os.remove(os.path.join(self.fakes, "dpkg-query"))
        tools = os.path.join(self.fakes, "tools")
        os.mkdir(tools)
        for name in ("bash", "sed", "dirname", "cat", "env"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        done = self.call("./run", PATH=tools)
        self.fails_with(done, "setup: ", "no Debian packages", "packages.txt")

    def test_without_root(self):
        os.remove(os.path.join(self.fakes, "sudo"))
        script(os.path.join(self.fakes, "sudo"), "exit 1\n")
        before = ["setpriv", "--reuid", str(NOBODY), "--clear-groups"] if os.geteuid() == 0 else []
        done = self.call("tools/setup", before=before, INSTALLED="newer=6.8")
        self.fails_with(done, "setup: ", "root", "apt-get satisfy --no-install-recommends 'plain'")

    def test_with_a_display_that_refuses(self):
        done = self.call("./run", DISPLAY=":9999")
        self.fails_with(done, "run: the display :9999 refuses")
        self.assertNotIn("started with", done.stdout)

    def test_with_a_full_disk_and_with_room_again(self):
        inside = "\n".join([
            "mount -t tmpfs -o size=30m tmpfs build", "cp -r ../bin build/", "head -c 40000000 /dev/zero >build/filler",
            "./run", "echo \"code $?\"", "rm build/filler", "./run", "echo \"code $?\""])
        shutil.copytree(os.path.join(self.top, "build", "bin"), os.path.join(self.top, "..", "bin"))
        spaces = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--mount", "--map-root-user"]
        if subprocess.run([*spaces, "mount", "-t", "tmpfs", "tmpfs", "/mnt"], capture_output=True,
                          check=False).returncode != 0:
            self.skipTest("this machine lets nobody mount")
        done = self.call("bash", "-c", inside, before=spaces, BUILD_SAYS="")
        self.assertIn("configure: failed, there is no room in build: the disk is full", done.stderr)
        codes = [line for line in done.stdout.splitlines() if line.startswith("code ")]
        self.assertEqual(codes, ["code 1", "code 0"])
        self.assertEqual(done.stdout.count("the tour is taken"), 1)

    def test_a_configuration_that_could_not_be_written_is_none(self):
        for name in ("CMakeCache.txt", "build.ninja"):
            self.fails_with(self.call("./run", LOSES=name), "configure: failed, ", "the disk is full")

    # The stages.

    def test_each_stage_tells_that_it_begins(self):
        done = self.call("./run")
        self.assertEqual(done.returncode, 0, done.stderr)
        stages = [line for line in done.stdout.splitlines() if line.startswith("== ")]
        self.assertEqual(stages, ["== setup", "== configure", "== build", "== tour"])

    def test_everything_that_the_tour_wants_is_built(self):
        self.call("./run")
        build = [line.strip("|").split("|") for line in self.recorded() if line.startswith("--build|")]
        self.assertEqual([line[line.index("--target"):] for line in build], [["--target", "corvane", "stub_viewer"]])

    def test_a_log_sees_now_and_then_how_far_the_build_is(self):
        lines = self.call("./run").stdout.splitlines()
        self.assertIn("build: step 1 of 300", lines)
        self.assertIn("it.cpp: warning: it is seen", lines)
        self.assertLess(len(lines), 20)

    def test_a_failing_stage_is_named(self):
        done = self.call("./run", CONFIGURE_SAYS="no such library")
        self.assertIn("no such library", done.stderr)
        self.fails_with(done, "configure: failed, ")
        done = self.call("./run", BUILD_SAYS="no such name")
        self.assertIn("no such name", done.stdout)
        self.fails_with(done, "build: failed, ")

    def test_a_tour_that_fails_is_named(self):
        with open(os.path.join(self.top, "tests", "endtoend", "tour_test.py"), "w", encoding="utf-8") as file:
            file.write("import sys\nsys.exit(1)\n")
        self.fails_with(self.call("./run"), "tour: failed, ")

    def test_an_error_of_the_tour_itself_is_one_line_with_its_place(self):
        def play(*_):
            with open("/nowhere/at-all", encoding="utf-8"):
                pass
        given, sys.argv = sys.argv, ["tour", "--build", self.top, "--out", os.path.join(self.top, "out")]
        try:
            with contextlib.redirect_stdout(io.StringIO()) as told, contextlib.redirect_stderr(told):
                code = road.run("", "tour", play)
        finally:
            sys.argv = given
        if code == road.SKIPPED:
            self.skipTest(told.getvalue())
        self.assertEqual(code, 1)
        self.assertNotIn("Traceback", told.getvalue())
        line = [line for line in told.getvalue().splitlines() if "FAILED" in line][0]
        self.assertIn("/nowhere/at-all", line)
        self.assertIn("commands_test.py:", line)

    # What continuous integration runs.

    def ci(self, code):
        script(os.path.join(self.top, "run"), 'echo "tour on ${DISPLAY-no display}, CI=$CI"\nexit %d\n' % code)
        script(os.path.join(self.top, "test"), 'echo "test $*"\n')
        return self.call(".ci/run", DISPLAY=":1").stdout.splitlines()

    def test_the_tour_comes_first_and_counts(self):
        self.assertEqual(self.ci(0), ["tour on no display, CI=true", "test --add 1 0"])
        self.assertEqual(self.ci(3), ["tour on no display, CI=true", "test --add 0 1"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
