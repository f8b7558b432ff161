"""What the session bus brings, after it has crashed and started again."""

from gi.repository import GLib

from harness import picture
from harness.case import DesktopCase
from harness.picture import colour, is_near, over
from harness.portal import SettingsPortal
from harness.waiting import until

APPEARANCE = "org.freedesktop.appearance"
CARD_FILL = colour(0.067, 0.098, 0.176)
PLAIN_BORDER, STRONG_BORDER = over((255, 255, 255), 0.06, CARD_FILL), over((255, 255, 255), 0.5, CARD_FILL)
ON, OFF = GLib.Variant("u", 1), GLib.Variant("u", 0)


class WishesAfterBusRestart(DesktopCase):
    def start_portal(self, contrast):
        portal = SettingsPortal(self.desktop, {APPEARANCE: {"contrast": contrast}})
        self.addCleanup(portal.close)
        return portal

    def has_border(self, place, wanted):
        return is_near(picture.of_screen(self.desktop).getpixel(place), wanted)

    def test_settings_are_followed_and_files_asked_for_again(self):
        before = self.start_portal(OFF)
        program = self.start_with()
        # Nothing tells where things are when the bus has gone.
        x, y, width, _ = program.card("Summary").extents
        border = x + width // 2, y
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        files = program.find("push button", "Import").centre
        self.observer.click(*files)
        before.wait_for_question("OpenFile")

        self.desktop.end_bus()
        self.desktop.start_bus_again()
        after = self.start_portal(ON)
        after.wait_for_question("ReadAll")
        # The dialog that was open has gone with the bus, and there can be another one.
        self.observer.click(*files)
        after.wait_for_question("OpenFile")
        after.cancel_dialog()
        # The sheet, which dims the border, can be closed once the program knows that the dialog has gone.
        until(lambda: self.observer.press("Escape") or self.has_border(border, STRONG_BORDER), "the border does not stand out")
        after.change(APPEARANCE, "contrast", OFF)
        until(lambda: self.has_border(border, PLAIN_BORDER), "the border does not change any more")
        self.assertEqual(program.end(), 0)
