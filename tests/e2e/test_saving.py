"""Saving that is held up: by another process that holds the lock of the settings, or by the end of the program."""

import os
import signal

from harness import preferences
from harness.case import DesktopCase
from harness.desktop import Desktop
from harness.settings_lock import held_lock
from harness.waiting import until

REMINDER = "Support Velloran"
HOTKEY = preferences.CONTROL_OPTION_S
# A change waits this long for a lock, in milliseconds.
LONGEST_WAIT_FOR_LOCK = 500.0
SCHEDULE = {"donation.firstLaunchAt", "donation.nextReminderAt", "donation.remindersShown"}


def start_due(case):
    """The program with a reminder that is due."""
    program = case.start({"donation.nextReminderAt": preferences.date(preferences.now() - 1.0), "donation.remindersShown": 4})
    program.find("dialog", REMINDER)
    until(lambda: program.stored_config() is not None, "nothing is saved")
    return program


def put_off(program):
    """Puts the reminder off, which is saved at once."""
    program.click_on("push button", "Maybe later")
    program.wait_until_gone("dialog", REMINDER)


class Saving(DesktopCase):
    def test_clicks_do_not_wait_for_a_lock(self):
        program = self.start_with(clickIntervalSeconds=0.01, maxClicks=1_000_000, hotkey=HOTKEY)
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.press("s", "control", "alt")
        until(lambda: self.observer.report()["presses"] >= 20, "the clicks did not come")
        increase = program.find("push button", "Increase Stop after")
        gaps = []
        with held_lock(program.preferences_path):
            for saving in range(1, 6):
                self.observer.forget()
                increase.do()
                program.wait_for_stored(maxClicks=1_000_000 + 10 * saving)
                seen = self.observer.report()["presses"]
                # Behind the wait, if there was one.
                until(lambda: self.observer.report()["presses"] > seen, "no click comes any more")
                gaps.append(self.observer.report()["longestIntervalMs"])
        # Whoever waits for the lock does so every time. A machine that is busy with other things does not.
        self.assertLess(min(gaps), LONGEST_WAIT_FOR_LOCK, gaps)
        self.assertEqual(program.end(), 0)
        self.assertEqual(self.observer.buttons_down(), 0)

    def test_what_was_said_before_the_end_is_saved(self):
        program = start_due(self)
        with held_lock(program.preferences_path):
            put_off(program)
            self.assertEqual(program.end(), 0)
            self.assertEqual(program.stored()["donation.remindersShown"], "5")
        self.assertEqual(program.log, "")

    def test_a_start_right_behind_the_end_finds_it(self):
        program = start_due(self)
        with held_lock(program.preferences_path):
            put_off(program)
            program.process.send_signal(signal.SIGTERM)
            again = self.start(folder=program.folder)
        self.assertEqual(program.wait_for_end(), 0)
        self.assertFalse(again.shows("dialog", REMINDER))
        self.assertEqual(again.stored()["donation.remindersShown"], "5")

    def test_a_kill_at_any_moment_of_the_first_start_leaves_the_schedule_whole_or_none(self):
        for _ in range(6):
            program = self.launch(None)
            # Without a pause: the moment is over soon.
            while not os.path.exists(program.preferences_path):
                self.assertTrue(program.is_running(), program.log)
            program.process.kill()
            program.wait_for_end()
            self.assertEqual(SCHEDULE & set(program.stored()), SCHEDULE)


class SavingWithoutServer(DesktopCase):
    def setUp(self):
        self.desktop = Desktop(self.SCREEN)
        self.observer = self.desktop.observer
        self.addCleanup(self.desktop.close)

    def test_what_was_said_before_the_server_went_is_saved(self):
        program = start_due(self)
        with held_lock(program.preferences_path):
            # Has been heard when it returns. Waiting for the picture to follow would take as long as the lock is waited for.
            program.find("push button", "Maybe later").do()
            self.desktop.end_server()
            self.assertNotEqual(program.wait_for_end(), 0)
            self.assertEqual(program.stored()["donation.remindersShown"], "5")
