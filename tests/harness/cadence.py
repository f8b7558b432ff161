"""How evenly clicks come on a desktop, beside how evenly they come on X11 on the same machine a moment later."""

import os
import subprocess

from . import preferences
from .bus import Bus
from .desktop import Desktop
from .program import Program
from .waiting import until

BARE_THREAD = os.environ.get("VELLORAN_BARE_THREAD", "")
BARE_INPUT_THREAD = os.environ.get("VELLORAN_BARE_INPUT_THREAD", "")
PLACE_OF_CLICKS = (1450, 150)  # in the observer's window


def percentile(spans, percent):
    """The smallest that at least so many per cent of them do not exceed."""
    return sorted(spans)[max(0, -(-len(spans) * percent // 100) - 1)]


def describe(moments):
    """The time between one press and the next, of moments in seconds."""
    spans = [(after - before) * 1000 for before, after in zip(moments, moments[1:])]
    return f"{percentile(spans, 50):.2f} ms (p50), {percentile(spans, 99):.2f} ms (p99)"


def load():
    """How busy the machine is, as the system tells it."""
    return f"a load of {os.getloadavg()[0]:.1f} on {os.cpu_count()} cores"


class OnX11:
    """A private X desktop, as a context."""

    def __enter__(self):
        self._desktop = Desktop()
        return self

    def __exit__(self, *_):
        self._desktop.close()

    def of_program(self, count, interval):
        """When the presses of a run of the program came, in seconds."""
        config = preferences.config(clickIntervalSeconds=interval, maxClicks=count)
        program = Program(self._desktop, {"velloran.config": preferences.as_bytes(config)})
        bus = Bus(self._desktop)
        try:
            program.wait_for_window()
            self._get_ready()
            bus.act("toggle")
            # As on the other desktops: whoever asks what the window shows takes time from the clicks.
            program.wait_for_headline("Completed", 60 + 4 * count * interval)
            return self._presses(count)
        finally:
            bus.close()
            program.close()

    def of_bare_thread(self, count, interval):
        """The same of a thread that does nothing but click; nothing where the build has none."""
        if not BARE_THREAD:
            return None
        self._get_ready()
        subprocess.run([BARE_THREAD, str(count), str(interval)], env=self._desktop.environment, check=True,
                       timeout=60 + 4 * count * interval)
        return self._presses(count)

    def _get_ready(self):
        self._desktop.observer.move(*PLACE_OF_CLICKS)
        self._before = len(self._lines())

    def _lines(self):
        return [line for line in self._desktop.observer.lines() if line.startswith("press ")]

    def _presses(self, count):
        def seen():
            return self._lines()[self._before:]
        until(lambda: len(seen()) >= count, lambda: f"{len(seen())} clicks came, not {count}")
        return [int(line.split()[-1]) / 1e9 for line in seen()]


def of_bare_thread_on(desktop, count, interval):
    """When the presses came that a thread made which does nothing but click, over emulated input; nothing where the build has none.
    The mouse is on the witness."""
    if not BARE_INPUT_THREAD:
        return None
    before = desktop.witness.releases()
    desktop.witness.report()
    subprocess.run([BARE_INPUT_THREAD, str(count), str(interval)], env=desktop.environment, check=True,
                   timeout=60 + 4 * count * interval)
    desktop.witness.wait_for_releases(before + count)
    return [moment for kind, _, moment in desktop.witness.timed_report() if kind == "down"]


def compare(name, moments, bare, interval):
    """Prints how evenly these presses came, which were seen on the desktop called so, beside those of a bare thread there, and as
    many on X11."""
    count = len(moments)
    print(f"\n{count} clicks asked for at {interval * 1000:g} ms, seen {name}: {count}, {describe(moments)} apart, with {load()}")
    with OnX11() as screen:
        for who, seen in (("there by a bare thread over libei", bare), ("on X11 by Velloran", screen.of_program(count, interval)),
                          ("on X11 by a bare thread", screen.of_bare_thread(count, interval))):
            if seen is not None:
                assert len(seen) == count, f"{len(seen)} clicks {who}, not {count}"
                print(f"the same {who}: {len(seen)}, {describe(seen)} apart, with {load()}")
