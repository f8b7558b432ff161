"""The whole program on GNOME, as another window sees it; a hand answers the desktop's dialogs."""

import os
import random
import signal
import statistics
import time
import unittest

from harness import cadence, preferences, processes
from harness.bus import Bus
from harness.compositor_case import LEFT, MIDDLE, RIGHT
from harness.gnome import ALT, BACK_END, CONTROL, ESCAPE, FRONT_END, LETTERS, SHORTCUTS, Gnome
from harness.program import Program
from harness.waiting import TookTooLong, pause, stays, until

FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
GRANT = "Grant Accessibility Permission"
S, D = LETTERS["s"], LETTERS["d"]
CONTROL_OPTION_D = {"modifierFlagsRaw": preferences.CONTROL | preferences.OPTION, "keyCode": 2, "display": "⌃⌥D"}


@unittest.skipUnless(Gnome.is_installed(), "GNOME is not installed")
class GnomeCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.desktop = self.make_desktop()
        self.addCleanup(self.desktop.close)
        self.witness = self.desktop.witness
        self.hand = self.desktop.hand
        self.bus = Bus(self.desktop)
        self.addCleanup(self.bus.close)

    def make_desktop(self):
        return Gnome()

    def launch(self, **config):
        """Starts the program with the default configuration and these changes; the desktop may ask its user then."""
        stored = {"velloran.config": preferences.as_bytes(preferences.config(**config))}
        program = Program(self.desktop, stored, environment={"XDG_DATA_HOME": self.desktop.data_home})
        self.addCleanup(program.close)
        program.wait_for_window()
        return program

    def start(self, **config):
        """The same, and the permission to click is granted; the witness has the keyboard."""
        program = self.launch(**config)
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def start_granted(self, **config):
        """For the first time on this desktop."""
        program = self.launch(**config)
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def wait_for_dialog(self, service=BACK_END):
        """Waits until the desktop asks, and takes keys for the answer."""
        def is_asking():
            return any("active" in frame.states for frame in self.desktop.dialogs(service))
        until(is_asking, "the desktop does not ask")

    def wait_until_answered(self, service=BACK_END):
        until(lambda: not self.desktop.dialogs(service), "the dialog stays")

    def grant(self):
        """That it be remembered is ticked already."""
        self.wait_for_dialog()
        self.hand.tap(ALT, LETTERS["i"])
        until(self.may_share, "there is nothing to share")
        self.hand.tap(ALT, LETTERS["s"])
        self.wait_until_answered()

    def may_share(self):
        """Whether the dialog can be granted: what is asked for is switched on."""
        return any("sensitive" in button.states for frame in self.desktop.dialogs(BACK_END)
                   for button in frame.find_all("button", "Share"))

    def refuse(self, service=BACK_END):
        self.wait_for_dialog(service)
        self.hand.tap(ESCAPE)
        self.wait_until_answered(service)

    def add_shortcut(self):
        self.wait_for_dialog(SHORTCUTS)
        self.hand.tap(ALT, LETTERS["a"])
        self.wait_until_answered(SHORTCUTS)

    def wait_for_permission(self, program):
        program.wait_until_gone("push button", GRANT)

    def toggle(self):
        self.bus.act("toggle")

    def assert_clicks(self, report, count, button=LEFT):
        """Exactly that many presses, each followed by its release, all of one button."""
        self.assertEqual(report, [("down", button), ("up", button)] * count)

    def assert_nothing_is_down(self, when):
        """Of what was seen since the last report. The desktop may let go of a button a little later."""
        report = []

        def is_even():
            report.extend(self.witness.report())
            return len(report) % 2 == 0
        until(is_even, f"a button stays down: {when}", 5)
        self.assertGreater(len(report), 0, when)
        self.assert_clicks(report, len(report) // 2)

    def assert_run(self, program, count, button=LEFT):
        """A run of that many comes to its end, and was seen. Returns the moments of the presses."""
        before = self.witness.releases()
        self.toggle()
        program.wait_for_headline("Completed")
        # The last click may be on its way through the desktop.
        self.witness.wait_for_releases(before + count)
        report = self.witness.timed_report()
        self.assert_clicks([(kind, code) for kind, code, _ in report], count, button)
        stays(lambda: not self.witness.report(), "clicks come after the last", 0.3)
        return [moment for kind, _, moment in report if kind == "down"]


class GnomePermission(GnomeCase):
    def test_it_is_asked_for_once_and_remembered(self):
        program = self.launch(maxClicks=20, clickIntervalSeconds=0.02)
        self.wait_for_dialog()
        self.assertTrue(program.shows("push button", GRANT))
        self.grant()
        self.wait_for_permission(program)
        token = os.path.join(self.desktop.data_home, "velloran", "remote-desktop-token")
        until(lambda: os.path.exists(token), "nothing is remembered")
        self.assertEqual(os.stat(token).st_mode & 0o777, 0o600)
        self.desktop.focus("witness")
        self.assert_run(program, 20)
        self.assertEqual(program.end(), 0)
        program = self.launch(maxClicks=20, clickIntervalSeconds=0.02)
        until(lambda: self.desktop.dialogs(BACK_END) or not program.shows("push button", GRANT), "nothing happens")
        self.assertEqual(self.desktop.dialogs(BACK_END), [])
        self.desktop.focus("witness")
        self.assert_run(program, 20)

    def test_refused_it_is_asked_for_when_the_user_wants_it(self):
        program = self.launch(maxClicks=20, clickIntervalSeconds=0.02)
        self.refuse()
        stays(lambda: not self.desktop.dialogs(BACK_END), "it is asked again", 2)
        self.assertTrue(program.shows("push button", GRANT))
        self.toggle()
        self.refuse()
        self.assertEqual(program.headline, "Error")
        program.find("push button", GRANT).do()
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.assert_run(program, 20)


class GnomeClicks(GnomeCase):
    def test_three_buttons_are_exact(self):
        is_first = True
        for name, button in (("left", LEFT), ("right", RIGHT), ("middle", MIDDLE)):
            with self.subTest(name):
                start = self.start_granted if is_first else self.start
                is_first = False
                program = start(mouseButton=name, clickIntervalSeconds=0.02, maxClicks=100)
                seen = self.assert_run(program, 100, button)
                self.assertEqual(program.end(), 0)
                print(f"\n100 {name} clicks asked for, seen: {len(seen)}")

    def test_a_thousand_at_ten_milliseconds_are_a_thousand(self):
        program = self.start_granted(clickIntervalSeconds=0.01, maxClicks=1000)
        moments = self.assert_run(program, 1000)
        program.close()
        cadence.compare("on GNOME", moments, 0.01)

    def test_after_the_stop_comes_the_click_that_was_under_way_at_most(self):
        program = self.start_granted(clickIntervalSeconds=0.01, stopMode="manual")
        late = []
        for _ in range(20):
            before = self.witness.releases()
            self.toggle()
            self.witness.wait_for_releases(before + 20)
            self.toggle()
            seen = self.witness.releases()
            program.wait_for_headline("Ready")
            pause(0.3)
            late.append(self.witness.releases() - seen)
            self.assertLessEqual(late[-1], 1)
        print(f"\n{sum(late)} clicks after {len(late)} stops, {max(late)} at most after one")


class GnomeKills(GnomeCase):
    def test_no_button_stays_down(self):
        chance = random.Random(50)
        program = self.start_granted(clickIntervalSeconds=0.01, stopMode="manual")
        for number in range(50):
            self.toggle()
            self.witness.wait_for_releases(self.witness.releases() + 1)
            pause(chance.uniform(0, 0.03))
            program.process.send_signal(signal.SIGKILL)
            program.process.wait()
            self.bus.wait_until_free()
            self.assert_nothing_is_down(f"kill {number}")
            program.close()
            program = self.start(clickIntervalSeconds=0.01, stopMode="manual")
        print("\n50 kills: no button is down")


class GnomeHotkey(GnomeCase):
    HOTKEY = {"hotkey": preferences.CONTROL_OPTION_S, "clickIntervalSeconds": 0.01, "stopMode": "manual"}

    def start_with_hotkey(self, **config):
        """For the first time: the desktop asks for both."""
        program = self.launch(**{**self.HOTKEY, **config})
        self.answer_both()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def answer_both(self):
        """In whatever order they come, and whichever is in front of the other."""
        def asking():
            return {service for service in (BACK_END, SHORTCUTS) if self.desktop.dialogs(service)}

        asked = set()

        def are_answered():
            for service, key in ((BACK_END, "s"), (SHORTCUTS, "a")):
                frames = self.desktop.dialogs(service)
                asked.update({service} if frames else ())
                if any("active" in frame.states for frame in frames):
                    self.hand.tap(ALT, LETTERS[key if service == SHORTCUTS or self.may_share() else "i"])
                    pause(0.5)
            return asked == {BACK_END, SHORTCUTS} and not asking()
        until(are_answered, lambda: f"asked was {asked}, and is {asking()}")

    def press_until_bound(self, program, *keys):
        """Presses it until the program runs: when the desktop has bound it, it does not tell."""
        def runs():
            self.hand.tap(*keys)
            try:
                program.wait_for_headline("Running", 3)
            except TookTooLong:
                return False
            return True
        until(runs, "the hotkey does not start it")

    def stop(self, program):
        self.hand.tap(CONTROL, ALT, S)
        program.wait_for_headline("Ready")
        # The last click may be on its way.
        pause(0.3)

    def test_it_starts_and_stops_while_another_window_has_the_focus_and_is_swallowed(self):
        program = self.start_with_hotkey()
        self.press_until_bound(program, CONTROL, ALT, S)
        self.stop(program)
        latencies, ends = [], []
        for _ in range(10):
            self.witness.report()
            keys = self.witness.keys()
            pressed = time.monotonic()
            self.hand.tap(CONTROL, ALT, S)
            self.witness.wait_for_releases(self.witness.releases() + 1)
            program.wait_for_headline("Running")
            stopped = time.monotonic()
            self.stop(program)
            # The modifiers only.
            self.assertEqual(self.witness.keys(), keys + 4)
            seen = self.witness.timed_report()
            self.assert_clicks([(kind, code) for kind, code, _ in seen], len(seen) // 2)
            latencies.append((seen[0][2] - pressed) * 1000)
            ends.append((seen[-1][2] - stopped) * 1000)
        print(f"\nfrom the hotkey to the first click: {statistics.median(latencies):.0f} ms (median), {max(latencies):.0f} ms at "
              f"most; from the one that stops to the last click: {statistics.median(ends):.0f} ms, {max(ends):.0f} ms; with "
              f"{cadence.load()}")

    def test_a_held_key_fires_once(self):
        program = self.start_with_hotkey()
        self.press_until_bound(program, CONTROL, ALT, S)
        self.hand.press(CONTROL, ALT, S)
        program.wait_for_headline("Ready")
        stays(lambda: program.headline == "Ready", "the repetition starts it", 2)
        self.hand.release(CONTROL, ALT, S)
        self.hand.tap(CONTROL, ALT, S)
        program.wait_for_headline("Running")

    def test_it_is_asked_for_once_as_long_as_it_stays_the_same(self):
        program = self.start_with_hotkey()
        self.assertEqual(program.end(), 0)
        program = self.start(**self.HOTKEY)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(self.desktop.dialogs(SHORTCUTS), [])
        self.assertEqual(program.end(), 0)
        program = self.launch(**{**self.HOTKEY, "hotkey": CONTROL_OPTION_D})
        self.add_shortcut()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.press_until_bound(program, CONTROL, ALT, D)
        self.hand.tap(CONTROL, ALT, S)
        stays(lambda: program.headline == "Running", "the former hotkey stops it", 1)
        self.assertEqual(program.end(), 0)
        # The desktop has forgotten that one meanwhile.
        program = self.launch(**self.HOTKEY)
        self.add_shortcut()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.press_until_bound(program, CONTROL, ALT, S)

    def test_refused_it_is_one_line_in_the_log(self):
        program = self.launch(**self.HOTKEY)
        self.grant()
        self.refuse(SHORTCUTS)
        until(lambda: FAILURE in program.log, lambda: program.log)
        stays(lambda: not self.desktop.dialogs(SHORTCUTS), "it is asked again", 2)
        self.assertEqual(program.log.splitlines().count(FAILURE), 1, program.log)


class GnomeLock(GnomeCase):
    def test_it_stops_the_run_and_nothing_clicks_until_it_is_unlocked(self):
        program = self.start_granted(clickIntervalSeconds=0.02, stopMode="manual")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        self.desktop.set_locked(True)
        program.wait_for_headline("Ready")
        print("\nlocked:", program.message)
        self.toggle()
        self.assertTrue(program.shows("push button", GRANT))
        self.desktop.set_locked(False)
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        before = self.witness.releases()
        self.toggle()
        self.witness.wait_for_releases(before + 20)


class GnomeLoss(GnomeCase):
    def start_run(self):
        program = self.start_granted(clickIntervalSeconds=0.02, stopMode="manual")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        return program

    @staticmethod
    def effort(program):
        """The seconds that the processor has worked for it."""
        fields = processes.read_all(f"/proc/{program.pid}/stat").rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def assert_is_lost(self, program):
        program.find("push button", GRANT)
        program.wait_for_headline("Ready")
        self.assertEqual(self.desktop.dialogs(BACK_END), [])
        before = self.effort(program)
        pause(2)
        self.assertLess(self.effort(program) - before, 0.2, "it does not come to rest")
        self.assert_nothing_is_down("loss")

    def assert_comes_back(self, program):
        """By the user's wish, and without a dialog."""
        program.find("push button", GRANT).do()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        before = self.witness.releases()
        self.toggle()
        self.witness.wait_for_releases(before + 20)

    def test_of_the_back_end(self):
        program = self.start_run()
        self.desktop.kill(BACK_END)
        self.assert_is_lost(program)
        self.desktop.start_back_end()
        self.assert_comes_back(program)

    def test_of_the_front_end(self):
        program = self.start_run()
        self.desktop.kill(FRONT_END)
        self.assert_is_lost(program)
        self.desktop.start_front_end()
        self.assert_comes_back(program)

    def test_of_the_shell(self):
        program = self.start_run()
        self.desktop.end_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn("Velloran: the connection to the display was lost.\n", program.log)
