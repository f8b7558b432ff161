"""The program sleeps while nothing happens."""

from harness import processes
from harness.case import DesktopCase
from harness.waiting import pause, until

WINDOW = 3.0  # seconds that are looked at


class WakeUps(DesktopCase):
    def wake_ups(self, program, seconds=WINDOW):
        before = processes.voluntary_switches(program.pid)
        pause(seconds)
        return processes.voluntary_switches(program.pid) - before

    def wait_for_rest(self, program):
        """What was under way, such as fading and saving, comes to its end."""
        until(lambda: self.wake_ups(program, 1.0) == 0, "the program does not come to rest", 20)

    def test_none_while_the_window_shows_and_nothing_changes(self):
        program = self.start_with()
        self.observer.move(1450, 150)
        self.wait_for_rest(program)
        self.assertLess(self.wake_ups(program), WINDOW)

    def test_none_while_the_pointer_rests_on_a_control(self):
        program = self.start_with()
        self.observer.move(*program.find("push button", "Left Click").centre)
        self.wait_for_rest(program)
        self.assertLess(self.wake_ups(program), WINDOW)

    def test_none_after_a_completed_run(self):
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=3)
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        program.wait_for_headline("Completed")
        self.wait_for_rest(program)
        self.assertLess(self.wake_ups(program), WINDOW)

    def test_the_mascot_flies_in_sight_only(self):
        program = self.start_with(clickIntervalSeconds=1000.0)
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        program.wait_for_headline("Running")
        self.assertGreater(self.wake_ups(program), 20 * WINDOW)
        self.desktop.run_tool("xdotool", "windowminimize", program.window_id)
        self.wait_for_rest(program)
        self.assertLess(self.wake_ups(program), WINDOW)
        self.assertTrue(program.is_running())
        self.desktop.run_tool("xdotool", "windowmap", program.window_id)
        until(lambda: self.wake_ups(program, 1.0) > 20, "the mascot does not fly again")

    def test_the_mascot_is_painted_by_one_thread(self):
        program = self.start_with(clickIntervalSeconds=1000.0)
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        program.wait_for_headline("Running")
        pause(1.0)  # everything has been painted once

        def wake_ups_of_helpers():
            return processes.voluntary_switches(program.pid, "Thread (pooled)")
        before = wake_ups_of_helpers()
        self.assertGreater(self.wake_ups(program), 20 * WINDOW)
        self.assertLessEqual(wake_ups_of_helpers(), before)
