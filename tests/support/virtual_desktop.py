"""A display of its own with a window manager, and programs on it that are worked with real mouse and key events.

Nothing here sleeps for a length of time that is hoped to be enough: whatever has to happen is looked for until it has
happened, or a limit is passed.
"""

import contextlib
import mmap
import os
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import zlib

NEEDED = ("Xvfb", "openbox", "xdotool", "import", "setxkbmap")


class TooLate(AssertionError):
    """What was waited for did not happen."""


def missing_tools():
    return [tool for tool in NEEDED if not shutil.which(tool)]


def wait_for(what, condition, seconds=20.0, pause=0.02):
    """The first true value of the condition."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TooLate("not within %g seconds: %s" % (seconds, what))
        time.sleep(pause)


def read(path):
    """Bytes of a file, None where there is none."""
    try:
        with open(path, "rb") as file:
            return file.read()
    except (FileNotFoundError, IsADirectoryError):
        return None


class Desktop:
    """Xvfb and openbox in a scratch folder that also holds a user's home. To be used with `with`.

    `open_to_all` lets programs of other users of this machine onto the display.
    """

    def __init__(self, width=1280, height=1024, open_to_all=False):
        self.width, self.height = width, height
        self.open_to_all = open_to_all
        self.running = []
        self.scratch = None

    def __enter__(self):
        self.scratch = tempfile.mkdtemp(prefix="desktop-")
        try:
            self.start_display()
        except BaseException:
            self.__exit__(*sys.exc_info())
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.running):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(10)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        shutil.rmtree(self.scratch, ignore_errors=True)

    def path(self, *names):
        return os.path.join(self.scratch, *names)

    def start_display(self):
        home = self.path("home")
        self.desktop = os.path.join(home, "Desktop")
        for folder in (self.desktop, os.path.join(home, ".config"), self.path("frame")):
            os.makedirs(folder)
        runtime = self.path("runtime")
        os.mkdir(runtime, 0o700)
        with open(os.path.join(home, ".config", "user-dirs.dirs"), "w", encoding="ascii") as file:
            file.write('XDG_DESKTOP_DIR="$HOME/Desktop"\n')
        taken, given = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(given), "-screen", "0",
                                   "%dx%dx24" % (self.width, self.height), "-fbdir", self.path("frame"), "-nolisten",
                                   "tcp", "-noreset", *(["-ac"] if self.open_to_all else [])],
                                  pass_fds=[given], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.running.append(server)
        os.close(given)
        with os.fdopen(taken) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise TooLate("no virtual display")
        others = ("XDG_", "QT_", "QTWEBENGINE_CHROMIUM_")
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith(others)}
        self.environment.update({
            "DISPLAY": ":" + number, "HOME": home, "XDG_RUNTIME_DIR": runtime, "LC_ALL": "C.UTF-8",
            "XDG_CONFIG_HOME": os.path.join(home, ".config"), "XDG_DATA_HOME": os.path.join(home, ".local", "share"),
            "XDG_CACHE_HOME": os.path.join(home, ".cache")})
        if os.geteuid() == 0:
            self.environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
        # The graphics library leaves memory behind when it is unloaded, and nobody can tell then whose it was. Leaks
        # are looked for in the test programs, which work the same windows.
        if "ASAN_OPTIONS" in self.environment:
            self.environment["ASAN_OPTIONS"] += ":detect_leaks=0"
        self.call("setxkbmap", "us")
        self.start(["openbox", "--sm-disable"])
        # Without its manager windows would be neither maximised nor given the keys.
        wait_for("a window manager", lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
        with open(self.path("frame", "Xvfb_screen0"), "rb") as file:
            self.frame = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        fields = struct.unpack(">25I", self.frame[:100])
        self.line, self.pixels = fields[12], fields[0] + 12 * fields[19]

    def start(self, command, **options):
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                   **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options})
        self.running.append(process)
        return process

    def call(self, *command):
        subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, check=True, timeout=60)

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              check=False, timeout=60).stdout

    # What is seen.

    def color_at(self, x, y):
        """0xRRGGBB of a pixel, straight from the display's memory."""
        at = self.pixels + y * self.line + 4 * x
        return struct.unpack("<I", self.frame[at:at + 4])[0] & 0xFFFFFF

    def row(self, y):
        at = self.pixels + y * self.line
        return self.frame[at:at + 4 * self.width]

    def find_color(self, color, left, top, right, bottom):
        """The first pixel of that colour in a rectangle, None for none."""
        wanted = struct.pack("<I", color)[:3]
        for y in range(top, bottom):
            data = self.row(y)
            for x in range(left, right):
                if data[4 * x:4 * x + 3] == wanted:
                    return x, y
        return None

    def find_line(self, color, height, left, top, right, bottom):
        """Top of the first upright line of that colour, one pixel wide and at least that high; None for none."""
        wanted = struct.pack("<I", color)[:3]
        for y in range(top, bottom - height):
            data = self.row(y)
            at = data.find(wanted, 4 * left, 4 * right)
            while at >= 0:
                beside = (data[at - 4:at - 1], data[at + 4:at + 7])
                if at % 4 == 0 and wanted not in beside and all(
                        self.row(below)[at:at + 3] == wanted for below in range(y, y + height)):
                    return at // 4, y
                at = data.find(wanted, at + 1, 4 * right)
        return None

    def windows(self, name=""):
        """Ids of the windows in view with that text in their title, as the window manager lists them."""
        managed = self.ask("xprop", "-root", "_NET_CLIENT_LIST")
        ids = [part.strip() for part in managed.partition("#")[2].split(",") if part.strip()]
        return [number for number in ids if name in self.title(number)]

    def title(self, window):
        return self.ask("xprop", "-id", window, "-notype", "_NET_WM_NAME").partition("= ")[2].strip().strip('"')

    def active(self):
        return int(self.ask("xdotool", "getactivewindow").strip() or 0)

    def wait_active(self, what, condition, seconds=20):
        """The id of the window that has the keys, once that window is the one."""
        return wait_for(what, lambda: (lambda now: now and condition(now) and now)(self.active()), seconds)

    def settle(self, quiet=0.6, seconds=20):
        """Waits until the picture has been the same for a while."""
        state = {"picture": None, "since": 0.0}

        def is_still():
            picture = zlib.crc32(self.frame)
            if picture != state["picture"]:
                state.update(picture=picture, since=time.monotonic())
            return time.monotonic() - state["since"] > quiet
        wait_for("the picture stands still", is_still, seconds, 0.05)

    def shot(self, file):
        os.makedirs(os.path.dirname(file), exist_ok=True)
        self.call("import", "-window", "root", file)

    # What is done.

    def click(self, x, y):
        self.call("xdotool", "mousemove", str(x), str(y), "click", "1")

    def double_click(self, x, y):
        self.call("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "--delay", "60", "1")

    def keys(self, *names):
        """Presses and releases keys one after the other. A modifier goes up behind its key, as with a hand."""
        command = ["xdotool"]
        for name in names:
            *modifiers, key = name.split("+")
            for modifier in modifiers:
                command += ["keydown", modifier]
            command += ["key", "--delay", "20", key]
            for modifier in reversed(modifiers):
                command += ["keyup", modifier]
        self.call(*command)


class Corvane:
    """The program from a folder of its own, so that this folder keeps its pages."""

    def __init__(self, desktop, program):
        self.desktop = desktop
        self.folder = desktop.path("program")
        os.makedirs(self.folder)
        self.program = shutil.copy(program, self.folder)
        self.process = None

    def card(self, name):
        return os.path.join(self.folder, "card", name)

    def start(self):
        self.log = open(self.desktop.path("program.log"), "ab")
        self.process = self.desktop.start([self.program], stdout=self.log, stderr=self.log)
        self.window = int(wait_for("the main window", lambda: self.desktop.windows("Corvane - "), 60)[0], 16)
        self.desktop.wait_active("the main window has the keys", lambda now: now == self.window)

    def renderer(self):
        """The process that shows the page: of those without children below the program, the largest. None for none.

        The engine's zygote, of which renderers are forked, has no children either while there is none; it alone has to
        have a single thread.
        """
        parents, sizes, threads = {}, {}, {}
        for name in filter(str.isdigit, os.listdir("/proc")):
            with contextlib.suppress(OSError, IndexError):
                with open("/proc/%s/stat" % name, encoding="ascii", errors="replace") as file:
                    fields = file.read().rpartition(")")[2].split()
                parents[int(name)], sizes[int(name)], threads[int(name)] = (int(fields[at]) for at in (1, 21, 17))

        def is_below(number):
            while number in parents and number != self.process.pid:
                number = parents[number]
            return number == self.process.pid
        below = [number for number in parents if number != self.process.pid and is_below(number) and sizes[number] > 0]
        leaves = [number for number in below if number not in parents.values() and threads[number] > 1]
        return max(leaves, key=sizes.get, default=None)

    def caret(self):
        """Top of the line of the insertion point in the page, None for none."""
        return self.desktop.find_line(0x0000FF, 12, 2, 80, 700, 500)

    def hovers(self):
        """The Work Window names what is under the mouse."""
        left, top = (self.desktop.width - 357) // 2, self.desktop.height - 189
        rows = [self.desktop.row(y)[4 * (left + 14):4 * (left + 200)] for y in range(top + 165, top + 180)]
        return len({row[at:at + 3] for row in rows for at in range(0, len(row), 4)}) > 1

    def page_answers_the_mouse(self, x, y, seconds):
        """Whether the page tells that the mouse goes and comes. It is there then, and takes clicks."""
        # What the page before has told may still stand there, so the mouse has to be in this one before it can go.
        self.desktop.call("xdotool", "mousemove", str(x), str(y))
        with contextlib.suppress(TooLate):
            self.desktop.settle(0.2, seconds)
        for place, wanted in ((self.desktop.width // 2, 57), False), ((x, y), True):
            self.desktop.call("xdotool", "mousemove", *map(str, place))
            try:
                wait_for("the page tells of the mouse", lambda: self.hovers() == wanted, seconds)
            except TooLate:
                return False
        return True

    def wait_for_page(self, x=400, y=300):
        wait_for("the page answers the mouse", lambda: self.page_answers_the_mouse(x, y, 2), 60)

    def click_into_page(self, x=400, y=300, seconds=60):
        """One click, which the page has to answer with its insertion point."""
        self.wait_for_page(x, y)
        if self.caret():
            # The one of before would pass for the answer. The next click must not be taken for a third one.
            self.desktop.double_click(x, y)
            wait_for("the insertion point goes", lambda: not self.caret())
            self.desktop.settle(0.6)
        self.click_once(x, y)
        return wait_for("the page answers one click", self.caret, seconds)

    def click_once(self, x, y):
        """A click, and the mouse out of the way: its pointer may cover the insertion point."""
        self.desktop.click(x, y)
        self.desktop.call("xdotool", "mousemove", str(x + 40), str(y + 80))

    def save(self, number=1):
        """Page > Save Current, with the mouse; gives the bytes that were saved."""
        path = self.card("wgcard.html" if number == 1 else "Page%d.html" % number)
        before = os.stat(path).st_mtime_ns if os.path.isfile(path) else 0
        self.desktop.click(59, 28)
        self.desktop.settle(0.3)
        self.desktop.click(75, 74)
        wait_for("the page is saved", lambda: os.path.isfile(path) and os.stat(path).st_mtime_ns != before)
        return wait_for("the file is whole", lambda: (lambda data: data and data.rstrip().endswith(b"</html>")
                                                      and data)(read(path)))

    def exit_without_saving(self):
        self.desktop.keys("alt+f", "x")
        self.desktop.wait_active("the question about saving", lambda now: now != self.window)
        self.desktop.keys("alt+n")
        return self.process.wait(60)

    def messages(self):
        return (read(self.desktop.path("program.log")) or b"").decode("utf-8", "replace")



signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
