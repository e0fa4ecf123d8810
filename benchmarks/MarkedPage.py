"""A page whose being in view can be read off the display: blank but for a table in a colour that nothing else has.

A page is ready when its table is in the memory of the virtual display; for the program the background must have become
white too, which the page itself hasn't: that is stamped on it once its document is ready to be worked on.
"""

import time

from virtual_desktop import wait_for

MARK = 0x12F0A5
GROUND = 0xFEDCBA
STAMPED = 0xFFFFFF
PAGE = ('<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR="#FEDCBA" TEXT="#000000"><TABLE WIDTH=300 HEIGHT=400 '
        'BGCOLOR="#12F0A5"><TR><TD>&nbsp;</TD></TR></TABLE></BODY></HTML>')
INSIDE = 150, 250
OUTSIDE = 600, 250


def write(path, below=""):
    """With that HTML below the table."""
    with open(path, "w", encoding="ascii") as file:
        file.write(PAGE.replace("</BODY>", below + "</BODY>"))


def start(desktop, command, ground):
    """Starts a program on an empty display; gives its process and the milliseconds until its page is ready."""
    wait_for("an empty display", lambda: not desktop.windows() and desktop.color_at(*INSIDE) != MARK)
    begin = time.perf_counter()
    process = desktop.start(command)
    wait_for("the page", lambda: desktop.color_at(*INSIDE) == MARK and desktop.color_at(*OUTSIDE) == ground, 60, 0.001)
    return process, (time.perf_counter() - begin) * 1000
