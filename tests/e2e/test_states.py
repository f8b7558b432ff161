"""What the window shows and allows in each state of a run."""

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import stays, until

ELSEWHERE = (1450, 150)
HOTKEY = preferences.CONTROL_OPTION_S


class States(DesktopCase):
    def assert_shown(self, program, headline, message):
        self.assertEqual((program.headline, program.message), (headline, message))

    def press_with_pointer(self, program, name):
        program.click_on("push button", name)
        self.observer.move(*ELSEWHERE)

    def assert_stop_does_nothing(self, program):
        before = (program.headline, program.message)
        for press in (lambda: self.press_with_pointer(program, "Stop"), program.find("push button", "Stop").do):
            press()
            program.settle()
            self.assertEqual((program.headline, program.message), before)

    def assert_no_progress(self, program):
        self.assertEqual(program.shown("progress bar"), [])
        self.assertEqual([text for text in program.texts() if "clicks completed" in text], [])

    def test_at_rest(self):
        program = self.start_with()
        self.assert_shown(program, "Ready", "Clicking is stopped")
        self.assert_no_progress(program)
        self.assert_stop_does_nothing(program)

    def seconds_left(self, program):
        told = program.message
        self.assertRegex(told, r"^Starting in \d+ seconds$")
        return int(told.split()[2])

    def test_start_delay(self):
        program = self.start_with(startDelaySeconds=3000.0)
        self.press_with_pointer(program, "Start")
        program.wait_for_headline("Delayed Start")
        until(lambda: self.seconds_left(program) < 2999, lambda: program.message)
        self.assert_no_progress(program)
        # A second start would count down from the beginning.
        for press in (lambda: self.press_with_pointer(program, "Start"), program.find("push button", "Start").do):
            before = self.seconds_left(program)
            press()
            program.settle()
            self.assertLessEqual(self.seconds_left(program), before)
        self.press_with_pointer(program, "Stop")
        program.wait_for_headline("Ready")
        self.assert_shown(program, "Ready", "Clicking is stopped")

    def test_a_counted_run(self):
        program = self.start_with(clickIntervalSeconds=1000.0, maxClicks=5)
        program.find("push button", "Start").do()
        program.wait_for_headline("Running")
        until(lambda: program.message == "1 / 5 clicks completed", lambda: program.message)
        card = program.card("Stop Conditions")
        self.assertEqual(len(card.find_all("progress bar")), 1)
        self.assertEqual(len(card.find_all("label", "1 / 5 clicks completed")), 1)
        for press in (lambda: self.press_with_pointer(program, "Start"), program.find("push button", "Start").do):
            press()
            program.settle()
            self.assert_shown(program, "Running", "1 / 5 clicks completed")
        self.observer.forget()
        self.press_with_pointer(program, "Stop")
        program.wait_for_headline("Ready")
        self.assert_no_progress(program)
        self.assertEqual(self.observer.report()["presses"], 1)  # the press of the button itself

    def test_a_run_until_stopped_has_no_progress(self):
        program = self.start_with(clickIntervalSeconds=1000.0, stopMode="manual")
        self.observer.move(*ELSEWHERE)
        program.find("push button", "Start").do()
        until(lambda: program.message == "1 click completed", lambda: program.message)
        self.assertEqual(program.shown("progress bar"), [])
        program.find("push button", "Stop").do()
        program.wait_for_headline("Ready")

    def test_a_completed_run(self):
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=5)
        self.observer.move(*ELSEWHERE)
        program.find("push button", "Start").do()
        program.wait_for_headline("Completed")
        self.assert_shown(program, "Completed", "Completed — reached 5 clicks")
        self.assert_no_progress(program)
        self.assert_stop_does_nothing(program)
        self.observer.forget()
        self.observer.move(*ELSEWHERE)
        program.find("push button", "Start").do()
        until(lambda: self.observer.report()["releases"] == 5, "the second run did not come")
        program.wait_for_headline("Completed")

    def test_an_invalid_configuration(self):
        for changes, message in (({"clickIntervalSeconds": 0.001}, "Click interval must be between 0.01 and 3600.0 seconds."),
                                 ({"maxClicks": None}, "Enter the number of clicks before stopping."),
                                 ({"maxClicks": 0}, "Total clicks must be between 1 and 10000000."),
                                 ({"startDelaySeconds": 4000.0}, "Start delay must be between 0.0 and 3600.0 seconds."),
                                 ({"requireStationaryMouse": True, "stationarySeconds": 0.05},
                                  "Stationary duration must be between 0.1 and 3600.0 seconds.")):
            with self.subTest(message):
                program = self.start_with(hotkey=HOTKEY, **changes)
                program.wait_for_hotkey("s", "control", "alt")
                # The button is not for it; the hotkey tells what is wrong.
                self.press_with_pointer(program, "Start")
                program.find("push button", "Start").do()
                program.settle()
                self.assert_shown(program, "Ready", "Clicking is stopped")
                self.observer.press("s", "control", "alt")
                program.wait_for_headline("Error")
                self.assert_shown(program, "Error", message)
                self.assert_no_progress(program)
                self.assert_stop_does_nothing(program)
                program.close()


