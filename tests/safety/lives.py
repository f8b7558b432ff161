"""Lives of the program that end in the middle of clicks and changes."""

import collections
import re
import signal
import threading
import time

from gi.repository import GLib

from harness.desktop import Desktop
from harness.program import Program
from harness.waiting import until

from .profile import APPLIED, SAVE_DELAY, SETTLED, Expectations, Profile

SAVE = "Save current as preset…"
REMINDER = "Support Velloran"
LOST = "Velloran: the connection to the display was lost."
PLACE_OF_CLICKS = (1450, 150)
MOST_PRESETS = 5
WRITING = 0.03  # what a save takes, at most
LONGEST_START = 1.0
LONGEST_RUN = 1.5


class Struck(Exception):
    """The blow has fallen: there is nothing to be done to the program any more."""


class Life:
    """One life, on what the one before has left. `strike` is called on a thread of its own, and has the program end."""

    def __init__(self, desktop, profile, chance, strike, environment=None):
        self._observer = desktop.observer
        self._chance = chance
        self._strike = strike
        self._is_struck = threading.Event()
        self._blow = None
        self._is_armed = False
        self._profile = profile
        self._expected = Expectations(profile)
        self._observer.move(*PLACE_OF_CLICKS)
        self._observer.forget()
        self.moment = None
        self.was_ready = False
        profile.forget_log()
        self.program = Program(desktop, folder=profile.folder, environment=environment)

    def live(self, moments=("start", "run", "save", "save", "rest")):
        """Until the blow has fallen, at one of these moments, and the program has ended."""
        self.moment = moment = self._chance.choice(moments)
        is_next, self._profile.is_new = not self._profile.is_new, False
        try:
            if moment == "start":
                self._arm(self._chance.uniform(0.0, LONGEST_START))
            elif is_next:
                self._profile.starts += 1
            self._begin()
            if is_next and moment != "start":
                self._profile.starts_with_clicks += 1
            deeds = self._plan()
            struck = self._chance.choice(deeds) if moment == "save" else None
            if moment == "run":
                self._arm(self._chance.uniform(0.0, LONGEST_RUN))
            for deed in deeds:
                deed(deed is struck)
            if moment == "rest":
                self._arm(SETTLED + self._chance.uniform(0.0, WRITING))
        except Exception:
            # Whatever it was, it is the blow's doing, or a fault.
            if not self._is_struck.is_set():
                raise
        assert self._is_armed
        assert self._is_struck.wait(10.0)
        self.program.wait_for_end()

    def check_settings(self, is_sudden):
        """What is there of what was said. `is_sudden` when the program could not see its end coming."""
        return self._expected.check(self._blow, is_sudden)

    def check_buttons(self):
        """No button is down, and each press has its release."""
        until(lambda: self._observer.buttons_down() == 0, "a button is down", 2.0)
        report = self._observer.report()
        assert report["inPairs"] and report["presses"] == report["releases"], report

    # The blow

    def _arm(self, seconds):
        self._is_armed = True

        def fall():
            self._blow = time.monotonic()
            self._is_struck.set()
            self._strike(self)
        threading.Timer(seconds, fall).start()

    def _await(self, look, what):
        def look_unless_struck():
            if self._is_struck.is_set():
                raise Struck
            return look()
        return until(look_unless_struck, what)

    # What is done to the program

    def _find(self, role, name):
        def look():
            try:
                for part in reversed(self.program.window.children):
                    found = part.find_all(role, name)
                    if found:
                        return found[0]
            except GLib.Error:
                pass
            return None
        return self._await(look, f"there is no {role} {name!r}")

    def _begin(self):
        """Waits until everything is there as it was left, and has clicks run."""
        self.program.wait_for_window()
        clicks = self._find("text", "Stop after").text
        assert clicks == str(self._expected.config["maxClicks"]), (clicks, self._expected.config)
        self._await(lambda: not self._observer.has_hotkey_free("s", "control", "alt"), "the hotkey was not registered")
        self._observer.press("s", "control", "alt")
        self._await(lambda: self._observer.report()["presses"] > 0, "no clicks came")
        self.was_ready = True

    def _plan(self):
        """What will be done, in this order."""
        deeds = [self._chance.choice((self._step, self._step, self._apply, self._keep, self._delete))
                 for _ in range(self._chance.randint(2, 5))]
        return [self._put_off, *deeds] if self._expected.is_reminder_due else deeds

    def _put_off(self, is_struck):
        button = self._find("push button", "Maybe later")
        self._expected.put_off()
        self._do(button, is_struck, 0.0)
        self._await(lambda: not self.program.shows("dialog", REMINDER), "the reminder stays")

    def _step(self, is_struck):
        direction, change = self._chance.choice((("Increase", 10), ("Decrease", -10)))
        button = self._find("push button", f"{direction} Stop after")
        self._expected.configure(maxClicks=self._expected.config["maxClicks"] + change)
        self._do(button, is_struck, SAVE_DELAY)

    def _do(self, item, is_struck, seconds):
        """Says what is expected. Has the blow fall around the moment at which it is written, so many seconds later."""
        if is_struck:
            self._arm(max(0.0, seconds + self._chance.uniform(-WRITING / 3, WRITING)))
        item.do()
        self._expected.hear()

    def _open_presets(self):
        self._find("push button", "Menu").do()
        self._find("menu item", "Presets and Options…").do()
        self._find("push button", "Presets").do()

    def _close_presets(self):
        self._find("push button", "Done").do()
        self._await(lambda: not self.program.shows("dialog"), "the sheet stays")

    def _apply(self, is_struck):
        self._open_presets()
        name = self._chance.choice(list(APPLIED))
        item = self._find("menu item", name)
        self._expected.configure(**APPLIED[name])
        self._do(item, is_struck, SAVE_DELAY)
        self._close_presets()

    def _keep(self, is_struck):
        if len(self._expected.presets) >= MOST_PRESETS:
            self._delete(is_struck)
            return
        self._open_presets()
        self._find("menu item", SAVE).do()
        field = self._find("text", "Preset name")
        self._await(lambda: "focused" in field.states, "the name does not have the keyboard")
        name = f"kept {self._chance.randint(0, 9999)}"
        self._observer.type(name)
        self._await(lambda: field.text == name, "the name is not typed")
        button = self._find("push button", "Save")
        self._expected.keep([*self._expected.presets, name])
        self._do(button, is_struck, 0.0)
        self._close_presets()

    def _delete(self, is_struck):
        own = [name for name in self._expected.presets if name not in APPLIED]
        if not own:
            self._step(is_struck)
            return
        name = self._chance.choice(own)
        self._open_presets()
        self._find("menu item", "Delete Preset").do()
        item = self._find("menu item", f'Delete "{name}"')
        names = list(self._expected.presets)
        names.remove(name)
        self._expected.keep(names)
        self._do(item, is_struck, 0.0)
        self._close_presets()


