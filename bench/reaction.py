"""How soon the hotkey is followed: from the key to the first click, and from the key to the last."""

import os
import random

import meters
from harness.waiting import pause, until
from record import Figure, percentile
from screen import Target

INTERVAL = 0.01  # seconds


def measure(bench):
    """One round of many runs, each begun and ended by the hotkey."""
    for build in bench.in_turn(bench.builds):
        meters.wait_for_calm(bench.record, bench.options.patience)
        path = os.path.join(bench.folder, "clicks", f"reaction of {build.name} round {bench.round + 1}")
        with build.at_rest(bench.screen, clickIntervalSeconds=INTERVAL, stopMode="manual"), Target(bench.screen, path) as target:
            trials = [_try(bench, target) for _ in range(bench.options.trials)]
        for title, values in zip(("hotkey to first click", "hotkey to last click, 0 where none follows"), zip(*trials)):
            for percent in (50, 99):
                bench.record.add(Figure(f"{title}, p{percent}", "ms"), build.name, percentile(values, percent), round=bench.round,
                                 values=values)


def _try(bench, target):
    """Both in milliseconds."""
    before = len(target.presses())
    start = bench.screen.press_hotkey()
    until(lambda: len(target.presses()) > before, "the hotkey started nothing")
    # Stop may meet any moment of an interval.
    pause(0.1 + random.random() * INTERVAL)
    stop = bench.screen.press_hotkey()
    pause(10 * INTERVAL)
    presses = target.presses()
    return (presses[before] - start) / 1e6, max(0.0, (presses[-1] - stop) / 1e6)
