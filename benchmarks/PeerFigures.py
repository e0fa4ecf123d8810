"""The program beside LibreOffice Writer/Web, the other editor for pages that Debian has: `start_peer`, the time from its
start to a page that can be worked on, the peer's to its first window, which is empty then; `start_peer_page`, the peer's
to the insertion point in its page; and `memory_peer`, what all processes of each hold in memory when they have come to
rest.

Memory that several processes share counts once (proportional set size, of which other programs that use the same
libraries take their part); `memory_peer_rss` is the plain sum, in which it counts for each process. Started by turns, the first of each uncounted. Where there is no LibreOffice there is no figure.
"""

import argparse
import os
import shutil
import statistics
import sys
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import MarkedPage  # noqa: E402
from virtual_desktop import Corvane, Desktop, TooLate, missing_tools, wait_for  # noqa: E402

BOUND = 0.6
FIGURES = (("start_peer", "ms"), ("start_peer_page", "ms"), ("memory_peer", "MB"), ("memory_peer_rss", "MB"))


def memory_of(process):
    """Megabytes of a process and all that descends from it: shared memory counted once, and for each."""
    once = each = 0
    waiting = [process]
    while waiting:
        one = "/proc/%d" % waiting.pop()
        try:
            for thread in os.listdir(one + "/task"):
                with open("%s/task/%s/children" % (one, thread), encoding="ascii") as file:
                    waiting += map(int, file.read().split())
            with open(one + "/smaps_rollup", encoding="ascii") as file:
                sizes = {words[0]: words[1] for words in map(str.split, file) if len(words) == 3}
        except (FileNotFoundError, ProcessLookupError):
            continue
        once += int(sizes["Pss:"])
        each += int(sizes["Rss:"])
    return once / 1024, each / 1024


def at_rest(desktop, process):
    try:
        desktop.settle(1.5, 15)
    except TooLate:
        pass  # a caret blinks
    memory = memory_of(process.pid)
    process.terminate()
    process.wait(30)
    return memory


def shows_insertion_point(desktop):
    """Of the peer: a black line near the left edge of the white page, below its ruler."""
    return desktop.color_at(300, 250) == 0xFFFFFF and desktop.find_color(0, 6, 122, 12, 185)


def start_own(desktop, program):
    process, milliseconds = MarkedPage.start(desktop, [program.program], MarkedPage.STAMPED)
    return milliseconds, milliseconds, *at_rest(desktop, process)


def start_peer(desktop, command):
    wait_for("an empty display", lambda: not desktop.windows())
    begin = time.perf_counter()
    process = desktop.start(command)
    wait_for("the peer's window", desktop.windows, 120, 0.001)
    window = (time.perf_counter() - begin) * 1000
    wait_for("the peer's insertion point", lambda: shows_insertion_point(desktop), 60, 0.001)
    page = (time.perf_counter() - begin) * 1000
    return window, page, *at_rest(desktop, process)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=7, help="starts of each, of which the median counts")
    arguments = parser.parse_args()
    office = shutil.which("soffice")
    # Other parts of it can be there alone.
    if not office or not os.path.exists(os.path.join(os.path.dirname(os.path.realpath(office)), "libswlo.so")):
        print("LibreOffice Writer is not there, so there is nothing to compare with", file=sys.stderr)
        return 0
    if missing_tools():
        sys.exit("not there: " + " ".join(missing_tools()))
    own, peer = [], []
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(os.path.abspath(arguments.build), "bin", "corvane"))
        MarkedPage.write(os.path.join(program.folder, "blank.html"))
        command = [office, "--web", "--norestore", "--nologo", "--nofirststartwizard",
                   "-env:UserInstallation=file://" + desktop.path("office")]
        for _ in range(arguments.rounds + 1):
            own.append(start_own(desktop, program))
            peer.append(start_peer(desktop, command))
    ratios = {}
    for (name, unit), ours, theirs in zip(FIGURES, zip(*own[1:]), zip(*peer[1:])):
        ours, theirs = statistics.median(ours), statistics.median(theirs)
        ratios[name] = ours / theirs
        print("BENCH name=%s ours=%.0f peer=%.0f ratio=%.3f unit=%s" % (name, ours, theirs, ratios[name], unit))
    return 1 if ratios["start_peer"] > BOUND else 0


sys.exit(main())
