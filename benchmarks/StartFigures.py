"""The program beside a bare window of the same browser engine, both with the same page: `start`, the time from the
start to the page, and `memory_bare`, what all processes of each hold in memory when they have come to rest, shared
memory counted once; `start_floor` and `memory_floor`, the same beside one that leaves out of the engine what the
program leaves out. Started by turns, the first of each uncounted.
"""

import argparse
import os
import shutil
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import MarkedPage  # noqa: E402
from Figure import Figure  # noqa: E402
from ProcessMemory import at_rest  # noqa: E402
from virtual_desktop import Corvane, Desktop, missing_tools  # noqa: E402

BOUND = 1.05


def measured(desktop, command, ground):
    """Milliseconds, and megabytes at rest."""
    process, milliseconds = MarkedPage.start(desktop, command, ground)
    once, _ = at_rest(desktop, process)
    return milliseconds, once


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=7, help="starts of each, of which the median counts")
    arguments = parser.parse_args()
    if missing_tools():
        sys.exit("not there: " + " ".join(missing_tools()))
    tools = os.path.join(os.path.abspath(arguments.build), "bin")
    bare = [os.path.join(tools, "bare_view")]
    peers = (("start", "memory_bare", bare), ("start_floor", "memory_floor", bare + ["--lean"]))
    figures = [(Figure(start), Figure(memory, "MB")) for start, memory, _ in peers]
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(tools, "corvane"))
        blank = os.path.join(program.folder, "blank.html")
        MarkedPage.write(blank)
        shown = shutil.copy(blank, desktop.path("bare.html"))
        for turn in range(arguments.rounds + 1):
            own = measured(desktop, [program.program], MarkedPage.STAMPED)
            for (start, memory), (_, _, command) in zip(figures, peers):
                peer = measured(desktop, command + [shown], MarkedPage.GROUND)
                if turn:
                    start.add(own[0], peer[0])
                    memory.add(own[1], peer[1])
    (start, memory), floor = figures
    for figure in floor:
        figure.print()
    good = [start.print(BOUND), memory.print(BOUND)]
    sys.exit(0 if all(good) else 1)


main()
