"""How evenly clicks come on sway, beside a bare thread that clicks through the same protocol."""

import contextlib
import os
import shutil
import sys

import cadence
from harness.compositor import Sway
from harness.compositor_case import HELD, S
from harness.waiting import TookTooLong, pause, until

SIZE = (1600, 1000)
CLICK_PLACE = (100, 900)  # on the witness, beside the program's window
FLOATING = 'for_window [title="^Velloran$"] floating enable\n'


def measure(bench):
    """One round on a sway of its own."""
    if shutil.which("sway") is None:
        print("sway is not installed: left out", file=sys.stderr, flush=True)
        return
    screen = SwayScreen()
    try:
        cadence.measure_on(bench, screen, [bench.bare_wayland_thread])
    finally:
        screen.close()


class SwayScreen(Sway):
    """What `screen.Screen` is on X: the program's window floats over that of the witness, which gets the clicks."""

    PREFIX = "sway, "
    OUT_OF_SIGHT = "on another workspace"

    def __init__(self):
        super().__init__(SIZE, FLOATING)
        # Nobody has the screen read out: what is told to assistive tools would be measured as well.
        del self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"]
        with contextlib.suppress(PermissionError):
            os.sched_setscheduler(self.witness.pid, os.SCHED_FIFO, os.sched_param(50))

    def target(self, path, count, interval):
        return Target(self.witness, path, count, interval)

    def start_and_wait_until_mapped(self, start):
        """Calls `start`, which starts a process; returns that. After how many seconds its window was mapped, sway does not tell
        to the millisecond."""
        process = start()
        self.wait_for_view("Velloran")
        return process, float("nan")

    def move_window_away(self):
        self.command(f'[title="^Velloran$"] move absolute position {SIZE[0] - 930} 10')
        self.focus("witness")
        self.witness.move(*CLICK_PLACE, SIZE)

    def minimise_window(self):
        self.command('[title="^Velloran$"] move to workspace 2')

    def has_hotkey_free(self):
        """Finds out by pressing it; a run that this starts is over when it returns."""
        keys, clicks = self.witness.keys(), self.witness.releases()
        self.witness.tap(S, HELD)
        if self.witness.keys() != keys:
            return True
        self.witness.wait_for_releases(clicks + 1)
        self.witness.tap(S, HELD)

        def is_over():
            before = self.witness.releases()
            pause(0.3)
            return self.witness.releases() == before
        until(is_over, "the hotkey does not stop it")
        return False

    def press_hotkey(self):
        self.witness.tap(S, HELD)


class Target:
    """The witness, as long as one run lasts."""

    def __init__(self, witness, path, count, interval):
        self._witness = witness
        self._path = path
        self._count = count
        self._interval = interval
        self._before = 0
        self._presses = []

    def wait(self):
        """Asks at the end only: each question wakes the witness, and the compositor with it."""
        pause(self._count * self._interval)
        with contextlib.suppress(TookTooLong):
            until(lambda: self._witness.releases() - self._before >= self._count, "clicks are missing",
                  2 * self._count * self._interval + 10)
        # What comes too much is seen as well.
        pause(0.3)
        self._presses = [round(moment * 1e9) for kind, _, moment in self._witness.timed_report() if kind == "down"]
        os.makedirs(os.path.dirname(self._path), exist_ok=True)
        with open(self._path, "w", encoding="utf-8") as file:
            file.writelines(f"press {moment}\n" for moment in self._presses)

    def presses(self):
        """When they came, on the monotonic clock in nanoseconds."""
        return self._presses

    def __enter__(self):
        self._witness.report()
        self._before = self._witness.releases()
        return self

    def __exit__(self, *_):
        pass
