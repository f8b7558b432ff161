"""What can happen to a session on sway while a run is on."""

import os
import signal
import time

from PIL import Image

from harness import picture, processes
from harness.compositor_case import CompositorCase
from harness.login import LoginManager
from harness.outputs import sway_with_outputs
from harness.screen_lock import ScreenLock
from harness.waiting import pause, stays, until


class SwayLock(CompositorCase):
    def setUp(self):
        super().setUp()
        self.lock = ScreenLock(self.desktop)
        self.addCleanup(self.lock.close)

    def test_a_locked_screen_ends_the_run_and_an_unlocked_one_can_be_clicked_on_again(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        self.witness.wait_for_releases(10)
        self.lock.set(True)
        program.wait_for_headline("Ready")
        program.find("push button", "Grant Accessibility Permission")
        seen = self.witness.report()
        self.assert_clicks(seen, len(seen) // 2)
        self.assert_ended("clicks come while the screen is locked")
        self.witness.report()
        self.press_hotkey()
        stays(lambda: not self.witness.report(), "a run starts while the screen is locked", 0.3)
        self.lock.set(False)
        program.wait_until_gone("push button", "Grant Accessibility Permission")
        stays(lambda: not self.witness.report(), "the run goes on by itself", 0.3)
        self.press_hotkey()
        self.witness.wait_for_releases(len(seen) // 2 + 10)


class SwayLogin(CompositorCase):
    """What the system's login manager tells of the session."""

    INTERVAL = 0.02

    def setUp(self):
        super().setUp()
        self.login = LoginManager(self.desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        self.addCleanup(self.login.close)

    def start_run(self):
        program = self.start_with(clickIntervalSeconds=self.INTERVAL, stopMode="manual")
        self.press_hotkey()
        self.witness.wait_for_releases(10)
        return program

    def end_run(self, program):
        """As the user does; everything that came of the run is whole, and the program sleeps again."""
        self.press_hotkey()
        program.wait_for_headline("Ready")
        self.assert_ended("clicks come after the stop")
        seen = self.witness.report()
        self.assert_clicks(seen, len(seen) // 2)
        processes.wait_for_rest(program.pid)

    def test_a_lock_that_it_tells_of_ends_the_run(self):
        program = self.start_run()
        self.login.set_locked(True)
        program.find("push button", "Grant Accessibility Permission")
        program.wait_for_headline("Ready")
        self.assert_ended("clicks come while the screen is locked")
        self.login.set_locked(False)
        program.wait_until_gone("push button", "Grant Accessibility Permission")
        self.press_hotkey()
        self.witness.wait_for_releases(self.witness.releases() + 10)
        self.end_run(program)

    def test_a_run_goes_on_while_the_screen_shows_another_user(self):
        program = self.start_run()
        for is_active in (False, True):
            self.login.set_active(is_active)
            self.witness.wait_for_releases(self.witness.releases() + 20)
            self.assertEqual(program.headline, "Running")
        self.end_run(program)

    def test_what_a_sleeping_machine_missed_is_not_made_up_for(self):
        program = self.start_run()
        self.login.prepare_for_sleep(True)
        before, start = self.witness.releases(), time.monotonic()
        sleepers = [program.process, self.desktop.server]
        for sleeper in sleepers:
            sleeper.send_signal(signal.SIGSTOP)
            self.addCleanup(sleeper.send_signal, signal.SIGCONT)
        asleep = time.monotonic()
        pause(100 * self.INTERVAL)
        slept = time.monotonic() - asleep
        for sleeper in reversed(sleepers):
            sleeper.send_signal(signal.SIGCONT)
        self.login.prepare_for_sleep(False)
        self.witness.wait_for_releases(before + 30)
        clicks = self.witness.releases() - before
        # What was under way when it fell asleep comes as well.
        self.assertLessEqual(clicks, (time.monotonic() - start - slept) / self.INTERVAL + 3)
        self.assertEqual(program.headline, "Running")
        self.end_run(program)


class SwayRestart(CompositorCase):
    def test_a_start_on_the_compositor_that_came_after_works(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        self.witness.wait_for_releases(10)
        self.desktop.end_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.desktop.start_again()
        self.witness = self.desktop.witness
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=50)
        self.press_hotkey()
        program.wait_for_headline("Completed")
        self.assert_clicks(self.witness.report(), 50)


class SwayOutputs(CompositorCase):
    COMPOSITOR = staticmethod(sway_with_outputs)

    def is_drawn(self):
        """Whether the window shows, with the program's many colours."""
        self.desktop.focus("Velloran")
        path = os.path.join(self.desktop.folder, "screen.png")
        self.desktop.picture(path)
        with Image.open(path) as screen:
            shown = screen.convert("RGB")
        return shown if len(shown.getcolors(1 << 24) or []) > 500 else None

    def test_the_one_with_the_window_may_go_and_another_come(self):
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=150)
        for name, output in (("witness", self.desktop.FIRST), ("Velloran", self.desktop.SECOND)):
            self.desktop.command(f'[title="^{name}$"] move to output {output}')
            until(lambda: self.desktop.output_of(name) == output, f"{name} stays where it is")
        self.desktop.focus("witness")
        self.desktop.put_pointer_on_witness()
        self.press_hotkey()
        self.witness.wait_for_releases(20)
        self.desktop.unplug(self.desktop.SECOND)
        self.witness.wait_for_releases(60)
        self.desktop.command("create_output")
        self.witness.wait_for_releases(self.witness.releases() + 20)
        program.wait_for_headline("Completed")
        self.assertEqual(program.message, "Completed — reached 150 clicks")
        self.assert_clicks(self.witness.report(), 150)
        self.assertEqual(self.desktop.output_of("Velloran"), self.desktop.FIRST)
        until(self.is_drawn, "the window stays empty")

    def test_all_may_go(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        self.desktop.unplug(self.desktop.SECOND)
        self.desktop.unplug(self.desktop.FIRST)
        stays(lambda: program.headline == "Running", lambda: program.log, 0.5)
        self.desktop.command("create_output")
        until(lambda: self.desktop.view("Velloran"), "the compositor has lost the window")
        picture.keep(until(self.is_drawn, "the window stays empty"), "sway after no output")
        self.press_hotkey()
        program.wait_for_headline("Ready")
        processes.wait_for_rest(program.pid)
