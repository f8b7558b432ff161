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
    """In kilobytes: its share of what it has in memory ("Pss"), and what it has to itself ("Private")."""
    sizes = {}
    for line in processes.read_all(f"/proc/{pid}/smaps_rollup").splitlines()[1:]:
        name, size = line.split()[:2]
        sizes[name.rstrip(":")] = int(size)
    return {"Pss": sizes["Pss"], "Private": sizes["Private_Clean"] + sizes["Private_Dirty"]}


def wait_for_rest(pid):
    """Until the process has slept for half a second."""
    def slept():
        before = processes.voluntary_switches(pid)
        pause(0.5)
        return processes.voluntary_switches(pid) == before
    until(slept, "the program does not come to rest")


def _busy_and_all():
    with open("/proc/stat", encoding="ascii") as file:
        ticks = [int(word) for word in file.readline().split()[1:9]]
    idle = ticks[3] + ticks[4]
    return sum(ticks) - idle, sum(ticks)


def busy_cores(seconds=0.5):
    """How many cores' worth of time all processes take together."""
    busy, whole = _busy_and_all()
    pause(seconds)
    busy_after, whole_after = _busy_and_all()
    return os.cpu_count() * (busy_after - busy) / max(1, whole_after - whole)


def wait_for_calm(record, patience):
    """Waits until next to nobody else computes, but not for ever, and notes how calm it was."""
    calm = 0.1
    last = busy_cores()

    def is_calm():
        nonlocal last
        if last > calm:
            last = busy_cores()
        return last <= calm
    with contextlib.suppress(TookTooLong):
        until(is_calm, "others keep the processor busy", patience)
    record.add_busy(last)


@contextlib.contextmanager
def busy_loops(count, environment):
    loops = [processes.start(["sh", "-c", "while :; do :; done"], environment) for _ in range(count)]
    try:
        yield
    finally:
        for loop in loops:
            processes.end(loop)
