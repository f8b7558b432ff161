"""All benchmarks in one run: rounds in which everybody has a turn at everything."""

import argparse
import datetime
import os
import signal
import sys

import cadence
import cadence_on_sway
import growth
import lightness
import reaction
from record import Record
from screen import Screen
from subjects import BareWindow, Build, bare_thread, other_clickers

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SUITES = {"cadence": cadence, "sway": cadence_on_sway, "lightness": lightness, "reaction": reaction, "growth": growth}


class Bench:
    """What a suite is given: who is measured, where, how, and where the figures go."""

    def __init__(self, options, folder, screen):
        tools = os.path.join(ROOT, "build", "bench", "bench")
        self.options = options
        self.folder = folder
        self.screen = screen
        self.round = 0
        self.bare_thread = bare_thread(os.path.join(tools, "bare-thread"))
        self.bare_wayland_thread = bare_thread(os.path.join(tools, "bare-wayland-thread"))
        self.bare_window = BareWindow(os.path.join(tools, "bare-window"))
        self.other_clickers = other_clickers()
        self.builds = [Build(name, os.path.abspath(path)) for name, path in options.programs]
        self.record = Record(folder, [subject.name for subject in self.other_clickers], [build.name for build in self.builds])

    def in_turn(self, subjects):
        """In another order each round: nobody always follows the same neighbour."""
        start = self.round % len(subjects)
        return subjects[start:] + subjects[:start]


def program(text):
    name, separator, folder = text.partition("=")
    if not separator or not os.access(os.path.join(folder, "src", "velloran"), os.X_OK):
        raise argparse.ArgumentTypeError(f"{text}: not NAME=FOLDER with a program in FOLDER/src")
    return name, folder


def read_options():
    def numbers(text):
        return [float(word) for word in text.split(",")]

    def suites(text):
        unknown = set(text.split(",")) - set(SUITES)
        if unknown:
            raise argparse.ArgumentTypeError(f"no such suite: {', '.join(unknown)}")
        return text.split(",")

    parser = argparse.ArgumentParser(prog="bench/run", description=__doc__,
                                     formatter_class=argparse.ArgumentDefaultsHelpFormatter)
    parser.add_argument("programs", metavar="NAME=FOLDER", nargs="*", type=program, default=[],
                        help="a build of the program; the first is what others are compared with; the present tree where none is given")
    parser.add_argument("--only", metavar="SUITE,...", type=suites, default=list(SUITES), help="of " + ", ".join(SUITES))
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--clicks", type=int, default=500, help="in each run of the cadence")
    parser.add_argument("--intervals", metavar="MS,...", type=numbers, default=[10.0, 20.0, 50.0, 100.0], help="of the cadence")
    parser.add_argument("--loads", metavar="N,...", type=numbers, default=[0, 2], help="busy loops beside the cadence")
    parser.add_argument("--seconds", type=float, default=4.0, help="that processor time and wake-ups are counted over")
    parser.add_argument("--launches", type=int, default=5, help="of each program in each round")
    parser.add_argument("--cold", action="store_true", help="launch without anything in memory as well; slows down the whole machine")
    parser.add_argument("--trials", type=int, default=100, help="of the hotkey in each round")
    parser.add_argument("--minutes", type=float, default=1.0, help="of clicking, for the growth of memory")
    parser.add_argument("--patience", type=float, default=30.0, help="seconds to wait for a calm moment before each figure")
    options = parser.parse_args()
    options.programs = options.programs or [program("velloran=" + os.path.join(ROOT, "build", "bench"))]
    return options


def main():
    options = read_options()
    # The desktop is taken down in an orderly way, and what was measured so far is shown.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    folder = os.path.join(ROOT, "build", "benchmarks", datetime.datetime.now().strftime("%Y-%m-%d-%H%M%S"))
    os.makedirs(folder)
    screen = Screen()
    try:
        bench = Bench(options, folder, screen)
        try:
            for bench.round in range(options.rounds):
                for name in options.only:
                    print(f"round {bench.round + 1} of {options.rounds}: {name}", file=sys.stderr, flush=True)
                    SUITES[name].measure(bench)
        finally:
            table = bench.record.table()
            with open(os.path.join(folder, "table.md"), "w", encoding="utf-8") as file:
                file.write(table)
            print(table)
            print(f"Every figure by itself: {os.path.relpath(folder)}")
    finally:
        screen.close()


if __name__ == "__main__":
    main()
