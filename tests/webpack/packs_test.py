"""Web-packs of every shape, read by other people's tools: their icons by wrestool and icotool, their archives by Python
and 7-Zip, the version block by wrestool; and started under 32-bit wine with each icon.

Usage: packs_test.py --build FOLDER
"""

import argparse
import html
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zipfile
import zlib

BUILD = ""
HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "tests", "stub"))
import icon_images_test  # noqa: E402
sys.path.insert(0, os.path.join(HOUSE, "tests", "support"))
from random_seed import random_seed  # noqa: E402
import webpack_wine_test  # noqa: E402

SKIPPED = 77
SEED = 0
STUB_SIZE = 0x13000
ICON_PLACE, ICON_SIZE = 0x124B0, 744
LINK = (b'<BR CLEAR="all"><BR><DIV ALIGN="center"><FONT FACE="arial,helvetica" SIZE=3><A HREF="Page%d.html">Next Page'
        b"</A></FONT></DIV><BR><BR>")


def read(path):
    with open(path, "rb") as file:
        return file.read()


def own_icon():
    """An icon of nobody's: two colours, stripes, and a see-through frame; 766 bytes."""
    table = struct.pack("<16I", *(0x00112233 * index & 0xFFFFFF for index in range(16)))

    def two_dots(row, column):
        color = 3 if (row + column) % 5 else 12
        left, right = column != 0 and row not in (0, 31), column != 15 and row not in (0, 31)
        return left * color << 4 | right * color

    rows = bytes(two_dots(row, column) for row in range(32) for column in range(16))
    mask = b"".join(struct.pack(">I", 0xFFFFFFFF if row in (0, 31) else 0x80000001) for row in range(32))
    head = struct.pack("<IiiHHIIiiII", 40, 32, 64, 1, 4, 0, 640, 0, 0, 0, 0)
    return (struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", 32, 32, 16, 0, 1, 4, 744, 22)
            + head + table + rows + mask)


def by_red_first(rows):
    """The same pixels as the icon tools tell them."""
    return [[pixel and tuple(reversed(pixel)) for pixel in row] for row in rows]


