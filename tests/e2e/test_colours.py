"""The colours of the theme, in screenshots."""

from harness import picture, preferences
from harness.case import DesktopCase
from harness.picture import colour, is_near, over
from harness.waiting import until

WHITE = (255, 255, 255)
CARD_FILL = colour(0.067, 0.098, 0.176)
FIELD_FILL = colour(0.051, 0.075, 0.141)
ACCENT, ACCENT_DEEP = colour(0.33, 0.55, 1.0), colour(0.19, 0.42, 0.97)
STATUS = {"Ready": colour(0.45, 0.6, 0.9), "Delayed Start": colour(0.98, 0.74, 0.22), "Running": colour(0.27, 0.85, 0.51),
          "Completed": colour(0.27, 0.85, 0.51), "Error": colour(0.98, 0.37, 0.37)}
CARDS = ["Click Configuration", "Stop Conditions", "Start / Stop Options", "Status", "Summary"]


class Colours(DesktopCase):
    def start_watched(self, **config):
        program = self.start_with(**config)
        self.observer.move(1450, 150)
        return program

    def pixel(self, x, y):
        return picture.of_screen(self.desktop).getpixel((round(x), round(y)))

    def wait_for_pixel(self, x, y, wanted, tolerance=3):
        until(lambda: is_near(self.pixel(x, y), wanted, tolerance),
              lambda: f"the pixel at {x}, {y} is {self.pixel(x, y)}, not {wanted}", 10)

    def dot(self, program):
        x, y, _, height = program.find("label", "Status").extents
        return x - 15, y + height / 2

    def test_cards_have_their_fill_and_border(self):
        program = self.start_watched()
        for title in CARDS:
            x, y, width, height = program.card(title).extents
            for place in ((x + width // 2, y + 10), (x + 10, y + height // 2), (x + width - 8, y + height // 2)):
                self.wait_for_pixel(*place, CARD_FILL, 1)
            border = over(WHITE, 0.06, CARD_FILL)
            for place in ((x + width // 2, y), (x + width // 2, y + height - 1), (x, y + height // 2),
                          (x + width - 1, y + height // 2)):
                self.wait_for_pixel(*place, border, 2)

    def test_a_shadow_lies_under_the_cards(self):
        program = self.start_watched()
        x, y, width, height = program.card("Start / Stop Options").extents
        below = self.pixel(x + width // 2, y + height + 2)
        beside = self.pixel(x - 15, y + height + 40)
        self.assertLess(sum(below), sum(beside))

    def test_the_gradient_of_start(self):
        program = self.start_watched()
        x, y, width, height = program.find("push button", "Start").extents
        self.wait_for_pixel(x + width // 4, y + 1, ACCENT, 6)
        self.wait_for_pixel(x + width // 4, y + height - 2, ACCENT_DEEP, 6)
        self.wait_for_pixel(x + width // 4, y + height // 2, tuple((a + b) // 2 for a, b in zip(ACCENT, ACCENT_DEEP)), 6)
        self.wait_for_pixel(x + width // 2, y, over(WHITE, 0.08, ACCENT), 8)
        self.observer.move(x + width // 4, y + height // 2 + 5)
        self.wait_for_pixel(x + width // 2, y, over(WHITE, 0.16, ACCENT), 8)

    def test_stop_turns_red_while_a_run_is_under_way(self):
        program = self.start_watched(clickIntervalSeconds=1000.0)
        x, y, width, height = program.find("push button", "Stop").extents
        place = (x + width // 4, y + height // 2)
        behind = self.pixel(x - 2, y + height // 2)
        self.wait_for_pixel(*place, over(FIELD_FILL, 0.45, behind), 4)
        program.find("push button", "Start").do()
        program.wait_for_headline("Running")
        self.wait_for_pixel(x + width // 4, y + 2, STATUS["Error"], 10)
        # A disabled Start is drawn at 0.45, its title included: the window shows through that and not the button's face.
        x, y, width, height = program.find("push button", "Start").extents
        until(lambda: self.pixel(x + width // 4, y + 2)[2] < 160, lambda: self.pixel(x + width // 4, y + 2))
        shot = picture.of_screen(self.desktop).crop((x + 20, y + 12, x + width - 20, y + height - 12))
        title = max(shot.getdata(), key=sum)
        self.assertTrue(is_near(title, (120, 124, 132), 5), title)

    def test_a_veil_lies_over_what_the_pointer_is_on(self):
        program = self.start_watched()
        for role, name, place in (("push button", "Left Click", (60, 3)), ("push button", "Click to record shortcut", (60, 3)),
                                  ("radio button", "Run Until Stopped", (20, 6)), ("check box", "Start clicking after", (3, 9))):
            with self.subTest(name):
                item = program.find(role, name)
                x, y, _, _ = item.extents
                self.wait_for_pixel(x + place[0], y + place[1], FIELD_FILL, 1)
                self.observer.move(*item.centre)
                self.wait_for_pixel(x + place[0], y + place[1], over(WHITE, 0.06, FIELD_FILL), 1)
                self.observer.move(1450, 150)
                self.wait_for_pixel(x + place[0], y + place[1], FIELD_FILL, 1)

    def test_fields_and_choices(self):
        program = self.start_watched()
        x, y, width, height = program.find("push button", "Left Click").extents
        self.wait_for_pixel(x + width // 2, y + 3, FIELD_FILL, 1)
        self.wait_for_pixel(x + width // 2, y, over(WHITE, 0.09, FIELD_FILL), 2)
        x, y, width, height = program.find(None, "Stop After").extents
        self.wait_for_pixel(x + 20, y + 6, over(ACCENT, 0.16, CARD_FILL), 2)
        x, y, width, height = program.find(None, "Run Until Stopped").extents
        self.wait_for_pixel(x + 20, y + 6, FIELD_FILL, 1)
        x, y, width, height = program.find("check box", "Start clicking after").extents
        self.wait_for_pixel(x + 3, y + 9, FIELD_FILL, 1)
        program.find("check box", "Start clicking after").do()
        self.wait_for_pixel(x + 3, y + 9, ACCENT, 1)

    def test_the_border_of_a_field_that_is_edited(self):
        program = self.start_watched()
        field = program.find("text", "Click Interval")
        x, y, _, _ = field.extents
        idle = over(WHITE, 0.09, FIELD_FILL)
        top = next(row for row in range(y - 1, y - 20, -1) if is_near(self.pixel(x + 40, row), idle, 2))
        program.click(field)
        self.wait_for_pixel(x + 40, top, over(ACCENT, 0.6, FIELD_FILL), 4)

    def test_the_background(self):
        program = self.start_watched()
        x, y, width, height = program.window.extents
        top, bottom = colour(0.047, 0.078, 0.149), colour(0.027, 0.047, 0.098)
        self.wait_for_pixel(x + width - 8, y + height - 4, bottom, 3)
        near_glow, far = self.pixel(x + 8, y + 80), self.pixel(x + width - 8, y + 80)
        self.assertGreater(near_glow[2], far[2] + 10)
        self.assertTrue(is_near(far, top, 6), far)

    def test_the_dot_of_the_status(self):
        hotkey = preferences.CONTROL_OPTION_S
        for headline, config in (("Ready", {}), ("Delayed Start", {"startDelaySeconds": 1000.0}),
                                 ("Running", {"clickIntervalSeconds": 1000.0}),
                                 ("Completed", {"clickIntervalSeconds": 0.01, "maxClicks": 2}),
                                 ("Error", {"clickIntervalSeconds": 0.0, "hotkey": hotkey})):
            with self.subTest(headline):
                program = self.start_watched(**config)
                if headline == "Error":
                    program.wait_for_hotkey("s", "control", "alt")
                    self.observer.press("s", "control", "alt")
                elif headline != "Ready":
                    program.find("push button", "Start").do()
                program.wait_for_headline(headline)
                self.wait_for_pixel(*self.dot(program), STATUS[headline], 3)
                program.close()

    def test_the_permission_button_is_red(self):
        stored = {"velloran.config": preferences.as_bytes(preferences.config())}
        program = self.start(stored, environment={"XDG_SESSION_TYPE": "wayland", "QT_QPA_PLATFORM": "xcb"})
        x, y, width, height = program.find("push button", "Grant Accessibility Permission").extents
        crop = picture.of_screen(self.desktop).crop((x, y, x + width, y + height))
        self.assertGreater(sum(is_near(pixel, STATUS["Error"], 12) for pixel in crop.getdata()), 20)
