"""Time and size of a web-pack, made through its panel, beside those of Info-ZIP on the same files, `zip -9` and the
stub's bytes before it: pack_time and pack_size for ten pages and 20 MB of pictures, pack_time_500 and pack_size_500 for
a page and 500 small pictures, pack_size_site for a site of 40 pages with theme pictures, bitmaps and icons.
onefile_100: a project of ten pages and 100 pictures as one HTML file, beside `cp` of the same files. unpack: the stub's
reader on this machine reads the 20 MB, beside `unzip`. Prints a line for each figure."""
import argparse
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

from Figure import Figure

STUB_SIZE = 0x13000
PAGES = 10
PHOTO_BYTES = 1_500_000
PHOTOS = 12
DRAWING_BYTES = 500_000
DRAWINGS = 4
SMALL_FILES = 500
PROJECT_PICTURES = 100
SITE_PAGES = 40
# The most that ours may be of the peer's.
BOUNDS = {"pack_time": 0.5, "pack_size": 1.0005, "pack_time_500": 1.0, "pack_size_500": 1.01, "pack_size_site": 0.995,
          "onefile_100": 3.0, "unpack": 1.2}


def photo(numbers):
    """Bytes that hardly compress, with the head and the markers of a JPEG file."""
    return b"\xff\xd8\xff\xe0\x00\x10JFIF\x00" + numbers.randbytes(PHOTO_BYTES) + b"\xff\xd9"


def drawing(numbers):
    """Bytes that compress well: runs of few colours, as in a bitmap that was drawn by hand."""
    data = bytearray()
    while len(data) < DRAWING_BYTES:
        data += bytes([numbers.randrange(16)]) * numbers.randrange(1, 200)
    return bytes(data[:DRAWING_BYTES])


def make_project(folder):
    numbers = random.Random(1)
    words = ["greeting", "picture", "birthday", "summer", "holiday", "garden", "letter", "friend", "sunday", "water"]
    pictures = {"photo%d.jpg" % n: photo(numbers) for n in range(PHOTOS)}
    pictures.update({"drawing%d.gif" % n: drawing(numbers) for n in range(DRAWINGS)})
    pages = {}
    for page in range(1, PAGES + 1):
        name = "wgcard.html" if page == 1 else "Page%d.html" % page
        text = " ".join(numbers.choice(words) for _ in range(2000))
        images = "".join('<img src="%s" width="400" />' % picture for picture in pictures)
        body = '<font size="3">%s</font>%s' % (text, images)
        pages[name] = ('<html><head><title></title></head><body bgcolor="#ffffff">%s</body></html>' % body).encode()
    os.makedirs(folder)
    for name, data in {**pages, **pictures}.items():
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)


def make_small_project(folder):
    numbers = random.Random(2)
    names = ["small%d.gif" % n for n in range(SMALL_FILES)]
    images = "".join('<img src="%s" width="16" />' % name for name in names)
    os.makedirs(folder)
    with open(os.path.join(folder, "wgcard.html"), "w", encoding="ascii") as file:
        file.write('<html><head><title></title></head><body bgcolor="#ffffff">%s</body></html>' % images)
    for name in names:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(b"GIF89a" + numbers.randbytes(numbers.randrange(200, 3000)))


def make_picture_project(folder):
    """Ten pages and 100 pictures of 200 KB, ten on each page."""
    numbers = random.Random(3)
    os.makedirs(folder)
    for n in range(PROJECT_PICTURES):
        with open(os.path.join(folder, "p%d.jpg" % n), "wb") as file:
            file.write(b"\xff\xd8\xff" + numbers.randbytes(200_000))
    for page in range(PAGES):
        images = "".join('<img src="p%d.jpg" width="200" />' % (page * 10 + n) for n in range(10))
        with open(os.path.join(folder, "Page%d.html" % (page + 1) if page else "wgcard.html"), "w",
                  encoding="ascii") as file:
            file.write("<html><head><title>%d</title></head><body>%s</body></html>" % (page, images))


