"""The Debian package on a fresh, minimal Debian of the version it was built on: an ordinary user installs nothing else,
starts the program with the browser engine's sandbox on, types, takes a theme, saves, and finds it all in the own folder
of data.

Usage: package_test.py --build FOLDER [--out FOLDER] [--package FILE]
What has been built in the first folder is packed, unless a package is given. Pictures are left in the second folder, or
in reports/package of the first. Skipped with exit code 77 and the reason where the machine can't set up such a system.
"""

import os
import re
import subprocess
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path[:0] = [os.path.join(HOUSE, "tests", "support"), os.path.dirname(os.path.abspath(__file__))]
from fresh_debian import UID, USER, FreshDebian, Refused, read_text, why_not  # noqa: E402
from road import SKIPPED, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

PROGRAM_FOLDER = "/usr/lib/corvane"
DATA = "/home/%s/.local/share/corvane" % USER
SAMPLES = 15


class InstalledCorvane(Corvane):
    """The program as the package installed it; what it keeps is looked at from outside."""

    def __init__(self, desktop, system):
        self.desktop, self.system = desktop, system
        self.folder = system.path(DATA)

    def start(self):
        self.log = open(self.desktop.path("program.log"), "ab")
        outer = self.desktop.environment
        handed = {name: outer[name] for name in ("DISPLAY", "ASAN_OPTIONS") if name in outer}
        self.process = self.system.start(["corvane"], handed, stdout=self.log, stderr=self.log)
        self.desktop.running.append(self.process)
        self.window = int(wait_for("the main window", lambda: self.desktop.windows("Corvane - "), 60)[0], 16)
        self.desktop.wait_active("the main window has the keys", lambda now: now == self.window)


def make_package(build):
    """Raises where it can't be made: that is never the machine's fault."""
    done = subprocess.run([os.path.join(HOUSE, "tools", "package"), "--build", build], capture_output=True, text=True,
                          check=False)
    if done.returncode != 0:
        sys.exit("tools/package: " + done.stderr)
    return done.stdout.strip()


def descendants(process):
    """Ids of all that runs below a process, outermost first."""
    found = [process]
    for parent in found:
        for thread in os.listdir("/proc/%d/task" % parent) if os.path.isdir("/proc/%d/task" % parent) else ():
            found += map(int, read_text("/proc/%d/task/%s/children" % (parent, thread)).split())
    return found[1:]


def arguments_of(process):
    return read_text("/proc/%d/cmdline" % process).split("\0")


def status_of(process, name):
    for line in read_text("/proc/%d/status" % process).splitlines():
        if line.startswith(name + ":"):
            return line.split()[1]
    return None


def check_sandbox(program, check, spaces):
    own = [one for one in descendants(program.process.pid) if arguments_of(one)[0].endswith("corvane")][0]

    def renderers():
        """A renderer keeps the arguments of the zygote that it was forked from; nothing descends from it."""
        return [one for one in descendants(own) if "--type=zygote" in arguments_of(one) and not descendants(one)
                and "--no-zygote-sandbox" not in arguments_of(one)]
    found = wait_for("a renderer", renderers)
    check.same("the program runs as the ordinary user", status_of(own, "Uid"), str(UID))
    check.true("nobody switches the sandbox off",
               not any("--no-sandbox" in arguments_of(one) for one in descendants(own)))
    for one in found:
        check.same("a renderer's calls to the system are filtered", status_of(one, "Seccomp"), "2")
        for space in spaces:
            inner, outer = (os.readlink("/proc/%d/ns/%s" % (process, space)) for process in (one, own))
            check.true("a renderer has a namespace of its own: " + space, inner != outer, inner)


