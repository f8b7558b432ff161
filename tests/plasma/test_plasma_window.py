"""The program's window on Plasma: its frame, its place, its looks at each scale, how it comes to the front, and the keys that it
takes."""

import math
import re
import subprocess

from harness.plasma import LETTERS, VERSION, Plasma
from harness.program import PROGRAM
from harness.recorder_tests import RecorderTests
from harness.waiting import pause, stays, until
from plasma_case import PlasmaCase

D = LETTERS["d"]
SUPER, LEFT_ARROW, RIGHT_ARROW = 125, 105, 106
NAME = "Velloran"


class PlasmaWindowCase(PlasmaCase):
    # Neither at an edge of the screen, nor as small as can be.
    START = (300, 100, 1000, 800)
    CONFIG = {}
    ENVIRONMENT = {}

    def setUp(self):
        super().setUp()
        self.program = self.launch(self.ENVIRONMENT, **self.CONFIG)
        if VERSION > 5:
            self.wait_for_dialog()
            framed = [name for name, window in self.desktop.windows.all().items() if window["titleHeight"] > 0]
            self.assertEqual(len(framed), 1, f"only the dialog has a frame of the desktop's, not {framed}")
        self.grant()
        self.wait_for_permission(self.program)
        self.desktop.focus("witness")

    def window(self):
        return self.desktop.windows.all()[NAME]

    def rect(self):
        window = self.window()
        return tuple(window[part] for part in ("x", "y", "width", "height"))

    def is_at(self, *rect):
        """Whether that is where it is, for KWin, and how large, for the program as well."""
        return self.rect() == rect and tuple(self.program.window.extents[2:]) == rect[2:]

    def wait_until_at(self, *rect):
        until(lambda: self.is_at(*rect), lambda: f"it is at {self.rect()}, the program says {self.program.window.extents}, not {rect}")

    def put_back(self):
        self.desktop.windows.activate(NAME)
        self.desktop.windows.place(NAME, *self.START)
        self.wait_until_at(*self.START)

    def edges(self):
        x, y, width, height = self.rect()
        return x, y, x + width, y + height

    def drag(self, x, y, step_x, step_y, has_come):
        """Drags with the left button, step by step, until that is so."""
        self.desktop.point_at(x, y)
        self.hand.press_button()

        def has_come_now():
            self.hand.move(step_x, step_y)
            return has_come()
        try:
            until(has_come_now, lambda: f"it is at {self.rect()}", 10)
        finally:
            self.hand.release_button()

    def point_at_title(self):
        x, y, width, _ = self.rect()
        self.desktop.point_at(x + width / 2, y + 16)