def bitmap(numbers):
    """A BMP of 64 by 64 pixels and 24 bits, drawn by hand."""
    colors = [numbers.randbytes(3) for _ in range(8)]
    rows = b"".join(colors[(x // 8 * y // 8) % 8] for y in range(64) for x in range(64))
    return b"BM" + (54 + len(rows)).to_bytes(4, "little") + bytes(4) + (54).to_bytes(4, "little") + b"".join(
        value.to_bytes(size, "little") for value, size in
        ((40, 4), (64, 4), (64, 4), (1, 2), (24, 2), (0, 4), (len(rows), 4), (0, 16))) + rows


def make_site(folder, samples):
    """40 pages of text in tables, the theme pictures, and bitmaps that compress well."""
    numbers = random.Random(4)
    os.makedirs(folder)
    pictures = sorted(name for name in os.listdir(samples) if name.endswith((".jpg", ".gif")))
    for name in pictures:
        shutil.copy(os.path.join(samples, name), folder)
    icons = ["icon%d.bmp" % n for n in range(40)]
    for name in icons:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(bitmap(numbers))
    syllables = "an ber co dor el fin gar hol is jun kel lor mar nes ol per".split()
    words = ["".join(numbers.choice(syllables) for _ in range(numbers.randrange(1, 4))) for _ in range(3000)]
    for page in range(1, SITE_PAGES + 1):
        cells = "".join('<tr><td><font face="Arial, Helvetica" size="%d">%s</font><img src="%s" /></td></tr>' % (
            numbers.randrange(1, 6), " ".join(numbers.choice(words) for _ in range(numbers.randrange(20, 200))),
            numbers.choice(pictures)) for _ in range(20))
        images = "".join('<img src="%s" />' % name for name in pictures)
        with open(os.path.join(folder, "Page%d.html" % page if page > 1 else "wgcard.html"), "w",
                  encoding="ascii") as file:
            file.write('<html><head><title>%d</title></head><body background="paper.jpg">%s<table>%s</table></body>'
                       "</html>" % (page, images, cells))


def one_file(tool, project, scratch):
    """Milliseconds of the program's own one file."""
    ran = subprocess.run([tool, "--one", project, os.path.join(scratch, "one.html")], capture_output=True, text=True,
                         check=True)
    return float(ran.stdout.split()[2])


def copied(project, scratch):
    """Milliseconds of cp."""
    copy = os.path.join(scratch, "copy")
    shutil.rmtree(copy, ignore_errors=True)
    start = time.perf_counter()
    subprocess.run(["cp", "-r", project, copy], check=True)
    return (time.perf_counter() - start) * 1000


def unpack(tool, pack, scratch):
    """Milliseconds of the reader, which writes the files, and of unzip; both with the start of a program."""
    times = []
    for command in ([tool, pack], ["unzip", "-q", "-o", pack]):
        folder = os.path.join(scratch, "unpacked")
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
        start = time.perf_counter()
        subprocess.run(command, cwd=folder, capture_output=True, check=False)
        times.append((time.perf_counter() - start) * 1000)
        if not os.path.exists(os.path.join(folder, "wgcard.html")):
            sys.exit("nothing came out of the pack: " + " ".join(command))
    return times


def fresh_copy(project, scratch):
    work = os.path.join(scratch, "card")
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(project, work)
    return work


def packed(tool, work, scratch):
    """Milliseconds and bytes of the program's own build; the pages get their links."""
    target = os.path.join(scratch, "ours.exe")
    ran = subprocess.run([tool, work, scratch, "ours.exe"], capture_output=True, text=True)
    if ran.returncode != 0:
        sys.exit("the web-pack isn't made: " + ran.stdout + ran.stderr)
    milliseconds = float(ran.stdout.split()[2])
    size = os.path.getsize(target)
    os.remove(target)
    return milliseconds, size


def peer(stub, project, scratch):
    """Milliseconds and bytes of zip -9 over the same folder and the joining of stub and archive."""
    work = fresh_copy(project, scratch)
    target = os.path.join(scratch, "peer.exe")
    start = time.perf_counter()
    subprocess.run(["zip", "-9", "-q", "card.zip"] + sorted(os.listdir(work)), cwd=work, check=True)
    with open(os.path.join(work, "card.zip"), "rb") as archive, open(target, "wb") as file:
        file.write(stub)
        file.write(archive.read())
    milliseconds = (time.perf_counter() - start) * 1000
    size = os.path.getsize(target)
    os.remove(target)
    return milliseconds, size


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=5, help="builds of each, of which the median counts")
    arguments = parser.parse_args()
    arguments.build = os.path.abspath(arguments.build)
    tool = os.path.join(arguments.build, "bin", "make_pack")
    if not os.path.exists(tool) or not shutil.which("zip"):
        sys.exit("not there: make_pack or zip")
    pieces = os.path.join(arguments.build, "resources")
    stub = b"".join(open(os.path.join(pieces, name), "rb").read()
                    for name in ("stub/STUB1", "stub/STUB2", "icons/WP.img", "stub/STUB4", "stub/STUB5"))
    if len(stub) != STUB_SIZE:
        sys.exit("the stub has %d bytes" % len(stub))
    samples = os.path.join(arguments.build, "bin", "samples")
    figures = []
    with tempfile.TemporaryDirectory() as scratch:
        projects = (("", make_project), ("_500", make_small_project),
                    ("_site", lambda folder: make_site(folder, samples)))
        for ending, make in projects:
            project = os.path.join(scratch, "project" + ending)
            make(project)
            duration, size = Figure("pack_time" + ending), Figure("pack_size" + ending, "bytes")
            for _ in range(arguments.rounds):
                own, others = packed(tool, fresh_copy(project, scratch), scratch), peer(stub, project, scratch)
                duration.add(own[0], others[0])
                size.add(own[1], others[1])
            figures += duration, size
        project = os.path.join(scratch, "pictures")
        make_picture_project(project)
        single, unpacked = Figure("onefile_100"), Figure("unpack")
        for _ in range(arguments.rounds):
            single.add(one_file(tool, project, scratch), copied(project, scratch))
        work = fresh_copy(os.path.join(scratch, "project"), scratch)
        subprocess.run([tool, work, scratch, "pack.exe"], capture_output=True, check=True)
        for _ in range(arguments.rounds):
            unpacked.add(*unpack(os.path.join(arguments.build, "bin", "stub_unpack"), os.path.join(scratch, "pack.exe"),
                                 scratch))
        figures += single, unpacked
    kept = [figure.print(BOUNDS[figure.name]) for figure in figures if figure.name in BOUNDS]
    sys.exit(0 if all(kept) else 1)


if __name__ == "__main__":
    main()
