"""A program that clicks, on a desktop that something happens to."""

import contextlib
import os
import shutil
import tempfile
import time

from harness import preferences
from harness.desktop import Desktop
from harness.program import Program
from harness.waiting import pause, until

HOTKEY = preferences.CONTROL_OPTION_S
KEYS = ("s", "control", "alt")
PLACE_OF_CLICKS = (1450, 150)  # in the other program's window


class Surrounded:
    """One desktop, and one program at a time with the hotkey and these settings. To be used in a `with`."""

    def __init__(self, user=None):
        self.desktop = Desktop(user=user)
        self.observer = self.desktop.observer
        self._stack = contextlib.ExitStack()
        self._stack.callback(self.desktop.close)
        # For profiles that outlive a program.
        self._folders = tempfile.mkdtemp(prefix="profiles-", dir=self.desktop.folder)
        self._stack.callback(shutil.rmtree, self._folders, ignore_errors=True)
        self.desktop.give_to_user(self._folders)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._stack.close()

    def make_profile(self):
        folder = tempfile.mkdtemp(dir=self._folders)
        self.desktop.give_to_user(folder)
        return folder

    def start(self, environment=None, folder=None, is_waited_for=True, seconds=30.0, stored=None, limits=(), **config):
        """Starts the program with that configuration; in a folder of its own, what is stored there counts."""
        fields = {"clickIntervalSeconds": 0.01, "stopMode": "manual", "maxClicks": None, "hotkey": HOTKEY, **config}
        if folder is None:
            stored = {"velloran.config": preferences.as_bytes(preferences.config(**fields)), **(stored or {})}
        program = Program(self.desktop, stored, environment=environment, folder=folder, limits=limits)
        self._stack.callback(program.close)
        if is_waited_for:
            until(lambda: program.has_window() or not program.is_running(), "no window appeared", seconds)
            if not program.is_running():
                raise AssertionError(f"the program ended with {program.process.returncode}: {program.log}")
            # Each look takes it for a moment, so not many where the program takes long to ask.
            until(lambda: pause(seconds / 120) or not self.observer.has_hotkey_free(*KEYS), "the hotkey was not registered", seconds)
        self.observer.move(*PLACE_OF_CLICKS)
        self.observer.forget()
        return program

    def clicks(self):
        return self.observer.report()["presses"]

    def press_hotkey(self):
        self.observer.press(*KEYS)

    def wait_for_more_clicks(self, count=20, seconds=30.0):
        before = self.clicks()
        until(lambda: self.clicks() >= before + count, lambda: f"{count} more clicks did not come: {self.observer.report()}", seconds)

    def start_run(self, count=20, seconds=30.0):
        self.press_hotkey()
        self.wait_for_more_clicks(count, seconds)

    def stop_run(self, seconds=10.0, most=20):
        """Stops by the hotkey. `most` clicks may be seen from the look at them to the moment in which the program hears of it."""
        before = self.clicks()
        self.press_hotkey()
        self.expect_rest(seconds)
        assert self.clicks() - before <= most, (before, self.clicks())

    def stop_slow_run(self, program, interval, seconds):
        """Stops by the hotkey a run that nobody can say when it hears of that. One loop makes no more until the status says so, and behind
        that follows what was under way at most."""
        before, begin = self.settled_clicks(), time.monotonic()
        self.press_hotkey()
        program.wait_for_headline("Ready", seconds)
        clicks = self.settled_clicks() - before
        most = (time.monotonic() - begin) / interval + 1
        assert clicks <= most, f"{clicks} clicks from the stop to Ready, where one loop makes {most:.1f} at most"
        self.expect_rest(seconds)
        behind = self.clicks() - before - clicks
        assert behind <= 1, f"{behind} clicks behind the end"

    def settled_clicks(self):
        """Those that the server had been told of, however late the observer is."""
        self.observer.ask("position")
        return self.clicks()

    def expect_rest(self, seconds=10.0):
        """The clicks come to an end, within `seconds`; every press had its release."""
        def is_at_rest():
            before = self.clicks()
            pause(0.3)
            return self.clicks() == before
        until(is_at_rest, "the clicks do not end", seconds)
        self.expect_pairs()

    def expect_pairs(self):
        report = self.observer.report()
        assert report["presses"] == report["releases"] and report["inPairs"], report
        assert self.observer.buttons_down() == 0

    def expect_works(self, program, seconds=30.0):
        """What a user would try next: a run, and its end, and the end of the program."""
        self.start_run(seconds=seconds)
        self.stop_run(seconds=seconds)
        self.expect_end(program, seconds)

    def expect_end(self, program, seconds=30.0):
        program.process.terminate()
        status = program.wait_for_end(seconds)
        assert status == 0, (status, program.log)
        self.expect_pairs()
        config = program.stored_config()
        assert config is not None and config["clickIntervalSeconds"] > 0, config

    def add(self, undo, *arguments):
        """Has something undone at the end."""
        self._stack.callback(undo, *arguments)


def lowest_free_descriptor(pid):
    """The one that the next file gets."""
    taken = {int(name) for name in os.listdir(f"/proc/{pid}/fd")}
    return min(set(range(len(taken) + 1)) - taken)
