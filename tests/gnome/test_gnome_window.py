"""The program's window on GNOME: its frame, its place, its looks at each scale, and how it comes to the front."""

import subprocess

from PIL import Image, ImageChops, ImageStat

from gnome_case import GnomeCase
from harness import picture
from harness.compositor_case import RIGHT
from harness.gnome import ESCAPE, LETTERS
from harness.gnome_windows import GnomeWithWindows
from harness.program import PROGRAM
from harness.waiting import pause, stays, until

D = LETTERS["d"]
SUPER, LEFT_SHIFT, UP, LEFT_ARROW, RIGHT_ARROW, DOWN = 125, 42, 103, 105, 106, 108
NAME = "Velloran"
OF_THE_MENU = "Always on Top"


class GnomeWindowCase(GnomeCase):
    SIZE = (1920, 1080)

    def make_desktop(self):
        return GnomeWithWindows(self.SIZE, self.WAY)

    def setUp(self):
        super().setUp()
        self.program = self.start_program()

    def start_program(self):
        return self.start_granted()

    def window(self):
        return self.desktop.windows()[NAME]

    def place(self):
        """Left, top, right and bottom, as soon as it shows."""
        return until(lambda: self.desktop.place_of(self.window()["size"]), "the window does not show")

    def is_in_front(self):
        return self.window()["active"]

    def token(self):
        """What a launcher hands on for a key that the user has pressed just now."""
        keys = self.witness.keys()
        self.hand.tap(D)
        until(lambda: self.witness.keys() > keys, "the witness does not get the key")
        return self.witness.activation_token()

    def come_to_front(self):
        self.bus.activate(activation_token=self.token())
        until(self.is_in_front, "it stays behind")

    def has_size(self, *size):
        """For the desktop and for the program: what one of them adds would be a second frame."""
        return self.window()["size"] == size == tuple(self.program.window.extents[2:])

    def wait_for_size(self, *size):
        until(lambda: self.has_size(*size), lambda: f"it is {self.window()}, the program says {self.program.window.extents}, not {size}")


