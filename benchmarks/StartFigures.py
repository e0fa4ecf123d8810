"""Time from the start of the program to its page, beside that of a bare window of the same browser engine.

Both show the same page, a blank one but for a table in a colour that nothing else has. A page is ready when its table is
in the memory of the virtual display; for the program the background must have become white too, which the page itself
hasn't: that is stamped on it once its document is ready to be worked on. Started by turns, the first of each uncounted.
"""

import argparse
import os
import shutil
import statistics
import sys
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from virtual_desktop import Corvane, Desktop, missing_tools, wait_for  # noqa: E402

MARK = 0x12F0A5
GROUND = 0xFEDCBA
STAMPED = 0xFFFFFF
PAGE = ('<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR="#FEDCBA" TEXT="#000000"><TABLE WIDTH=300 HEIGHT=400 '
        'BGCOLOR="#12F0A5"><TR><TD>&nbsp;</TD></TR></TABLE></BODY></HTML>')
INSIDE = 150, 250
OUTSIDE = 600, 250
BOUND = 1.3


def start(desktop, command, ground):
    wait_for("an empty display", lambda: not desktop.windows() and desktop.color_at(*INSIDE) != MARK)
    begin = time.perf_counter()
    process = desktop.start(command)
    wait_for("the page", lambda: desktop.color_at(*INSIDE) == MARK and desktop.color_at(*OUTSIDE) == ground, 60, 0.001)
    milliseconds = (time.perf_counter() - begin) * 1000
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
        with open(blank, "w", encoding="ascii") as file:
            file.write(PAGE)
        shown = shutil.copy(blank, desktop.path("bare.html"))
        for _ in range(arguments.rounds + 1):
            own.append(start(desktop, [program.program], STAMPED))
            bare.append(start(desktop, [os.path.join(tools, "bare_view"), shown], GROUND))
    ours, peer = statistics.median(own[1:]), statistics.median(bare[1:])
    print("BENCH name=start ours=%.0f peer=%.0f ratio=%.3f unit=ms" % (ours, peer, ours / peer))
    sys.exit(1 if ours / peer > BOUND else 0)


main()
