"""Start, stop and toggle from everywhere at once. Whatever order that is done in: one loop at most, a status that is true, and no
click after a stop but the one that is under way."""

import threading
import time

from harness import preferences
from harness.bus import Bus
from harness.program import Program
from harness.waiting import pause, stays, until

PLACE_OF_CLICKS = (1450, 150)
INTERVAL = 0.02
COUNT = 7
# Of the program; the user's own are of the first.
MIDDLE = "2"
KINDS = {
    "endless runs": {},
    "runs with a delay": {"startDelaySeconds": 0.3},
    "runs that wait for a still mouse": {"requireStationaryMouse": True, "stationarySeconds": 0.2},
    "runs with both": {"startDelaySeconds": 0.2, "requireStationaryMouse": True, "stationarySeconds": 0.1},
    "counted runs": {"stopMode": "after_clicks", "maxClicks": COUNT},
}
ACTIVE = ("Running", "Delayed Start")
WORDS = (*ACTIVE, "Ready", "Completed")
LONGEST_PAUSE = 0.2
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


class Storms:
    """All on one program, which has runs of one kind."""

    def __init__(self, desktop, kind):
        self._desktop = desktop
        self._observer = desktop.observer
        self._is_counted = "maxClicks" in KINDS[kind]
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
        return self._observer.report()["buttons"].get(MIDDLE, 0)

    # The storm itself

    def weather(self, chance):
        """One storm, and whether everything is right behind it."""
        channels = [name for name in self._channels if chance.random() < 0.6] or ["hotkey"]
        if chance.random() < 0.4:
            # Of these each counts.
            channels = ["hotkey", "bus"]
        orders = {name: [chance.choice(self._channels[name][0]) for _ in range(chance.randint(1, MOST_COMMANDS))] for name in channels}
        pauses = {name: [chance.uniform(0.0, LONGEST_PAUSE) for _ in orders[name]] for name in channels}
        print(orders, flush=True)
        self._observer.forget()
        self._rage(orders, pauses)
        self._program.settle()
        is_on = self._settled_status() in ACTIVE
        if self._is_counted:
            self._check_counted_run(chance)
            return
        possible = outcomes(list(orders.values()))
        assert is_on in possible, f"a run {'is' if is_on else 'is not'} on, but {possible}"
        if not is_on:
            self._check_silence()
            self._use_one_channel(chance, "start")
        self._check_run()
        self._use_one_channel(chance, "stop")
        self._check_stopped()

    def _rage(self, orders, pauses):
        """All channels at once, each on a thread of its own, while the status is read."""
        faults = []

        def send(name):
            try:
                for command, seconds in zip(orders[name], pauses[name]):
                    pause(seconds)
                    self._channels[name][1](command)
            except Exception as fault:
                faults.append(fault)
        threads = [threading.Thread(target=send, args=[name]) for name in orders]
        for thread in threads:
            thread.start()
        while any(thread.is_alive() for thread in threads):
            headline = self._program.headline
            assert headline in WORDS, headline
            pause(INTERVAL)
        for thread in threads:
            thread.join()
        if faults:
            raise faults[0]

    def _settled_status(self):
        """The status, once it says the same for longer than it takes to follow the run."""
        said = []

        def is_settled():
            said.append(self._program.headline)
            return len(said) > 3 and len(set(said[-3:])) == 1
        until(is_settled, lambda: f"the status does not settle: {said}")
        assert said[-1] in WORDS, said
        return said[-1]

    # What has to be right behind it

    def _use_one_channel(self, chance, command):
        """With no other command near, it counts in any case. Returns once it is done."""
        name = chance.choice(list(self._channels))
        print(command, "by", name, flush=True)
        self._channels[name][1](command)
        if command == "stop":
            self._program.wait_for_headline("Ready", LONGEST_WAIT)
        else:
            until(lambda: self._program.headline != "Ready", f"{name} starts nothing", LONGEST_WAIT)

    def _check_silence(self):
        seen = self._clicks()
        stays(lambda: self._clicks() == seen, lambda: f"{self._clicks() - seen} clicks while nothing runs", 4 * INTERVAL)

    def _check_run(self):
        """It clicks, and no faster than one loop does."""
        self._program.wait_for_headline("Running", LONGEST_WAIT)
        first = self._clicks()
        until(lambda: self._clicks() > first + 2, "the status says Running, but no clicks come", LONGEST_WAIT)
        begin = time.monotonic()
        before = self._clicks()
        pause(12 * INTERVAL)
        clicks = self._clicks() - before
        most = (time.monotonic() - begin) / INTERVAL + 3
        assert clicks <= most, f"{clicks} clicks, where one loop makes {most:.0f} at most"

    def _check_stopped(self):
        seen = self._clicks()
        stays(lambda: self._clicks() <= seen + 1, lambda: f"{self._clicks() - seen} clicks after the stop", 4 * INTERVAL)
        assert self._observer.buttons_down() == 0
        report = self._observer.report()
        assert report["presses"] == report["releases"], report

    def _check_counted_run(self, chance):
        until(lambda: self._program.headline not in ACTIVE, "the run does not complete", LONGEST_WAIT)
        self._check_silence()
        self._observer.forget()
        name = chance.choice(list(self._channels))
        self._channels[name][1]("start")
        until(lambda: self._clicks() >= COUNT, lambda: f"{self._clicks()} clicks come of a start by {name}", LONGEST_WAIT)
        self._program.wait_for_headline("Completed", LONGEST_WAIT)
        assert self._program.message == f"Completed — reached {COUNT} clicks", self._program.message
        stays(lambda: self._clicks() == COUNT, lambda: f"{self._clicks()} clicks, not {COUNT}", 4 * INTERVAL)
