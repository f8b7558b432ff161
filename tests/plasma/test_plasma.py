"""The whole program on Plasma, as another window sees it; a hand answers the desktop's dialogs."""

import os
import random
import signal
import statistics
import time
import unittest

from harness import cadence, preferences
from harness.compositor_case import LEFT, MIDDLE, RIGHT
from harness.plasma import ALT, BACK_END, CONTROL, F4, FRONT_END, LETTERS, VERSION
from harness.portal_case import GRANT
from harness.waiting import TookTooLong, pause, stays, until
from plasma_case import PlasmaCase

TAKEN = "HotkeyManager: RegisterEventHotKey failed with status -9878"
LOST = "Velloran: the connection to the display was lost.\n"
S = LETTERS["s"]
OPTION_F4 = {"modifierFlagsRaw": preferences.OPTION, "keyCode": 118, "display": "⌥F4"}


@unittest.skipUnless(VERSION > 5, "the desktop does not ask")
class PlasmaPermission(PlasmaCase):
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
        until(lambda: self.dialogs() or not program.shows("push button", GRANT), "nothing happens")
        self.assertEqual(self.dialogs(), [])
        self.desktop.focus("witness")
        self.assert_run(program, 20)

    def test_refused_it_is_asked_for_when_the_user_wants_it(self):
        program = self.launch(maxClicks=20, clickIntervalSeconds=0.02)
        self.refuse()
        stays(lambda: not self.dialogs(), "it is asked again", 2)
        self.assertTrue(program.shows("push button", GRANT))
        self.toggle()
        self.refuse()
        self.assertEqual(program.headline, "Error")
        program.find("push button", GRANT).do()
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.assert_run(program, 20)


@unittest.skipUnless(VERSION == 5, "the desktop asks")
class PlasmaGrants(PlasmaCase):
    def test_the_permission_is_there_without_a_dialog(self):
        program = self.start(maxClicks=20, clickIntervalSeconds=0.02)
        self.assertEqual(self.dialogs(), [])
        self.assert_run(program, 20)


class PlasmaClicks(PlasmaCase):
    def test_three_buttons_are_exact(self):
        is_first = True
        for name, button in (("left", LEFT), ("right", RIGHT), ("middle", MIDDLE)):
            with self.subTest(name):
                start = self.start_granted if is_first else self.start
                is_first = False
                program = start(mouseButton=name, clickIntervalSeconds=0.02, maxClicks=100)
                seen = self.assert_run(program, 100, button)
                self.assertEqual(program.end(), 0)
                print(f"\n100 {name} clicks asked for over {self.WAY}, seen: {len(seen)}")

    def test_a_thousand_at_ten_milliseconds_are_a_thousand(self):
        program = self.start_granted(clickIntervalSeconds=0.01, maxClicks=1000)
        moments = self.assert_run(program, 1000)
        program.close()
        cadence.compare(f"on Plasma over {self.WAY}", moments, 0.01)

    def test_after_the_stop_comes_the_click_that_was_under_way_at_most(self):
        program = self.start_granted(clickIntervalSeconds=0.01, stopMode="manual")
        late = []
        for _ in range(20):
            before = self.witness.releases()
            self.toggle()
            self.witness.wait_for_releases(before + 20)
            self.toggle()
            program.wait_for_headline("Ready")
            seen = self.witness.releases()
            pause(0.3)
            late.append(self.witness.releases() - seen)
            self.assertLessEqual(late[-1], 1)
        print(f"\n{sum(late)} clicks after {len(late)} stops over {self.WAY}, {max(late)} at most after one")


@unittest.skipUnless(VERSION > 5, "there is no other way")
class PlasmaClicksByCalls(PlasmaClicks):
    WAY = "calls"


@unittest.skipUnless(VERSION > 5, "the older release lets go of no button when a program ends")
class PlasmaKills(PlasmaCase):
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
        print(f"\n50 kills over {self.WAY}: no button is down")


class PlasmaKillsByCalls(PlasmaKills):
    WAY = "calls"


