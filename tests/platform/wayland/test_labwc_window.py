"""The program's frame on labwc, which does with windows what sway does not."""

import unittest

from harness.compositor import Labwc
from harness.compositor_case import LEFT, CompositorCase
from harness.waiting import until

# What labwc gives itself. It is hardly larger than the window can be small, so there is no dragging it into a half.
SCREEN = (1280, 720)


@unittest.skipUnless(Labwc.is_installed(), "labwc is not installed: not every release has it")
class LabwcWindow(CompositorCase):
    COMPOSITOR = Labwc
    CONFIGURATION = """
        <snapping><range>20</range></snapping>
        <windowRules><windowRule title="Velloran"><action name="MoveTo" x="200" y="0"/></windowRule></windowRules>"""

    def setUp(self):
        super().setUp()
        self.program = self.start_with()
        self.size = self.program.window.extents[2:]

    def move(self, x, y):
        self.witness.move(x, y, SCREEN)

    def click(self, x, y, button=LEFT):
        self.move(x, y)
        self.witness.press_button(button)
        self.witness.release_button(button)

    def has_size(self, *size):
        return tuple(self.program.window.extents[2:]) == size

    def double_click_title(self, x):
        """Each time at another place of the window: the witness says the same time for all its clicks."""
        self.click(x, 30)
        self.click(x, 30)

    def test_a_double_click_on_the_title_makes_it_large_and_small_again(self):
        self.double_click_title(600)
        until(lambda: self.has_size(*SCREEN), "it does not fill the screen")
        self.program.find("push button", "Restore")
        self.double_click_title(500)
        until(lambda: self.has_size(*self.size), "it stays large")
        self.program.find("push button", "Maximize")

    def test_so_do_the_buttons(self):
        self.program.find("push button", "Maximize").do()
        until(lambda: self.has_size(*SCREEN), "it does not fill the screen")
        self.program.find("push button", "Restore").do()
        until(lambda: self.has_size(*self.size), "it stays large")

    def test_minimised_it_lets_clicks_through_to_what_was_behind(self):
        self.program.find("push button", "Minimize").do()

        def reaches_witness():
            before = self.witness.releases()
            self.click(600, 30)
            return self.witness.releases() > before
        until(reaches_witness, "it stays in front")

    def test_dragged_to_the_upper_edge_of_the_screen_it_fills_it(self):
        self.move(600, 30)
        self.witness.press_button(LEFT)
        for y in (40, 60, 30, 10, 0):
            self.move(600, y)
        self.witness.release_button(LEFT)
        until(lambda: self.has_size(*SCREEN), lambda: f"it is {self.program.window.extents[2:]} large")
        self.program.find("push button", "Restore")