class Packs(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="packs-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def project(self, files, name="card"):
        os.makedirs(self.path(name))
        for file, data in files.items():
            with open(self.path(name, file), "wb") as out:
                out.write(data)
            os.utime(self.path(name, file), (1700000000, 1700000000))
        return self.path(name)

    def build(self, files, *icon, work=None, pack="pack.exe"):
        work = work or self.project(files)
        ran = subprocess.run([os.path.join(BUILD, "bin", "make_pack"), work, self.folder, pack, *icon],
                             capture_output=True, text=True, check=False)
        self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
        data = read(self.path(pack))
        self.assertEqual(len(data), int(ran.stdout.split()[1]))
        return data

    def packed(self, pack="pack.exe"):
        """Name -> bytes, as both readers see them."""
        with zipfile.ZipFile(self.path(pack)) as archive:
            self.assertIsNone(archive.testzip())
            files = {name: archive.read(name) for name in archive.namelist()}
        test = subprocess.run(["7z", "t", "-tzip", self.path(pack)], capture_output=True, text=True, check=False)
        self.assertEqual(test.returncode, 0, test.stdout)
        self.assertIn("Everything is Ok", test.stdout)
        out = self.path("out")
        shutil.rmtree(out, ignore_errors=True)
        subprocess.run(["7z", "x", "-tzip", "-o" + out, self.path(pack)], capture_output=True, check=True,
                       env=dict(os.environ, LC_ALL="C.UTF-8"))
        self.assertEqual({name: read(os.path.join(out, name)) for name in os.listdir(out)}, files)
        return files

    @staticmethod
    def page(text, *pictures):
        images = "".join('<img src="%s" />' % picture for picture in pictures)
        return ("<html><head><title></title></head><body>%s%s</body></html>" % (text, images)).encode("utf-8")

    @staticmethod
    def linked(page, to):
        return page.replace(b"</body>", LINK % to + b"</body>")

    # Icons.

    def icon_of(self, pack="pack.exe"):
        """Rows of pixels, by wrestool and icotool."""
        icon, png = self.path("icon.ico"), self.path("icon.png")
        taken = subprocess.run(["wrestool", "-x", "--type=14", "-o", icon, self.path(pack)], capture_output=True,
                               text=True, check=False)
        self.assertEqual((taken.returncode, taken.stderr), (0, ""))
        told = subprocess.run(["icotool", "-l", icon], capture_output=True, text=True, check=True)
        self.assertRegex(told.stdout, r"--icon --index=1 --width=32 --height=32 --bit-depth=4 --palette-size=16\n$")
        made = subprocess.run(["icotool", "-x", "-o", png, icon], capture_output=True, text=True, check=False)
        self.assertEqual((made.returncode, made.stderr), (0, ""))
        raw = subprocess.run(["convert", png, "-depth", "8", "rgba:-"], capture_output=True, check=True).stdout
        self.assertEqual(len(raw), 32 * 32 * 4)
        at = [raw[4 * i:4 * i + 4] for i in range(1024)]
        return [[None if at[32 * y + x][3] == 0 else tuple(at[32 * y + x][:3]) for x in range(32)] for y in range(32)]

    def test_EachBuiltInIconComesOutPixelForPixel(self):
        work = self.project({"wgcard.html": self.page("x")})
        for name in icon_images_test.NAMES:
            with self.subTest(name):
                data = self.build({}, name, work=work)
                image = read(os.path.join(BUILD, "resources", "icons", name + ".img"))
                self.assertEqual(data[ICON_PLACE:ICON_PLACE + ICON_SIZE], image)
                self.assertEqual(self.icon_of(), by_red_first(icon_images_test.map_pixels(name)))

    def test_TheUsersOwnIconComesOutPixelForPixel(self):
        icon = self.path("own.ico")
        with open(icon, "wb") as file:
            file.write(own_icon())
        data = self.build({"wgcard.html": self.page("x")}, icon)
        self.assertEqual(data[ICON_PLACE:ICON_PLACE + ICON_SIZE], own_icon()[22:])
        self.assertEqual(self.icon_of(), by_red_first(icon_images_test.pixels_of(own_icon()[22:])))

    def test_IconsDrawnInTheEditorComeOutPixelForPixel(self):
        work = self.project({"wgcard.html": self.page("x")})
        drawn = subprocess.run([os.path.join(BUILD, "bin", "icon_tool"), "draw", self.folder, "5", str(SEED)],
                               capture_output=True, text=True, check=True,
                               env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
        lines = drawn.stdout.splitlines()
        self.assertEqual(len(lines), 5)
        met = set()
        for number, line in enumerate(lines):
            with self.subTest(number):
                self.build({}, self.path("%d.ico" % number), work=work)
                colors, _, mask, _ = line.split()
                seen = [None if mask[i] == "1" else tuple(bytes.fromhex(colors[6 * i:6 * i + 6])) for i in range(1024)]
                met.update(seen)
                self.assertEqual([seen[32 * row:32 * row + 32] for row in range(32)], self.icon_of())
        self.assertGreater(len(met), 4)

    def test_PacksDifferOnlyInTheirIcon(self):
        work = self.project({"wgcard.html": self.page("x")})
        one = self.build({}, "WP", work=work)
        other = self.build({}, "ROSE", work=work)
        self.assertEqual(one[:ICON_PLACE], other[:ICON_PLACE])
        self.assertEqual(one[ICON_PLACE + ICON_SIZE:STUB_SIZE], other[ICON_PLACE + ICON_SIZE:STUB_SIZE])
        self.assertNotEqual(one[ICON_PLACE:ICON_PLACE + ICON_SIZE], other[ICON_PLACE:ICON_PLACE + ICON_SIZE])

    def test_TheVersionBlockReadsWell(self):
        self.build({"wgcard.html": self.page("x")})
        block = subprocess.run(["wrestool", "-x", "--raw", "--type=16", self.path("pack.exe")], capture_output=True,
                               check=True).stdout
        text = block.decode("utf-16-le", "replace")
        for name, value in (("InternalName", "SFXStub"), ("OriginalFilename", "SFXStub.exe"),
                            ("FileVersion", "1, 0, 0, 1"), ("ProductVersion", "1, 0, 0, 1"),
                            ("Comments", "Thanks to INFO-Zip for included zip code.")):
            self.assertRegex(text, name + "\0+" + re.escape(value) + "\0")
        listed = subprocess.run(["wrestool", "-l", self.path("pack.exe")], capture_output=True, text=True, check=True)
        self.assertEqual(listed.stderr, "")
        self.assertEqual(len(listed.stdout.splitlines()), 3)

    # Shapes of projects.

    def test_OnePageHasNoLink(self):
        page = self.page("alone", "cat.jpg")
        self.build({"wgcard.html": page, "cat.jpg": b"\xff\xd8cat"})
        self.assertEqual(self.packed(), {"wgcard.html": page, "cat.jpg": b"\xff\xd8cat"})

    def test_NinePagesLinkEachToTheNext(self):
        files = {"wgcard.html" if n == 1 else "Page%d.html" % n: self.page("page %d" % n) for n in range(1, 10)}
        self.build(files)
        packed = self.packed()
        self.assertEqual(len(packed), 9)
        for number, (name, page) in enumerate(files.items(), 1):
            self.assertEqual(packed[name], page if number == 9 else self.linked(page, number + 1), name)

    def test_OfTwelvePagesTheLastThreeLinkBackToTheFirstOnes(self):
        files = {"wgcard.html" if n == 1 else "Page%d.html" % n: self.page("page %d" % n) for n in range(1, 13)}
        self.build(files)
        packed = self.packed()
        links = {n: n + 1 for n in range(1, 10)} | {10: 1, 11: 2, 12: 3}
        for number, (name, page) in enumerate(files.items(), 1):
            self.assertEqual(packed[name], self.linked(page, links[number]), name)

    def test_AnUnusedPictureIsLeftOutAndGoneFromTheProject(self):
        self.build({"wgcard.html": self.page("x", "used.gif"), "used.gif": b"GIF89a", "unused.gif": b"GIF89a",
                    "unused.jpeg": b"x", "sound.wav": b"RIFF", "old.bmp": b"BM", "note.htm": b"no page"})
        self.assertEqual(sorted(self.packed()), ["note.htm", "old.bmp", "sound.wav", "used.gif", "wgcard.html"])
        self.assertEqual(sorted(os.listdir(self.path("card"))),
                         ["note.htm", "old.bmp", "sound.wav", "used.gif", "wgcard.html"])

    def test_AHiddenFileGoesAlong(self):
        self.build({"wgcard.html": self.page("x"), ".hidden-note": b"dot"})
        self.assertEqual(self.packed()[".hidden-note"], b"dot")

    def test_NamesInOtherScriptsGoAlong(self):
        names = ["b\u00e4r.gif", "\u043c\u0435\u0434\u0432\u0435\u0434\u044c.png", "\u718a.jpg",
                 "\u03b1\u03c1\u03ba\u03bf\u03cd\u03b4\u03b1.jpeg"]
        page = self.page("x", *names)
        self.build({"wgcard.html": page, **{name: name.encode() for name in names}})
        self.assertEqual(self.packed(), {"wgcard.html": page, **{name: name.encode() for name in names}})

    def test_NamesThatAPageHasAsReferencesGoAlong(self):
        names = ["M\u00fcller.gif", "stra\u00dfe.gif", "\u5199\u771f.png", "\u00e9t\u00e9.jpg"]
        page = self.page("x", *names).decode().encode("ascii", "xmlcharrefreplace")
        self.build({"wgcard.html": page, "unused\u00fc.gif": b"GIF89a", **{name: name.encode() for name in names}})
        self.assertEqual(self.packed(), {"wgcard.html": page, **{name: name.encode() for name in names}})

    def test_FiveHundredSmallFilesGoAlong(self):
        files = {"p%d.gif" % n: b"GIF89a%d" % n for n in range(500)}
        page = self.page("x", *files)
        self.build({"wgcard.html": page, **files})
        self.assertEqual(self.packed(), {"wgcard.html": page, **files})

    # The same project gives the same bytes.

    def test_TheSameProjectAndTimesGiveTheSameBytes(self):
        files = {"wgcard.html": self.page("x", "a.gif"), "Page2.html": self.page("y"), "a.gif": b"GIF89a" * 100}
        packs = []
        for name, shift in (("one", 0), ("two", 0), ("later", 100000)):
            work = self.project(files, name)
            # A first build rewrites the pages, which gives them a new time.
            self.build({}, work=work)
            for file in os.listdir(work):
                os.utime(os.path.join(work, file), (1700000000 + shift, 1700000000 + shift))
            # What the second one rewrites has the time of the build itself: taken out below.
            packs.append(self.without_times(self.build({}, work=work)))
        self.assertEqual(packs[0], packs[1])
        self.assertEqual(packs[0], packs[2])

    @staticmethod
    def without_times(data):
        """The pack with the times of its entries, in both directories of the archive, set to nothing."""
        data = bytearray(data)
        with tempfile.TemporaryFile() as file:
            file.write(data)
            with zipfile.ZipFile(file) as archive:
                locals_ = [entry.header_offset for entry in archive.infolist()]
        for at in locals_:
            assert data[at:at + 4] == b"PK\x03\x04"
            data[at + 10:at + 14] = bytes(4)
        at = data.index(b"PK\x01\x02", locals_[-1])
        for _ in locals_:
            assert data[at:at + 4] == b"PK\x01\x02"
            data[at + 12:at + 16] = bytes(4)
            name, extra, comment = struct.unpack_from("<HHH", data, at + 28)
            at += 46 + name + extra + comment
        return zlib.crc32(data), bytes(data[-2000:])


class UnderWine(webpack_wine_test.WebPack):
    """Packs that the builder made, with each icon."""

    def test_EachIconsPackOpensItsPage(self):
        with tempfile.TemporaryDirectory(prefix="packs-") as folder:
            own = os.path.join(folder, "own.ico")
            with open(own, "wb") as file:
                file.write(own_icon())
            for icon in icon_images_test.NAMES + [own]:
                with self.subTest(os.path.basename(icon)):
                    self.setUp()
                    work = os.path.join(folder, "card")
                    shutil.rmtree(work, ignore_errors=True)
                    os.makedirs(work)
                    page = Packs.page(os.path.basename(icon), "cat.gif")
                    for name, data in (("wgcard.html", page), ("cat.gif", b"GIF89a")):
                        with open(os.path.join(work, name), "wb") as file:
                            file.write(data)
                    subprocess.run([os.path.join(BUILD, "bin", "make_pack"), work, folder, "pack.exe", icon],
                                   capture_output=True, check=True)
                    self.assert_silent(self.start(read(os.path.join(folder, "pack.exe"))))
                    self.assertEqual(webpack_wine_test.contents(self.temp),
                                     webpack_wine_test.marks({"wgcard.html": page, "cat.gif": b"GIF89a"}))
                    self.assert_opened_first_page()


    def test_EveryPictureThatWasAddedShowsWhateverItsName(self):
        names = ["Shot_2024 12:30:45.gif", "con.gif", "AUX.jpg", "what?.gif", "st*r.png", 'a"b.gif', "a<b>c|d.gif",
                 "com1.gif", "back.gif ", "dot.gif.", "tab\t.gif", "M\u00fcller \u732b.gif", "e\u0301.gif", "100%.gif",
                 "plain.gif", ".hidden.gif", "nul .gif"]
        with tempfile.TemporaryDirectory(prefix="packs-") as folder:
            work, outside = os.path.join(folder, "card"), os.path.join(folder, "outside")
            os.makedirs(work)
            os.makedirs(outside)
            # Two that are one file at the recipient's: both show the later one.
            twins = [os.path.join(folder, "one", "Cat.gif"), os.path.join(folder, "two", "cat.gif")]
            pictures = [os.path.join(outside, name) for name in names] + twins
            for path in pictures:
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "wb") as file:
                    file.write(b"GIF89a " + path.encode())
            make_pack = os.path.join(BUILD, "bin", "make_pack")
            subprocess.run([make_pack, "--add", work, *pictures], check=True)
            subprocess.run([make_pack, work, folder, "pack.exe"], capture_output=True, check=True)
            self.assert_silent(self.start(read(os.path.join(folder, "pack.exe"))))
            self.assert_opened_first_page()
            page = read(os.path.join(self.temp, "wgcard.html")).decode("ascii")
            shown = [html.unescape(name) for name in re.findall(r'src="([^"]*)"', page)]
            self.assertEqual(len(shown), len(pictures))
            wanted = {name: read(path) for name, path in zip(shown, pictures)}
            self.assertEqual(len(wanted), len(pictures) - 1)  # the twins
            for name, data in wanted.items():
                self.assertEqual(read(os.path.join(self.temp, name)), data, name)
            self.assertEqual(self.seen(), sorted(["wgcard.html", *wanted]))

    def test_ForeignNamesInTheProjectKeepNobodyFromThePage(self):
        # As they come out at the recipient's. The list of pictures that a page uses can't hold the one with a star,
        # which stays in the project for that reason.
        names = {"a:b.gif": "a_b.gif", "con.gif": "_con.gif", "what?.gif": "what_.gif", "plain.gif": "plain.gif",
                 "st*r.gif": "st_r.gif", "dots..": "dots._", "blank ": "blank_", "wgcard.html": "wgcard.html"}
        page = Packs.page("x", "a:b.gif", "con.gif", "what?.gif", "plain.gif", "st*r.gif")
        with tempfile.TemporaryDirectory(prefix="packs-") as folder:
            work = os.path.join(folder, "card")
            os.makedirs(work)
            for name in names:
                with open(os.path.join(work, name), "wb") as file:
                    file.write(page if name == "wgcard.html" else name.encode())
            subprocess.run([os.path.join(BUILD, "bin", "make_pack"), work, folder, "pack.exe"], capture_output=True,
                           check=True)
            self.assertEqual(set(os.listdir(work)), set(names))
            self.assert_silent(self.start(read(os.path.join(folder, "pack.exe"))))
            self.assert_opened_first_page()
            self.assertEqual(self.seen(), sorted(names.values()))
            self.assertEqual(read(os.path.join(self.temp, "st_r.gif")), b"st*r.gif")


def main():
    global BUILD, SEED
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    parser.add_argument("--wine", action="store_true", help="the packs under wine in place of the readers")
    given = parser.parse_args()
    BUILD = os.path.abspath(given.build)
    icon_images_test.BUILD = webpack_wine_test.BUILD = BUILD
    if given.wine:
        refused = webpack_wine_test.refusal()
        if refused is not None:
            return refused
        tests = unittest.TestSuite(map(UnderWine, (name for name in vars(UnderWine) if name.startswith("test_"))))
    else:
        missing = [tool for tool in ("7z", "wrestool", "icotool", "convert") if not shutil.which(tool)]
        if missing:
            print("skipped, not there:", *missing)
            return 1 if os.environ.get("CI") == "true" else SKIPPED
        SEED = random_seed("packs")
        tests = unittest.defaultTestLoader.loadTestsFromTestCase(Packs)
    return 0 if unittest.TextTestRunner(verbosity=1).run(tests).wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
