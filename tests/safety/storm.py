"""Start, stop and toggle from everywhere at once. Whatever order that is done in: one loop at most, a status that is true, and no
click after a stop but the one that is under way."""

import threading
import time

from harness import preferences
from harness.bus import Bus
from harness.program import Program
from harness.waiting import pause, stays, until

from .looks import Looks

PLACE_OF_CLICKS = (1450, 150)
INTERVAL = 0.02
COUNT = 7
# Of the program; the user's own are of the first.
MIDDLE = "2"
KINDS = {
    "endless runs": {},
    "runs with a delay": {"startDelaySeconds": 0.4},
    "runs that wait for a still mouse": {"requireStationaryMouse": True, "stationarySeconds": 0.3},
    "runs with both": {"startDelaySeconds": 0.3, "requireStationaryMouse": True, "stationarySeconds": 0.1},
    "counted runs": {"stopMode": "after_clicks", "maxClicks": COUNT},
}
STILL = 0.08  # seconds between two looks at whether the mouse is still
# Behind a stop: for longer than any run above waits for its first click.
SILENCE = 0.6
ACTIVE = ("Running", "Delayed Start")
# From a stop until the status says so, on a machine with much else to do.
LONGEST_STOP = 2.0
WAITING = "Waiting for mouse to remain still"
LONGEST_PAUSE = 0.2
LONG_PAUSES = (0.4, 0.6)
MOST_COMMANDS = 3
LONGEST_WAIT = 10.0


def outcomes(orders):
    """Whether a run may be on at the end, when each of these rows of commands is done in its order, and the rows in any. What the
    window's own buttons are told may come while they are disabled, which they are told a picture late."""
    found = set()
    pending = [(False, tuple(0 for _ in orders))]
    seen = set()
    while pending:
        state = pending.pop()
        if state in seen:
            continue
        seen.add(state)
        is_on, places = state
        rest = [index for index, order in enumerate(orders) if places[index] < len(order)]
        if not rest:
            found.add(is_on)
        for index in rest:
            command = orders[index][places[index]]
            after = tuple(place + (number == index) for number, place in enumerate(places))
            if command == "toggle":
                pending.append((not is_on, after))
            else:
                pending += [(command == "start", after), (is_on, after)]
    return found


def words_of(kind):
    """What the status may say."""
    delayed = ("Delayed Start",) if "startDelaySeconds" in KINDS[kind] else ()
    return ("Ready", "Running", *delayed, *(("Completed",) if "maxClicks" in KINDS[kind] else ()))


def wait_of(kind):
    """How long no click comes behind a start."""
    config = KINDS[kind]
    return config.get("startDelaySeconds", 0.0) + config.get("stationarySeconds", 0.0)


