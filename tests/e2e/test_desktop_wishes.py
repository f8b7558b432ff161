"""What the user has set for all programs of the desktop, at the start and while the program runs."""

from gi.repository import GLib

from harness import picture
from harness.case import DesktopCase
from harness.picture import colour, is_near, over
from harness.portal import SettingsPortal
from harness.waiting import stays, until

APPEARANCE = "org.freedesktop.appearance"
WINDOW_MANAGER = "org.gnome.desktop.wm.preferences"
CARD_FILL = colour(0.067, 0.098, 0.176)
PLAIN_BORDER, STRONG_BORDER = over((255, 255, 255), 0.06, CARD_FILL), over((255, 255, 255), 0.5, CARD_FILL)
ON, OFF = GLib.Variant("u", 1), GLib.Variant("u", 0)


class DesktopWishes(DesktopCase):
    def start_portal(self, settings, **options):
        portal = SettingsPortal(self.desktop, settings, **options)
        self.addCleanup(portal.close)
        return portal

    def start_beside(self, **config):
        program = self.start_with(**config)
        self.observer.move(1450, 150)
        return program

    def border(self, program):
        x, y, width, _ = program.card("Summary").extents
        return picture.of_screen(self.desktop).getpixel((x + width // 2, y))

    def wait_for_border(self, program, wanted):
        until(lambda: is_near(self.border(program), wanted), lambda: f"the border is {self.border(program)}, not {wanted}")

    def picture_of(self, program, card):
        x, y, width, height = program.card(card).extents
        return picture.of_screen(self.desktop).crop((x, y, x + width, y + height)).tobytes()

    def run_for_ever(self, program):
        program.find("push button", "Start").do()
        program.wait_for_headline("Running")

    def wait_for_rest(self, program):
        """The transitions of the start of a run come to their end."""
        before = [b""]

        def is_at_rest():
            last, before[0] = before[0], self.picture_of(program, "Status")
            return last == before[0]
        until(is_at_rest, "the card does not come to rest")

    def wait_until_it_flies(self, program):
        first = self.picture_of(program, "Status")
        until(lambda: self.picture_of(program, "Status") != first, "the mascot does not fly")

    def test_contrast_is_heeded_and_followed(self):
        portal = self.start_portal({APPEARANCE: {"contrast": ON}})
        program = self.start_beside()
        self.wait_for_border(program, STRONG_BORDER)
        portal.change(APPEARANCE, "contrast", OFF)
        self.wait_for_border(program, PLAIN_BORDER)
        portal.change(APPEARANCE, "contrast", ON)
        self.wait_for_border(program, STRONG_BORDER)

    def test_less_motion_keeps_the_mascot_still(self):
        portal = self.start_portal({APPEARANCE: {"reduced-motion": ON}})
        program = self.start_beside(clickIntervalSeconds=1000.0)
        portal.wait_for_question("ReadAll")
        self.run_for_ever(program)
        self.wait_for_rest(program)
        still = self.picture_of(program, "Status")
        stays(lambda: self.picture_of(program, "Status") == still, "the mascot moves", 1.5)
        portal.change(APPEARANCE, "reduced-motion", OFF)
        self.wait_until_it_flies(program)
        portal.change(APPEARANCE, "reduced-motion", ON)
        self.wait_for_rest(program)
        still = self.picture_of(program, "Status")
        stays(lambda: self.picture_of(program, "Status") == still, "the mascot moves on", 1.5)

    def test_the_window_buttons_move_to_the_other_side(self):
        portal = self.start_portal({WINDOW_MANAGER: {"button-layout": GLib.Variant("s", "appmenu:minimize,close")}})
        program = self.start_beside()

        def places():
            return {name: program.shown("push button", name)[0].centre[0] for name in ("Minimize", "Maximize", "Close")
                    if program.shows("push button", name)}
        until(lambda: set(places()) == {"Minimize", "Close"}, lambda: f"there is {places()}")
        self.assertGreater(places()["Close"], places()["Minimize"])
        self.assertGreater(places()["Minimize"], 465)
        portal.change(WINDOW_MANAGER, "button-layout", GLib.Variant("s", "close,minimize,maximize:"))
        until(lambda: len(places()) == 3 and max(places().values()) < 465, lambda: f"the buttons are at {places()}")
        self.assertLess(places()["Close"], places()["Minimize"])

    def test_a_silent_portal_holds_nothing_up(self):
        portal = self.start_portal({APPEARANCE: {"contrast": ON}}, answers=False)
        program = self.start_beside(clickIntervalSeconds=0.02, maxClicks=5)
        portal.wait_for_question("ReadAll")
        program.find("push button", "Start").do()
        program.wait_for_headline("Completed")
        self.assertEqual(self.observer.report()["presses"], 5)
        self.wait_for_border(program, PLAIN_BORDER)
        self.assertEqual(program.end(), 0)

    def test_a_portal_that_comes_later_is_asked(self):
        program = self.start_beside()
        self.wait_for_border(program, PLAIN_BORDER)
        portal = self.start_portal({APPEARANCE: {"contrast": ON}})
        self.wait_for_border(program, STRONG_BORDER)
        portal.change(APPEARANCE, "contrast", OFF)
        self.wait_for_border(program, PLAIN_BORDER)
