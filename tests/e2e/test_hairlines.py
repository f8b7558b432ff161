"""Borders and lines are whole pixels of the screen, the same on all sides, at scales at which a point is none."""

from harness import picture
from harness.case import DesktopCase
from harness.picture import colour, is_near, over
from harness.waiting import until

WHITE = (255, 255, 255)
CARD_FILL = colour(0.067, 0.098, 0.176)
FIELD_FILL = colour(0.051, 0.075, 0.141)
CARDS = ["Click Configuration", "Stop Conditions", "Start / Stop Options", "Status", "Summary"]


class Hairlines(DesktopCase):
    SCREEN = (2000, 2150)
    PLACE = None

    def start_at(self, scale):
        program = self.start(environment={"QT_SCALE_FACTOR": str(scale)})
        self.scale = scale
        size = (round(920 * scale), round(1040 * scale))
        self.desktop.run_tool("xdotool", "windowsize", program.window_id, str(size[0]), str(size[1]), "windowmove", program.window_id,
                              "0", "0")
        until(lambda: program.window.extents[3] == 1040, lambda: f"the window is at {program.window.extents}")
        self.observer.move(1990, 2140)
        program.settle()
        return program

    def wait_for_border(self, what, start, way, fill, stroke):
        """From a place inside, given in points, the border comes up as one hairline of its colour."""
        wanted = over(WHITE, stroke, fill)

        def look():
            self.seen = self.border(start, way, fill)
            return self.seen[1] == int(self.scale) and is_near(self.seen[0], wanted, 2)
        until(look, lambda: f"{what} to {way} at {self.scale}: {self.seen}, not {wanted}", 10)

    def border(self, start, way, fill):
        """The first colour that is not the fill, and how many pixels on end have it."""
        shot = picture.of_screen(self.desktop)
        x, y = (round(place * self.scale) for place in start)
        for _ in range(200):
            if not is_near(shot.getpixel((x, y)), fill, 1):
                break
            x, y = x + way[0], y + way[1]
        found = shot.getpixel((x, y))
        count = 0
        while is_near(shot.getpixel((x, y)), found, 1) and count < 200:
            x, y, count = x + way[0], y + way[1], count + 1
        return found, count

    def check_sides(self, what, extents, fill, stroke, margin):
        x, y, width, height = extents
        for start, way in (((x + margin, y + height / 2), (-1, 0)), ((x + width - margin, y + height / 2), (1, 0)),
                           ((x + width / 2, y + margin), (0, -1)), ((x + width / 2, y + height - margin), (0, 1))):
            self.wait_for_border(what, start, way, fill, stroke)

    def check(self, scale):
        program = self.start_at(scale)
        for title in CARDS:
            self.check_sides(title, program.card(title).extents, CARD_FILL, 0.06, 8)
        for name in ("Left Click", "Click to record shortcut"):
            self.check_sides(name, program.find("push button", name).extents, FIELD_FILL, 0.09, 4)
        self.check_sides("segment", program.find("radio button", "Run Until Stopped").extents, FIELD_FILL, 0.09, 4)
        self.check_field(program)
        self.check_glow(program)

    def check_field(self, program):
        x, y, _, height = program.find("text", "Click Interval").extents
        right, top, width, tall = program.find("push button", "Increase Click Interval").extents
        for start, way in (((x - 6, y + height / 2), (-1, 0)), ((x + 100, y + height / 2), (0, -1)),
                           ((x + 100, y + height / 2), (0, 1)), ((right + width + 6, top + tall), (1, 0))):
            self.wait_for_border("number field", start, way, FIELD_FILL, 0.09)

    def check_glow(self, program):
        """The glow of Start begins at its edge: nothing darker lies between."""
        x, y, width, height = program.find("push button", "Start").extents
        shot = picture.of_screen(self.desktop)
        column = round((x + width / 4) * self.scale)
        edge = round((y + height) * self.scale)
        light = [sum(shot.getpixel((column, row))) for row in range(edge - 4, edge + round(10 * self.scale))]
        # The border is lighter than the face: from there on it gets darker row by row.
        light = light[light.index(max(light)):]
        for above, below in zip(light, light[1:]):
            self.assertLessEqual(below, above + 1, light)

    def test_a_quarter_more(self):
        self.check(1.25)

    def test_half_as_much_again(self):
        self.check(1.5)

    def test_twice(self):
        self.check(2)
