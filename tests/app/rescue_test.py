"""Kills a program at random moments while it is typed into. What was typed longer than the rescue file's period ago is
there at the next start, and no file is torn. CORVANE_KILLS tells how often."""

import argparse
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from random_seed import random_seed  # noqa: E402

PERIOD = 0.1  # seconds; the program's own is 5
SLACK = 0.5  # for a write to end, on a machine that is busy


def run_and_kill(driver, folder, life):
    """Tells when each letter was typed, and when the program died."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    process = subprocess.Popen([driver, folder, str(int(PERIOD * 1000))], stdout=subprocess.PIPE, env=environment,
                               stderr=subprocess.DEVNULL)
    typed = []
    end = None
    while end is None or time.monotonic() < end:
        if not process.stdout.readline():
            raise SystemExit("the program ended by itself")
        typed.append(time.monotonic())
        end = end or time.monotonic() + life
    process.kill()
    died = time.monotonic()
    typed += [died] * len(process.stdout.read().split())
    process.wait()
    return typed, died


def newest_rescued(folder):
    pages = list(folder.glob("rescued/*/*(not saved).html"))
    return max(pages, key=lambda page: page.stat().st_mtime, default=None)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--driver", required=True)
    arguments = parser.parse_args()
    chance = random.Random(random_seed("rescue"))
    kills = int(os.environ.get("CORVANE_KILLS", "25"))
    folder = pathlib.Path(tempfile.mkdtemp())
    failures = 0
    worst = 0.0
    before = None
    for kill in range(kills + 1):
        typed, died = run_and_kill(arguments.driver, str(folder), chance.uniform(0.0, 0.6))
        if before:
            # This start has put aside what the run before had left.
            letters, death = before
            page = newest_rescued(folder)
            text = page.read_text() if page else ""
            found = text.count("q")
            due = sum(1 for moment in letters if moment < death - PERIOD - SLACK)
            if page and not text.rstrip().endswith("</html>"):
                print("kill", kill, "left a torn page")
                failures += 1
            if found < due:
                print("kill", kill, "cost", due - found, "letters of", due)
                failures += 1
            if found < len(letters):
                worst = max(worst, death - letters[max(found, 0)])
            shutil.rmtree(folder / "rescued", ignore_errors=True)
        before = (typed, died)
    shutil.rmtree(folder, ignore_errors=True)
    print(f"{kills} kills, the oldest letter that was lost was {worst:.2f} s old")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
