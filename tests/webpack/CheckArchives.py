"""Reads what the program packs with two readers of other hands: Python's zipfile and 7-Zip."""
import argparse
import os
import random
import shutil
import subprocess
import sys
import tempfile
import zipfile

STUB_SIZE = 0x13000
ICON_PLACE = 0x124B0
failures = []
checks = 0


def check(condition, what):
    global checks
    checks += 1
    if not condition:
        failures.append(what)
        print("failed:", what)


def make_project(folder):
    """A project with pages, pictures of many kinds and names that are hard to carry; name -> bytes."""
    numbers = random.Random(7)
    files = {
        "wgcard.html": b'<html><body>one<img src="cat.jpg" /><img src="\xe7\x8c\xab.gif" /></body></html>',
        "Page2.html": b'<html><body>two<img src="empty.png" /> </body></html>',
        "cat.jpg": numbers.randbytes(200_000),
        "\u732b.gif": b"GIF89a" + bytes(5000),
        "empty.png": b"",
        "Gr\u00fc\u00dfe und mehr.wav": numbers.randbytes(3000),
        ".dot": b"dot",
        "text.txt": b"the same line again\r\n" * 20_000,
    }
    os.makedirs(folder)
    for name, data in files.items():
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)
    return files


def ascii_upper(text):
    return "".join(chr(ord(c) - 32) if "a" <= c <= "z" else c for c in text)


def listing_order(names):
    return sorted(names, key=lambda name: (ascii_upper(name), name))


def check_zip_reader(path, files, what):
    with zipfile.ZipFile(path) as archive:
        check(archive.testzip() is None, what + ": a damaged entry")
        check(archive.namelist() == listing_order(files), what + ": names or their order: %r" % archive.namelist())
        check(archive.comment == b"", what + ": a comment")
        for entry in archive.infolist():
            check(entry.compress_type == zipfile.ZIP_DEFLATED, what + ": not Deflate: " + entry.filename)
            check(not entry.flag_bits & 1, what + ": encrypted: " + entry.filename)
            unicode_flag = bool(entry.flag_bits & 0x800)
            check(unicode_flag or entry.filename.isascii(), what + ": no flag for " + entry.filename)
            check(archive.read(entry) == files.get(entry.filename), what + ": other bytes in " + entry.filename)


def check_seven_zip(path, files, what):
    test = subprocess.run(["7z", "t", "-tzip", path], capture_output=True, text=True)
    check(test.returncode == 0, what + ": 7-Zip refuses it: " + test.stdout + test.stderr)
    with tempfile.TemporaryDirectory() as target:
        environment = dict(os.environ, LC_ALL="C.UTF-8")
        subprocess.run(["7z", "x", "-tzip", "-o" + target, path], capture_output=True, env=environment)
        found = {}
        for name in os.listdir(target):
            with open(os.path.join(target, name), "rb") as file:
                found[name] = file.read()
        check(found == files, what + ": 7-Zip extracts something else: %r" % sorted(found))


def with_links(files):
    """What the build makes of the pages: the first gets a link to the second, and unused pictures would go."""
    link = (b'<BR CLEAR="all"><BR><DIV ALIGN="center"><FONT FACE="arial,helvetica" SIZE=3><A HREF="Page2.html">'
            b"Next Page</A></FONT></DIV><BR><BR>")
    changed = dict(files)
    changed["wgcard.html"] = files["wgcard.html"].replace(b"</body>", link + b"</body>")
    return changed


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    build = parser.parse_args().build
    tool = os.path.join(build, "bin", "make_pack")
    for needed in (tool, shutil.which("7z")):
        if not needed or not os.path.exists(needed):
            sys.exit("not there: make_pack or 7z")
    with tempfile.TemporaryDirectory() as scratch:
        work = os.path.join(scratch, "card")
        files = make_project(work)
        ran = subprocess.run([tool, "--archive", work], capture_output=True, text=True)
        check(ran.returncode == 0, "the archive isn't made: " + ran.stdout + ran.stderr)
        archive = os.path.join(work, "card.zip")
        check_zip_reader(archive, files, "archive")
        check_seven_zip(archive, files, "archive")
        os.remove(archive)

        ran = subprocess.run([tool, work, scratch, "pack.exe"], capture_output=True, text=True)
        check(ran.returncode == 0, "the web-pack isn't made: " + ran.stdout + ran.stderr)
        pack = os.path.join(scratch, "pack.exe")
        data = open(pack, "rb").read()
        check(len(data) == int(ran.stdout.split()[1]), "the size isn't the one told")
        check(data[STUB_SIZE:STUB_SIZE + 4] == b"PK\x03\x04", "the archive isn't behind the stub")
        pieces = os.path.join(build, "resources")
        stub = b"".join(open(os.path.join(pieces, name), "rb").read()
                        for name in ("stub/STUB1", "stub/STUB2", "icons/WP.img", "stub/STUB4", "stub/STUB5"))
        check(data[:STUB_SIZE] == stub, "the five pieces aren't in their places")
        check(data[ICON_PLACE:ICON_PLACE + 744] == open(os.path.join(pieces, "icons/WP.img"), "rb").read(),
              "the icon isn't in its place")
        check_zip_reader(pack, with_links(files), "web-pack")
        check_seven_zip(pack, with_links(files), "web-pack")
        check(not os.path.exists(archive), "card.zip is left behind")
    print("%d passed, %d failed" % (checks - len(failures), len(failures)))
    sys.exit(1 if failures else 0)


main()