class NoSelfRestart(DesktopCase):
    def start_on_start(self, **config):
        """Presses Start with the pointer, which then stays there, and clicks on it."""
        program = self.start_with(**{"clickIntervalSeconds": 0.05, "maxClicks": 8, **config})
        self.start_centre = program.find("push button", "Start").centre
        self.observer.click(*self.start_centre)
        return program

    def test_the_last_click_of_a_run_does_not_start_the_next(self):
        for interval in (0.01, 0.05, 0.3):
            with self.subTest(interval):
                program = self.start_on_start(clickIntervalSeconds=interval)
                until(lambda: self.observer.report()["releases"] == 9, "the clicks did not come")
                program.wait_for_headline("Completed")
                stays(lambda: self.observer.report()["presses"] == 9 and program.headline == "Completed",
                      lambda: f"{program.headline}: {self.observer.report()}", 1.0)
                program.close()

    def test_a_run_of_one_click_on_start(self):
        program = self.start_on_start(maxClicks=1)
        program.wait_for_headline("Completed")
        stays(lambda: self.observer.report()["presses"] == 2, lambda: self.observer.report(), 1.0)

    def test_the_user_starts_again_with_pointer_keyboard_and_assistive_tool(self):
        program = self.start_on_start()
        program.wait_for_headline("Completed")
        start = program.find("push button", "Start")

        def press_space():
            self.observer.press("Space")

        for press in (lambda: self.observer.ask("button click 1"), start.do, press_space):
            # What comes right behind a click of the program's own is taken for its echo.
            stays(lambda: program.headline == "Completed", "a run started by itself", 0.3)
            self.observer.forget()
            press()
            until(lambda: self.observer.report()["releases"] >= 8, "the run did not start")
            program.wait_for_headline("Completed")

    def test_an_assistive_tool_starts_right_after_the_last_click(self):
        program = self.start_on_start()
        start = program.find("push button", "Start")
        program.wait_for_headline("Completed")
        self.observer.forget()
        start.do()
        until(lambda: self.observer.report()["releases"] >= 8, "the run did not start")

    def test_the_right_button_has_no_echo_on_start(self):
        program = self.start_with(clickIntervalSeconds=0.05, maxClicks=5, mouseButton="right", hotkey=HOTKEY)
        program.wait_for_hotkey("s", "control", "alt")
        centre = program.find("push button", "Start").centre
        self.observer.move(*centre)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.observer.ask("button click 1")
        until(lambda: self.observer.report()["buttons"].get("3", 0) == 10, lambda: self.observer.report())

    def test_stop_obeys_the_clicks_of_the_run_itself(self):
        program = self.start_with(clickIntervalSeconds=0.3, stopMode="manual", hotkey=HOTKEY)
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(*program.find("push button", "Stop").centre)
        self.observer.press("s", "control", "alt")
        until(lambda: self.observer.report()["releases"] >= 1, "the click did not come")
        program.wait_for_headline("Ready", 5)
        clicks = self.observer.report()["presses"]
        stays(lambda: self.observer.report()["presses"] == clicks, "the run goes on", 0.7)
