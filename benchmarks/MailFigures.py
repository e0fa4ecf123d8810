"""Time and memory of a message with 20 MB of pictures, from the files to the form that is sent: compose beside Python's
email package, compose_b64 beside coreutils' base64 on the same bytes, compose_mem beside the size of the message.
Prints a line for each figure."""
import argparse
import email.message
import email.policy
import email.utils
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

PICTURES = 14
PICTURE_BYTES = 1_500_000
COMPOSE_BOUND = 0.05
BASE64_BOUND = 1.3
MEMORY_BOUND = 1.1
SEND_BOUND = 1.0


def make_project(folder):
    numbers = random.Random(1)
    os.makedirs(folder)
    names = ["photo%d.jpg" % number for number in range(PICTURES)]
    for name in names:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(numbers.randbytes(PICTURE_BYTES))
    page = "<html><head><title></title></head><body>%s</body></html>" % "".join('<img src="%s" />' % n for n in names)
    with open(os.path.join(folder, "wgcard.html"), "w", encoding="ascii") as file:
        file.write(page)
    return names


def ours(tool, folder):
    """Milliseconds, bytes of the message, and bytes of memory at most."""
    ran = subprocess.run([tool, "measure", folder], capture_output=True, text=True, check=True)
    milliseconds, size, memory = ran.stdout.split()
    return float(milliseconds), int(size), int(memory)


def python_package(folder, names):
    start = time.perf_counter()
    message = email.message.EmailMessage(policy=email.policy.SMTP)
    message["From"], message["To"], message["Subject"] = "ann@example.org", "bob@example.net", "A page"
    message.set_content("This is a web greeting message.")
    ids = {name: email.utils.make_msgid(domain="x") for name in names}
    with open(os.path.join(folder, "wgcard.html"), encoding="ascii") as file:
        page = file.read()
    for name, identifier in ids.items():
        page = page.replace('"%s"' % name, '"cid:%s"' % identifier[1:-1])
    message.add_alternative(page, subtype="html")
    html = message.get_payload()[1]
    for name, identifier in ids.items():
        with open(os.path.join(folder, name), "rb") as file:
            html.add_related(file.read(), "image", "jpeg", cid=identifier, filename=name)
    size = len(message.as_bytes())
    milliseconds = (time.perf_counter() - start) * 1000
    if size < PICTURES * PICTURE_BYTES * 4 / 3:
        sys.exit("the package's message is too small")
    return milliseconds


def base64_of(path):
    start = time.perf_counter()
    subprocess.run(["base64", "-w", "76", path], stdout=subprocess.DEVNULL, check=True)
    return (time.perf_counter() - start) * 1000


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=15, help="messages of each, of which the median counts")
    arguments = parser.parse_args()
    tool = os.path.join(arguments.build, "bin", "mail_tool")
    if not os.path.exists(tool) or not shutil.which("base64"):
        sys.exit("not there: mail_tool or base64")
    with tempfile.TemporaryDirectory() as scratch:
        folder = os.path.join(scratch, "project")
        names = make_project(folder)
        joined = os.path.join(scratch, "joined")
        with open(joined, "wb") as file:
            for name in names:
                with open(os.path.join(folder, name), "rb") as picture:
                    shutil.copyfileobj(picture, file)
        results = []
        for _ in range(arguments.rounds):
            # A program's start isn't what is compared.
            base64 = base64_of(joined) - base64_of(os.devnull)
            results.append((ours(tool, folder), python_package(folder, names), base64))
    own = statistics.median(r[0][0] for r in results)
    figures = (
        ("compose", own, statistics.median(r[1] for r in results), "ms", COMPOSE_BOUND),
        ("compose_b64", own, statistics.median(r[2] for r in results), "ms", BASE64_BOUND),
        ("compose_mem", max(r[0][2] for r in results), results[0][0][1], "bytes", MEMORY_BOUND),
    )
    missed = False
    for name, mine, other, unit, bound in figures:
        ratio = mine / other
        missed = missed or ratio > bound
        print("BENCH name=%s ours=%.1f peer=%.1f ratio=%.4f unit=%s" % (name, mine, other, ratio, unit))
    sys.exit(1 if missed else 0)


main()
