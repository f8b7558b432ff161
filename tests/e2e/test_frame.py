"""The window is moved and resized by its own frame, as often as somebody wants to."""

from harness.case import DesktopCase
from harness.waiting import pause, until


class Frame(DesktopCase):
    SCREEN = (1600, 1100)
    # With room on all sides.
    PLACE = (200, 100, 1000, 800)

    def edges(self):
        x, y, width, height = self.program.window.extents
        return x, y, x + width, y + height

    def drag(self, x, y, step_x, step_y):
        """Drags with the left button, step by step; returns by how much each edge has moved once the window has changed."""
        before = self.edges()
        self.observer.move(x, y)
        self.observer.ask("button press 1")
        for number in range(1, 21):
            # The window manager takes the drag over in the middle of it.
            self.observer.move(x + number * step_x, y + number * step_y)
            pause(0.02)
        self.observer.ask("button release 1")
        until(lambda: self.edges() != before, "the window stays as it is", 10)
        self.program.settle()
        return [now - was for was, now in zip(before, self.edges())]

    def test_the_title_bar_moves_it_again_and_again(self):
        self.program = self.start()
        for direction in (1, -1, 1):
            left, top, right, _ = self.edges()
            moved = self.drag((left + right) // 2 + 50 * direction, top + 30, 4 * direction, 2 * direction)
            self.assertGreater(moved[0] * direction, 0)
            self.assertEqual(moved[:2], moved[2:], "it changes its size")
        # Nothing is left of the drags: the next press is one.
        self.program.click_on("push button", "Menu")
        self.program.find("menu item", "About Velloran")

    def test_each_edge_and_corner_changes_its_size(self):
        self.program = self.start()
        for across in (-1, 0, 1):
            for down in (-1, 0, 1):
                if across or down:
                    with self.subTest(across=across, down=down):
                        left, top, right, bottom = self.edges()
                        x = {-1: left + 2, 0: (left + right) // 2, 1: right - 3}[across]
                        y = {-1: top + 2, 0: (top + bottom) // 2, 1: bottom - 3}[down]
                        moved = self.drag(x, y, 2 * across, 2 * down)
                        directions = [(number > 0) - (number < 0) for number in moved]
                        self.assertEqual(directions, [min(across, 0), min(down, 0), max(across, 0), max(down, 0)])
