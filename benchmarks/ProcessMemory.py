"""What all processes of a program hold in memory. Shared memory counts once (proportional set size, of which other
programs that use the same libraries take their part), or for each process (resident set size)."""

import os

from virtual_desktop import TooLate


def memory_of(process):
    """Megabytes of a process and all that descends from it: shared memory counted once, and for each."""
    once = each = 0
    waiting = [process]
    while waiting:
        one = "/proc/%d" % waiting.pop()
        try:
            for thread in os.listdir(one + "/task"):
                with open("%s/task/%s/children" % (one, thread), encoding="ascii") as file:
                    waiting += map(int, file.read().split())
            with open(one + "/smaps_rollup", encoding="ascii") as file:
                sizes = {words[0]: words[1] for words in map(str.split, file) if len(words) == 3}
        except (FileNotFoundError, ProcessLookupError):
            continue
        once += int(sizes["Pss:"])
        each += int(sizes["Rss:"])
    return once / 1024, each / 1024


def at_rest(desktop, process):
    try:
        desktop.settle(1.5, 15)
    except TooLate:
        pass  # a caret blinks
    memory = memory_of(process.pid)
    process.terminate()
    process.wait(30)
    return memory
