"""The window where the compositor says how large it is and how things look: in tiles, and under wishes for dark or light."""

import os

from gi.repository import GLib
from PIL import Image, ImageChops

from harness.compositor import Sway
from harness.compositor_case import LEFT, CompositorCase
from harness.portal import SettingsPortal
from harness.waiting import stays, until

TAB = 15
SCREEN = (1280, 720)
HALF = SCREEN[0] // 2
LEAST_WIDTH = 920
LEAST_HEIGHT = 736
APPEARANCE = "org.freedesktop.appearance"
NO_SCHEME, DARK, LIGHT = (GLib.Variant("u", number) for number in range(3))


def size_of(rect):
    return rect["width"], rect["height"]


def small_sway(configuration):
    return Sway(SCREEN, configuration)


class SwayTiles(CompositorCase):
    """Beside the witness, which has the other half of a small screen."""

    COMPOSITOR = staticmethod(small_sway)

    def setUp(self):
        super().setUp()
        self.program = self.start_with(clickIntervalSeconds=1000.0, stopMode="manual")
        self.desktop.focus("Velloran")

    def tile(self):
        return self.desktop.view("Velloran")["rect"]

    def has_taken_its_size(self):
        return tuple(self.program.window.extents[2:]) == size_of(self.tile())

    def sizes(self):
        return f"the tile is {self.tile()}, the window {self.program.window.extents}"

    def press(self, control):
        tile = self.tile()
        x, y = control.centre
        self.witness.move(tile["x"] + x, tile["y"] + y, SCREEN)
        self.witness.press_button(LEFT)
        self.witness.release_button(LEFT)

    def bring_into_sight(self, name):
        """The view scrolls to what gets the focus by the key."""
        def has_focus():
            self.witness.tap(TAB)
            return "focused" in self.program.find("push button", name).states
        until(has_focus, f"{name} does not get the focus")
        until(lambda: 0 < self.program.find("push button", name).centre[1] < SCREEN[1], f"{name} is out of sight")

    def test_it_takes_the_sizes_of_its_tile(self):
        until(lambda: self.tile()["width"] == HALF and self.has_taken_its_size(), self.sizes)
        for width in (1000, 700, 900):
            self.desktop.command(f'[title="^Velloran$"] resize set width {width} px')
            until(lambda width=width: self.tile()["width"] == width and self.has_taken_its_size(),
                  self.sizes)
        self.desktop.command('[title="^Velloran$"] floating enable')
        until(lambda: self.tile()["width"] >= LEAST_WIDTH and self.has_taken_its_size(), self.sizes)

    def test_all_of_it_can_be_used_in_half_a_screen(self):
        until(lambda: self.tile()["width"] == HALF and self.has_taken_its_size(), self.sizes)
        # Beside each other they would be squeezed.
        for card in ("Click Configuration", "Summary"):
            self.assertGreater(self.program.card(card).extents[2], 0.9 * HALF)
        for role in ("push button", "text", "check box", "radio button"):
            for control in self.program.shown(role):
                with self.subTest(role, name=control.name):
                    x, _, width, _ = control.extents
                    self.assertTrue(x >= 0 and x + width <= HALF, (x, width))
        self.bring_into_sight("Start")
        self.press(self.program.find("push button", "Start"))
        self.program.wait_for_headline("Running")
        self.bring_into_sight("Stop")
        self.press(self.program.find("push button", "Stop"))
        self.program.wait_for_headline("Ready")

    def test_afloat_it_is_not_dragged_below_its_least_size(self):
        def is_there():
            if self.has_taken_its_size() and (self.tile()["x"], self.tile()["width"]) == (0, 1200):
                return True
            self.desktop.command('[title="^Velloran$"] floating enable, resize set 1200 px 720 px, move absolute position 0 0')
            return False
        until(is_there, self.sizes)
        self.witness.move(2, HALF // 2, SCREEN)
        self.witness.press_button(LEFT)
        place = 2

        def is_at_its_least():
            nonlocal place
            place = min(place + 10, HALF)
            self.witness.move(place, HALF // 2, SCREEN)
            return place == HALF and self.tile()["width"] == LEAST_WIDTH and self.has_taken_its_size()
        until(is_at_its_least, self.sizes)
        stays(is_at_its_least, "it becomes smaller", 0.3)
        self.witness.release_button(LEFT)

    def test_its_least_size_follows_the_resolution_of_its_screen(self):
        """Which at first is less tall than it would be."""
        screen = across, down = 1280, 1000
        self.desktop.command(f"output * mode --custom {across}x{down}")

        def is_there():
            if self.has_taken_its_size() and size_of(self.tile()) == screen:
                return True
            self.desktop.command(f'[title="^Velloran$"] floating enable, resize set {across} px {down} px, move absolute position 0 0')
            return False
        until(is_there, self.sizes)
        self.witness.move(across // 2, down - 2, screen)
        self.witness.press_button(LEFT)
        place = down - 2

        def is_at_its_least():
            nonlocal place
            place = max(place - 10, down // 2)
            self.witness.move(across // 2, place, screen)
            return place == down // 2 and self.tile()["height"] == LEAST_HEIGHT and self.has_taken_its_size()
        until(is_at_its_least, self.sizes)
        self.witness.release_button(LEFT)


class SwayLooks(CompositorCase):
    """The window looks the same, without a title bar beside its own, whatever the desktop would have windows look like."""

    CONFIGURATION = 'default_border normal\nfor_window [title="^Velloran$"] floating enable\n'

    def look(self):
        """The window as it shows, once it has been drawn."""
        view = self.desktop.view("Velloran")
        self.assertEqual((view["border"], view["deco_rect"]["height"]), ("csd", 0), view)
        place = view["rect"]
        path = os.path.join(self.desktop.folder, "window.png")
        self.desktop.run_tool("grim", "-g", "{x},{y} {width}x{height}".format(**place), path)
        with Image.open(path) as shown:
            return shown.convert("RGB") if len(shown.getcolors(1 << 24) or []) > 500 else None

    def assert_looks_usual(self, usual):
        shown = until(self.look, "the window stays empty")
        self.assertIsNone(ImageChops.difference(shown, usual).getbbox())

    def test_it_has_the_buttons_that_the_compositor_has_a_use_for(self):
        # Old ones do not tell.
        useful = self.witness.abilities() or {"minimize", "maximize"}
        program = self.start_with()
        program.find("push button", "Close")
        for name in ("Minimize", "Maximize"):
            with self.subTest(name):
                self.assertEqual(program.shows("push button", name), name.lower() in useful, useful)

    def test_wishes_for_dark_and_light_change_nothing(self):
        usual = None
        for scheme in (NO_SCHEME, DARK, LIGHT):
            with self.subTest(scheme=scheme.unpack()):
                portal = SettingsPortal(self.desktop, {APPEARANCE: {"color-scheme": scheme}})
                self.addCleanup(portal.close)
                program = self.start_with()
                portal.wait_for_question("ReadAll")
                self.desktop.focus("Velloran")
                self.assertEqual(tuple(program.window.extents[2:]), size_of(self.desktop.view("Velloran")["rect"]))
                usual = usual or until(self.look, "the window stays empty")
                self.assert_looks_usual(usual)
                for other in (LIGHT, DARK, NO_SCHEME):
                    portal.change(APPEARANCE, "color-scheme", other)
                    stays(lambda usual=usual: not ImageChops.difference(until(self.look, "it is empty"), usual).getbbox(),
                          "it looks different", 0.3)
                program.close()
                portal.close()
