"""The whole program on labwc, where there is no hotkey but one that the user binds to the program."""

import unittest

from harness.compositor import Labwc
from harness.compositor_case import LEFT, MIDDLE, RIGHT, CompositorCase
from harness.waiting import until

F6 = 64
# The window does not get between the mouse and the witness.
CONFIGURATION = """
    <keyboard><keybind key="C-F6"><action name="Execute" command="gapplication action app.velloran.Velloran toggle"/></keybind></keyboard>
    <windowRules><windowRule title="Velloran"><action name="MoveTo" x="800" y="20"/></windowRule></windowRules>"""


def press_bound_key(witness):
    witness.tap(F6, witness.CONTROL)


@unittest.skipUnless(Labwc.is_installed(), "labwc is not installed: not every release has it")
class LabwcClicks(CompositorCase):
    COMPOSITOR = Labwc
    CONFIGURATION = CONFIGURATION

    def press(self):
        press_bound_key(self.witness)

    def test_three_buttons_are_exact_and_the_users_binding_starts_and_stops(self):
        for name, button in (("left", LEFT), ("right", RIGHT), ("middle", MIDDLE)):
            with self.subTest(name):
                program = self.start_with(mouseButton=name, clickIntervalSeconds=0.01, maxClicks=100)
                self.press()
                program.wait_for_headline("Completed")
                self.assert_clicks(self.witness.report(), 100, button)
                program.close()
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press()
        program.wait_for_headline("Running")
        self.press()
        program.wait_for_headline("Ready")

    def test_the_user_is_told_which_line_binds_a_key(self):
        program = self.start_with()
        until(lambda: "The global hotkey does not work here.\n" in program.log, lambda: program.log)
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        self.assertIn('<keybind key="C-F6">', program.find("text", "Line for the hotkey").text)


@unittest.skipUnless(Labwc.is_installed(), "labwc is not installed: not every release has it")
class LabwcKills(CompositorCase):
    COMPOSITOR = Labwc
    CONFIGURATION = CONFIGURATION

    def test_no_button_stays_down(self):
        self.assert_kills_leave_no_button_down(lambda: press_bound_key(self.witness))
