"""A long time of fast clicking while the window is used: every counted run is exact, every stop holds, and nothing grows."""

import time

from harness import preferences
from harness.bus import Bus
from harness.program import Program
from harness.sound import SoundServer
from harness.waiting import pause, stays, until

from . import trials
from .driving import Driver
from .footprint import LONG, Footprint

RATE = 100  # clicks in a second
# A program that counts time by a clock which is set right while it runs may be that much faster than another clock says.
MOST_DRIFT = 1.001
# Late clicks are not caught up with. A machine that has time makes 100 a second; this leaves it one late click in ten.
LEAST_RATE = 90
CALM = 0.3  # seconds between two deeds
# A stop is known to the program when it has answered so many questions that were asked behind it.
QUESTIONS = 5
# Longer than a machine that is busy keeps a window from answering.
LATEST_STOP = 2.0  # seconds
# Behind the long runs there is one for each of these of the whole time.
STOP_EVERY = 30.0  # seconds
STOPS_OF_A_PRESET = 3
COUNTED_AMONG_STOPS = 6


class Soak:
    """The same on every desktop. `user` is who sits there, and sees the clicks: see the stages."""

    def __init__(self, desktop, user, figures, seconds):
        self._user = user
        self._figures = figures
        self._seconds = seconds
        self._chance = trials.chance("soak", user.WHERE)
        self._sound = SoundServer(desktop)
        self._sound.start()
        still = {"requireStationaryMouse": True, "stationarySeconds": 0.1} if user.KNOWS_THE_POINTER else {}
        self._counts = {"Whole": round(seconds) * RATE, "Short": 300, "Long": 1000}
        configs = {"Whole": self._config(self._counts["Whole"]), "Short": self._config(self._counts["Short"], playClickSound=True),
                   "Long": self._config(self._counts["Long"], **still), "Endless": self._config(None),
                   "Heard": self._config(None, playClickSound=True), "Still": self._config(None, **still)}
        presets = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "name": name, "createdAt": 1.0, "config": config}
                   for number, (name, config) in enumerate(configs.items())]
        self._program = Program(desktop, {"velloran.config": preferences.as_bytes(configs["Heard"]),
                                          "velloran.presets": preferences.as_bytes(presets)}, environment=self._sound.environment)
        self._bus = Bus(desktop)
        self._program.wait_for_window()
        user.place(self._program)
        self._driver = Driver(self._program, self._chance, user.resize, user.switch_layout, user.type_text)
        self._start_button = self._program.find("push button", "Start")
        self._stop_button = self._program.find("push button", "Stop")
        self._footprint = None
        self._begin = 0.0
        self._stopped = 0.0
        self._rates = []
        self._said = self._program.log

    @staticmethod
    def _config(clicks, **fields):
        stop = {"stopMode": "manual"} if clicks is None else {"stopMode": "after_clicks", "maxClicks": clicks}
        return preferences.config(clickIntervalSeconds=1 / RATE, hotkey=preferences.CONTROL_OPTION_S, **stop, **fields)

    def close(self):
        self._bus.close()
        self._program.close()
        self._sound.kill()

    def _start(self, is_heard=False):
        self._user.forget()
        self._begin = time.monotonic()
        self._chance.choice((self._user.press_hotkey, lambda: self._bus.act("toggle"), self._start_button.do))()
        until(lambda: self._user.clicks() > 0, "the run does not start")
        if is_heard:
            until(self._sound.clients, "nothing is heard")

    def _do(self, deed):
        deed()
        self._footprint.take()
        pause(CALM)

    def _warm_up(self):
        """What is made when it is wanted first, is: pictures, threads, the sound, what the toolkit keeps."""
        self._start(is_heard=True)
        self._driver.do_everything_once()
        self._driver.do_everything_once()
        self._stop()
        self._footprint = Footprint(self._program.pid, self._user.server)

    def _check_pace(self, clicks):
        """None comes before it is due."""
        passed = time.monotonic() - self._begin
        assert clicks <= passed * RATE * MOST_DRIFT + 1, f"{clicks} clicks in {passed:.3f} s"

    def _note_rate(self, clicks, seconds):
        print(f"{clicks} clicks in {seconds:.0f} s: {clicks / seconds:.2f} a second", flush=True)
        self._rates.append(clicks / seconds)

    def _run_counted(self, preset):
        """The other client sees each of so many clicks, and no other."""
        clicks = self._counts[preset]
        self._start(is_heard=preset == "Short")
        while self._program.headline == "Running":
            self._do(self._driver.do_something)
        seconds = time.monotonic() - self._begin
        self._program.wait_for_headline("Completed")
        message = self._program.message
        assert message == f"Completed — reached {clicks} clicks", message
        until(lambda: self._user.clicks() >= clicks, lambda: f"{self._user.clicks()} clicks, not {clicks}")
        self._check_pace(clicks)
        stays(lambda: self._user.clicks() == clicks, lambda: f"{self._user.clicks()} clicks, not {clicks}", 0.1)
        assert self._user.are_in_pairs(), "a press without its release"
        if preset == "Whole":
            self._note_rate(clicks, seconds)

    def _run_endless(self, preset, seconds, deed):
        self._start(is_heard=preset == "Heard")
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self._do(deed)
        self._stop()

    def _run_long(self):
        self._run_endless("Heard", self._seconds * self._user.ENDLESS, self._driver.do_something)
        self._note_rate(self._user.clicks(), self._stopped - self._begin)

    def _stop(self):
        """Until the program has heard of it, clicks come at their interval. Then one may be under way, and no other comes."""
        begin = time.monotonic()
        before = self._user.clicks()
        self._check_pace(before)
        self._chance.choice((self._user.press_hotkey, lambda: self._bus.act("toggle"), self._stop_button.do))()
        for _ in range(QUESTIONS):
            self._program.headline
            pause(0.01)
        heard = self._user.clicks()
        self._stopped = time.monotonic()
        passed = self._stopped - begin
        owed = min(passed, LATEST_STOP) * RATE * MOST_DRIFT + 1
        assert heard - before <= owed, f"{heard - before} clicks in the {passed:.3f} s that the stop took"
        self._program.wait_for_headline("Ready", 10.0)
        stays(lambda: self._user.clicks() <= heard + 1, lambda: f"{self._user.clicks() - heard} clicks after the stop", 0.2)
        assert self._user.are_in_pairs(), "a press without its release"

    def _check_end(self):
        assert self._program.end() == 0, self._program.process.returncode
        # Only what it says of the desktop at the start.
        assert self._program.log == self._said, self._program.log

    def _check_rates(self):
        assert min(self._rates) >= LEAST_RATE, f"{min(self._rates):.2f} clicks a second"

    def _attempt(self, what, trial):
        return self._figures.attempt(f"{what}, {self._user.WHERE}", None, lambda _: trial())

    def run(self):
        self._warm_up()
        # After a failure nobody knows what the window shows.
        is_well = self._count("Whole") and self._stop_late() and self._stop_often()
        self._figures.count(f"changes to the window meanwhile, {self._user.WHERE}", self._driver.tried, self._driver.done)
        self._footprint.tell()
        if not is_well:
            return
        if self._seconds >= LONG:
            self._attempt(f"long runs at no less than {LEAST_RATE} clicks a second", self._check_rates)
        self._attempt("growth of memory, threads, descriptors or what the server holds", self._footprint.check)
        self._attempt("end without a word", self._check_end)

    def _count(self, preset):
        self._driver.apply(preset)
        is_exact = self._attempt("counted runs", lambda: self._run_counted(preset))
        clicks = self._counts[preset]
        self._figures.count(f"their clicks, as another client counts them, {self._user.WHERE}", clicks, clicks if is_exact else 0)
        return is_exact

    def _stop_late(self):
        """Behind a long time without an end."""
        self._driver.apply("Heard")
        return self._attempt("stops", self._run_long)

    def _stop_often(self):
        """A few with each preset that has no end, and counted runs among them. The first ones are silent: see the footprint."""
        presets = ("Endless", "Heard", "Still")
        for number in range(max(STOPS_OF_A_PRESET, round(self._seconds / STOP_EVERY))):
            if number % COUNTED_AMONG_STOPS == 0 and not self._count(self._chance.choice(("Short", "Long"))):
                return False
            if number % STOPS_OF_A_PRESET == 0:
                preset = presets[number // STOPS_OF_A_PRESET % len(presets)]
                self._driver.apply(preset)
            # The settings stay as they are until the last run with them.
            is_last = (number + 1) % STOPS_OF_A_PRESET == 0
            seconds = self._chance.uniform(0.0, 2.0)
            deed = self._driver.do_something if is_last else self._driver.look_around
            if not self._attempt("stops", lambda: self._run_endless(preset, seconds, deed)):
                return False
        return True
