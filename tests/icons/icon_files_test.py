"""Icons and pictures exchanged with other people's tools: what the editor writes is read by icotool, what icotool and
ImageMagick write is opened by the editor.

Usage: icon_files_test.py --build FOLDER. Skipped with exit code 77 where the tools are missing.
"""

import argparse
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from random_seed import random_seed  # noqa: E402

BUILD = ""
SKIPPED = 77
SEED = 0
TABLE = [0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
         0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF]
SEE_THROUGH = 0xE1E1E1


def run(*command):
    """The output; the tool may not complain."""
    done = subprocess.run(command, capture_output=True, check=False, timeout=120)
    if done.returncode or done.stderr:
        raise AssertionError("%s: %d %s" % (" ".join(command), done.returncode, done.stderr.decode("utf-8", "replace")))
    return done.stdout


def editor(*arguments):
    """What the editor holds after each file: picture, colours, mask, number of messages."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    done = subprocess.run([os.path.join(BUILD, "bin", "icon_tool"), *arguments], capture_output=True, check=True,
                          timeout=300, env=environment)
    lines = []
    for line in done.stdout.decode("ascii").splitlines():
        seen, colors, mask, messages = line.split()
        split = lambda text: [int(text[at:at + 6], 16) for at in range(0, len(text), 6)]  # noqa: E731
        lines.append((split(seen), split(colors), [bit == "1" for bit in mask], int(messages)))
    return lines


def pixels(file):
    """Size and (red, green, blue, alpha) of a picture, or of its first frame, as ImageMagick reads it."""
    width, height = map(int, run("convert", file + "[0]", "-format", "%w %h", "info:").split())
    data = run("convert", file + "[0]", "-alpha", "set", "-colorspace", "sRGB", "-depth", "8", "rgba:-")
    assert len(data) == 4 * width * height, file
    return width, height, [tuple(data[at:at + 4]) for at in range(0, len(data), 4)]


def distance(color, red, green, blue):
    return (color >> 16) - red, (color >> 8 & 255) - green, (color & 255) - blue


def far(color, pixel):
    return sum(part * part for part in distance(color, *pixel)) ** 0.5


def laid_on(ground, pixel):
    red, green, blue, alpha = pixel
    return tuple((part * alpha + (ground >> shift & 255) * (255 - alpha)) / 255
                 for part, shift in ((red, 16), (green, 8), (blue, 0)))


def is_nearest(color, pixel, slack):
    """True for one of the 16 that no other of them is nearer than, but for rounding in the decoders."""
    return color in TABLE and far(color, pixel) <= min(far(other, pixel) for other in TABLE) + slack


def png(path, width, height, pixel):
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
                   + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def patches(rng, colors, with_holes):
    """A routine that gives the colour of a place: rectangles of few colours, some see-through."""
    chosen = [tuple(rng.randrange(256) for _ in range(3)) + (255,) for _ in range(colors - 1)]
    chosen.append((0, 0, 0, 0) if with_holes else (255, 255, 255, 255))
    chosen += [chosen[-1]] * 3
    rng.shuffle(chosen)
    boxes = [(rng.randrange(40), rng.randrange(40), rng.randrange(1, 30), rng.randrange(1, 30), rng.choice(chosen))
             for _ in range(12)]

    def at(x, y):
        for left, top, width, height, color in boxes:
            if left <= x < left + width and top <= y < top + height:
                return color
        return chosen[0]
    return at


class Icons(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="icons-")
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def test_what_the_editor_writes_icotool_reads_without_a_warning(self):
        count = 40
        held = editor("draw", self.folder, str(count), str(SEED))
        self.assertEqual(len(held), count)
        opaque = set()
        for number, (_, colors, mask, messages) in enumerate(held):
            file = self.path("%d.ico" % number)
            with self.subTest(number):
                self.assertEqual(messages, 0)
                self.assertEqual(os.path.getsize(file), 766)
                listed = run("icotool", "-l", file).decode().split()
                self.assertEqual(listed, ["--icon", "--index=1", "--width=32", "--height=32", "--bit-depth=4",
                                          "--palette-size=16"])
                run("icotool", "-x", "-o", self.path("out.png"), file)
                width, height, read = pixels(self.path("out.png"))
                self.assertEqual((width, height), (32, 32))
                self.assertEqual([pixel[3] == 0 for pixel in read], mask)
                self.assertEqual([red << 16 | green << 8 | blue for red, green, blue, _ in read], [
                    color for color in colors])
                opaque.add(mask.count(False))
        self.assertGreater(len(opaque), count // 2, "the icons are all alike")

    def test_what_the_editor_writes_imagemagick_reads(self):
        held = editor("draw", self.folder, "10", str(SEED))
        for number, (_, colors, mask, _) in enumerate(held):
            width, height, read = pixels(self.path("%d.ico" % number))
            self.assertEqual((width, height), (32, 32))
            self.assertEqual([pixel[3] == 0 for pixel in read], mask)
            self.assertEqual([None if clear else red << 16 | green << 8 | blue
                              for (red, green, blue, _), clear in zip(read, mask)],
                             [None if clear else color for color, clear in zip(colors, mask)])

    def sources(self, rng, count, colors, with_holes, sizes):
        for number in range(count):
            size = rng.choice(sizes)
            width, height = size if isinstance(size, tuple) else (size, size)
            file = self.path("source%d.png" % number)
            png(file, width, height, patches(rng, colors, with_holes))
            yield number, file

    def check_pictures(self, files, slack):
        for file, (seen, colors, mask, messages) in zip(files, editor("open", *files)):
            with self.subTest(os.path.basename(file)):
                width, height, read = pixels(file)
                self.assertEqual(messages, 0)
                for place in range(1024):
                    x, y = place % 32, place // 32
                    inside = x < width and y < height
                    self.assertEqual(mask[place], not inside, (x, y))
                    pixel = read[y * width + x] if inside else (0, 0, 0, 0)
                    for ground, held in ((SEE_THROUGH, seen), (0, colors)):
                        self.assertTrue(is_nearest(held[place], laid_on(ground, pixel), slack),
                                        (x, y, pixel, "%06x" % held[place]))

    def test_50_bitmaps(self):
        rng = random.Random(SEED + 1)
        kinds = [["-alpha", "off", "BMP3:"], ["-alpha", "off", "-colors", "200", "-type", "Palette", "BMP3:"],
                 ["-alpha", "off", "-colors", "12", "-type", "Palette", "BMP3:"],
                 ["-alpha", "off", "-monochrome", "BMP3:"],
                 ["-alpha", "off", "-type", "Palette", "-compress", "RLE", "BMP3:"], ["-alpha", "off", "BMP2:"],
                 ["BMP:"]]
        sizes = [(1, 1), (10, 10), 31, 32, 33, 40, (7, 50), (64, 5), (60, 60)]
        files = []
        for number, source in self.sources(rng, 50, 9, False, sizes):
            *options, coder = kinds[number % len(kinds)]
            files.append(self.path("p%d.bmp" % number))
            run("convert", source, *options, coder + files[-1])
        self.check_pictures(files, 0.01)

    def test_50_gifs(self):
        rng = random.Random(SEED + 2)
        files = []
        # Not three or four rows: of those that are interlaced Qt's reader leaves out the last pass.
        for number, source in self.sources(rng, 50, 9, True, [(3, 5), 16, 32, 45, (20, 60)]):
            files.append(self.path("p%d.gif" % number))
            options = [["-interlace", "GIF"], ["-alpha", "off"], [], ["(", "+clone", "-negate", ")"]][number % 4]
            run("convert", source, *options, files[-1])
        self.check_pictures(files, 0.01)

    def test_50_jpegs(self):
        rng = random.Random(SEED + 3)
        kinds = [["-quality", "95"], ["-quality", "30"], ["-interlace", "JPEG"], ["-colorspace", "Gray"],
                 ["-sampling-factor", "4:4:4", "-quality", "100"]]
        files = []
        for number, source in self.sources(rng, 50, 9, False, [(8, 8), 32, 50, (20, 60), (60, 17)]):
            files.append(self.path("p%d.jpg" % number))
            run("convert", source, "-alpha", "off", *kinds[number % len(kinds)], files[-1])
        # Two decoders of this format may differ by a step or two.
        self.check_pictures(files, 6)

    def check_icon(self, held, file):
        """Against what icotool reads: nearest places, and the holes. It complains of some of ImageMagick's headers."""
        seen, colors, mask, messages = held
        picture = self.path("read.png")
        listed = subprocess.run(["icotool", "-l", file], capture_output=True, check=True).stdout
        which = ["--width=32", "--height=32"] if b"--width=32 " in listed else ["--index=1"]
        subprocess.run(["icotool", "-x", *which, "-o", picture, file], check=True, stderr=subprocess.DEVNULL)
        width, height, read = pixels(picture)
        self.assertEqual(messages, 0)
        for place in range(1024):
            x, y = place % 32, place // 32
            pixel = read[(2 * y + 1) * height // 64 * width + (2 * x + 1) * width // 64]
            self.assertEqual(mask[place], pixel[3] == 0, (x, y))
            if pixel[3]:
                self.assertTrue(is_nearest(colors[place], pixel[:3], 0.01), (x, y, pixel, "%06x" % colors[place]))
                self.assertEqual(seen[place], colors[place])
            else:
                self.assertEqual((seen[place], colors[place]), (0xFFFFFF, 0))

    def test_50_icons_of_icotool(self):
        rng = random.Random(SEED + 4)
        files = []
        for number, source in self.sources(rng, 50, 9, True, [16, 24, 32, 48, 64]):
            files.append(self.path("i%d.ico" % number))
            run("icotool", "-c", "-b", ["4", "8", "24", "32"][number % 4], "-o", files[-1], source)
        holes = 0
        for file, held in zip(files, editor("open", *files)):
            with self.subTest(os.path.basename(file)):
                self.check_icon(held, file)
                holes += any(held[2])
        self.assertGreater(holes, 25, "hardly any icon is see-through anywhere")

    def test_icons_with_several_images(self):
        rng = random.Random(SEED + 5)
        wanted = self.path("32.png")
        png(wanted, 32, 32, patches(rng, 9, True))
        others = []
        for size in (16, 48, 64):
            others.append(self.path("%d.png" % size))
            png(others[-1], size, size, patches(rng, 9, True))
        files = []
        for place in range(4):
            files.append(self.path("several%d.ico" % place))
            run("icotool", "-c", "-o", files[-1], *others[:place], wanted, *others[place:])
        files.append(self.path("magick.ico"))
        run("convert", *others[:2], wanted, others[2], files[-1])
        for file, held in zip(files, editor("open", *files)):
            self.check_icon(held, file)

    def test_40_icons_of_imagemagick(self):
        rng = random.Random(SEED + 6)
        files = []
        for number, source in self.sources(rng, 40, 9, True, [16, 32, 48, 20]):
            files.append(self.path("m%d.ico" % number))
            options = [[], ["-colors", "16", "-type", "Palette"]][number % 2]
            run("convert", source, *options, files[-1])
        for file, held in zip(files, editor("open", *files)):
            with self.subTest(os.path.basename(file)):
                self.check_icon(held, file)

    def test_icons_stored_as_png_keep_their_holes(self):
        files, wanted = [], []
        for number in range(10):
            source, file = self.path("large%d.png" % number), self.path("large%d.ico" % number)
            small = patches(random.Random(SEED + 7 + number), 9, True)
            wanted.append([small(x, y) for y in range(32) for x in range(32)])
            png(source, 256, 256, lambda x, y: small(x // 8, y // 8))
            run(*(["icotool", "-c", "-o", file, "-r", source] if number % 2 else ["convert", source, file]))
            with open(file, "rb") as made:
                self.assertEqual(made.read()[22:26], b"\x89PNG")
            files.append(file)
        for (_, colors, mask, messages), pixels_wanted in zip(editor("open", *files), wanted):
            self.assertEqual(messages, 0)
            self.assertEqual(mask, [alpha == 0 for *_, alpha in pixels_wanted])
            for color, pixel in zip(colors, pixels_wanted):
                self.assertTrue(is_nearest(color, pixel[:3] if pixel[3] else (0, 0, 0), 2))


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, rest = parser.parse_known_args()
    BUILD = options.build
    SEED = random_seed("icons")
    missing = [tool for tool in ("convert", "icotool") if not shutil.which(tool)]
    if missing:
        print("skipped, not there:", *missing)
        sys.exit(1 if os.environ.get("CI") == "true" else SKIPPED)
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
