"""The ways in which the program ends, and what it leaves behind."""

import signal

from harness import preferences
from harness.case import DesktopCase
from harness.desktop import Desktop
from harness.waiting import pause, until

HOTKEY = preferences.CONTROL_OPTION_S
LOST = "Velloran: the connection to the display was lost."


def clicking(case, **config):
    """The program in the middle of a fast run."""
    program = case.start_with(**{"clickIntervalSeconds": 0.01, "stopMode": "manual", "hotkey": HOTKEY, **config})
    program.wait_for_hotkey("s", "control", "alt")
    observer = case.desktop.observer
    observer.move(1450, 150)
    observer.forget()
    observer.press("s", "control", "alt")
    until(lambda: observer.report()["presses"] >= 20, "the clicks did not come")
    return program


class Signals(DesktopCase):
    def assert_nothing_is_held(self):
        self.assertEqual(self.observer.buttons_down(), 0)
        seen = self.observer.report()
        self.assert_equal_clicks(seen, seen["presses"])

    def test_termination_while_clicking_fast(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number.name):
                program = clicking(self)
                program.process.send_signal(number)
                self.assertEqual(program.wait_for_end(), 0)
                self.assert_nothing_is_held()
                self.assertEqual(program.log, "")

    def test_termination_while_nothing_runs(self):
        program = self.start()
        self.assertEqual(program.end(), 0)
        self.assertEqual(program.log, "")

    def test_termination_during_the_start_delay(self):
        program = self.start_with(startDelaySeconds=60.0)
        program.find("push button", "Start").do()
        program.wait_for_headline("Delayed Start")
        self.assertEqual(program.end(), 0)
        self.assert_equal_clicks(self.observer.report(), 0)

    def test_the_hotkey_is_free_again_at_the_end(self):
        program = self.start_with(hotkey=HOTKEY)
        program.wait_for_hotkey("s", "control", "alt")
        program.end()
        self.assertTrue(self.observer.has_hotkey_free("s", "control", "alt"))

    def test_being_killed_leaves_readable_settings_and_no_button_down(self):
        folder = None
        for moment in range(5):
            program = clicking(self, stopMode="after_clicks", maxClicks=1_000_000) if folder is None else self.start(folder=folder)
            folder = program.folder
            stored = program.stored_config()
            if moment > 0:
                program.wait_for_hotkey("s", "control", "alt")
                self.observer.move(1450, 150)
                self.observer.forget()
                self.observer.press("s", "control", "alt")
                until(lambda: self.observer.report()["presses"] >= 10, "the clicks did not come")
            program.find("push button", "Increase Stop after").do()
            # The save comes a quarter of a second after the change; the blow falls around it.
            pause(0.24 + 0.006 * moment)
            program.process.kill()
            program.wait_for_end()
            self.assert_nothing_is_held()
            after = program.stored_config()
            self.assertIn(after["maxClicks"], (stored["maxClicks"], stored["maxClicks"] + 10))
            self.assertEqual({**after, "maxClicks": 0}, {**stored, "maxClicks": 0})
            self.assertIn("donation.nextReminderAt", program.stored())
            program.owns_folder = moment == 4
        self.assertTrue(self.observer.has_hotkey_free("s", "control", "alt"))


class LostServer(DesktopCase):
    def setUp(self):
        self.desktop = Desktop(self.SCREEN)
        self.observer = self.desktop.observer
        self.addCleanup(self.desktop.close)

    def test_while_nothing_runs(self):
        program = self.start()
        self.desktop.end_server()
        self.assertNotEqual(program.wait_for_end(10), 0)
        self.assertEqual(program.log.splitlines(), [LOST])

    def test_in_the_middle_of_a_fast_run(self):
        program = clicking(self)
        self.desktop.end_server()
        self.assertNotEqual(program.wait_for_end(10), 0)
        self.assertEqual(program.log.splitlines(), [LOST])
        self.assertEqual(program.stored_config()["hotkey"], HOTKEY)
