"""The private X desktop that everything is measured on, and the other programs there that measure and play the user."""

import os
import select
import subprocess
import time

from Xlib import X
from Xlib.display import Display
from Xlib.ext import xtest

from harness import keys, processes
from harness.desktop import Desktop
from harness.observer import PROGRAM as OBSERVER
from harness.observer import Observer
from harness.waiting import until

WINDOW_PLACE = (10, 10)
TARGET = (1240, 740, 260, 260)
CLICK_PLACE = (1370, 870)  # inside of it
HOTKEY = ("s", "control", "alt")


class Screen(Desktop):
    # What its rows begin with, and what becomes of a window that is minimised.
    PREFIX = ""
    OUT_OF_SIGHT = "minimised"

    def __init__(self):
        super().__init__((1600, 1100))
        # Nobody has the screen read out: what is told to assistive tools would be measured as well.
        del self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"]
        # The tests' observer tells of every click, which costs as much as what is measured.
        self.observer.close()
        self.observer = Observer(self.environment, None)
        self._client = Display(self.display)
        self._client.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self._client.sync()

    def close(self):
        if self.observer is not None:
            self._client.close()
        super().close()

    def target(self, path, count, interval):
        return Target(self, path, count, 3 * count * interval + 10)

    def start_and_wait_until_mapped(self, start):
        """Calls `start`, which starts a process; returns that and after how many seconds its window was mapped."""
        while self._client.pending_events():
            self._client.next_event()
        begin = time.monotonic_ns()
        process = start()

        def is_mapped():
            select.select([self._client], [], [], 1.0)
            events = [self._client.next_event() for _ in range(self._client.pending_events())]
            return any(event.type == X.MapNotify and not event.override for event in events)
        until(is_mapped, "no window appeared")
        return process, (time.monotonic_ns() - begin) / 1e9

    def move_window_away(self):
        """Puts the program's window where no clicks are meant to land."""
        self.run_tool("xdotool", "windowmove", self._window(), *(str(part) for part in WINDOW_PLACE))

    def minimise_window(self):
        self.run_tool("xdotool", "windowminimize", "--sync", self._window())

    def _window(self):
        return until(lambda: self.windows_of("velloran"), "the window cannot be found")[0]

    def has_hotkey_free(self):
        return self.observer.has_hotkey_free(*HOTKEY)

    def press_hotkey(self):
        """The moment, on the monotonic clock in nanoseconds, at which the last of its keys went down."""
        codes = {"control": keys.code("Control"), "alt": keys.code("Alt")}
        name, *modifiers = HOTKEY
        for modifier in modifiers:
            xtest.fake_input(self._client, X.KeyPress, codes[modifier])
        self._client.sync()
        moment = time.monotonic_ns()
        xtest.fake_input(self._client, X.KeyPress, keys.code(name))
        self._client.flush()
        for code in (keys.code(name), *(codes[modifier] for modifier in reversed(modifiers))):
            xtest.fake_input(self._client, X.KeyRelease, code)
        self._client.sync()
        return moment


class Target:
    """Another program in whose window the clicks land. It writes down when each of them came, and ends by itself after `count`."""

    def __init__(self, screen, path, count=None, seconds=0.0):
        self.path = path
        arguments = [OBSERVER, "--realtime", "--unmanaged", "--title", "Target", "--window", ",".join(str(part) for part in TARGET)]
        if count is not None:
            arguments += ["--expect", str(count), "--settle", "0.3", "--timeout", str(seconds)]
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            self._process = processes.start(arguments, screen.environment, stdin=subprocess.PIPE, stdout=file)
        until(lambda: "ready" in processes.read_all(path).splitlines(), "the target did not start")
        screen.observer.move(*CLICK_PLACE)

    def presses(self):
        """When they came, on the monotonic clock in nanoseconds."""
        text = processes.read_all(self.path)
        lines = text[:text.rfind("\n") + 1].splitlines()
        return [int(line.split()[-1]) for line in lines if line.startswith("press ")]

    def wait(self):
        self._process.wait()

    def close(self):
        self._process.stdin.close()
        self._process.wait()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