class PlasmaHotkey(PlasmaCase):
    HOTKEY = {"hotkey": preferences.CONTROL_OPTION_S, "clickIntervalSeconds": 0.01, "stopMode": "manual"}

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
        program = self.start_granted(**self.HOTKEY)
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
        program = self.start_granted(**self.HOTKEY)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.hand.press(CONTROL, ALT, S)
        program.wait_for_headline("Ready")
        stays(lambda: program.headline == "Ready", "the repetition starts it", 2)
        self.hand.release(CONTROL, ALT, S)
        self.hand.tap(CONTROL, ALT, S)
        program.wait_for_headline("Running")

    def test_it_is_given_back_at_the_end(self):
        program = self.start_granted(**self.HOTKEY)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(program.end(), 0)
        self.desktop.focus("witness")

        def is_free():
            keys = self.witness.keys()
            self.hand.tap(CONTROL, ALT, S)
            return self.witness.keys() == keys + 3
        until(is_free, "the window does not get the former hotkey")

    def test_a_taken_one_is_refused_and_its_holder_named(self):
        program = self.launch(**{**self.HOTKEY, "hotkey": OPTION_F4})
        self.grant()
        until(lambda: TAKEN in program.log, lambda: program.log)
        self.assertEqual(program.log.splitlines().count(TAKEN), 1, program.log)
        program.find("label", "The hotkey is taken on this desktop by KWin (Close Window).", within=self.about(program))
        # The desktop does with it what it did before.
        self.assertTrue(program.is_running())
        self.hand.tap(ALT, F4)
        self.assertEqual(program.wait_for_end(), 0)


class PlasmaStillMouse(PlasmaCase):
    def test_a_moving_mouse_holds_the_clicks_up_until_it_is_still(self):
        program = self.start_granted(requireStationaryMouse=True, stationarySeconds=1.0, clickIntervalSeconds=0.05,
                                     stopMode="manual")
        self.toggle()
        # The place of the pointer is not known before KWin tells it.
        self.witness.wait_for_releases(self.witness.releases() + 10)

        self.witness.report()
        moves = []
        for _ in range(150):
            # On and on, for somebody who looks now and then.
            moves.append(time.monotonic())
            self.hand.move(-3, 0)
            pause(0.02)
        self.witness.wait_for_releases(self.witness.releases() + 10)
        report = self.witness.timed_report()
        self.assert_clicks([(kind, code) for kind, code, _ in report], len(report) // 2)
        presses = [moment for kind, _, moment in report if kind == "down"]
        for press in presses:
            # What was on its way to either of them is not meant.
            meanwhile = [moved for moved in moves if press - 0.95 < moved < press - 0.3]
            self.assertEqual(meanwhile, [], f"it clicks at {press}, while the mouse moves")
        waited = min(press for press in presses if press > moves[-1] + 0.3) - moves[-1]
        print(f"\nfrom the last of {len(moves)} motions to the first click: {waited:.2f} s, with one second to be still for")

    def test_the_script_is_unloaded_at_the_end(self):
        program = self.start_granted(requireStationaryMouse=True, stationarySeconds=0.1, clickIntervalSeconds=0.05, maxClicks=5)
        self.assert_run(program, 5)
        self.assertTrue(self.desktop.has_script())
        self.assertEqual(program.end(), 0)
        until(lambda: not self.desktop.has_script(), "the script stays")


class PlasmaLock(PlasmaCase):
    HAS_LOCK = True

    def test_it_stops_the_run_and_nothing_clicks_until_it_is_unlocked(self):
        program = self.start_granted(clickIntervalSeconds=0.02, stopMode="manual")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        self.desktop.lock()
        until(self.desktop.is_locked, "it is not locked")
        program.wait_for_headline("Ready")
        print("\nlocked:", program.message)
        self.assertTrue(program.shows("push button", GRANT))
        self.toggle()
        stays(lambda: program.headline != "Running", "it runs on a locked screen", 1)
        self.desktop.unlock()
        until(lambda: not self.desktop.is_locked(), "it stays locked")
        if VERSION == 5:
            # Nothing is remembered there, so it waits until the user wants it. Nor does it know where the mouse is before that moves.
            self.hand.move(-1, 0)
            program.find("push button", GRANT).do()
        self.wait_for_permission(program)
        self.assertEqual(self.dialogs(), [])
        self.desktop.focus("witness")
        before = self.witness.releases()
        self.toggle()
        self.witness.wait_for_releases(before + 20)


class PlasmaLoss(PlasmaCase):
    def start_run(self, **environment):
        program = self.launch(environment, clickIntervalSeconds=0.02, stopMode="manual")
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        return program

    def assert_is_lost(self, program):
        program.find("push button", GRANT)
        program.wait_for_headline("Ready")
        self.assertEqual(self.dialogs(), [])
        self.assert_comes_to_rest(program)
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

    def test_of_the_compositor(self):
        program = self.start_run()
        self.desktop.end_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn(LOST, program.log)

    def test_of_the_compositor_in_a_session_that_starts_it_again(self):
        program = self.start_run(QT_WAYLAND_RECONNECT="1")
        self.desktop.crash_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn(LOST, program.log)


@unittest.skipUnless(VERSION > 5, "there is no other way")
class PlasmaLossByCalls(PlasmaLoss):
    WAY = "calls"
