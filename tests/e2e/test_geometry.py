"""Sizes and distances of the real window, in points."""

from harness import picture, preferences
from harness.case import DesktopCase
from harness.waiting import until

LEAST = (920, 736)
SIDE, GAP, RIGHT_COLUMN, CARD_PADDING = 20, 16, 280, 22
FIELD_PADDING = (12, 9)
LEFT_CARDS = ["Click Configuration", "Stop Conditions", "Start / Stop Options"]


class Geometry(DesktopCase):
    PLACE = None

    def setUp(self):
        self.program = self.start_with()
        self.program.place(10, 10, *LEAST)

    def frame_of_field(self, name):
        """The outline of a number field: its text has the padding on the left, its steppers have it on the right."""
        x, _, _, _ = self.program.find("text", name).extents
        up = self.program.find("push button", "Increase " + name).extents
        return x - FIELD_PADDING[0], up[0] + up[2] + FIELD_PADDING[0]

    def check_columns(self, width):
        left_width = width - 2 * SIDE - GAP - RIGHT_COLUMN
        x, y, _, _ = self.program.window.extents
        top = y + 64
        for title in LEFT_CARDS:
            card = self.program.card(title).extents
            self.assertEqual(card[:3], (x + SIDE, top, left_width), title)
            top += card[3] + GAP
        left_bottom = top
        right_x = x + width - SIDE - RIGHT_COLUMN
        top = y + 64
        for item in (self.program.card("Status"), self.program.find("push button", "Start"),
                     self.program.find("push button", "Stop"), self.program.card("Summary")):
            self.assertEqual(item.extents[:3], (right_x, top, RIGHT_COLUMN), item)
            top += item.extents[3] + GAP
        self.assertEqual(self.program.find("push button", "Start").extents[3], 52)
        self.assertEqual(self.program.find("push button", "Stop").extents[3], 46)
        banner = self.program.find("label", lambda name: name.startswith("Velloran will automatically click"))
        self.assertEqual(banner.extents[1] - max(top, left_bottom), 12)
        # Beside the text stand the padding, an icon of about its own height and a distance of 10.
        self.assertEqual(banner.extents[0] + banner.extents[2], x + width - SIDE - GAP)

    def test_the_window_keeps_to_its_least_size(self):
        self.program.desktop.run_tool("xdotool", "windowsize", self.program.window_id, "500", "400")
        self.program.settle()
        self.assertEqual(self.program.window.extents[2:], LEAST)
        hints = self.desktop.run_tool("xprop", "-id", self.program.window_id, "WM_NORMAL_HINTS")
        self.assertIn(f"program specified minimum size: {LEAST[0]} by {LEAST[1]}", hints)
        self.assertNotIn("maximum size", hints)

    def test_columns_at_the_least_size(self):
        self.check_columns(920)

    def test_the_left_column_takes_all_additional_width(self):
        for width in (921, 1200, 1500):
            self.program.place(10, 10, width, 900)
            self.check_columns(width)

    def test_long_values_stay_in_their_card(self):
        letters = "ABCDEFGHIJ" * 12
        self.program.close()
        self.program = self.start_with(clickIntervalSeconds=1e300, startDelaySeconds=1e300,
                                       hotkey={**preferences.CONTROL_OPTION_S, "display": letters})
        self.program.place(10, 10, 920, 1040)
        self.observer.move(1500, 1050)
        self.check_columns(920)
        card = self.program.card("Summary")
        left, top, width, height = card.extents
        for row in card.find_all("label", lambda name: ": " in name):
            for item in (row, *row.children):
                self.assertLessEqual(item.extents[0] + item.extents[2], left + width - CARD_PADDING, item)
        # Nothing is written on the padding of the card or beside it.
        beside = picture.of_screen(self.desktop).crop((left + width - CARD_PADDING, top + 20, left + width + SIDE, 1050))
        brightest = max(max(band) for band in beside.getextrema())
        self.assertLess(brightest, 128)
        hotkey = card.find_all("label", "Hotkey: " + letters)[0]
        self.assertGreater(hotkey.extents[3], 100)

    def test_the_title_bar_stays_while_the_cards_scroll(self):
        title = self.program.find("label", "Velloran").extents
        card = self.program.card(LEFT_CARDS[0])
        before = card.extents[1]
        x, y, _, _ = card.extents
        self.observer.move(x + 5, y + 60)
        self.observer.ask("button click 5")
        until(lambda: card.extents[1] < before, "nothing scrolls")
        self.assertEqual(self.program.find("label", "Velloran").extents, title)
        for _ in range(20):
            self.observer.ask("button click 5")
        banner = self.program.find("label", lambda name: name.startswith("Velloran will automatically click")).extents
        x, y, _, height = self.program.window.extents
        until(lambda: self.program.find("label", lambda name: name.startswith("Velloran will automatically click")).extents[1]
              + banner[3] + 12 + SIDE == y + height, "the end does not come into sight")

    def test_inside_every_card_there_is_the_same_padding(self):
        for title in [*LEFT_CARDS, "Summary"]:
            card = self.program.card(title).extents
            head = self.program.find("heading", title).extents
            self.assertEqual((head[0] - card[0], head[1] - card[1]), (CARD_PADDING, CARD_PADDING), title)
        status = self.program.card("Status").extents
        label = self.program.find("label", "Status").extents
        # Before the word stand the dot and a distance of ten each.
        self.assertEqual((label[0] - status[0], label[1] - status[1]), (CARD_PADDING + 20, CARD_PADDING))
        for title, last in (("Click Configuration", "Time between each click"),
                            ("Stop Conditions", "Total number of clicks before automatically stopping."),
                            ("Start / Stop Options", "Only click when the cursor has not moved for the chosen duration"),
                            ("Summary", "Stationary Check: Off"), ("Status", "Clicking is stopped")):
            card = self.program.card(title)
            end = card.find_all(None, last)[0].extents
            self.assertEqual(card.extents[1] + card.extents[3] - end[1] - end[3], CARD_PADDING, title)

    def test_the_click_configuration(self):
        card = self.program.card("Click Configuration").extents
        inner_left, inner_right = card[0] + CARD_PADDING, card[0] + card[2] - CARD_PADDING
        for name in ("Mouse Button", "Click Interval"):
            label = self.program.find("label", name).extents
            self.assertEqual((label[0], label[2]), (inner_left, 130), name)
        face = self.program.find("push button", "Left Click").extents
        self.assertEqual((face[0], face[0] + face[2]), (inner_left + 130 + GAP, inner_right))
        self.assertEqual(self.frame_of_field("Click Interval"), (inner_left + 130 + GAP, inner_right))
        helper = self.program.find("label", "Time between each click").extents
        self.assertEqual(helper[0], inner_left + 130 + GAP)
        heading = self.program.find("heading", "Click Configuration").extents
        self.assertEqual((heading[3], face[1] - heading[1] - heading[3]), (28, GAP))

    def test_the_stop_conditions(self):
        card = self.program.card("Stop Conditions")
        inner_left, inner_right = card.extents[0] + CARD_PADDING, card.extents[0] + card.extents[2] - CARD_PADDING
        left, right = (self.program.find(None, name).extents for name in ("Run Until Stopped", "Stop After"))
        self.assertEqual((left[0], left[0] + left[2], right[0] + right[2]), (inner_left, right[0], inner_right))
        self.assertLessEqual(abs(left[2] - right[2]), 1)
        self.assertEqual((left[3], right[3]), (38, 38))
        manual = self.program.find("radio button", "Run until manually stopped").extents
        counted = self.program.find("radio button", "Stop after").extents
        self.assertEqual((manual[0], counted[0], counted[2]), (inner_left, inner_left, 120))
        field = self.frame_of_field("Stop after")
        self.assertEqual((field[0], field[1] - field[0]), (inner_left + 120 + 10, 160))
        self.assertEqual(self.program.find("label", "clicks", within=card).extents[0], field[1] + 10)
        helper = self.program.find("label", lambda name: name.startswith("Total number of clicks")).extents
        self.assertEqual(helper[0], inner_left)

    def test_the_start_options(self):
        card = self.program.card("Start / Stop Options")
        inner_left, inner_right = card.extents[0] + CARD_PADDING, card.extents[0] + card.extents[2] - CARD_PADDING
        label = self.program.find("label", "Start / Stop Hotkey").extents
        self.assertEqual((label[0], label[2]), (inner_left, 170))
        recorder = self.program.find("push button", "Click to record shortcut").extents
        chooser = self.program.find(None, "Choose a preset hotkey").extents
        self.assertEqual((recorder[0], chooser[0] - recorder[0] - recorder[2], chooser[0] + chooser[2]),
                         (inner_left + 170 + GAP, GAP, inner_right))
        helper = self.program.find("label", "Press keys to record shortcut").extents
        self.assertEqual((helper[0], helper[1] - recorder[1] - recorder[3]), (inner_left + 170 + GAP, 6))
        for name in ("Start clicking after", "Click only if mouse is stationary"):
            box = self.program.find("check box", name).extents
            self.assertEqual((box[0], box[0] + box[2], box[3]), (inner_left, inner_right, 18), name)
            field = self.frame_of_field(name)
            self.assertEqual(field[1] - field[0], 110, name)
            unit = next(item.extents for item in card.find_all("label", "seconds")
                        if abs(item.centre[1] - self.program.find("text", name).centre[1]) <= 2)
            self.assertEqual(unit[0], field[1] + 10, name)
        # An indent of 28 and the distance of 10 behind it.
        self.assertEqual(self.frame_of_field("Start clicking after")[0], inner_left + 38)
        leading = self.program.find("label", "for at least").extents
        self.assertEqual(leading[0], inner_left + 38)
        self.assertEqual(self.frame_of_field("Click only if mouse is stationary")[0], leading[0] + leading[2] + 10)

    def test_the_steppers(self):
        for name in ("Click Interval", "Stop after", "Start clicking after", "Click only if mouse is stationary"):
            up = self.program.find("push button", "Increase " + name).extents
            down = self.program.find("push button", "Decrease " + name).extents
            self.assertEqual((up[2:], down[2:], down[0], down[1] - up[1] - up[3]), ((16, 11), (16, 11), up[0], 2), name)

    def test_the_summary(self):
        rows = ["Mouse Button: Left Click", "Click Interval: 7.00 seconds", "Stop After: 100 clicks", "Hotkey: Not set",
                "Delay: 0 seconds", "Stationary Check: Off"]
        extents = [self.program.find("label", row) for row in rows]
        for upper, lower in zip(extents, extents[1:]):
            self.assertEqual(lower.extents[1] - upper.extents[1] - upper.extents[3], 12)
        for row in extents:
            title, value = row.children
            self.assertEqual(title.extents[0] - row.extents[0], 18 + 10)
            self.assertEqual(value.extents[1] - title.extents[1] - title.extents[3], 2)
