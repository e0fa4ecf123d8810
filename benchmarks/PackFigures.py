"""Time and size of a web-pack, made through its panel, beside those of Info-ZIP on the same files, `zip -9` and the stub's
bytes before it: pack_time and pack_size for ten pages and 20 MB of pictures, pack_time_500 and pack_size_500 for a page
and 500 small pictures. Prints a line for each figure."""
import argparse
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

STUB_SIZE = 0x13000
PAGES = 10
PHOTO_BYTES = 1_500_000
PHOTOS = 12
DRAWING_BYTES = 500_000
DRAWINGS = 4
SMALL_FILES = 500
TIME_BOUND = 1.1
SIZE_BOUND = 1.01


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


def fresh_copy(project, scratch):
    work = os.path.join(scratch, "card")
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(project, work)
    return work


def ours(tool, project, scratch):
    """Milliseconds and bytes of the program's own build."""
    work = fresh_copy(project, scratch)
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
    tool = os.path.join(arguments.build, "bin", "make_pack")
    if not os.path.exists(tool) or not shutil.which("zip"):
        sys.exit("not there: make_pack or zip")
    pieces = os.path.join(arguments.build, "resources")
    stub = b"".join(open(os.path.join(pieces, name), "rb").read()
                    for name in ("stub/STUB1", "stub/STUB2", "icons/WP.img", "stub/STUB4", "stub/STUB5"))
    if len(stub) != STUB_SIZE:
        sys.exit("the stub has %d bytes" % len(stub))
    with tempfile.TemporaryDirectory() as scratch:
        missed = False
        for ending, make in (("", make_project), ("_500", make_small_project)):
            project = os.path.join(scratch, "project" + ending)
            make(project)
            results = [(ours(tool, project, scratch), peer(stub, project, scratch)) for _ in range(arguments.rounds)]
            figures = (
                ("pack_time" + ending, statistics.median(r[0][0] for r in results),
                 statistics.median(r[1][0] for r in results), "ms", TIME_BOUND),
                ("pack_size" + ending, results[0][0][1], results[0][1][1], "bytes", SIZE_BOUND),
            )
            for name, own, others, unit, bound in figures:
                ratio = own / others
                missed = missed or ratio > bound
                print("BENCH name=%s ours=%.0f peer=%.0f ratio=%.4f unit=%s" % (name, own, others, ratio, unit))
    sys.exit(1 if missed else 0)


main()
