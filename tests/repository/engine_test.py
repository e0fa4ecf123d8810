"""The browser engine is linked by those who show pages in it, and by nobody else: the editor and nearly all of its
tests are built and run without. Read off the built programs.

Usage: engine_test.py --build FOLDER
"""
import argparse
import os
import re
import subprocess
import sys
import unittest

BUILD = ""
# The program, and what works the engine for a test, a case or a figure.
WITH_ENGINE = {"corvane", "hosted_tests", "soak", "cases", "page_text", "page_shot", "bare_view", "bench_keys",
               "bench_memory_8h", "bench_page", "bench_project", "bench_scale", "contact_sheet"}
# Built from the engine's room, of which the linker takes the engine along or finds nothing that needs it.
MAY_HAVE_ENGINE = {"engine_tests"}
NEEDED = re.compile(r"\(NEEDED\).*\[(libQt6WebEngine[^\]]*)\]")


def linked(path):
    """The engine's libraries that a program needs; None for what is no program."""
    done = subprocess.run(["readelf", "-d", path], capture_output=True, text=True, check=False)
    if "Dynamic section" not in done.stdout:
        return None
    return NEEDED.findall(done.stdout)


class Engine(unittest.TestCase):
    def test_only_these_programs_link_it(self):
        folder = os.path.join(BUILD, "bin")
        programs = {name: linked(os.path.join(folder, name)) for name in sorted(os.listdir(folder))
                    if os.path.isfile(os.path.join(folder, name))}
        programs = {name: libraries for name, libraries in programs.items() if libraries is not None}
        self.assertGreater(len(programs), 25)
        having = {name for name, libraries in programs.items() if libraries}
        self.assertEqual(having - MAY_HAVE_ENGINE, WITH_ENGINE)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    BUILD = parser.parse_args().build
    unittest.main(argv=sys.argv[:1], verbosity=1)
