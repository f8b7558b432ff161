"""Runs on a server that is far away: it takes 20 ms to reach it, and as long to be told something by it."""

from harness import preferences
from harness.case import DesktopCase
from harness.distance import Distance
from harness.waiting import until

HOTKEY = preferences.CONTROL_OPTION_S
PLACE_OF_CLICKS = (1450, 150)  # in the other program's window
ONE_WAY = 0.02
INTERVAL = 0.01
# Two are, on a machine that is not busy. Clicks that waited for answers would be a hundred.
MOST_ON_THEIR_WAY = 20


class FarServer(DesktopCase):
    def start_far(self, **config):
        way = Distance(self.desktop, ONE_WAY)
        self.addCleanup(way.close)
        stored = preferences.config(**{"clickIntervalSeconds": INTERVAL, "stopMode": "manual", "hotkey": HOTKEY, **config})
        program = self.start({"velloran.config": preferences.as_bytes(stored)}, environment={"DISPLAY": way.display})
        program.wait_for_hotkey("s", "control", "alt")
        # Found now: while the program clicks, every question takes its time.
        self.assertEqual(program.headline, "Ready")
        self.stop_button = program.find("push button", "Stop")
        self.observer.move(*PLACE_OF_CLICKS)
        self.observer.forget()
        return program

    def run_until_clicks(self, count):
        self.observer.press("s", "control", "alt")
        until(lambda: self.observer.report()["presses"] >= count, lambda: f"{count} clicks did not come: {self.observer.report()}")

    def check_the_end(self, program):
        """Only the clicks that were on their way come now."""
        seen = self.observer.report()["presses"]
        self.assertEqual(program.end(), 0)
        # Whatever the program had sent arrives before its end does.
        until(lambda: self.observer.has_hotkey_free("s", "control", "alt"), "the program is still there for the server")
        report = self.observer.report()
        self.assertLessEqual(report["presses"] - seen, MOST_ON_THEIR_WAY)
        self.assert_equal_clicks(report, report["presses"])

    def test_clicks_do_not_wait_for_answers(self):
        program = self.start_far(stopMode="after_clicks", maxClicks=200)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assertGreaterEqual(self.observer.report()["presses"], 200 - MOST_ON_THEIR_WAY)
        until(lambda: self.observer.report()["releases"] == 200, lambda: self.observer.report())
        self.assert_equal_clicks(self.observer.report(), 200)

    def test_only_the_clicks_on_their_way_follow_the_stop(self):
        program = self.start_far()
        self.run_until_clicks(150)
        self.stop_button.do()
        program.wait_for_headline("Ready")
        self.check_the_end(program)

    def start_late(self):
        """Starts a run that is always late: each question where the pointer is takes longer than the interval."""
        program = self.start_far(requireStationaryMouse=True, stationarySeconds=0.1)
        self.run_until_clicks(50)
        return program

    def test_the_stop_button_ends_a_run_that_is_always_late(self):
        program = self.start_late()
        self.stop_button.do()
        program.wait_for_headline("Ready")
        self.check_the_end(program)

    def test_the_hotkey_ends_a_run_that_is_always_late(self):
        program = self.start_late()
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Ready")
        self.check_the_end(program)

    def test_a_signal_ends_a_program_that_is_always_late(self):
        program = self.start_late()
        self.check_the_end(program)
