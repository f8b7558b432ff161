"""How evenly clicks come, as another program sees them."""

import contextlib
import os
import statistics
import sys

import meters
from record import FLOOR, Figure, percentile

VISIBLE = "visible"


def measure(bench):
    """One round on the X desktop."""
    measure_on(bench, bench.screen, [bench.bare_thread, *bench.other_clickers])


def measure_on(bench, screen, clickers):
    """One round: everybody has a run at every interval, with and without company."""
    options = bench.options
    for interval in options.intervals:
        for loops in options.loads:
            for name, states, ready in bench.in_turn(_runners(bench, screen, clickers)):
                meters.wait_for_calm(bench.record, options.patience)
                file = f"{screen.PREFIX}{name} {states[-1]} {interval:g} ms {loops:g} loops round {bench.round + 1}"
                arrivals, busy = _run(bench, screen, ready, interval / 1000, int(loops), os.path.join(bench.folder, "clicks", file))
                company = f"{loops:g} busy loops" if loops else "idle"
                for state in states:
                    _add(bench, name, f"{screen.PREFIX}{interval:g} ms, {company}, {state}", interval, arrivals, round=bench.round,
                         clicks=len(arrivals), busyCores=busy)


def _runners(bench, screen, clickers):
    """Who runs: under which name, for which rows, and how it is got ready. What has no window stands in both rows."""
    def of_clicker(clicker):
        return lambda count, interval: clicker.ready(screen, count, interval)

    def of_build(build, state):
        @contextlib.contextmanager
        def ready(count, interval):
            config = {"clickIntervalSeconds": interval, "maxClicks": count}
            with build.at_rest(screen, state != VISIBLE, **config):
                yield screen.press_hotkey
        return ready

    states = [VISIBLE, screen.OUT_OF_SIGHT]
    named = [(FLOOR, clickers[0]), *((clicker.name, clicker) for clicker in clickers[1:])]
    return [*((name, states, of_clicker(clicker)) for name, clicker in named),
            *((build.name, [state], of_build(build, state)) for state in states for build in bench.builds)]


def _run(bench, screen, ready, interval, loops, path):
    count = bench.options.clicks
    with ready(count, interval) as begin, screen.target(path, count, interval) as target, \
            meters.busy_loops(loops, screen.environment):
        meter = meters.BusyCores()
        begin()
        target.wait()
        busy = meter.so_far()
        arrivals = target.presses()
    if len(arrivals) != count:
        print(f"{len(arrivals)} of {count} clicks came: {os.path.basename(path)}", file=sys.stderr, flush=True)
    return arrivals, busy


def _add(bench, name, condition, interval, arrivals, **details):
    """`interval` is in milliseconds."""
    spans = [(after - before) / 1e6 for before, after in zip(arrivals, arrivals[1:])]
    if not spans:
        raise RuntimeError(f"no clicks of {name} came")
    deviations = [abs(span - interval) for span in spans]
    for percent in (50, 90, 99):
        bench.record.add(Figure(f"{condition}: deviation p{percent}", "ms", "bare thread"), name, percentile(deviations, percent),
                         **details)
    bench.record.add(Figure(f"{condition}: drift per 1,000 clicks", "ms", "bare thread", has_ratios=False), name,
                     _drift(arrivals, interval), **details)


def _drift(arrivals, interval):
    """Per 1,000 clicks: how much more behind its time the last tenth is than the first. By medians: one late click is no drift."""
    delays = [(arrival - arrivals[0]) / 1e6 - number * interval for number, arrival in enumerate(arrivals)]
    tenth = max(1, len(delays) // 10)
    later = statistics.median(delays[-tenth:]) - statistics.median(delays[:tenth])
    return 1000 * later / max(1, len(delays) - tenth)
