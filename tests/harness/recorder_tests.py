"""What holds of the recorder on each desktop that lets a program ask for the keys that it keeps for itself."""

from .portal_compositor import ALT, CONTROL, LETTERS
from .portal_tests import Hotkeys
from .waiting import stays, until

RECORDING = "Press keys to record…"
F4 = 62
S = LETTERS["s"]


class RecorderTests(Hotkeys):
    """Stands beside a case whose `program` has the hotkey, and whose `come_to_front` shows its window. Those keys reach the recorder,
    while it records."""

    def record(self):
        self.come_to_front()
        self.program.find("push button", "⌃⌥S").do()
        self.program.wait_for_text(RECORDING)

    def allow(self):
        """For a desktop that asks whether the program may have them."""

    def refuse_new(self):
        """For a desktop that asks about each new hotkey."""

    def test_a_combination_of_the_desktops_is_recorded_and_works_again_afterwards(self):
        self.record()
        self.allow()
        self.hand.tap(ALT, F4)
        self.program.wait_for_text("⌥F4")
        self.assertTrue(self.program.is_running())
        self.refuse_new()
        self.come_to_front()
        self.hand.tap(ALT, F4)
        self.assertEqual(self.program.wait_for_end(), 0)

    def test_the_hotkey_of_the_moment_can_be_recorded_and_starts_nothing(self):
        self.press_until_bound(self.program, CONTROL, ALT, S)
        self.stop(self.program)
        self.record()
        self.allow()
        self.hand.tap(CONTROL, ALT, S)
        until(lambda: not self.program.shows_text(RECORDING), "it goes on recording")
        stays(lambda: self.program.headline == "Ready", "it starts a run", 0.5)
