"""What can happen to the session of a desktop whose clicks go through a portal, beside the loss of its parts. Each class stands beside a
`PortalCase` among the bases of a test class, which runs all of it."""

import signal
import time

from . import processes
from .portal_case import GRANT
from .waiting import pause, stays, until

INTERVAL = 0.02


class _Run:
    def start_run(self):
        program = self.start_granted(clickIntervalSeconds=INTERVAL, stopMode="manual")
        self.begin_run()
        return program

    def begin_run(self):
        self.toggle()
        self.wait_for_more_clicks(10)

    def wait_for_more_clicks(self, count):
        self.witness.wait_for_releases(self.witness.releases() + count)

    def end_run(self, program):
        """As the user does; everything that came of the run is whole, and the program sleeps again."""
        self.toggle()
        program.wait_for_headline("Ready")
        ended = self.witness.releases()
        stays(lambda: self.witness.releases() <= ended + 1, "clicks come after the stop", 0.3)
        report = self.witness.report()
        self.assert_clicks(report, len(report) // 2)
        processes.wait_for_rest(program.pid)

    def sleep(self, program):
        """What a machine that sleeps does to the desktop and the program, for a hundred clicks' time. Returns how many clicks there
        are before, and since when they would have been made had it not slept."""
        self.desktop.login.prepare_for_sleep(True)
        self.wait_until_ready_for_sleep()
        before, start = self.witness.releases(), time.monotonic()
        sleepers = [program.process, self.desktop.server]
        for sleeper in sleepers:
            self.addCleanup(sleeper.send_signal, signal.SIGCONT)
            sleeper.send_signal(signal.SIGSTOP)
        asleep = time.monotonic()
        pause(100 * INTERVAL)
        slept = time.monotonic() - asleep
        for sleeper in reversed(sleepers):
            sleeper.send_signal(signal.SIGCONT)
        self.desktop.login.prepare_for_sleep(False)
        return before, start + slept

    def wait_until_ready_for_sleep(self):
        """For a desktop that does something first: the machine waits for it."""


class SleepTests(_Run):
    """For a desktop that wakes up without a lock, by its user's wish."""

    def test_what_a_sleeping_machine_missed_is_not_made_up_for(self):
        program = self.start_run()
        before, start = self.sleep(program)
        # What was under way when it fell asleep, and the one that became due meanwhile, come as well.
        self.witness.wait_for_releases(before + 30)
        clicks = self.witness.releases() - before
        self.assertLessEqual(clicks, (time.monotonic() - start) / INTERVAL + 3)
        self.assertEqual(program.headline, "Running")
        self.assertFalse(self.desktop.is_locked())
        self.end_run(program)


class LockedSleepTests(_Run):
    """For a desktop that wakes up locked, which is how they come."""

    def unlock(self):
        self.desktop.unlock()
        until(lambda: not self.desktop.is_locked(), "it stays locked")

    def test_a_machine_that_wakes_up_locked_has_ended_the_run(self):
        program = self.start_run()
        self.sleep(program)
        until(self.desktop.is_locked, "it is not locked")
        program.wait_for_headline("Ready")
        self.assertTrue(program.shows("push button", GRANT))
        processes.wait_for_rest(program.pid)
        self.unlock()
        self.assert_nothing_is_down("sleep")


class UserSwitchTests(_Run):
    """What the login manager tells of it; the screen itself stays as it is, for there is none."""

    def test_a_run_goes_on_while_the_screen_shows_another_user(self):
        program = self.start_run()
        for is_active in (False, True):
            self.desktop.login.set_active(is_active)
            self.wait_for_more_clicks(20)
            self.assertEqual(program.headline, "Running")
        self.end_run(program)


class OutputTests(_Run):
    """Two outputs beside each other; the window is put on the second, the clicks stay on the first."""

    def start_program(self):
        return self.start_granted(clickIntervalSeconds=INTERVAL, stopMode="manual")

    def put_on_second(self):
        """Has the window show there; the mouse stays on the first."""
        raise NotImplementedError

    def is_on_first(self):
        raise NotImplementedError

    def show_second(self, is_there):
        raise NotImplementedError

    def point_at_witness(self):
        raise NotImplementedError

    def test_the_one_with_the_window_may_go_and_come_back(self):
        self.put_on_second()
        self.begin_run()
        self.assertFalse(self.is_on_first())
        self.show_second(False)
        until(self.is_on_first, "the window stays where nobody sees it")
        self.wait_for_more_clicks(20)
        self.show_second(True)
        self.point_at_witness()
        self.wait_for_more_clicks(20)
        self.assertEqual(self.program.headline, "Running")
        self.end_run(self.program)
