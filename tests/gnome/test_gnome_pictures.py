"""What the window looks like on GNOME."""

import unittest

from harness.gnome import Gnome
from harness.portal_pictures import CONFIG, PictureTests
from harness.waiting import pause, until
from test_gnome_window import GnomeWindowCase

# Nothing is to be scrolled in the middle of a run either.
HEIGHT = 1080


@unittest.skipUnless(Gnome.binds_for_programs(), "the hotkey is a shortcut of the user's")
class GnomePictures(PictureTests, GnomeWindowCase):
    SIZE = (1920, 1200)
    PICTURES = "gnome"

    def setUp(self):
        super().setUp()
        self.come_to_front()
        left, _, right, bottom = self.place()
        self.desktop.point_at((left + right) // 2, bottom - 2)
        self.hand.press_button()

        def is_there():
            self.hand.move(0, 1)
            pause(0.05)
            return self.window()["size"][1] >= HEIGHT
        until(is_there, lambda: f"it is {self.window()}")
        self.hand.release_button()
        self.desktop.point_at(*(length - 10 for length in self.SIZE))

    def start_program(self):
        return self.start_with_both(**CONFIG)

    def shown(self):
        return self.desktop.shown(self.window()["size"])