def check_package(package, check):
    fields = subprocess.run(["dpkg-deb", "--field", package, "Depends"], capture_output=True, text=True,
                            check=True).stdout
    for needed in ("libqt6webenginewidgets6", "qt6-svg-plugins", r"libgumbo\d", r"libzip\d"):
        check.true("the package depends on " + needed, re.search(needed + r"\b", fields), fields)
    wished = subprocess.run(["dpkg-deb", "--field", package, "Recommends"], capture_output=True, text=True,
                            check=True).stdout.strip().split(", ")
    for needed in ("fonts-liberation", "fonts-dejavu-core", "fonts-comic-neue", "fonts-wine", "fonts-noto-color-emoji"):
        check.true("the package recommends " + needed, needed in wished, wished)
    listed = subprocess.run(["dpkg-deb", "--contents", package], capture_output=True, text=True, check=True).stdout
    lines = [line.split() for line in listed.splitlines()]
    check.same("all of it belongs to root", {line[1] for line in lines}, {"root/root"})
    paths = {line[5] for line in lines}
    for path in ("usr/bin/corvane", "usr/lib/corvane/cvn2.hlp", "usr/lib/corvane/licenses.txt",
                 "usr/share/applications/example.corvane.corvane.desktop",
                 "usr/share/metainfo/example.corvane.corvane.metainfo.xml", "usr/share/man/man1/corvane.1.gz",
                 "usr/share/icons/hicolor/scalable/apps/corvane.svg", "usr/share/icons/hicolor/48x48/apps/corvane.png",
                 "usr/share/doc/corvane/copyright", "usr/share/doc/corvane/changelog.gz"):
        check.true("the package holds " + path, "./" + path in paths, listed)


def namespaces_of_renderers(system):
    """None where the machine refuses them to ordinary users; then the engine keeps to the filter."""
    tried = system.run("unshare", "--user", "true", user=True, may_fail=True)
    if tried.returncode == 0:
        return "user", "pid", "net"
    print("not looked for, as an ordinary user gets none here: namespaces of the renderers:", tried.stdout.strip())
    return ()


def use_program(desktop, system, check, out):
    program = InstalledCorvane(desktop, system)
    program.start()
    check.same("its window's class is what the desktop entry says",
               desktop.ask("xprop", "-id", str(program.window), "-notype", "WM_CLASS").strip(),
               'WM_CLASS = "corvane", "corvane"')
    wait_for("page 1 in the user's folder", lambda: read(program.card("wgcard.html")))
    check.same("the samples are there", len(os.listdir(system.path(DATA + "/samples"))), SAMPLES)
    check.same("the help text came along", read(system.path(DATA + "/cvn2.hlp")),
               read(system.path(PROGRAM_FOLDER + "/cvn2.hlp")))
    check_sandbox(program, check, namespaces_of_renderers(system))
    program.click_into_page()
    desktop.keys("shift+h", "e", "l", "l", "o")
    # The sixth entry: Deep Blue.
    desktop.keys("alt+h", "Down", "Down", "Down", "Down", "Down")
    desktop.settle()
    desktop.shot(os.path.join(out, "1-theme.png"))
    desktop.keys("Return")
    wait_for("the theme's picture in the project", lambda: read(program.card("deepblue.jpg")))
    desktop.settle()
    desktop.shot(os.path.join(out, "2-page.png"))
    page = program.save().decode()
    check.true("the page has the text and the theme",
               "Hello" in page and 'background="deepblue.jpg"' in page and 'text="#A6D0FF"' in page, page)
    check.same("the program ends", program.exit_without_saving(), 0)
    check.same("its folder for the unsaved project goes with it", os.path.exists(program.card("")), False)
    if check.failed:
        print(program.messages())


def play(build, out, check, package=None):
    package = package or make_package(build)
    print("package:", package, os.path.getsize(package), "bytes")
    check_package(package, check)
    with Desktop(open_to_all=True) as desktop, FreshDebian() as system:
        system.install(package)
        use_program(desktop, system, check, out)
        system.run("apt-get", "-q", "remove", "-y", "corvane")
        check.same("nothing stays behind where it was installed", os.path.exists(system.path(PROGRAM_FOLDER)), False)
        check.same("the user's folder stays", len(os.listdir(system.path(DATA + "/samples"))), SAMPLES)


def main():
    reason = why_not()
    if reason:
        print("skipped: " + reason)
        return SKIPPED
    given = None
    if "--package" in sys.argv:
        at = sys.argv.index("--package")
        given = os.path.abspath(sys.argv[at + 1])
        del sys.argv[at:at + 2]
    try:
        return run(__doc__, "package", lambda build, out, check: play(build, out, check, given), ("dpkg-deb",))
    except Refused as problem:
        print("skipped: %s" % problem)
        return 1 if os.environ.get("CI") == "true" else SKIPPED


sys.exit(main())
