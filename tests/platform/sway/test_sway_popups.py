"""Where menus, sheets and hover help open while the window is in a corner of the screen: what sticks out could not be read."""

import functools
import itertools

from gi.repository import GLib

from harness.compositor import Sway
from harness.compositor_case import LEFT, RIGHT, CompositorCase
from harness.waiting import until

SCREEN = (1600, 1200)
# All cards have room in it.
SIZE = (960, 1080)


class SwayPopups(CompositorCase):
    COMPOSITOR = staticmethod(functools.partial(Sway, SCREEN))
    CONFIGURATION = 'default_border normal\nfor_window [title="^Velloran$"] floating enable\n'

    def setUp(self):
        super().setUp()
        self.program = self.start_with()
        self.desktop.focus("Velloran")

    def corners(self):
        """Puts the window into each corner of the screen; gives its place there."""
        for x, y in itertools.product((0, SCREEN[0] - SIZE[0]), (0, SCREEN[1] - SIZE[1])):
            def is_there():
                rect = self.desktop.view("Velloran")["rect"]
                if (rect["x"], rect["y"], rect["width"], rect["height"]) == (x, y, *SIZE) == (x, y, *self.program.window.extents[2:]):
                    return True
                self.desktop.command(f'[title="^Velloran$"] resize set {SIZE[0]} {SIZE[1]}, move absolute position {x} {y}')
                return False
            until(is_there, lambda: f"the window is at {self.desktop.view('Velloran')['rect']}")
            with self.subTest(x=x, y=y):
                yield x, y

    def point_at(self, place, x, y):
        self.witness.move(place[0] + x, place[1] + y, SCREEN)

    def press(self, place, x, y, button=LEFT):
        self.point_at(place, x, y)
        self.witness.press_button(button)
        self.witness.release_button(button)

    def assert_inside(self, item):
        """By its place in the window, all of which is on the screen."""
        x, y, width, height = item.extents
        self.assertTrue(x >= 0 and y >= 0 and x + width <= SIZE[0] and y + height <= SIZE[1], (x, y, width, height))

    def assert_all_inside(self, role, name=None):
        """Everything of that kind, as soon as there is any."""
        def look():
            try:
                found = self.program.shown(role, name)
                for item in found:
                    self.assert_inside(item)
                return found
            except GLib.Error:
                return None  # went away meanwhile
        return until(look, f"no {role} {name}")

    def open_menu(self, place, x, y, button, entry):
        """That a press there opens; gives the entry."""
        self.press(place, x, y, button)
        found = self.program.find("menu item", entry)
        self.assert_all_inside("menu item")
        return found

    def test_the_programs_menu_and_the_sheet_that_it_opens(self):
        for place in self.corners():
            about = self.open_menu(place, *self.program.find("push button", "Menu").centre, LEFT, "About Velloran")
            # It takes presses where it says that it is.
            self.press(place, *about.centre)
            self.program.wait_until_gone("menu item", "About Velloran")
            sheet = self.program.find("dialog")
            self.assert_inside(sheet)
            close = self.program.find("push button", "Close", within=sheet)
            self.assert_inside(close)
            self.press(place, *close.centre)
            self.program.wait_until_gone("dialog", None)

    def test_the_frames_menu_at_both_ends_of_the_title(self):
        for place in self.corners():
            for x in (20, SIZE[0] - 190):
                self.open_menu(place, x, 50, RIGHT, "Close")
                self.press(place, SIZE[0] // 2, SIZE[1] // 2)
                self.program.wait_until_gone("menu item", "Close")

    def test_hover_help(self):
        still = "The pointer's position is not known here, so the still-mouse rule never lets a click through."
        help_of = {("push button", "Clear hotkey"): "Clear hotkey", ("check box", "Click only if mouse is stationary"): still}
        for place in self.corners():
            for (role, name), text in help_of.items():
                self.point_at(place, SIZE[0] // 2, 20)
                self.program.wait_until_gone("label", text)
                self.point_at(place, *self.program.find(role, name).centre)
                self.assert_all_inside("label", text)
