"""The line of a figure, which C++ and Python print alike, and what ./bench makes of it."""
import argparse
import contextlib
import io
import os
import random
import subprocess
import sys
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(HOUSE, "benchmarks"))
from Figure import Figure  # noqa: E402

BUILD = ""


def line_of(pairs, bound=float("inf"), note=None):
    """What Python prints, and whether the bound is kept."""
    figure = Figure("some", "ms")
    for pair in pairs:
        figure.add(*pair)
    if note:
        figure.note(*note)
    told = io.StringIO()
    with contextlib.redirect_stdout(told):
        kept = figure.print(bound)
    return told.getvalue(), kept


def native_line_of(pairs, bound=float("inf"), note=None):
    """The same of C++."""
    command = [os.path.join(BUILD, "bin", "figure_line"), "some", "ms", repr(bound)]
    if note:
        command += [note[0], repr(note[1])]
    ran = subprocess.run(command, input="".join("%r %r\n" % pair for pair in pairs), capture_output=True, text=True,
                         check=False)
    return ran.stdout, ran.returncode == 0


def ask(script):
    """Output and messages of a script that has what ./bench is made of."""
    ran = subprocess.run(["bash", "-c", "source ./bench\n" + script], cwd=HOUSE, capture_output=True, text=True,
                         check=False)
    return ran.stdout, ran.stderr


class Lines(unittest.TestCase):
    def test_a_line_has_the_medians_and_the_spread_of_the_single_pairs(self):
        self.assertEqual(line_of([(1, 2), (2, 2), (2, 2.5), (2, 2), (4, 2)])[0],
                         "BENCH name=some ours=2.000 peer=2.000 ratio=1.0000 unit=ms pairs=5 low=0.5000 high=2.0000\n")

    def test_of_ten_pairs_the_least_and_the_most_are_outside(self):
        line = line_of([(1000 + turn, 1000) for turn in (0, 9, 1, 8, 2, 7, 3, 6, 4, 5)])[0]
        self.assertIn(" pairs=10 low=1.0010 high=1.0080", line)

    def test_the_bound_is_kept_or_not(self):
        pairs = [(2, 4)] * 5
        self.assertTrue(line_of(pairs, 0.5)[1])
        self.assertFalse(line_of(pairs, 0.499)[1])

    def test_notes_stand_behind(self):
        line = line_of([(2, 4)] * 5, note=("p99", 12.3456))[0]
        self.assertTrue(line.endswith(" high=0.5000 p99=12.35\n"), line)

    def test_where_the_even_turns_tell_something_else_the_line_says_so(self):
        steady = [(100, 100), (114, 100)] * 3
        unsteady = [(100, 100), (116, 100)] * 3
        self.assertNotIn("unsteady", line_of(steady)[0])
        self.assertTrue(line_of(unsteady, note=("p99", 1.0))[0].endswith(" p99=1.000 unsteady=yes\n"))
        self.assertIn("unsteady=yes", line_of([(116, 100), (100, 100)] * 3)[0])

    def test_one_pair_is_neither_steady_nor_unsteady(self):
        self.assertIn(" pairs=1 low=0.5000 high=0.5000\n", line_of([(1, 2)])[0])

    def test_both_languages_print_the_same(self):
        numbers = random.Random(1)
        for count in [1, 2, 3, 5, 6, 9, 10, 11, 19, 20, 25, 100] * 4:
            size = 10 ** numbers.uniform(-2, 7)
            pairs = [(size * numbers.uniform(0.8, 1.2), size * numbers.uniform(0.8, 1.2)) for _ in range(count)]
            for bound in 0.9, 1.0, 1.1:
                with self.subTest(count=count, size=size, bound=bound):
                    note = ("p99", size)
                    self.assertEqual(line_of(pairs, bound, note), native_line_of(pairs, bound, note))


class Bench(unittest.TestCase):
    def busy(self, first, second):
        return ask("busyBetween 'cpu %s' 'cpu %s'" % (first, second))[0].strip()

    def test_time_that_is_idle_or_waits_for_a_disk_is_free(self):
        self.assertEqual(self.busy("10 0 0 100 0 0 0 0 0 0", "10 0 0 200 100 0 0 0 0 0"), "0")

    def test_all_else_is_work_also_what_is_stolen(self):
        for field in 0, 1, 2, 5, 6, 7:
            second = [0, 0, 0, 75, 0, 0, 0, 0, 0, 0]
            second[field] = 25
            with self.subTest(field=field):
                self.assertEqual(self.busy("0 0 0 0 0 0 0 0 0 0", " ".join(map(str, second))), "25")

    def test_guests_count_once(self):
        self.assertEqual(self.busy("0 0 0 0 0 0 0 0 0 0", "50 0 0 50 0 0 0 0 50 0"), "50")

    def test_a_busy_machine_is_told_of_and_marks_the_lines(self):
        told, messages = ask("busyBetween() { echo 11; }\nmark=$(lookForWork)\n"
                             "printf 'BENCH name=one ours=1\\nword\\n' | figures program \"$mark\"")
        self.assertEqual(told, "BENCH name=one ours=1 busy=11%\n")
        self.assertIn("busy with other work, 11%", messages)
        self.assertIn("word", messages)

    def test_a_quiet_machine_is_not(self):
        told, messages = ask("busyBetween() { echo 10; }\nmark=$(lookForWork)\n"
                             "printf 'BENCH name=one ours=1\\n' | figures program \"$mark\"")
        self.assertEqual(told, "BENCH name=one ours=1\n")
        self.assertEqual(messages, "")

    def test_names_choose_the_figures(self):
        told, _ = ask("printf 'BENCH name=one ours=1\\nBENCH name=two ours=1\\n' | figures program '' tw")
        self.assertEqual(told, "BENCH name=two ours=1\n")

    def test_what_takes_minutes_wants_its_whole_name(self):
        for names, wanted in (("", "no"), ("memory", "no"), ("memory_8", "no"), ("memory_8h", "yes"),
                              ("x memory_8h", "yes")):
            with self.subTest(names=names):
                told, _ = ask("isWanted build/bin/bench_memory_8h %s && echo yes || echo no" % names)
                self.assertEqual(told.strip(), wanted)
        self.assertEqual(ask("isWanted build/bin/bench_other && echo yes")[0].strip(), "yes")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    arguments, others = parser.parse_known_args()
    BUILD = os.path.abspath(arguments.build)
    unittest.main(argv=[sys.argv[0], *others])
