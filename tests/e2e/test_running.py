"""Runs, as another program on the same screen sees them."""

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import stays, until

HOTKEY = preferences.CONTROL_OPTION_S
PLACE_OF_CLICKS = (1450, 150)  # in the other program's window


class Running(DesktopCase):
    def start_fast(self, **config):
        program = self.start_with(**{"clickIntervalSeconds": 0.02, "hotkey": HOTKEY, **config})
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(*PLACE_OF_CLICKS)
        self.observer.forget()
        return program

    def wait_for_clicks(self, count):
        until(lambda: self.observer.report()["presses"] >= count, lambda: f"{count} clicks did not come: {self.observer.report()}")

    def test_hotkey_starts_and_stops_while_another_window_has_the_focus_and_the_locks_are_on(self):
        program = self.start_fast(stopMode="manual")
        self.observer.ask("focus")
        until(lambda: "active" not in program.window.states, "the window stays active")
        for lock in ("caps", "num"):
            self.observer.ask(f"lock {lock} on")
            self.addCleanup(self.observer.ask, f"lock {lock} off")
        self.observer.press("s", "control", "alt")
        self.wait_for_clicks(20)
        self.assertEqual(program.headline, "Running")
        self.assertNotIn("active", program.window.states)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Ready")
        program.settle()
        seen = self.observer.report()
        self.assert_equal_clicks(seen, seen["presses"])
        self.assertEqual(program.message, "Clicking is stopped")
        # A click after the stop would come within 20 ms.
        stays(lambda: self.observer.report()["presses"] == seen["presses"], "clicks come after the stop", 0.3)

    def test_hotkey_works_with_the_window_in_front(self):
        program = self.start_fast(maxClicks=3)
        program.give_focus()
        self.observer.move(*PLACE_OF_CLICKS)
        self.observer.forget()
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assert_equal_clicks(self.observer.report(), 3)

    def test_counted_runs_give_exactly_that_many_clicks_of_each_button(self):
        for button, number in (("left", 1), ("middle", 2), ("right", 3)):
            with self.subTest(button):
                program = self.start_fast(mouseButton=button, maxClicks=50)
                self.observer.press("s", "control", "alt")
                program.wait_for_headline("Completed")
                self.assertEqual(program.message, "Completed — reached 50 clicks")
                program.settle()
                self.assert_equal_clicks(self.observer.report(), 50, number)
                stays(lambda: self.observer.report()["presses"] == 50, "clicks come after the last", 0.3)
                program.close()

    def test_one_click_is_told_in_the_singular(self):
        program = self.start_fast(maxClicks=1)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assertEqual(program.message, "Completed — reached 1 click")
        self.assert_equal_clicks(self.observer.report(), 1)

    def test_clicks_happen_where_the_pointer_is_and_leave_it_there(self):
        program = self.start_fast(maxClicks=25)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assertEqual(self.observer.position(), PLACE_OF_CLICKS)
        self.assertEqual(self.observer.report()["places"], [list(PLACE_OF_CLICKS)])

    def test_a_moving_mouse_is_not_clicked_and_a_still_one_is(self):
        program = self.start_fast(stopMode="manual", requireStationaryMouse=True, stationarySeconds=0.8)
        with self.observer.moving(*PLACE_OF_CLICKS):
            self.observer.press("s", "control", "alt")
            until(lambda: program.message == "Waiting for mouse to remain still", lambda: program.message)
            stays(lambda: self.observer.report()["presses"] == 0, "the moving pointer was clicked", 1.5)
            self.assertEqual(program.message, "Waiting for mouse to remain still")
        place = self.observer.position()
        self.wait_for_clicks(3)
        self.assertEqual(self.observer.report()["places"], [list(place)])
        program.find("push button", "Stop").do()
        program.wait_for_headline("Ready")

    def test_the_start_delay_is_counted_down_and_can_be_stopped(self):
        program = self.start_fast(startDelaySeconds=30.0)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Delayed Start")
        until(lambda: program.message.startswith("Starting in 2"), lambda: program.message)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Ready")
        self.assert_equal_clicks(self.observer.report(), 0)

    def test_a_delayed_run_clicks_after_its_delay(self):
        program = self.start_fast(startDelaySeconds=5.0, maxClicks=4)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Delayed Start")
        self.assert_equal_clicks(self.observer.report(), 0)
        program.wait_for_headline("Completed")
        self.assert_equal_clicks(self.observer.report(), 4)

    def test_edits_during_a_run_are_for_the_next(self):
        program = self.start_fast(maxClicks=40)
        self.observer.press("s", "control", "alt")
        program.find("push button", "Increase Stop after").do()
        program.wait_for_headline("Completed")
        self.assertEqual(program.message, "Completed — reached 40 clicks")
        program.wait_for_stored(maxClicks=50)
