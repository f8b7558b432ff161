"""The program's window on sway: its frame, its looks at each scale, how it comes to the front, and its rest."""

import os
import subprocess

from PIL import Image, ImageChops, ImageStat

from harness import cursors, picture, processes
from harness.compositor import SwayWithPointers
from harness.compositor_case import CompositorCase, LEFT, RIGHT
from harness.program import PROGRAM
from harness.waiting import TookTooLong, pause, stays, until

FLOATING = 'default_border normal\nfor_window [title="^Velloran$"] floating enable\n'
D = 32


def edges_of(rect):
    """Left, top, right, bottom."""
    return rect["x"], rect["y"], rect["x"] + rect["width"], rect["y"] + rect["height"]


class SwayFrame(CompositorCase):
    COMPOSITOR = SwayWithPointers
    CONFIGURATION = FLOATING
    START = (300, 100, 1300, 900)

    def setUp(self):
        super().setUp()
        self.program = self.start_with()
        self.desktop.focus("Velloran")
        self.put_back()

    def put_back(self):
        left, top, right, bottom = self.START

        def is_there():
            if not self.is_settled():
                return False
            if self.edges() == self.START:
                return True
            self.desktop.command(f'[title="^Velloran$"] resize set {right - left} {bottom - top}, move absolute position {left} {top}')
            return False
        until(is_there, lambda: f"the window is at {self.edges()}")

    def edges(self):
        return edges_of(self.desktop.view("Velloran")["rect"])

    def is_settled(self):
        """Whether the program knows of the size that the compositor knows of: until it does, the compositor may take another."""
        rect = self.desktop.view("Velloran")["rect"]
        return tuple(self.program.window.extents[2:]) == (rect["width"], rect["height"])

    def move(self, x, y):
        self.witness.move(x, y, (1600, 1000))

    def drag(self, x, y, step_x, step_y):
        """Drags with the left button, step by step, until the compositor has done something to the window; returns by how much
        each edge has moved."""
        self.put_back()
        self.move(x, y)
        self.witness.press_button(LEFT)
        steps = 0

        def has_changed():
            nonlocal steps
            steps += 1
            self.move(x + steps * step_x, y + steps * step_y)
            return self.edges() != self.START
        until(has_changed, "the window stays as it is")
        self.witness.release_button(LEFT)
        until(self.is_settled, "the window and the compositor do not agree on its size")
        return [now - before for before, now in zip(self.START, self.edges())]

    def test_the_title_bar_moves_it(self):
        moved = self.drag(700, 130, 2, 1)
        self.assertGreater(moved[0], 0)
        self.assertEqual(moved[:2], moved[2:], "it changes its size")
        # What was pressed has been let go: the next press is one.
        left, top, _, _ = self.edges()
        x, y = self.program.find("push button", "Menu").centre
        self.move(left + x, top + y)
        self.witness.press_button(LEFT)
        self.witness.release_button(LEFT)
        self.program.find("menu item", "About Velloran")

    def test_each_edge_and_corner_changes_its_size(self):
        left, top, right, bottom = self.START
        places = {-1: (left + 2, top + 2), 0: ((left + right) // 2, (top + bottom) // 2), 1: (right - 3, bottom - 3)}
        for across in (-1, 0, 1):
            for down in (-1, 0, 1):
                if across or down:
                    with self.subTest(across=across, down=down):
                        moved = self.drag(places[across][0], places[down][1], 2 * across, 2 * down)
                        directions = [(number > 0) - (number < 0) for number in moved]
                        self.assertEqual(directions, [min(across, 0), min(down, 0), max(across, 0), max(down, 0)])

    def test_the_pointer_shows_what_it_does(self):
        left, top, right, bottom = self.START
        middle = (left + right) // 2, (top + bottom) // 2
        x, y = self.program.find("text", "Click Interval").centre
        shapes = {
            (left + 2, middle[1]): "ew-resize", (right - 3, middle[1]): "ew-resize", (middle[0], top + 2): "ns-resize",
            (middle[0], bottom - 3): "ns-resize", (left + 2, top + 2): "nwse-resize", (right - 3, bottom - 3): "nwse-resize",
            (right - 3, top + 2): "nesw-resize", (left + 2, bottom - 3): "nesw-resize", (middle[0], top + 32): "default",
            (left + x, top + y): "text",
        }
        path = os.path.join(self.desktop.folder, "pointer.png")
        for place, shape in shapes.items():
            def is_shown():
                self.desktop.run_tool("grim", "-c", "-g", f"{place[0] + 4},{place[1] + 4} 1x1", path)
                with Image.open(path) as pixel:
                    return picture.is_near(pixel.convert("RGB").getpixel((0, 0)), cursors.COLOURS[shape])
            with self.subTest(shape, place=place):
                self.move(*place)
                until(is_shown, f"the pointer is no {shape}", 5)

    def test_a_left_click_on_the_title_opens_no_menu(self):
        self.move(700, 130)
        self.witness.press_button(LEFT)
        self.witness.release_button(LEFT)
        stays(lambda: not self.program.shown("menu item"), "a menu opens", 0.5)

    def press_title(self):
        self.move(700, 130)
        self.witness.press_button(RIGHT)
        self.witness.release_button(RIGHT)

    def test_a_right_click_on_the_title_opens_the_small_menu_where_the_compositor_has_none(self):
        self.press_title()
        self.program.find("menu item", "Minimize")
        self.program.find("menu item", "Maximize")
        self.program.find("menu item", "Close")

    def test_whether_it_has_one_is_found_out_at_each_right_click(self):
        """A pointer that leaves the window at once looks as if the compositor's had opened."""
        self.press_title()
        self.move(50, 50)

        def opens():
            # Where one was late to leave, the menu is open, and is closed by this.
            self.press_title()
            try:
                return until(lambda: self.program.shown("menu item", "Minimize"), "no menu opens", 3)
            except TookTooLong:
                return None
        until(opens, "no menu opens any more", 10)


class SwayActivation(CompositorCase):
    """A window comes to the front for those who hand on what the compositor gave them for a key or a button of the user's."""

    CONFIGURATION = "default_border normal\nfocus_on_window_activation focus\n"

    def setUp(self):
        super().setUp()
        self.program = self.start_with()
        self.witness.tap(D)

    def start_again(self, token):
        environment = {**self.program.environment, "XDG_ACTIVATION_TOKEN": token}
        self.assertEqual(subprocess.run([PROGRAM], env=environment, check=False, timeout=20).returncode, 0)

    def is_in_front(self):
        return self.desktop.view("Velloran")["focused"]

    def test_a_second_start_brings_it_to_the_front(self):
        self.start_again(self.witness.activation_token())
        until(self.is_in_front, "it stays behind")

    def test_so_does_a_launcher_on_the_bus(self):
        self.desktop.run_tool("gdbus", "call", "--session", "--dest", "app.velloran.Velloran", "--object-path", "/app/velloran/Velloran",
                              "--method", "org.freedesktop.Application.Activate",
                              f"{{'activation-token': <'{self.witness.activation_token()}'>}}")
        until(self.is_in_front, "it stays behind")

    def test_a_made_up_token_does_not(self):
        self.start_again("made up")
        stays(lambda: not self.is_in_front(), "it takes the focus", 0.3)


class SwayRest(CompositorCase):
    CONFIGURATION = FLOATING

    def wake_ups(self, program, seconds=2.0):
        before = processes.voluntary_switches(program.pid)
        pause(seconds)
        return processes.voluntary_switches(program.pid) - before

    def wait_for_rest(self, program):
        until(lambda: self.wake_ups(program, 0.5) == 0, "the program does not come to rest", 20)

    def test_it_sleeps_while_nothing_happens(self):
        program = self.start_with()
        self.wait_for_rest(program)
        self.assertLess(self.wake_ups(program), 2)

    def test_the_mascot_flies_in_sight_only(self):
        program = self.start_with(clickIntervalSeconds=1000.0, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        for hide, show in (("workspace 2", "workspace 1"),
                           ('[title="^witness$"] fullscreen enable', '[title="^witness$"] fullscreen disable')):
            with self.subTest(hide):
                until(lambda: self.wake_ups(program, 0.5) > 10, "the mascot does not fly")
                self.desktop.command(hide)
                self.wait_for_rest(program)
                self.assertLess(self.wake_ups(program), 2)
                self.desktop.command(show)
        until(lambda: self.wake_ups(program, 0.5) > 10, "the mascot does not fly again")
        self.assertEqual(program.headline, "Running")


class SwayScales(CompositorCase):
    """Two outputs beside each other, the second of changing scale."""

    CONFIGURATION = FLOATING + "output HEADLESS-1 position 0 0\n"
    SIZE = (1000, 760)

    def setUp(self):
        super().setUp()
        self.desktop.command("create_output")
        self.desktop.command("output HEADLESS-2 resolution 3200x2000 position 1600 0")
        self.program = self.start_with()
        self.desktop.focus("Velloran")

    def put(self, x):
        def is_there():
            rect = self.desktop.view("Velloran")["rect"]
            if (rect["x"], *self.program.window.extents[2:]) == (x, *self.SIZE) == (x, rect["width"], rect["height"]):
                return True
            self.desktop.command(f'[title="^Velloran$"] resize set {self.SIZE[0]} {self.SIZE[1]}, move absolute position {x} 20')
            return False
        until(is_there, lambda: f"the window is elsewhere: {self.desktop.view('Velloran')['rect']}")

    def shown_at(self, x, scale):
        """A picture of the window there, in pixels of a screen of that scale."""
        path = os.path.join(self.desktop.folder, "window.png")
        width, height = self.SIZE
        self.put(x)
        self.desktop.run_tool("grim", "-s", str(scale), "-g", f"{x},20 {width}x{height}", path)
        with Image.open(path) as shown:
            return shown.convert("RGB")

    def test_it_keeps_its_size_in_points_and_is_drawn_in_the_pixels_of_each(self):
        usual = until(lambda: self.is_drawn(self.shown_at(300, 1)), "the window stays empty")
        for scale in (1.25, 1.5, 2):
            with self.subTest(scale):
                self.desktop.command(f"output HEADLESS-2 scale {scale}")
                # Made larger, the picture of the other output would be blurred all over.
                stretched = usual.resize([round(scale * length) for length in self.SIZE], Image.Resampling.BILINEAR)

                def is_sharp():
                    shown = self.shown_at(1700, scale)
                    difference = ImageStat.Stat(ImageChops.difference(shown, stretched)).mean
                    return shown if self.is_drawn(shown) and 1 < max(difference) < 5 else None
                picture.keep(until(is_sharp, "the window is not drawn anew"), f"sway at {scale}")
                self.assertEqual(tuple(self.program.window.extents[2:]), self.SIZE)
                back = until(lambda: self.is_drawn(self.shown_at(300, 1)), "the window stays empty")
                until(lambda: max(ImageStat.Stat(ImageChops.difference(self.shown_at(300, 1), usual)).mean) < 0.1,
                      "it looks different when it comes back")
                self.assertEqual(back.size, self.SIZE)

    @staticmethod
    def is_drawn(shown):
        return shown if len(shown.getcolors(1 << 24) or []) > 500 else None