class Storms:
    """All on one program, which has runs of one kind. `figures` are told what could be said of them for certain."""

    def __init__(self, desktop, kind, figures):
        self._desktop = desktop
        self._observer = desktop.observer
        self._figures = figures
        self._words = words_of(kind)
        self._wait = wait_of(kind)
        self._is_counted = "maxClicks" in KINDS[kind]
        self.made = 0
        config = preferences.config(**{"clickIntervalSeconds": INTERVAL, "mouseButton": "middle", "stopMode": "manual",
                                       "hotkey": preferences.CONTROL_OPTION_S, **KINDS[kind]})
        self._program = Program(desktop, {"velloran.config": preferences.as_bytes(config)})
        self._bus = Bus(desktop)
        self._program.wait_for_window()
        self._program.place(10, 10, 920, 1040)
        self._program.wait_for_hotkey("s", "control", "alt")
        self._buttons = {name: self._program.find("push button", name.capitalize()) for name in ("start", "stop")}
        self._places = {name: button.centre for name, button in self._buttons.items()}
        self._observer.move(*PLACE_OF_CLICKS)
        # How each channel is used, and what for.
        self._channels = {
            "hotkey": (("toggle",), lambda _: self._observer.press("s", "control", "alt")),
            "bus": (("toggle",), lambda _: self._bus.act("toggle")),
            "button": (("start", "stop"), self._click),
            "accessibility": (("start", "stop"), lambda command: self._buttons[command].do()),
        }

    def close(self):
        self._bus.close()
        self._program.close()

    def _click(self, command):
        self._observer.click(*self._places[command])
        self._observer.move(*PLACE_OF_CLICKS)

    def _clicks(self):
        # Whatever the server has been sent is counted then, however late the observer is.
        self._observer.ask("position")
        return self._observer.report()["buttons"].get(MIDDLE, 0)

    # The storm itself

    def weather(self, number, chance):
        """One storm, and whether everything is right behind it."""
        self.made += 1
        # In three of four each command counts, and so whether a run is on behind them is certain.
        channels = ["hotkey", "bus"]
        if number % 4 == 3:
            channels = [name for name in self._channels if chance.random() < 0.6] or ["accessibility"]
        orders = {name: [chance.choice(self._channels[name][0]) for _ in range(chance.randint(1, MOST_COMMANDS))] for name in channels}
        pauses = {name: [chance.uniform(*LONG_PAUSES) if chance.random() < 0.2 else chance.uniform(0.0, LONGEST_PAUSE)
                         for _ in orders[name]] for name in channels}
        print(orders, flush=True)
        self._observer.forget()
        begin = time.monotonic()
        looks = Looks(self._program, self._clicks, self._words)
        commands = sum(len(order) for order in orders.values())
        self._rage(orders, pauses, looks)
        self._check_amount(begin, commands)
        self._program.settle()
        is_on = self._settled_status(looks) in ACTIVE
        self._check_amount(begin, commands)
        if self._is_counted:
            self._check_counted_run(chance)
            return
        possible = outcomes(list(orders.values()))
        assert is_on in possible, f"a run {'is' if is_on else 'is not'} on, but {possible}"
        if len(possible) == 1:
            self._figures.count("storms whose end was certain", 1, 1)
        is_early = self._wait > 0 and number % 3 == 0
        if not is_on:
            self._check_silence(looks)
            if not is_early:
                self._start(chance)
        if is_on or not is_early:
            self._check_run()
            self._stop(chance)
        if is_early:
            self._stop_early(chance)

    def _rage(self, orders, pauses, looks):
        """All channels at once, each on a thread of its own, while it is looked at what comes of it."""
        faults = []

        def send(name):
            try:
                for command, seconds in zip(orders[name], pauses[name]):
                    pause(seconds)
                    with looks.command():
                        self._channels[name][1](command)
            except Exception as fault:
                faults.append(fault)
        threads = [threading.Thread(target=send, args=[name]) for name in orders]
        for thread in threads:
            thread.start()
        try:
            while any(thread.is_alive() for thread in threads):
                looks.look()
                pause(INTERVAL)
        finally:
            for thread in threads:
                thread.join()
        if faults:
            raise faults[0]

    def _settled_status(self, looks):
        """The status, once it says the same for longer than it takes to follow the run."""
        said = []

        def is_settled():
            said.append(looks.look())
            return len(said) > 3 and len(set(said[-3:])) == 1
        until(is_settled, lambda: f"the status does not settle: {said}")
        return said[-1]

    # What has to be right behind it

    def _most_clicks(self, seconds, starts):
        """How many clicks runs can make of which the first began so long ago. Each waits first, and then begins with a click."""
        if seconds < self._wait:
            return 0
        most = (seconds - self._wait) / INTERVAL + starts
        return min(most, starts * COUNT) if self._is_counted else most

    def _check_amount(self, begin, commands):
        """One loop makes no more, whatever it was told since it was at rest."""
        clicks = self._clicks()
        seconds = time.monotonic() - begin
        most = self._most_clicks(seconds, commands)
        assert clicks <= most, f"{clicks} clicks in {seconds:.3f} s, where one loop makes {most:.1f} at most"

    def _choose(self, chance, command):
        name = chance.choice(list(self._channels))
        print(command, "by", name, flush=True)
        return name, lambda: self._channels[name][1](command)

    def _start(self, chance):
        """With no other command near, it counts in any case. Returns once the status follows."""
        _, start = self._choose(chance, "start")
        start()
        until(lambda: self._program.headline != "Ready", "the start starts nothing", LONGEST_WAIT)

    def _check_silence(self, looks=None, under_way=0):
        most = self._clicks() + under_way
        looks = looks or Looks(self._program, self._clicks, ("Ready", "Completed") if self._is_counted else ("Ready",))

        def is_silent():
            assert looks.look() not in ACTIVE
            return self._clicks() <= most
        stays(is_silent, lambda: f"{self._clicks() - most} clicks too many while nothing runs", SILENCE)

    def _check_run(self):
        """It clicks, and no faster than one loop does."""
        self._program.wait_for_headline("Running", LONGEST_WAIT)
        first = self._clicks()
        until(lambda: self._clicks() > first + 2, "the status says Running, but no clicks come", LONGEST_WAIT)
        begin = time.monotonic()
        # From here on the longest gap tells how far clicks may be behind.
        self._observer.forget()
        pause(12 * INTERVAL)
        clicks = self._clicks()
        most = (time.monotonic() - begin) / INTERVAL + 3
        assert clicks <= most, f"{clicks} clicks, where one loop makes {most:.0f} at most"

    def _stop(self, chance):
        """Of a run that clicks. No more come of it than until it is heard, and one that is under way."""
        name, stop = self._choose(chance, "stop")
        begin = time.monotonic()
        before = self._clicks()
        stop()
        self._program.wait_for_headline("Ready", LONGEST_STOP)
        clicks = self._clicks() - before
        seconds = time.monotonic() - begin
        # What was still on its way when the stop was given had left a gap, and a click of the user's may have cut it in two.
        behind = self._observer.report()["longestIntervalMs"] / 1000 * (2 if name == "button" else 1)
        most = (seconds + behind) / INTERVAL + 1
        assert clicks <= most, f"{clicks} clicks in {seconds:.3f} s from the stop to Ready"
        self._check_stopped(before + clicks + 1)

    def _stop_early(self, chance):
        """Of a run that waits for its first click: none comes of it."""
        (_, start), (_, stop) = (self._choose(chance, command) for command in ("start", "stop"))
        self._observer.forget()
        begin = time.monotonic()
        start()
        until(lambda: self._program.headline == "Delayed Start" or self._program.message == WAITING or self._clicks() > 0,
              "the run does not wait", LONGEST_WAIT)
        stop()
        self._program.wait_for_headline("Ready", LONGEST_STOP)
        clicks = self._clicks()
        most = self._most_clicks(time.monotonic() - begin, 1)
        assert clicks <= most, f"{clicks} clicks of a run that was stopped while it waited"
        if most == 0:
            self._figures.count("stops before the first click", 1, 1)
        self._check_stopped(clicks + (most > 0))

    def _check_stopped(self, most):
        stays(lambda: self._clicks() <= most and self._program.headline == "Ready",
              lambda: f"{self._clicks()} clicks after the stop, not {most} at most; {self._program.headline}", SILENCE)
        assert self._observer.buttons_down() == 0
        report = self._observer.report()
        assert report["presses"] == report["releases"], report

    def _check_counted_run(self, chance):
        until(lambda: self._program.headline not in ACTIVE, "the run does not complete", LONGEST_WAIT)
        # The last click is on its way when the status says that it was the last.
        self._check_silence(under_way=1)
        self._observer.forget()
        _, start = self._choose(chance, "start")
        start()
        until(lambda: self._clicks() >= COUNT, lambda: f"{self._clicks()} clicks of {COUNT} come of the start", LONGEST_WAIT)
        self._program.wait_for_headline("Completed", LONGEST_WAIT)
        assert self._program.message == f"Completed — reached {COUNT} clicks", self._program.message
        stays(lambda: self._clicks() == COUNT, lambda: f"{self._clicks()} clicks, not {COUNT}", SILENCE)
