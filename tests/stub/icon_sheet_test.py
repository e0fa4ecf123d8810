"""The built-in icons of web-packs as somebody sees them: drawn by another program's reader, and put on a contact sheet.

Usage: icon_sheet_test.py --build FOLDER
Leaves FOLDER/reports/icons/contact_sheet.png: every icon at its own size on four grounds, and seven times enlarged.
"""

import argparse
import os
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

import icon_images_test as images

BUILD = ""
GROUNDS = [(255, 255, 255), (192, 192, 192), (0, 128, 128), (32, 32, 36)]
LARGE = 7
SIZE = 32
GAP = 12
CELL_WIDTH = SIZE * LARGE + 2 * GAP
CELL_HEIGHT = SIZE * LARGE + SIZE + 3 * GAP
COLUMNS = 5


def png(rows):
    """A PNG file of rows of (red, green, blue)."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    lines = b"".join(b"\0" + bytes(part for pixel in row for part in pixel) for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b""))


def sheet():
    width, height = COLUMNS * CELL_WIDTH, 2 * CELL_HEIGHT
    rows = [[(240, 240, 240)] * width for _ in range(height)]

    def fill(left, top, wide, high, colour):
        for y in range(top, top + high):
            rows[y][left : left + wide] = [colour] * wide

    for number, name in enumerate(images.NAMES):
        left, top = number % COLUMNS * CELL_WIDTH + GAP, number // COLUMNS * CELL_HEIGHT + GAP
        drawn = [[pixel and pixel[::-1] for pixel in row] for row in images.pixels(name)]
        for place, ground in enumerate(GROUNDS):
            fill(left + place * (SIZE + 2 * GAP) - GAP // 2, top - GAP // 2, SIZE + GAP, SIZE + GAP, ground)
            for y in range(SIZE):
                for x in range(SIZE):
                    if drawn[y][x]:
                        rows[top + y][left + place * (SIZE + 2 * GAP) + x] = drawn[y][x]
        for y in range(SIZE):
            for x in range(SIZE):
                chequer = (255, 255, 255) if (x + y) % 2 else (236, 240, 240)
                fill(left + x * LARGE, top + SIZE + GAP + y * LARGE, LARGE, LARGE, drawn[y][x] or chequer)
    return rows


class Icons(unittest.TestCase):
    def test_another_reader_sees_the_same_pixels(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in images.NAMES:
                with self.subTest(name):
                    image = images.image(name)
                    icon = os.path.join(folder, name + ".ico")
                    with open(icon, "wb") as file:
                        head = struct.pack("<HHHBBBBHHII", 0, 1, 1, SIZE, SIZE, 16, 0, 1, 4, len(image), 22)
                        file.write(head + image)
                    picture = icon[:-3] + "png"
                    subprocess.run(["icotool", "-x", "-o", picture, icon], check=True, timeout=30)
                    raw = subprocess.run(["convert", picture, "-depth", "8", "rgba:-"], check=True, timeout=30,
                                         capture_output=True).stdout
                    wanted = b"".join(bytes(pixel[::-1]) + b"\xff" if pixel else b"\0\0\0\0"
                                      for row in images.pixels(name) for pixel in row)
                    self.assertEqual(len(raw), len(wanted))
                    for at in range(0, len(raw), 4):
                        seen = raw[at : at + 4] if raw[at + 3] else b"\0\0\0\0"
                        self.assertEqual(seen, wanted[at : at + 4], "pixel %d" % (at // 4))

    def test_every_icon_has_an_outline_that_any_ground_leaves_whole(self):
        # What borders on the ground is dark; a light border would melt into a light desktop. A shadow may be grey.
        dark = {(0, 0, 0), (0, 0, 0x80), (0, 0x80, 0), (0, 0x80, 0x80), (0x80, 0, 0), (0x80, 0, 0x80), (0x80, 0x80, 0),
                (0x80, 0x80, 0x80)}
        for name in images.NAMES:
            rows = images.pixels(name)
            clear = [[True] * (SIZE + 2)] + [[True] + [pixel is None for pixel in row] + [True] for row in rows]
            clear.append([True] * (SIZE + 2))
            border = [rows[y][x] for y in range(SIZE) for x in range(SIZE) if rows[y][x]
                      and (clear[y][x + 1] or clear[y + 2][x + 1] or clear[y + 1][x] or clear[y + 1][x + 2])]
            light = [pixel for pixel in border if pixel not in dark]
            self.assertLessEqual(len(light), 0.02 * len(border), name)

    def test_the_contact_sheet_shows_all_ten(self):
        folder = os.path.join(BUILD, "reports", "icons")
        os.makedirs(folder, exist_ok=True)
        rows = sheet()
        path = os.path.join(folder, "contact_sheet.png")
        with open(path, "wb") as file:
            file.write(png(rows))
        told = subprocess.run(["identify", "-format", "%w %h", path], check=True, timeout=30, capture_output=True)
        self.assertEqual(told.stdout, b"%d %d" % (COLUMNS * CELL_WIDTH, 2 * CELL_HEIGHT))
        for number in range(len(images.NAMES)):
            left, top = number % COLUMNS * CELL_WIDTH, number // COLUMNS * CELL_HEIGHT
            colours = {rows[top + y][left + x] for y in range(CELL_HEIGHT) for x in range(CELL_WIDTH)}
            self.assertGreaterEqual(len(colours), 9, images.NAMES[number])


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, rest = parser.parse_known_args()
    BUILD = images.BUILD = options.build
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
