"""A figure: ours and the peer's measured by turns, at least five pairs of them, and the one line that tells of it.

benchmarks/Figure.h is the same for C++; a test holds their lines together.
"""

import math
import statistics

TOLERANCE = 1.15


def text_of(value):
    """Four digits that count, and never a whole number's cut off."""
    size = abs(value)
    return "%.*f" % (0 if size >= 1000 else 1 if size >= 100 else 2 if size >= 10 else 3, value)


class Figure:
    def __init__(self, name, unit="ms"):
        self.name, self.unit = name, unit
        self.pairs = []
        self.notes = ""

    def add(self, ours, peer):
        """What one turn gave."""
        self.pairs.append((ours, peer))

    def note(self, key, value):
        """What the line tells besides, at its end."""
        self.notes += " %s=%s" % (key, value if isinstance(value, str) else text_of(value))

    def medians(self, first=0, step=1):
        return [statistics.median(side) for side in zip(*self.pairs[first::step])]

    def ratio(self, first=0, step=1):
        """The medians decide: a single turn may have met with anything."""
        ours, peer = self.medians(first, step)
        return ours / peer

    def is_unsteady(self):
        """Two measurements in one: where even turns tell something else than odd ones, a second run would, too."""
        if len(self.pairs) < 2:
            return False
        even, odd = self.ratio(0, 2), self.ratio(1, 2)
        return max(even, odd) > TOLERANCE * min(even, odd)

    def print(self, bound=math.inf):
        """Prints the line; tells whether the ratio is no more than the bound."""
        ratios = sorted(ours / peer for ours, peer in self.pairs)
        # The lowest and the highest decile; of fewer than ten the least and the most.
        outside = len(ratios) // 10
        ours, peer = map(text_of, self.medians())
        print("BENCH name=%s ours=%s peer=%s ratio=%.4f unit=%s pairs=%d low=%.4f high=%.4f%s%s" % (
            self.name, ours, peer, self.ratio(), self.unit, len(ratios), ratios[outside], ratios[-1 - outside],
            self.notes, " unsteady=yes" if self.is_unsteady() else ""), flush=True)
        return self.ratio() <= bound
