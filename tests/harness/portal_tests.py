"""What holds on each desktop whose clicks go through a portal. Each class stands beside a `PortalCase` among the bases of a test
class, which runs all of it."""

import os
import random
import signal
import statistics
import time

from . import cadence, preferences, processes
from .compositor_case import LEFT, MIDDLE, RIGHT
from .portal_case import GRANT
from .portal_compositor import ALT, CONTROL, FRONT_END, LETTERS
from .waiting import TookTooLong, pause, stays, until

LOST = "Velloran: the connection to the display was lost.\n"
S = LETTERS["s"]


class PermissionTests:
    """For a desktop that asks."""

    def test_it_is_asked_for_at_each_start_where_it_cannot_be_remembered(self):
        if self.desktop.remembers():
            self.skipTest("its portal remembers")
        for _ in range(2):
            program = self.launch(maxClicks=20, clickIntervalSeconds=0.02)
            self.wait_for_dialog()
            self.assertTrue(program.shows("push button", GRANT))
            self.grant()
            self.wait_for_permission(program)
            self.desktop.focus("witness")
            self.assert_run(program, 20)
            self.assertEqual(program.end(), 0)
        self.assertFalse(os.path.exists(os.path.join(self.desktop.data_home, "velloran", "remote-desktop-token")))

    def test_it_is_asked_for_once_and_remembered(self):
        if not self.desktop.remembers():
            self.skipTest("its portal remembers nothing")
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


class ClickTests:
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
        bare = cadence.of_bare_thread_on(self.desktop, 1000, 0.01)
        cadence.compare(f"on {self.desktop.NAME} over {self.WAY}", moments, bare, 0.01)

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
        print(f"\n{sum(late)} clicks after {len(late)} stops over {self.WAY}, {max(late)} at most after one")


class Kills:
    def kills(self):
        """Kills the program at 50 moments of a run. What comes of each is there to be looked at before the next start."""
        chance = random.Random(50)
        program = self.start_granted(clickIntervalSeconds=0.01, stopMode="manual")
        for number in range(50):
            self.toggle()
            self.witness.wait_for_releases(self.witness.releases() + 1)
            pause(chance.uniform(0, 0.03))
            program.process.send_signal(signal.SIGKILL)
            program.process.wait()
            self.bus.wait_until_free()
            yield number
            program.close()
            program = self.start(clickIntervalSeconds=0.01, stopMode="manual")


class KillTests(Kills):
    def test_no_button_stays_down(self):
        for number in self.kills():
            self.assert_nothing_is_down(f"kill {number}")
        print(f"\n50 kills over {self.WAY}: no button is down")


class Hotkeys:
    HOTKEY = {"hotkey": preferences.CONTROL_OPTION_S, "clickIntervalSeconds": 0.01, "stopMode": "manual"}
    # Seconds behind a press of the hotkey, or its repetition, in which another does nothing.
    SOONEST_PRESS = 0.0

    def start_with_hotkey(self):
        """For the first time on this desktop."""
        return self.start_granted(**self.HOTKEY)

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

    def wait_until_free(self):
        """Until the window that has the keyboard gets the key as well as the modifiers."""
        self.desktop.focus("witness")

        def is_free():
            keys = self.witness.keys()
            self.hand.tap(CONTROL, ALT, S)
            return self.witness.keys() == keys + 3
        until(is_free, "the window does not get the former hotkey")

    def stop(self, program):
        self.hand.tap(CONTROL, ALT, S)
        program.wait_for_headline("Ready")
        # The last click may be on its way.
        pause(max(0.3, self.SOONEST_PRESS))


class HotkeyTests(Hotkeys):
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
        pause(self.SOONEST_PRESS)
        self.hand.tap(CONTROL, ALT, S)
        program.wait_for_headline("Running")


class _LostAndFound:
    def start_run(self, **environment):
        program = self.launch(environment, clickIntervalSeconds=0.02, stopMode="manual")
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        return program

    def assert_clicks_again(self, program):
        """Without a dialog."""
        self.wait_for_permission(program)
        self.assertEqual(self.dialogs(), [])
        self.desktop.focus("witness")
        before = self.witness.releases()
        self.toggle()
        self.witness.wait_for_releases(before + 20)


class LockTests(_LostAndFound):
    def is_unlocked(self, program):
        """For a desktop that remembers nothing: what the user then does."""

    def test_it_stops_the_run_and_nothing_clicks_until_it_is_unlocked(self):
        program = self.start_run()
        self.desktop.lock()
        until(self.desktop.is_locked, "it is not locked")
        program.wait_for_headline("Ready")
        print("\nlocked:", program.message)
        program.find("push button", GRANT)
        self.toggle()
        stays(lambda: program.headline != "Running", "it runs on a locked screen", 1)
        self.desktop.unlock()
        until(lambda: not self.desktop.is_locked(), "it stays locked")
        self.is_unlocked(program)
        self.assert_clicks_again(program)


class LossTests(_LostAndFound):
    def assert_is_lost(self, program):
        program.find("push button", GRANT)
        program.wait_for_headline("Ready")
        self.assertEqual(self.dialogs(), [])
        processes.wait_for_rest(program.pid)
        self.assert_nothing_is_down("loss")

    def assert_comes_back(self, program):
        """By the user's wish."""
        program.find("push button", GRANT).do()
        self.grant_again()
        self.assert_clicks_again(program)

    def test_of_the_back_end(self):
        program = self.start_run()
        self.desktop.kill(self.desktop.BACK_END)
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
