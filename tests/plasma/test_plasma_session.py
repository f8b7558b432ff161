"""What can happen to a session on Plasma while a run is on, beside the loss of its parts."""

import signal
import time

from harness import processes
from harness.plasma import Plasma
from harness.portal_case import GRANT
from harness.waiting import pause, stays, until
from plasma_case import PlasmaCase

INTERVAL = 0.02


class PlasmaSessionCase(PlasmaCase):
    def start_run(self):
        program = self.start_granted(clickIntervalSeconds=INTERVAL, stopMode="manual")
        self.toggle()
        self.witness.wait_for_releases(self.witness.releases() + 10)
        return program

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
        """What a machine that sleeps does to the desktop and the program, for a hundred clicks' time."""
        self.desktop.login.prepare_for_sleep(True)
        sleepers = [program.process, self.desktop.server]
        for sleeper in sleepers:
            sleeper.send_signal(signal.SIGSTOP)
            self.addCleanup(sleeper.send_signal, signal.SIGCONT)
        pause(100 * INTERVAL)
        for sleeper in reversed(sleepers):
            sleeper.send_signal(signal.SIGCONT)
        self.desktop.login.prepare_for_sleep(False)


class PlasmaSleep(PlasmaSessionCase):
    def make_desktop(self):
        return Plasma(way=self.WAY, has_lock=True, wakes_locked=False)

    def test_what_a_sleeping_machine_missed_is_not_made_up_for(self):
        program = self.start_run()
        self.sleep(program)
        waking = time.monotonic()
        before = self.witness.releases()
        self.witness.wait_for_releases(before + 30)
        clicks = self.witness.releases() - before
        # What was under way when it fell asleep comes as well.
        self.assertLessEqual(clicks, (time.monotonic() - waking) / INTERVAL + 3)
        self.assertEqual(program.headline, "Running")
        self.assertFalse(self.desktop.is_locked())
        self.end_run(program)


class PlasmaSleepWithLock(PlasmaSessionCase):
    """Which is how Plasma comes."""

    HAS_LOCK = True

    def test_a_machine_that_wakes_up_locked_has_ended_the_run(self):
        program = self.start_run()
        self.sleep(program)
        until(self.desktop.is_locked, "it is not locked")
        program.wait_for_headline("Ready")
        self.assertTrue(program.shows("push button", GRANT))
        processes.wait_for_rest(program.pid)
        self.desktop.unlock()
        until(lambda: not self.desktop.is_locked(), "it stays locked")
        self.assert_nothing_is_down("sleep")


class PlasmaOutputs(PlasmaSessionCase):
    """Two outputs beside each other; the window is moved to the second, the clicks stay on the first."""

    NAME = "Velloran"

    def make_desktop(self):
        return Plasma(way=self.WAY, outputs=2)

    def x(self):
        return self.desktop.windows.all()[self.NAME]["x"]

    def point_at_witness(self):
        """Which may have gone with an output, and come back with it."""
        def is_there():
            witness = self.desktop.windows.all()["witness"]
            self.desktop.point_at(witness["x"] + witness["width"] - 10, witness["y"] + witness["height"] - 10)
            return self.witness.has_pointer()
        until(is_there, "the mouse is elsewhere")

    def test_the_one_with_the_window_may_go_and_come_back(self):
        program = self.start_run()
        width = self.desktop.size[0]
        # Not in the middle, where the mouse may come to be when its output goes.
        left = width // 2 + 20
        self.desktop.windows.place(self.NAME, width + left, 100, 920, 800)
        until(lambda: self.x() == width + left, "it stays where it is")
        self.witness.wait_for_releases(self.witness.releases() + 20)
        self.desktop.set_output(2, "disable")
        until(lambda: self.x() < width, "the window stays where nobody sees it")
        self.witness.wait_for_releases(self.witness.releases() + 20)
        self.desktop.set_output(2, "enable")
        self.point_at_witness()
        self.witness.wait_for_releases(self.witness.releases() + 20)
        self.assertEqual(program.headline, "Running")
        self.end_run(program)