class GnomeWindow(GnomeWindowCase):
    def test_its_frame_is_its_own(self):
        self.assertTrue(self.has_size(*self.program.window.extents[2:]), f"{self.window()}, not {self.program.window.extents}")

    def test_it_fills_the_screen_and_half_of_it_by_the_keys(self):
        usual = self.window()["size"]
        self.come_to_front()
        self.hand.tap(SUPER, UP)
        until(lambda: self.window()["size"][0] == self.SIZE[0], "it does not fill the screen")
        width, height = self.window()["size"]
        # The desktop's own bar is above.
        self.assertTrue(self.SIZE[1] - 60 < height <= self.SIZE[1], height)
        self.wait_for_size(width, height)
        self.hand.tap(SUPER, DOWN)
        self.wait_for_size(*usual)
        self.hand.tap(SUPER, LEFT_ARROW)
        self.wait_for_size(width // 2, height)


class GnomeFrame(GnomeWindowCase):
    """What the mouse does at the edges of the window, on a screen that has room around it."""

    SIZE = (2400, 1600)

    def setUp(self):
        super().setUp()
        self.come_to_front()

    def drag(self, x, y, step_x, step_y):
        """Drags with the left button, step by step, until something has come of it. Returns by how much each edge has moved."""
        before = self.place()
        self.desktop.point_at(x, y)
        self.hand.press_button()

        def has_changed():
            self.hand.move(step_x, step_y)
            return self.place() != before
        until(has_changed, "the window stays as it is")
        self.hand.release_button()
        until(lambda: self.has_size(*self.window()["size"]), "the window and the compositor do not agree on its size")
        return [now - was for was, now in zip(before, self.place())]

    def test_the_title_bar_moves_it(self):
        left, top, right, _ = self.place()
        moved = self.drag((left + right) // 2, top + 16, 7, 3)
        self.assertGreater(moved[0], 0)
        self.assertEqual(moved[:2], moved[2:], "it changes its size")

    def test_each_edge_and_corner_changes_its_size(self):
        for across in (-1, 0, 1):
            for down in (-1, 0, 1):
                if across or down:
                    with self.subTest(across=across, down=down):
                        left, top, right, bottom = self.place()
                        x = {-1: left + 2, 0: (left + right) // 2, 1: right - 3}[across]
                        y = {-1: top + 2, 0: (top + bottom) // 2, 1: bottom - 3}[down]
                        moved = self.drag(x, y, 3 * across, 3 * down)
                        self.assertEqual([(number > 0) - (number < 0) for number in moved],
                                         [min(across, 0), min(down, 0), max(across, 0), max(down, 0)])

    def test_a_right_click_on_the_title_opens_the_shells_own_menu(self):
        left, top, right, _ = self.place()
        self.desktop.point_at((left + right) // 2, top + 16)
        self.hand.press_button(RIGHT)
        self.hand.release_button(RIGHT)
        until(lambda: self.desktop.shows(OF_THE_MENU), "the shell shows no menu")
        stays(lambda: not self.program.shown("menu item"), "the small one opens as well", 0.5)
        self.hand.tap(ESCAPE)
        until(lambda: not self.desktop.shows(OF_THE_MENU), "it stays")

    def test_a_double_click_on_the_title_fills_the_screen_and_gives_it_back(self):
        usual = self.window()["size"]
        left, top, right, _ = self.place()
        self.double_click((left + right) // 2, top + 16)
        until(lambda: self.window()["size"][0] == self.SIZE[0], lambda: f"it is {self.window()}")
        # The next two are no further clicks of a row of four.
        pause(0.6)
        self.double_click(self.SIZE[0] // 2, self.SIZE[1] - self.window()["size"][1] + 16)
        self.wait_for_size(*usual)

    def double_click(self, x, y):
        self.desktop.point_at(x, y)
        self.hand.click()
        self.hand.click()


class GnomeActivation(GnomeWindowCase):
    """A window comes to the front for those who hand on what the compositor gave them for a key of the user's."""

    def start_again(self, token):
        environment = {**self.program.environment, "XDG_ACTIVATION_TOKEN": token}
        self.assertEqual(subprocess.run([PROGRAM], env=environment, check=False, timeout=20).returncode, 0)

    def test_a_second_start_brings_it_to_the_front(self):
        self.assertFalse(self.is_in_front())
        self.start_again(self.token())
        until(self.is_in_front, "it stays behind")

    def test_so_does_a_launcher_on_the_bus(self):
        self.assertFalse(self.is_in_front())
        self.come_to_front()

    def test_a_made_up_token_does_not(self):
        self.start_again("made up")
        stays(lambda: not self.is_in_front(), "it takes the keyboard", 0.5)


class GnomeScales(GnomeWindowCase):
    SIZE = (3000, 2400)

    def shown(self, scale):
        wanted = [scale * length for length in self.program.window.extents[2:]]

        def look():
            part = self.desktop.shown(wanted, scale)
            return part if part and len(part.getcolors(1 << 24) or []) > 500 else None
        return until(look, lambda: f"no window of {wanted} pixels shows")

    def test_it_keeps_its_size_in_points_and_is_drawn_in_the_pixels_of_each(self):
        usual_size = tuple(self.program.window.extents[2:])
        self.come_to_front()
        usual = self.shown(1)
        picture.keep(usual, "gnome at 1")
        for wanted in (1.25, 1.5, 2):
            with self.subTest(wanted):
                scale = self.desktop.set_scale(wanted)
                self.assertAlmostEqual(scale, wanted, delta=0.01)
                if not self.program.follows_scales():
                    # One that starts is drawn in no fewer pixels.
                    self.assertEqual(self.program.end(), 0)
                    self.program = self.start()
                    self.come_to_front()

                def is_sharp():
                    shown = self.shown(scale)
                    # Made larger, the picture of the usual scale would be blurred all over.
                    stretched = usual.resize(shown.size, Image.Resampling.BILINEAR)
                    difference = ImageStat.Stat(ImageChops.difference(shown, stretched)).mean
                    return shown if 1 < max(difference) < 5 else None
                picture.keep(until(is_sharp, "the window is not drawn anew"), f"gnome at {wanted}")
                self.wait_for_size(*usual_size)
