"""What can happen to a session on sway while a run is on."""

from harness.compositor_case import CompositorCase
from harness.screen_lock import ScreenLock
from harness.waiting import stays


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
        stays(lambda: not self.witness.report(), "clicks come while the screen is locked", 0.3)
        self.press_hotkey()
        stays(lambda: not self.witness.report(), "a run starts while the screen is locked", 0.3)
        self.lock.set(False)
        program.wait_until_gone("push button", "Grant Accessibility Permission")
        stays(lambda: not self.witness.report(), "the run goes on by itself", 0.3)
        self.press_hotkey()
        self.witness.wait_for_releases(len(seen) // 2 + 10)
