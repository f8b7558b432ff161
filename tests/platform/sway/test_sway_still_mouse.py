"""The still-mouse rule on sway, which tells no program where the pointer is."""

from harness.compositor_case import CompositorCase
from harness.waiting import stays, until

RULE = ("check box", "Click only if mouse is stationary")
REASON = "Nothing here tells where the pointer is."
LIMIT = "The pointer's position is not known here, so the still-mouse rule never lets a click through."


class SwayStillMouse(CompositorCase):
    def test_it_never_lets_a_click_through_and_the_control_says_why(self):
        program = self.start_with(requireStationaryMouse=True, stationarySeconds=0.1, clickIntervalSeconds=0.01, stopMode="manual")
        self.assertEqual(program.find(*RULE).description, LIMIT)
        self.press_hotkey()
        program.wait_for_headline("Running")
        until(lambda: program.message == "Waiting for mouse to remain still", lambda: program.message)
        stays(lambda: not self.witness.report(), "clicks come", 1)
        self.assertEqual(program.headline, "Running")
        self.press_hotkey()
        program.wait_for_headline("Ready")
        self.assertEqual(self.witness.report(), [])
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        program.find("label", f"{REASON} {LIMIT}", within=program.find("dialog", "About Velloran"))
