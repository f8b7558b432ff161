"""Two monitors beside each other, the right one with twice as many pixels for a point."""

import random

from harness import picture, preferences
from harness.case import DesktopCase
from harness.waiting import stays, until

LEFT = "1200/300x1700/300+0+0"
RIGHT = "2000/400x1700/300+1200+0"


class Monitors(DesktopCase):
    SCREEN = (3200, 1700)
    PLACE = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.desktop.run_tool("xrandr", "--setmonitor", "left", LEFT, "screen")
        cls.desktop.run_tool("xrandr", "--setmonitor", "right", RIGHT, "none")

    def start_scaled(self):
        program = self.start(environment={"QT_SCREEN_SCALE_FACTORS": "left=1;right=2"})
        self.desktop.run_tool("xdotool", "windowsize", program.window_id, "500", "400")
        self.wait_for_pixels(program, 920, 736)
        return program

    def pixels(self, program):
        lines = self.desktop.run_tool("xdotool", "getwindowgeometry", "--shell", program.window_id).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def move(self, program, x, y):
        self.desktop.run_tool("xdotool", "windowmove", program.window_id, str(x), str(y))

    def wait_for_pixels(self, program, width, height):
        until(lambda: self.pixels(program)[2:] == (width, height), lambda: f"the window is {self.pixels(program)}")

    def test_the_window_keeps_its_size_in_points(self):
        program = self.start_scaled()
        self.move(program, 1230, 60)
        self.wait_for_pixels(program, 1840, 1472)
        until(lambda: tuple(program.window.extents[2:]) == (920, 736), lambda: program.window.extents)
        x, y, width, height = self.pixels(program)
        self.assertGreaterEqual(x, 1200)
        self.assertLessEqual(x + width, 3200)
        self.assertGreaterEqual(y, 0)
        self.assertLessEqual(y + height, 1700)
        self.move(program, 100, 100)
        self.wait_for_pixels(program, 920, 736)
        until(lambda: tuple(program.window.extents[2:]) == (920, 736), lambda: program.window.extents)

    def test_it_can_be_used_there(self):
        program = self.start_scaled()
        self.move(program, 1230, 60)
        self.wait_for_pixels(program, 1840, 1472)
        program.give_focus()
        left, top, _, _ = self.pixels(program)
        x, y = program.find("push button", "Increase Stop after").centre
        # The place on the accessibility bus is in points, from the corner of the monitor.
        origin = program.window.extents
        self.observer.click(left + 2 * (x - origin[0]), top + 2 * (y - origin[1]))
        program.wait_for_stored(maxClicks=110)
        # Drawn for that monitor, not enlarged: a hairline is as fine as it can be.
        until(lambda: self.hairlines(program) == 1, lambda: f"the border is {self.hairlines(program)} pixels wide")

    def start_still(self, x, y, pixels):
        """Starts a run of a program that clicks only a still mouse, while the pointer jumps to and fro by that many pixels."""
        stored = preferences.config(clickIntervalSeconds=0.02, stopMode="manual", hotkey=preferences.CONTROL_OPTION_S,
                                    requireStationaryMouse=True, stationarySeconds=2.0)
        program = self.start({"velloran.config": preferences.as_bytes(stored)},
                             environment={"QT_SCREEN_SCALE_FACTORS": "left=1;right=2"})
        program.wait_for_hotkey("s", "control", "alt")
        # In no rhythm that the program's questions could fall in with.
        chance = random.Random(1)
        return program, self.observer.moving(x, y, [chance.choice((0, pixels)) for _ in range(1000)])

    def test_a_mouse_is_still_within_two_points(self):
        for x, pixels in ((300, 2), (2300, 4)):
            with self.subTest(x=x):
                program, moving = self.start_still(x, 1400, pixels)
                with moving:
                    self.observer.press("s", "control", "alt")
                    until(lambda: self.observer.report()["presses"] >= 3, lambda: program.message)
                program.close()

    def test_a_mouse_moves_by_more_than_two_points(self):
        for x, pixels in ((300, 3), (2300, 5)):
            with self.subTest(x=x):
                program, moving = self.start_still(x, 1400, pixels)
                with moving:
                    self.observer.press("s", "control", "alt")
                    until(lambda: program.message == "Waiting for mouse to remain still", lambda: program.message)
                    stays(lambda: self.observer.report()["presses"] == 0, "the moving pointer was clicked", 3.0)
                program.close()

    def hairlines(self, program):
        """How many pixels the border of the window takes at its left edge."""
        left, top, _, height = self.pixels(program)
        row = picture.of_screen(self.desktop).crop((left, top + height // 2, left + 12, top + height // 2 + 1))
        colours = list(row.getdata())
        return next(index for index, colour in enumerate(colours) if colour != colours[0])
