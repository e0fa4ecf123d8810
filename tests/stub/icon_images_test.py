"""The built-in icon images of web-packs, read back byte by byte and compared with the maps that they are made from.

Usage: icon_images_test.py --build FOLDER
"""

import argparse
import os
import struct
import sys
import unittest

BUILD = ""
MAPS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "icons")
NAMES = ["WP", "MAIL", "HEART", "ROCKET", "LTNING", "ROSE", "HAND", "CARD", "TRAY", "FOLDER"]
TABLE = bytes.fromhex("00000000 00008000 00800000 00808000 80000000 80008000 80800000 C0C0C000"
                      "80808000 0000FF00 00FF0000 00FFFF00 FF000000 FF00FF00 FFFF0000 FFFFFF00")


def image(name):
    with open(os.path.join(BUILD, "resources", "icons", name + ".img"), "rb") as file:
        return file.read()


def pixels(name):
    """Of a built-in icon."""
    return pixels_of(image(name))


def pixels_of(data):
    """Rows from the top, of (blue, green, red) or None for see-through, of the 744 bytes of an image."""
    rows = []
    for row in range(31, -1, -1):
        line = []
        for column in range(32):
            pair = data[104 + row * 16 + column // 2]
            index = pair >> 4 if column % 2 == 0 else pair & 15
            clear = data[616 + row * 4 + column // 8] >> (7 - column % 8) & 1
            line.append(None if clear else tuple(data[40 + 4 * index : 43 + 4 * index]))
        rows.append(line)
    return rows


def map_pixels(name):
    with open(os.path.join(MAPS, name + ".txt"), encoding="ascii") as file:
        lines = [line.rstrip("\n") for line in file if not line.startswith("#")]
    legend, rows = lines[: lines.index("")], lines[lines.index("") + 1 :]
    colours = {}
    for line in legend:
        meaning = line.split("=", 1)[1].split()
        colours[line[0]] = None if meaning[0] == "see-through" else tuple(TABLE[4 * int(meaning[0]) :][:3])
    return [[colours[character] for character in row] for row in rows]


class IconImages(unittest.TestCase):
    def test_AllTenAreThereAndNoOther(self):
        found = {name for name in os.listdir(os.path.join(BUILD, "resources", "icons")) if name.endswith(".img")}
        self.assertEqual(found, {name + ".img" for name in NAMES})

    def test_EveryImageHasTheFormOfTheStubsIcon(self):
        for name in NAMES:
            with self.subTest(name):
                data = image(name)
                self.assertEqual(len(data), 744)
                self.assertEqual(struct.unpack_from("<IiiHHIIiiII", data),
                                 (40, 32, 64, 1, 4, 0, 640, 0, 0, 0, 0))

    def test_SeeThroughPixelsAreBlackInTheColourData(self):
        for name in NAMES:
            data = image(name)
            for pixel in range(1024):
                if data[616 + pixel // 8] >> (7 - pixel % 8) & 1:
                    pair = data[104 + pixel // 2]
                    self.assertEqual(pair >> 4 if pixel % 2 == 0 else pair & 15, 0, f"{name} {pixel}")

    def test_EveryImageLooksLikeItsMap(self):
        for name in NAMES:
            with self.subTest(name):
                self.assertEqual(pixels(name), map_pixels(name))

    def test_EveryIconFillsItsPlaceAndLeavesGround(self):
        for name in NAMES:
            drawn = [(x, y) for y, row in enumerate(pixels(name)) for x, pixel in enumerate(row) if pixel]
            width = max(x for x, _ in drawn) - min(x for x, _ in drawn) + 1
            height = max(y for _, y in drawn) - min(y for _, y in drawn) + 1
            self.assertGreaterEqual(max(width, height), 26, name)
            self.assertLess(len(drawn), 1024, name)

    def test_MailAndRocketHavePaletteEntries7And8Exchanged(self):
        exchanged = TABLE[:28] + TABLE[32:36] + TABLE[28:32] + TABLE[36:]
        for name in NAMES:
            with self.subTest(name):
                wanted = exchanged if name in ("MAIL", "ROCKET") else TABLE
                self.assertEqual(image(name)[40:104].hex(), wanted.hex())
        for name in ("MAIL", "ROCKET"):
            colours = {pixel for row in pixels(name) for pixel in row}
            self.assertIn((0xC0, 0xC0, 0xC0), colours, "the exchange would not show")
            self.assertIn((0x80, 0x80, 0x80), colours, "the exchange would not show")


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, rest = parser.parse_known_args()
    BUILD = options.build
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
