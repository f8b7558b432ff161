"""Processes that never outlive the test that started them."""

import ctypes
import os
import signal
import subprocess

from .waiting import pause, until

_libc = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1


def _end_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


def start(arguments, environment, **options):
    """Starts a process that the system ends when the test ends, in whatever way."""
    return subprocess.Popen(arguments, env=environment, preexec_fn=_end_with_parent, **options)


def end(process, seconds=10.0):
    """Asks the process to end, and insists when it does not."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    return process.returncode


def read_all(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def children(pid):
    """The processes that the main thread of a process has started, and that have not ended."""
    return [int(child) for child in read_all(f"/proc/{pid}/task/{pid}/children").split()]


def mapped_files(pid):
    """The names, without their folders, of all files that a process has in its memory."""
    lines = read_all(f"/proc/{pid}/maps").splitlines()
    return {os.path.basename(line.split(maxsplit=5)[5]) for line in lines if "/" in line}


def voluntary_switches(pid, thread_name=None):
    """How often the threads of a process, or those of that name, have gone to sleep by themselves: every wake-up is one."""
    total = 0
    for thread in os.listdir(f"/proc/{pid}/task"):
        try:
            status = read_all(f"/proc/{pid}/task/{thread}/status")
        except FileNotFoundError:
            continue
        if thread_name is not None and status.splitlines()[0].split(maxsplit=1)[1] != thread_name:
            continue
        total += next(int(line.split()[1]) for line in status.splitlines() if line.startswith("voluntary_ctxt_switches"))
    return total


def wait_for_rest(pid):
    """Until nothing wakes a process any more: whatever happened, nothing goes round in it."""
    def rests():
        before = voluntary_switches(pid)
        pause(0.5)
        return voluntary_switches(pid) == before
    until(rests, "it does not come to rest", 20)
