"""Where the random steps of a test script begin: elsewhere in every run, told before the first step, and played again
with CORVANE_SEED in the environment."""

import os
import random


def random_seed(what):
    """A seed that nobody has seen, or the one that CORVANE_SEED names. It is printed with `what`."""
    wanted = os.environ.get("CORVANE_SEED")
    seed = int(wanted) if wanted else random.SystemRandom().randrange(1000000000)
    print("%s: CORVANE_SEED=%d" % (what, seed), flush=True)
    return seed
