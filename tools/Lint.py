"""Runs clang-tidy over the sources of the rooms, as many at a time as there are processors. Tests are left out: the
macros that they are written with take the analyzer a minute a file.

What was found clean is remembered by its content in BUILD/tidy-cache and not looked at again until the source, a header
that it reaches, its compile command, the checks or the tool change.

Usage: Lint.py --build FOLDER
"""
import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
SKIPPED_FOLDERS = re.compile(r"^(\..*|build|build-.*|tour)$")
# Another version finds other things. Debian 12 and 13 both have this one.
TOOL = "clang-tidy-19"
NO_ROOMS = ("tests", "benchmarks", "tools")
# Flags of gcc alone are not clang's business. The analyzer's shallow mode takes a third off the whole run.
EXTRA = ["--extra-arg=" + flag for flag in ("-Wno-unknown-warning-option", "-Wno-unused-command-line-argument",
                                            "-Xclang", "-analyzer-config", "-Xclang", "mode=shallow")]
LOCAL_INCLUDE = re.compile(rb'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def headers():
    """The project's headers by name; names are unique in the project."""
    found = {}
    for folder, folders, files in os.walk(HOUSE):
        folders[:] = [name for name in folders if not SKIPPED_FOLDERS.match(name)]
        found.update({name: os.path.join(folder, name) for name in files if name.endswith(".h")})
    return found


def reached(source, known):
    """The contents of the source and of every project header that it includes, directly or not."""
    contents, waiting = {}, [source]
    while waiting:
        path = waiting.pop()
        if path in contents:
            continue
        contents[path] = read(path)
        for include in LOCAL_INCLUDE.findall(contents[path]):
            name = os.path.basename(include.decode())
            if name in known:
                waiting.append(known[name])
    return [contents[path] for path in sorted(contents)]


def digest(entry, known, setting):
    hashed = hashlib.sha256(setting)
    command = entry.get("command") or shlex.join(entry["arguments"])
    for part in [command.encode()] + reached(entry["file"], known):
        hashed.update(b"%d:" % len(part) + part)
    return hashed.hexdigest()


def is_in_a_room(path):
    inside = os.path.relpath(path, HOUSE).split(os.sep)
    # ".." leads out of the project and is skipped as every name with a dot in front is.
    return inside[0] not in NO_ROOMS and not any(SKIPPED_FOLDERS.match(folder) for folder in inside[:-1])


def setting_of_all():
    """What every answer depends on: the tool, the checks, the system's headers by Qt's version."""
    version = subprocess.run([TOOL, "--version"], capture_output=True, check=True).stdout
    qt = subprocess.run(["pkg-config", "--modversion", "Qt6Core"], capture_output=True).stdout
    return version + qt + read(os.path.join(HOUSE, ".clang-tidy")) + " ".join(EXTRA).encode()


def look(path, build):
    ran = subprocess.run([TOOL, "--quiet", "-p", build, *EXTRA, path], capture_output=True, text=True)
    # What it says on the error channel besides is the number of warnings that it left out.
    return ran.returncode == 0, ran.stdout if ran.stdout.strip() or ran.returncode == 0 else ran.stderr


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    build = parser.parse_args().build
    with open(os.path.join(build, "compile_commands.json")) as file:
        entries = {os.path.realpath(entry["file"]): entry for entry in json.load(file)}
    entries = {path: entry for path, entry in entries.items() if is_in_a_room(path)}
    if not entries:
        sys.exit("no sources to look at")
    cache = os.path.join(build, "tidy-cache")
    os.makedirs(cache, exist_ok=True)
    known, setting = headers(), setting_of_all()
    marks = {path: os.path.join(cache, digest(entry, known, setting)) for path, entry in entries.items()}
    waiting = [path for path in sorted(entries) if not os.path.exists(marks[path])]
    bad = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, (clean, text) in zip(waiting, pool.map(lambda path: look(path, build), waiting)):
            if clean:
                open(marks[path], "w").close()
            else:
                bad += 1
                print(text, end="", flush=True)
    for name in set(os.listdir(cache)) - {os.path.basename(mark) for mark in marks.values()}:
        os.remove(os.path.join(cache, name))
    print("lint: %d sources, %d looked at anew, %d with findings" % (len(entries), len(waiting), bad))
    sys.exit(1 if bad else 0)


main()
