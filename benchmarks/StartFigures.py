"""Time from the start of the program to its page, beside that of a bare window of the same browser engine.

Both show the same page. Started by turns, the first of each uncounted.
"""

import argparse
import os
import shutil
import statistics
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import MarkedPage  # noqa: E402
from virtual_desktop import Corvane, Desktop, missing_tools  # noqa: E402

BOUND = 1.3


def start(desktop, command, ground):
    process, milliseconds = MarkedPage.start(desktop, command, ground)
    process.terminate()
    process.wait(20)
    return milliseconds


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=7, help="starts of each, of which the median counts")
    arguments = parser.parse_args()
    if missing_tools():
        sys.exit("not there: " + " ".join(missing_tools()))
    tools = os.path.join(os.path.abspath(arguments.build), "bin")
    own, bare = [], []
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(tools, "corvane"))
        blank = os.path.join(program.folder, "blank.html")
        MarkedPage.write(blank)
        shown = shutil.copy(blank, desktop.path("bare.html"))
        for _ in range(arguments.rounds + 1):
            own.append(start(desktop, [program.program], MarkedPage.STAMPED))
            bare.append(start(desktop, [os.path.join(tools, "bare_view"), shown], MarkedPage.GROUND))
    ours, peer = statistics.median(own[1:]), statistics.median(bare[1:])
    print("BENCH name=start ours=%.0f peer=%.0f ratio=%.3f unit=ms" % (ours, peer, ours / peer))
    sys.exit(1 if ours / peer > BOUND else 0)


main()
