"""No text is cut and nothing overlaps, whatever the scale of the screen and the size of the desktop's text."""

import functools
import itertools
import subprocess

from PIL import ImageFont

from harness import picture
from harness.case import DesktopCase
from harness.waiting import until

WEIGHTS = {"regular": "Regular", "medium": "Medium", "semibold": "Semi Bold", "bold": "Bold"}
# Texts of the window with their size and weight.
LABELS = {
    "Velloran": (18, "semibold"), "Mouse Button": (13.5, "medium"), "Click Interval": (13.5, "medium"),
    "Time between each click": (12, "regular"), "clicks": (13, "medium"), "for at least": (13, "regular"),
    "Total number of clicks before automatically stopping.": (12, "regular"), "Start / Stop Hotkey": (13.5, "medium"),
    "Press keys to record shortcut": (12, "regular"), "Wait before auto clicking starts": (12, "regular"),
    "Only click when the cursor has not moved for the chosen duration": (12, "regular"), "Status": (15, "semibold"),
    "Ready": (26, "bold"), "Clicking is stopped": (13, "medium"), "Summary": (16, "semibold"), "Left Click": (14, "semibold"),
    "7.00 seconds": (14, "semibold"), "100 clicks": (14, "semibold"), "Not set": (14, "semibold"), "Hotkey": (12.5, "medium"),
    "Stationary Check": (12.5, "medium"),
    "Velloran will automatically click based on your settings. Use responsibly and respect other applications.": (12.5, "regular"),
}
# Controls with the size and weight of their text, and what of their width is taken by other things.
CONTROLS = {
    ("heading", "Click Configuration"): (17, "semibold", 38), ("heading", "Stop Conditions"): (17, "semibold", 38),
    ("heading", "Start / Stop Options"): (17, "semibold", 38), ("push button", "Left Click"): (14, "medium", 65),
    ("radio button", "Run Until Stopped"): (14, "semibold", 0), ("radio button", "Stop After"): (14, "semibold", 0),
    ("radio button", "Run until manually stopped"): (14, "medium", 28), ("radio button", "Stop after"): (14, "medium", 28),
    ("push button", "Click to record shortcut"): (14, "medium", 24), ("check box", "Start clicking after"): (14, "medium", 28),
    ("check box", "Click only if mouse is stationary"): (14, "medium", 28), ("push button", "Start"): (17, "semibold", 58),
    ("push button", "Stop"): (16, "semibold", 58),
}


@functools.cache
def font(size, weight):
    path = subprocess.run(["fc-match", "-f", "%{file}", f"Inter:style={WEIGHTS[weight]}"], check=True, capture_output=True,
                          text=True).stdout
    # Measured large, so that rounding to pixels does not count.
    return ImageFont.truetype(path, round(size * 8))


def width_of(text, size, weight):
    return font(size, weight).getlength(text) / 8


class Scaling(DesktopCase):
    SCREEN = (2300, 2300)
    PLACE = None

    def check(self, name, environment):
        program = self.start(environment=environment)
        self.desktop.run_tool("xdotool", "windowsize", program.window_id, "500", "400")
        until(lambda: tuple(program.window.extents[2:]) == (920, 736), lambda: program.window.extents)
        x, y, width, height = program.window.extents
        self.observer.move(2290, 2290)
        picture.keep(picture.of_screen(self.desktop), "scale " + name)
        for text, (size, weight) in LABELS.items():
            item = next(item for item in program.shown(None, text) if item.role in ("label", "alert message", "heading"))
            _, _, room, tall = item.extents
            lines = max(1, tall // round(size * 1.2))
            self.assertLessEqual(width_of(text, size, weight), lines * room + 1, text)
            self.assertGreaterEqual(tall, size, text)
        for (role, text), (size, weight, taken) in CONTROLS.items():
            _, _, room, tall = program.find(role, text).extents
            self.assertLessEqual(width_of(text, size, weight), room - taken + 1, text)
            self.assertGreaterEqual(tall, size, text)
        self.check_places(program, x, width)
        self.check_end(program, y, height)
        program.close()

    def check_places(self, program, x, width):
        """Everything lies inside the window's width, and nothing on a card lies over anything else."""
        for card in ("Click Configuration", "Stop Conditions", "Start / Stop Options", "Status", "Summary"):
            card = program.card(card)
            left, top, wide, tall = card.extents
            self.assertTrue(x <= left and left + wide <= x + width, card)
            parts = [(item, item.extents) for item in card.children if item.extents[2] > 0]
            for item, (a, b, c, d) in parts:
                self.assertTrue(left <= a and a + c <= left + wide and top <= b and b + d <= top + tall, item)
            for (one, (a, b, c, d)), (other, (e, f, g, h)) in itertools.combinations(parts, 2):
                self.assertFalse(a < e + g and e < a + c and b < f + h and f < b + d, f"{one} lies over {other}")

    def check_end(self, program, y, height):
        """What does not fit is reached by scrolling."""
        last = program.find("label", lambda text: text.startswith("Velloran will automatically"))
        program.give_focus()
        self.observer.press("Tab")
        until(program.focused, "nothing gets the focus")
        for _ in range(4):
            self.observer.press("PageDown")
        until(lambda: last.extents[1] + last.extents[3] <= y + height, lambda: f"the end stays out of sight: {last.extents}")

    def test_the_usual_scale(self):
        self.check("1", {})

    def test_a_quarter_more(self):
        self.check("1.25", {"QT_SCALE_FACTOR": "1.25"})

    def test_twice(self):
        self.check("2", {"QT_SCALE_FACTOR": "2"})

    def test_a_desktop_with_text_of_130_percent(self):
        self.check("text 1.3", {"QT_FONT_DPI": "125"})
