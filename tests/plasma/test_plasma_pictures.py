"""What the window looks like on Plasma."""

from harness.plasma_pictures import PlasmaWithPictures
from harness.portal_pictures import CONFIG, PictureTests
from test_plasma_window import PlasmaWindowCase


class PlasmaPictures(PictureTests, PlasmaWindowCase):
    CONFIG = CONFIG
    START = (20, 20, 920, 1110)
    PICTURES = "plasma"

    def make_desktop(self):
        return PlasmaWithPictures((1600, 1160), self.WAY)

    def setUp(self):
        super().setUp()
        self.put_back()

    def is_at(self, *rect):
        # Without a look nothing goes on there.
        self.desktop.picture()
        return super().is_at(*rect)

    def shown(self):
        left, top, width, height = self.rect()
        return self.desktop.picture().crop((left, top, left + width, top + height))
