"""A long time of fast clicking while the window is used: every counted run is exact, every stop holds, and nothing grows."""

import os
import statistics
import time

from harness import preferences
from harness.bus import Bus
from harness.program import Program
from harness.waiting import pause, stays, until

from . import trials
from .driving import Driver

RATE = 100  # clicks in a second
CALM = 1.0  # seconds between two deeds
# Between the first third of the time and the last. Leaking a hundredth of a picture of the window with each deed is more.
MOST_GROWTH = 3 * 1024  # KiB


class Footprint:
    """What a process holds, over the time."""

    def __init__(self, pid):
        self._pid = pid
        self._begin = time.monotonic()
        self._samples = []

    def take(self):
        with open(f"/proc/{self._pid}/status", encoding="ascii", errors="replace") as file:
            status = dict(line.split(":", 1) for line in file)
        self._samples.append((time.monotonic() - self._begin, int(status["RssAnon"].split()[0]), int(status["Threads"]),
                              len(os.listdir(f"/proc/{self._pid}/fd"))))

    def growth(self):
        """From the first third to the last, of what is usual in each: KiB of memory, threads, descriptors."""
        third = max(1, len(self._samples) // 3)
        first, last = ([statistics.median_low(column) for column in zip(*part)][1:]
                       for part in (self._samples[:third], self._samples[-third:]))
        for at, memory, threads, descriptors in self._samples[::max(1, len(self._samples) // 20)]:
            print(f"after {at:.0f} s: {memory} KiB, {threads} threads, {descriptors} descriptors")
        return [after - before for before, after in zip(first, last)]


class Soak:
    """The same on every desktop. `user` is who sits there, and sees the clicks: see the stages."""

    def __init__(self, desktop, user, figures, seconds):
        self._user = user
        self._figures = figures
        self._seconds = seconds
        self._chance = trials.chance("soak", user.WHERE)
        self._counts = {"Whole": round(seconds) * RATE, "Short": 300, "Long": 1000}
        presets = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "name": name, "createdAt": 1.0, "config": self._config(clicks)}
                   for number, (name, clicks) in enumerate({**self._counts, "Endless": None}.items())]
        self._program = Program(desktop, {"velloran.config": preferences.as_bytes(self._config(None)),
                                          "velloran.presets": preferences.as_bytes(presets)})
        self._bus = Bus(desktop)
        self._program.wait_for_window()
        user.place(self._program)
        self._driver = Driver(self._program, self._chance, user.resize, user.switch_layout, user.type_text)
        self._start_button = self._program.find("push button", "Start")
        self._stop_button = self._program.find("push button", "Stop")
        self._footprint = None
        self._said = self._program.log

    @staticmethod
    def _config(clicks):
        stop = {"stopMode": "manual"} if clicks is None else {"stopMode": "after_clicks", "maxClicks": clicks}
        return preferences.config(clickIntervalSeconds=1 / RATE, hotkey=preferences.CONTROL_OPTION_S, **stop)

    def close(self):
        self._bus.close()
        self._program.close()

    def _start(self):
        self._user.forget()
        self._chance.choice((self._user.press_hotkey, lambda: self._bus.act("toggle"), self._start_button.do))()
        until(lambda: self._user.clicks() > 0, "the run does not start")

    def _drive(self):
        self._driver.do_something()
        self._footprint.take()
        pause(CALM)

    def _warm_up(self):
        """What is made when it is wanted first, is: pictures, threads, what the toolkit keeps."""
        self._start()
        self._driver.do_everything_once()
        self._driver.do_everything_once()
        self._stop()
        self._footprint = Footprint(self._program.pid)

    def _run_counted(self, clicks):
        """The other client sees each of so many clicks, and no other."""
        self._start()
        while self._program.headline == "Running":
            self._drive()
        self._program.wait_for_headline("Completed")
        message = self._program.message
        assert message == f"Completed — reached {clicks} clicks", message
        until(lambda: self._user.clicks() >= clicks, lambda: f"{self._user.clicks()} clicks, not {clicks}")
        stays(lambda: self._user.clicks() == clicks, lambda: f"{self._user.clicks()} clicks, not {clicks}", 0.1)
        assert self._user.are_in_pairs(), "a press without its release"

    def _run_endless(self, seconds):
        self._start()
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self._drive()
        self._stop()

    def _stop(self):
        """One click may be under way then, and no other comes."""
        self._chance.choice((self._user.press_hotkey, lambda: self._bus.act("toggle"), self._stop_button.do))()
        self._program.wait_for_headline("Ready", 10.0)
        seen = self._user.clicks()
        stays(lambda: self._user.clicks() <= seen + 1, lambda: f"{self._user.clicks() - seen} clicks after the stop", 0.2)
        assert self._user.are_in_pairs(), "a press without its release"

    def _check_growth(self):
        memory, threads, descriptors = self._footprint.growth()
        print(f"growth: {memory} KiB, {threads} threads, {descriptors} descriptors", flush=True)
        assert memory <= MOST_GROWTH and threads <= 0 and descriptors <= 0

    def _check_end(self):
        assert self._program.end() == 0, self._program.process.returncode
        # Only what it says of the desktop at the start.
        assert self._program.log == self._said, self._program.log

    def run(self):
        self._warm_up()
        where = self._user.WHERE
        is_well = self._click_on()
        self._figures.count(f"changes to the window meanwhile, {where}", self._driver.tried, self._driver.done)
        if is_well:
            self._figures.attempt(f"growth of memory, threads or descriptors, {where}", None, lambda _: self._check_growth())
            self._figures.attempt(f"end without a word, {where}", None, lambda _: self._check_end())

    def _click_on(self):
        """One run for the whole time, and for a tenth of it many that end soon. Returns whether all went well: after a failure nobody
        knows what the window shows."""
        where = self._user.WHERE
        preset = "Whole"
        end = None
        while True:
            clicks = self._counts[preset]
            self._driver.apply(preset)
            is_exact = self._figures.attempt(f"counted runs, {where}", None, lambda _: self._run_counted(clicks))
            self._figures.count(f"their clicks, as another client counts them, {where}", clicks, clicks if is_exact else 0)
            end = end or time.monotonic() + 0.1 * self._seconds
            if not is_exact or time.monotonic() >= end:
                return is_exact
            self._driver.apply("Endless")
            seconds = self._chance.uniform(0.5, 6.0)
            if not self._figures.attempt(f"stops, {where}", None, lambda _: self._run_endless(seconds)):
                return False
            preset = self._chance.choice(("Short", "Long"))
