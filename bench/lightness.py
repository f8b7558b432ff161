"""What the program costs: to start, at rest, while its mascot flies, and for each click."""

import os
import time

import meters
from harness import processes
from harness.waiting import pause
from record import FLOOR, Figure
from screen import Target

LAUNCH = Figure("launch to mapped", "ms", "bare window")
COLD_LAUNCH = Figure("launch to mapped, nothing in memory", "ms", "bare window")
START = Figure("processor time until at rest after launch", "ms", "bare window")
MEMORY = Figure("PSS at rest", "MB", "bare window")
MEMORY_BESIDE = Figure("PSS at rest, beside something that shares the toolkit", "MB", "bare window")
OWN_MEMORY = Figure("memory of its own at rest", "MB", "bare window")
REST = Figure("wake-ups at rest", "a second", "bare window", has_ratios=False)
REST_TIME = Figure("processor time at rest", "ms a second", "bare window", has_ratios=False)
FLIGHT_WAKE_UPS = Figure("mascot flying, one click a second: wake-ups", "a second")
FLIGHT = Figure("mascot flying, one click a second", "% of a core")
VISIBLE = Figure("100 clicks a second, window visible", "% of a core", "bare thread")
MINIMISED = Figure("100 clicks a second, window minimised", "% of a core", "bare thread")
PER_CLICK = Figure("processor time of a click at 100 a second, window minimised", "µs", "bare thread")
FAST = 0.01  # seconds


def measure(bench):
    """One round: launches, then runs of each build at a slow and at a fast interval."""
    windows = [(FLOOR, bench.bare_window), *((build.name, build) for build in bench.builds)]
    if bench.round == 0:
        # The first ones fill the caches.
        for _, window in windows:
            with window.launch(bench.screen) as launched:
                meters.wait_for_rest(launched.pid)
    for number in range(bench.options.launches):
        for name, window in bench.in_turn(windows):
            _launch(bench, name, window, is_last=number == bench.options.launches - 1)
    for name, window in bench.in_turn(windows):
        _weigh_beside_another(bench, name, window)
    if bench.options.cold:
        for name, window in bench.in_turn(windows):
            _launch_cold(bench, name, window)
    _bare_clicks(bench)
    for build in bench.in_turn(bench.builds):
        meters.wait_for_calm(bench.record, bench.options.patience)
        _fly(bench, build)
        meters.wait_for_calm(bench.record, bench.options.patience)
        _click(bench, build)


def _launch(bench, name, window, is_last):
    meters.wait_for_calm(bench.record, bench.options.patience)
    with window.launch(bench.screen) as launched:
        bench.record.add(LAUNCH, name, 1000 * launched.seconds_to_map, round=bench.round)
        meters.wait_for_rest(launched.pid)
        bench.record.add(START, name, 1000 * meters.processor_seconds(launched.pid), round=bench.round)
        memory = meters.memory(launched.pid)
        bench.record.add(MEMORY, name, memory["Pss"] / 1024, round=bench.round)
        bench.record.add(OWN_MEMORY, name, memory["Anonymous"] / 1024, round=bench.round)
        if is_last:
            used, wake_ups = _effort(bench, launched.pid)
            bench.record.add(REST, name, wake_ups, round=bench.round)
            bench.record.add(REST_TIME, name, 1000 * used, round=bench.round)


def _weigh_beside_another(bench, name, window):
    """Where another program runs that has loaded everything of the toolkit, as on many desktops."""
    with window.launch(bench.screen) as launched:
        meters.wait_for_rest(launched.pid)
        with bench.builds[0].launch_as_stranger(bench.screen) as stranger:
            meters.wait_for_rest(stranger.pid)
            bench.record.add(MEMORY_BESIDE, name, meters.memory(launched.pid)["Pss"] / 1024, round=bench.round)


def _launch_cold(bench, name, window):
    os.sync()
    with open("/proc/sys/vm/drop_caches", "w", encoding="ascii") as file:
        file.write("3\n")
    with window.launch(bench.screen) as launched:
        bench.record.add(COLD_LAUNCH, name, 1000 * launched.seconds_to_map, round=bench.round)


def _effort(bench, pid):
    """Of some seconds, for each: processor time and wake-ups."""
    begin = time.monotonic()
    used, wake_ups = meters.processor_seconds(pid), processes.voluntary_switches(pid)
    pause(bench.options.seconds)
    used, wake_ups = meters.processor_seconds(pid) - used, processes.voluntary_switches(pid) - wake_ups
    span = time.monotonic() - begin
    return used / span, wake_ups / span


def _bare_clicks(bench):
    meters.wait_for_calm(bench.record, bench.options.patience)
    # More than can be measured: it is ended before that.
    count = round((bench.options.seconds + 5) / FAST)
    with _target(bench, FLOOR), bench.bare_thread.ready(bench.screen, count, FAST) as begin:
        process = begin()
        pause(1.0)
        _add_effort_of_clicks(bench, FLOOR, process.pid, VISIBLE, MINIMISED)


def _fly(bench, build):
    with build.at_rest(bench.screen, clickIntervalSeconds=1.0, stopMode="manual") as launched, _target(bench, build.name):
        bench.screen.press_hotkey()
        pause(1.0)
        used, wake_ups = _effort(bench, launched.pid)
        bench.record.add(FLIGHT, build.name, 100 * used, round=bench.round)
        bench.record.add(FLIGHT_WAKE_UPS, build.name, wake_ups, round=bench.round)


def _click(bench, build):
    with build.at_rest(bench.screen, clickIntervalSeconds=FAST, stopMode="manual") as launched, _target(bench, build.name):
        bench.screen.press_hotkey()
        pause(1.0)
        _add_effort_of_clicks(bench, build.name, launched.pid, VISIBLE)
        bench.screen.minimise_window()
        pause(1.0)
        _add_effort_of_clicks(bench, build.name, launched.pid, MINIMISED)


def _add_effort_of_clicks(bench, name, pid, *figures):
    used, wake_ups = _effort(bench, pid)
    for figure in figures:
        bench.record.add(figure, name, 100 * used, round=bench.round, wakeUps=wake_ups)
    if MINIMISED in figures:
        bench.record.add(PER_CLICK, name, 1e6 * used * FAST, round=bench.round)


def _target(bench, name):
    return Target(bench.screen, os.path.join(bench.folder, "clicks", f"effort of {name} round {bench.round + 1}"))
