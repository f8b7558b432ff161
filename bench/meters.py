"""What the system tells of processes and of itself."""

import contextlib
import os
import time

from harness import processes
from harness.waiting import TookTooLong, pause, until


def processor_seconds(pid):
    """The processor time of a process so far, of threads that have ended as well, to the nanosecond."""
    scheduler_clock = 2
    return time.clock_gettime(~pid << 3 | scheduler_clock)


def memory(pid):
    """In kilobytes: its share of what it has in memory ("Pss"), which is the less the more programs have the same libraries loaded;
    and what it has made itself ("Anonymous"), whoever else runs."""
    sizes = {}
    for line in processes.read_all(f"/proc/{pid}/smaps_rollup").splitlines()[1:]:
        name, size = line.split()[:2]
        sizes[name.rstrip(":")] = int(size)
    return {name: sizes[name] for name in ("Pss", "Anonymous")}


def wait_for_rest(pid):
    """Until the process has slept for half a second."""
    def slept():
        before = processes.voluntary_switches(pid)
        pause(0.5)
        return processes.voluntary_switches(pid) == before
    until(slept, "the program does not come to rest")


class BusyCores:
    """How many cores' worth of time all processes take together, from now on."""

    def __init__(self):
        self._begin = self._ticks()

    @staticmethod
    def _ticks():
        """Busy, and all."""
        with open("/proc/stat", encoding="ascii") as file:
            ticks = [int(word) for word in file.readline().split()[1:9]]
        idle = ticks[3] + ticks[4]
        return sum(ticks) - idle, sum(ticks)

    def so_far(self):
        busy, whole = (now - begin for now, begin in zip(self._ticks(), self._begin))
        return os.cpu_count() * busy / max(1, whole)


def wait_for_calm(record, patience):
    """Waits until next to nobody else computes, but not for ever, and notes how calm it was."""
    calm = 0.1
    looks = []

    def is_calm():
        meter = BusyCores()
        pause(0.5)
        looks.append(meter.so_far())
        return looks[-1] <= calm
    with contextlib.suppress(TookTooLong):
        until(is_calm, "others keep the processor busy", patience)
    record.add_busy(looks[-1])


@contextlib.contextmanager
def busy_loops(count, environment):
    loops = [processes.start(["sh", "-c", "while :; do :; done"], environment) for _ in range(count)]
    try:
        yield
    finally:
        for loop in loops:
            processes.end(loop)