class Lives:
    """One life after the other on the same profile, and one in peace behind them. `live(profile, chance)` is what is tried, and returns
    the life. `is_sudden` when it ends without a word to the program."""

    def __init__(self, figures, what, live, is_sudden=False):
        self._figures = figures
        self._what = what
        self._live = live
        self._is_sudden = is_sudden
        self._profile = Profile()
        self._found = collections.Counter()

    def run(self, count):
        most_unfinished = -(-count // 100) if self._is_sudden else 0
        for number in range(count):
            if not self._figures.attempt(self._what, number, self._try):
                # What a fault has left would be one for the next life as well.
                self._retire()
                self._profile = Profile()
        self._figures.attempt(f"a life in peace behind them, {self._what}", None,
                              lambda chance: self._try_peace(chance, most_unfinished))
        self._retire()
        for (moment, found), times in sorted(self._found.items()):
            print(f"{self._what}, in the middle of a {moment}, found {found}: {times}", flush=True)

    def _retire(self):
        self._figures.count(f"next starts that clicked, {self._what}", self._profile.starts, self._profile.starts_with_clicks)
        self._profile.close()

    def _try(self, chance):
        if chance.random() < 0.3:
            self._profile.remind()
        life = self._live(self._profile, chance)
        self._check(life, self._is_sudden)

    def _try_peace(self, chance, most_unfinished):
        """A life on what all those before have left: it clicks, saves all that is said, ends when it is told to, and leaves nothing."""
        desktop = Desktop()
        try:
            life = Life(desktop, self._profile, chance, lambda life: life.program.process.send_signal(signal.SIGTERM))
            try:
                life.live(("rest",))
                assert life.program.process.returncode == 0, life.program.process.returncode
                assert life.program.log == "", life.program.log
                life.check_buttons()
                self._check(life, is_sudden=False)
            finally:
                life.program.close()
        finally:
            desktop.close()
        left_over = self._profile.left_over()
        print("left in the folder:", *left_over, flush=True)
        # A kill may fall between the name that a file gets and its taking the old one's place.
        unfinished = [name for name in left_over if re.fullmatch(r"velloran\.ini\.[A-Za-z]{6}", name)]
        assert len(unfinished) <= most_unfinished and len(unfinished) == len(left_over), left_over

    def _check(self, life, is_sudden):
        found = life.check_settings(is_sudden)
        self._found[life.moment, found.how] += 1
        self._figures.count(f"values that had to be saved by then, {self._what}", found.owed, found.kept)
        assert not found.lost, found.lost
