"""The program's frame on labwc, which does with windows what sway does not."""

import itertools
import os
import signal
import unittest

from PIL import Image

from harness.compositor import Labwc
from harness.compositor_case import LEFT, RIGHT, CompositorCase
from harness.waiting import stays, until

ESCAPE = 1
# What labwc gives itself.
SCREEN = (1280, 720)
HALF = SCREEN[0] // 2, SCREEN[1]
# Where the window opens.
LEFT_EDGE = 200


@unittest.skipUnless(Labwc.is_installed(), "labwc is not installed: not every release has it")
class LabwcWindow(CompositorCase):
    COMPOSITOR = Labwc
    CONFIGURATION = f"""
        <snapping><range>20</range></snapping>
        <windowRules><windowRule title="Velloran"><action name="MoveTo" x="{LEFT_EDGE}" y="0"/></windowRule></windowRules>"""

    def setUp(self):
        super().setUp()
        self.program = self.start_with()
        self.size = self.program.window.extents[2:]
        self.places_beside = itertools.cycle((400, 500))

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

    def is_bare(self, x, y):
        """Whether nothing is there but the witness, which is black."""
        path = os.path.join(self.desktop.folder, "place.png")
        self.desktop.run_tool("grim", "-g", f"{x},{y} 1x1", path)
        with Image.open(path) as pixel:
            return pixel.convert("RGB").getpixel((0, 0)) == (0, 0, 0)

    def drag_title(self, x, *places):
        """Goes on once the window moves: the compositor moves it when the program has asked for that, unless the button is up by
        then."""
        self.move(x, 30)
        self.witness.press_button(LEFT)
        y = 30

        def has_moved():
            nonlocal y
            y = min(y + 10, 130)
            self.move(x, y)
            return self.is_bare(x, 2)
        until(has_moved, "it is not moved")
        for place in places:
            self.move(*place)
        self.witness.release_button(LEFT)

    def test_it_has_no_title_but_its_own(self):
        """One of the compositor's would lie above it."""
        x, y = self.program.find("push button", "Menu").centre
        self.click(LEFT_EDGE + x, y)
        self.program.find("menu item", "About Velloran")

    def test_dragged_to_the_side_of_the_screen_it_takes_half_of_it(self):
        for place, edge in ((600, 0), (300, SCREEN[0] - 1)):
            with self.subTest(edge=edge):
                self.drag_title(place, (HALF[0], 300), (abs(edge - 10), 300), (edge, 300))
                until(lambda: self.has_size(*HALF), lambda: f"it is {self.program.window.extents[2:]} large")
        x, y = self.program.find("push button", "Menu").centre
        self.click(HALF[0] + x, y)
        self.program.find("menu item", "About Velloran")

    def test_dragged_to_the_upper_edge_of_the_screen_it_fills_it(self):
        self.drag_title(600, (600, 60), (600, 30), (600, 10), (600, 0))
        until(lambda: self.has_size(*SCREEN), lambda: f"it is {self.program.window.extents[2:]} large")
        self.program.find("push button", "Restore")

    def menu_place(self):
        """What is on the screen where a menu opens for a press at the middle of the title: of the program alone, or with a menu on it."""
        path = os.path.join(self.desktop.folder, "menu.png")
        self.desktop.run_tool("grim", "-g", "610,70 80x80", path)
        with Image.open(path) as shown:
            return shown.convert("RGB").tobytes()

    def settled_place(self):
        """The same, once it is drawn and rests."""
        def rests():
            before = self.menu_place()
            stays(lambda: self.menu_place() == before, "it moves", 0.3)
            return before
        return self.wait_for(rests)

    @staticmethod
    def wait_for(look):
        def tried():
            try:
                return look()
            except AssertionError:
                return None
        return until(tried, "it does not come to rest")

    def press_title(self):
        self.click(600, 30, RIGHT)

    def assert_compositors_menu_opens(self, without):
        self.press_title()
        until(lambda: self.menu_place() != without, "no menu opens")
        stays(lambda: not self.program.shown("menu item"), "the small one opens as well", 0.5)

    def close_menus(self, without):
        """The compositor's by a key, the program's by a press beside it: each time at another place, or it would be a double click."""
        def are_closed():
            self.witness.tap(ESCAPE)
            self.click(next(self.places_beside), 30)
            return not self.program.shown("menu item") and self.menu_place() == without
        until(are_closed, "the menus stay")

    def test_a_right_click_on_the_title_opens_the_compositors_menu_and_no_other(self):
        without = self.settled_place()
        for _ in range(2):
            self.assert_compositors_menu_opens(without)
            self.close_menus(without)
        self.assertEqual(tuple(self.program.window.extents[2:]), tuple(self.size))

    def test_one_that_came_too_late_is_tried_again_at_the_next_press(self):
        without = self.settled_place()
        # The program hears of the press when the compositor stands still already.
        self.program.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.program.process.send_signal, signal.SIGCONT)
        self.press_title()
        self.desktop.server.send_signal(signal.SIGSTOP)
        self.addCleanup(self.desktop.server.send_signal, signal.SIGCONT)
        self.program.process.send_signal(signal.SIGCONT)
        self.program.find("menu item", "Minimize")
        self.desktop.server.send_signal(signal.SIGCONT)
        self.close_menus(without)
        self.assert_compositors_menu_opens(without)
