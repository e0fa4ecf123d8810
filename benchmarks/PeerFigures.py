"""The program beside LibreOffice Writer/Web, the other editor for pages that Debian has: `start_peer`, the time from
its start to a page that can be worked on, the peer's to its first window, which is empty then; `start_peer_page`, the
peer's to the insertion point in its page; and `memory_peer`, what all processes of each hold in memory when they have
come to rest.

Memory that several processes share counts once; `memory_peer_rss` is the plain sum, in which it counts for each
process. Started by turns, the first of each uncounted. Where there is no LibreOffice there is no figure.
"""

import argparse
import os
import shutil
import sys
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import MarkedPage  # noqa: E402
from Figure import Figure  # noqa: E402
from ProcessMemory import at_rest  # noqa: E402
from virtual_desktop import Corvane, Desktop, missing_tools, wait_for  # noqa: E402

BOUND = 0.6
FIGURES = (("start_peer", "ms"), ("start_peer_page", "ms"), ("memory_peer", "MB"), ("memory_peer_rss", "MB"))


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
    figures = [Figure(name, unit) for name, unit in FIGURES]
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(os.path.abspath(arguments.build), "bin", "corvane"))
        MarkedPage.write(os.path.join(program.folder, "blank.html"))
        command = [office, "--web", "--norestore", "--nologo", "--nofirststartwizard",
                   "-env:UserInstallation=file://" + desktop.path("office")]
        for turn in range(arguments.rounds + 1):
            own, peer = start_own(desktop, program), start_peer(desktop, command)
            for figure, *pair in zip(figures, own, peer) if turn else ():
                figure.add(*pair)
    for figure in figures:
        figure.print()
    return 1 if figures[0].ratio() > BOUND else 0


sys.exit(main())
