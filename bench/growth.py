"""What grows, and what must not: with the number of presets, the length of a run, and time."""

import os
import re
import subprocess
import uuid

import meters
from harness import preferences
from harness.waiting import pause
from record import Figure
from screen import Target

PRESETS = (10, 1000, 10000)
FAST = 0.01  # seconds
# By their names among the tests of the logic: runs on virtual time, which do nothing but count and hand over.
RUNS = {"LongRunTest.ShortestIntervalKeepsItsPaceAsFarAsDatesAreFine": 100_000,
        "LongRunTest.LargestCountIsExactAndDoesNotDrift": 10_000_000}


def measure(bench):
    """One round of launches and of long runs; memory takes long, and is looked at in the first one only."""
    for count in PRESETS:
        for build in bench.in_turn(bench.builds):
            _launch(bench, build, count)
    for build in bench.in_turn(bench.builds):
        _run_for_long(bench, build)
    if bench.round == 0:
        for build in bench.builds:
            _click_for_long(bench, build)


def _launch(bench, build, count):
    presets = [{"id": str(uuid.uuid4()).upper(), "name": f"Preset {number}", "config": preferences.config(),
                "createdAt": preferences.now()} for number in range(count)]
    meters.wait_for_calm(bench.record, bench.options.patience)
    with build.launch(bench.screen, presets) as launched:
        bench.record.add(Figure(f"launch to mapped, {count:,} presets", "ms"), build.name, 1000 * launched.seconds_to_map,
                         round=bench.round)


def _run_for_long(bench, build):
    tests = os.path.join(build.folder, "tests", "logic_tests")
    if not os.access(tests, os.X_OK):
        return  # a build without tests
    meters.wait_for_calm(bench.record, bench.options.patience)
    for name, clicks in RUNS.items():
        output = subprocess.run([tests, f"--gtest_filter={name}"], env=bench.screen.environment, capture_output=True, text=True,
                                check=True).stdout
        milliseconds = int(re.search(r"\[ +OK \].*\((\d+) ms\)", output)[1])
        bench.record.add(Figure(f"a click on virtual time, run of {clicks:,}", "µs"), build.name, 1000 * milliseconds / clicks,
                         round=bench.round)


def _click_for_long(bench, build):
    """The first seconds are left out: what is made on first use stays."""
    path = os.path.join(bench.folder, "clicks", "growth of " + build.name)
    with build.at_rest(bench.screen, clickIntervalSeconds=FAST, stopMode="manual") as launched, Target(bench.screen, path):
        bench.screen.press_hotkey()
        pause(10)
        sizes = [meters.memory(launched.pid)["Anonymous"]]
        for _ in range(10):
            pause(6 * bench.options.minutes)
            sizes.append(meters.memory(launched.pid)["Anonymous"])
    bench.record.add(Figure(f"memory of its own, growth in {bench.options.minutes:g} minutes of 100 clicks a second", "kB"),
                     build.name, sizes[-1] - sizes[0], sizes=sizes)