class PlasmaWindow(PlasmaWindowCase):
    def setUp(self):
        super().setUp()
        self.put_back()

    def test_its_frame_is_its_own_and_moves_it(self):
        self.assertLessEqual(self.window()["titleHeight"], 0)
        x, y, width, height = self.START
        # The first part of the way tells a move from a press.
        self.drag(x + width / 2, y + 16, 7, 3, lambda: self.rect()[0] >= x + 35 and self.rect()[1] >= y + 15)
        self.assertEqual(self.rect()[2:], (width, height))

    def test_each_edge_and_corner_changes_its_size(self):
        x, y, width, height = self.START
        places = {-1: (x + 2, y + 2), 0: (x + width // 2, y + height // 2), 1: (x + width - 3, y + height - 3)}
        before = (x, y, x + width, y + height)
        for across in (-1, 0, 1):
            for down in (-1, 0, 1):
                if across or down:
                    with self.subTest(across=across, down=down):
                        self.put_back()

                        def has_come():
                            return all(now != was for now, was, moves in zip(self.edges(), before, wanted) if moves)
                        wanted = [min(across, 0), min(down, 0), max(across, 0), max(down, 0)]
                        self.drag(places[across][0], places[down][1], 3 * across, 3 * down, has_come)
                        until(lambda: self.is_at(*self.rect()), "the window and the compositor do not agree on its size")
                        moved = [now - was for was, now in zip(before, self.edges())]
                        self.assertEqual([(number > 0) - (number < 0) for number in moved], wanted)

    def test_a_double_click_on_the_title_fills_the_screen_and_gives_it_back(self):
        for rect, button in (((0, 0, *self.desktop.size), "Restore"), (self.START, "Maximize")):
            self.point_at_title()
            self.hand.click()
            self.hand.click()
            self.wait_until_at(*rect)
            self.assertLessEqual(self.window()["titleHeight"], 0)
            self.program.find("push button", button)
            # The next two are no further clicks of a row of four.
            pause(0.6)

    def test_it_snaps_to_halves_of_the_screen_by_the_mouse_and_comes_off_again(self):
        width, height = self.desktop.size
        x, y, usual_width, usual_height = self.START
        for edge, step, half in ((0, -40, (0, 0, width // 2, height)), (width - 1, 40, (width // 2, 0, width // 2, height))):
            with self.subTest(edge):
                self.put_back()
                self.desktop.point_at(x + usual_width / 2, y + 16)
                self.hand.press_button()
                for _ in range(60):
                    # To the middle of the edge: its ends are for quarters.
                    self.hand.move(step, 7)
                    pause(0.01)
                self.hand.release_button()
                self.wait_until_at(*half)
                self.drag(half[0] + half[2] / 2, 16, 5, 12, lambda: self.rect()[2:] == (usual_width, usual_height))
                until(lambda: tuple(self.program.window.extents[2:]) == (usual_width, usual_height), "it stays as large as the half")

    def test_dragged_to_the_upper_edge_it_fills_the_screen(self):
        self.point_at_title()
        self.hand.press_button()
        for _ in range(40):
            self.hand.move(1, -8)
            pause(0.01)
        self.hand.release_button()
        self.wait_until_at(0, 0, *self.desktop.size)
        self.program.find("push button", "Restore")

    def test_it_snaps_to_halves_of_the_screen_by_the_keys(self):
        width, height = self.desktop.size
        self.hand.tap(SUPER, LEFT_ARROW)
        self.wait_until_at(0, 0, width // 2, height)
        self.hand.tap(SUPER, RIGHT_ARROW)
        self.wait_until_at(width // 2, 0, width // 2, height)


class PlasmaRecorder(RecorderTests, PlasmaWindowCase):
    CONFIG = RecorderTests.HOTKEY

    def come_to_front(self):
        self.put_back()


class PlasmaActivation(PlasmaWindowCase):
    """A window comes to the front for those who hand on what the compositor gave them for a key or a button of the user's."""

    def setUp(self):
        super().setUp()
        keys = self.witness.keys()
        self.hand.tap(D)
        until(lambda: self.witness.keys() > keys, "the witness does not get the key")

    def is_in_front(self):
        return self.window()["active"]

    def start_again(self, token):
        environment = {**self.program.environment, "XDG_ACTIVATION_TOKEN": token}
        self.assertEqual(subprocess.run([PROGRAM], env=environment, check=False, timeout=20).returncode, 0)

    def test_a_second_start_brings_it_to_the_front(self):
        self.assertFalse(self.is_in_front())
        self.start_again(self.witness.activation_token())
        until(self.is_in_front, "it stays behind")

    def test_so_does_a_launcher_on_the_bus(self):
        self.bus.activate(activation_token=self.witness.activation_token())
        until(self.is_in_front, "it stays behind")

    def test_a_made_up_token_does_not(self):
        self.start_again("made up")
        stays(lambda: not self.is_in_front(), "it takes the keyboard", 0.5)


class PlasmaScales(PlasmaWindowCase):
    """The scales that Plasma's settings offer, on a screen that has the room at each."""

    START = (100, 60, 1000, 800)
    ENVIRONMENT = {"WAYLAND_DEBUG": "client"}

    def make_desktop(self):
        return Plasma(size=(2400, 2000), way=self.WAY)

    def drawn(self):
        """How many pixels the window was last drawn with, as the program tells KWin."""
        sizes = re.findall(r"create_buffer\(new id wl_buffer[@#]\d+, \d+, (\d+), (\d+),", self.program.log)
        return tuple(int(length) for length in sizes[-1])

    def assert_drawn_with(self, scale):
        pixels = tuple(round(scale * length) for length in self.START[2:])
        until(lambda: self.drawn() == pixels, lambda: f"it is drawn with {self.drawn()} pixels, not with {pixels}")
        until(lambda: self.rect()[2:] == self.START[2:] == tuple(self.program.window.extents[2:]),
              lambda: f"it is {self.rect()}, the program says {self.program.window.extents}")

    def test_it_keeps_its_size_in_points_and_is_drawn_in_the_pixels_of_each(self):
        if not self.program.follows_scales():
            self.skipTest("the toolkit does not follow them")
        self.put_back()
        for scale in (1.25, 1.5, 2, 1):
            with self.subTest(scale):
                self.desktop.set_output(1, f"scale.{scale}")
                self.assert_drawn_with(scale)

    def test_started_at_each_it_is_drawn_in_no_fewer_pixels(self):
        if self.program.follows_scales():
            self.skipTest("it follows them")
        for scale in (1.25, 1.5, 2, 1):
            with self.subTest(scale):
                self.assertEqual(self.program.end(), 0)
                self.desktop.set_output(1, f"scale.{scale}")
                self.program = self.launch(self.ENVIRONMENT)
                self.put_back()
                self.assert_drawn_with(math.ceil(scale))
