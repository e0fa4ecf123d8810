"""What grows how, in whole programs: each figure is that of something ten times as large, and its peer the same of the
smaller one, times ten. So 1.0 is as fast as the input grows, and more is a growth that hurts one day.

scale_bytes_start and scale_nodes_start: from the start to a first page of 10 MB in few nodes, or of 100,000 nodes.
scale_project_pack and scale_project_onefile: a project of 1,000 pages, each with ten small pictures and a link to the
next, as a web-pack and as one HTML file.
"""

import argparse
import os
import sys
import tempfile

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
import MarkedPage  # noqa: E402
import PackFigures  # noqa: E402
from Figure import Figure  # noqa: E402
from virtual_desktop import Corvane, Desktop, missing_tools  # noqa: E402

TIMES = 10
PAGES = 100
PICTURES = 10
# Of a page to start with.
BYTES = 1_000_000
NODES = 10_000


def text_of(size):
    block = "<P><FONT SIZE=3>%s</FONT></P>" % ("The garden is in flower, and everybody sends greetings. " * 36)
    return block * (size // len(block))


def letter_of(nodes):
    block = "<FONT SIZE=3>Dear friends, the <B>garden</B> is in flower.</FONT><BR>"
    return block * (nodes // 6)


def starts(build, rounds, name, small, large):
    figure = Figure(name)
    with Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))

        def start(below):
            MarkedPage.write(os.path.join(program.folder, "blank.html"), below)
            process, milliseconds = MarkedPage.start(desktop, [program.program], MarkedPage.STAMPED)
            process.terminate()
            process.wait(30)
            return milliseconds
        start(small)  # warms up
        for _ in range(rounds):
            one, ten = start(small), start(large)
            figure.add(ten, TIMES * one)
    figure.print()


def make_project(folder, pages):
    os.makedirs(folder)
    for page in range(1, pages + 1):
        # Names of one length, and so pictures of one size.
        names = ["%04d_%d.gif" % (page, number) for number in range(PICTURES)]
        for name in names:
            with open(os.path.join(folder, name), "wb") as file:
                file.write(b"GIF89a" + name.encode() * 100)
        link = '<A HREF="Page%d.html">Next Page</A>' % (page + 1) if page < pages else ""
        with open(os.path.join(folder, "Page%d.html" % page if page > 1 else "wgcard.html"), "w",
                  encoding="ascii") as file:
            file.write("<html><head><title>%d</title></head><body>%s%s</body></html>" % (
                page, "".join('<img src="%s" width="16" />' % name for name in names), link))


def projects(build, rounds):
    tool = os.path.join(build, "bin", "make_pack")
    pack, single = Figure("scale_project_pack"), Figure("scale_project_onefile")
    with tempfile.TemporaryDirectory() as scratch:
        small, large = os.path.join(scratch, "small"), os.path.join(scratch, "large")
        make_project(small, PAGES)
        make_project(large, PAGES * TIMES)
        for _ in range(rounds):
            one, ten = (PackFigures.packed(tool, project, scratch)[0] for project in (small, large))
            pack.add(ten, TIMES * one)
            one, ten = (PackFigures.one_file(tool, project, scratch) for project in (small, large))
            single.add(ten, TIMES * one)
    pack.print()
    single.print()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=5, help="measurements of each, of which the median counts")
    arguments = parser.parse_args()
    if missing_tools():
        sys.exit("not there: " + " ".join(missing_tools()))
    build = os.path.abspath(arguments.build)
    projects(build, arguments.rounds)
    starts(build, arguments.rounds, "scale_bytes_start", text_of(BYTES), text_of(BYTES * TIMES))
    starts(build, arguments.rounds, "scale_nodes_start", letter_of(NODES), letter_of(NODES * TIMES))


main()
