"""Trying the same thing many times, each time at another random moment."""

import os
import random
import sys
import time
import traceback

SEED = int(os.environ.get("VELLORAN_SEED", time.time_ns() % 1_000_000_000))


def size(short, full):
    """The size that was asked for: "short", "full", or a number."""
    asked = sys.argv[1] if len(sys.argv) > 1 else "short"
    return {"short": short, "full": full}[asked] if asked in ("short", "full") else type(full)(asked)


def chance(*what):
    """What is random, the same for the same seed and the same words."""
    return random.Random(" ".join(str(word) for word in (SEED, *what)))


class Trials:
    """What came of each; `finish` ends the program, with 0 when all survived."""

    def __init__(self):
        self._figures = {}
        print(f"seed {SEED}", flush=True)

    def attempt(self, what, number, trial):
        """Calls `trial` with its own source of chance. It has survived when it returns; returns whether it did. With VELLORAN_ONLY
        in the environment nothing but the trial of that number is made. One without a number does not stand alone."""
        only = os.environ.get("VELLORAN_ONLY")
        if None not in (only, number) and int(only) != number:
            return True
        has_survived = False
        try:
            trial(chance(what, number))
            has_survived = True
        except Exception:  # whatever it was, the next trial tells more
            traceback.print_exc()
            stage = os.path.basename(sys.argv[0])
            alone = "" if number is None else f"VELLORAN_ONLY={number} "
            print(f"FAILED: {what}, number {number}; again: {alone}tools/prove-safety BUILD --seed {SEED} {stage}", flush=True)
        self.count(what, 1, has_survived)
        return has_survived

    def count(self, what, tried, survived):
        """Adds to the figures of that name."""
        figure = self._figures.setdefault(what, [0, 0])
        figure[0] += tried
        figure[1] += survived

    def expect(self, what, least):
        """Has those count as not survived that are missing; of a trial that is made alone nothing is expected."""
        if "VELLORAN_ONLY" not in os.environ:
            tried, _ = self._figures.get(what, (0, 0))
            self.count(what, max(0, least - tried), 0)

    def finish(self):
        for what, (tried, survived) in self._figures.items():
            print(f"tried {tried} survived {survived} {what}", flush=True)
        sys.exit(0 if self._figures and all(tried == survived for tried, survived in self._figures.values()) else 1)
