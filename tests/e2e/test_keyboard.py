"""The window without a pointer."""

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

CARDS = ["Left Click", "Click Interval", "Stop After", "Stop after", "Stop after", "Click to record shortcut",
         "Choose a preset hotkey", "Start clicking after", "Click only if mouse is stationary", "Start"]
# Heights in points: of the title bar, of a field around its text, and of the focus ring around a control.
TITLE, FIELD_PADDING, RING = 64, 9, 4
FRAME = ["Menu", "Minimize", "Maximize", "Close"]


class Keyboard(DesktopCase):
    def start_without_pointer(self, **config):
        program = self.start_with(**config)
        self.observer.move(1450, 1000)
        self.assertIn("active", program.window.states)
        return program

    def tab(self, program, *modifiers):
        """Presses Tab and returns what has the focus then, once it is another than before."""
        before = program.focused()
        self.observer.press("Tab", *modifiers)
        return until(lambda: (now := program.focused()) and now != before and now, lambda: f"the focus stays at {before}")

    def go_to(self, program, name, role=None):
        for _ in range(40):
            item = self.tab(program)
            if item.name == name and (role is None or item.role == role):
                return item
        self.fail(f"Tab does not reach {name}")

    def wait_for_menu(self, program, name):
        """A menu takes keys from the moment on at which it has the focus."""
        program.find("menu item", name)
        until(lambda: program.focused() and program.focused().role == "popup menu", "the menu does not take the keys")

    def walk(self, program, *modifiers):
        items = [self.tab(program, *modifiers)]
        while True:
            item = self.tab(program, *modifiers)
            if item == items[0]:
                return items
            items.append(item)
            self.assertLess(len(items), 50)

    def test_nothing_has_the_focus_at_start_and_space_starts_nothing(self):
        program = self.start_without_pointer()
        self.assertIsNone(program.focused())
        for name in ("Space", "Return", "Up", "1"):
            self.observer.press(name)
        program.settle()
        self.assertEqual(program.headline, "Ready")
        self.assertIsNone(program.focused())
        self.assertEqual(program.stored_config(), preferences.DEFAULTS)

    def test_the_tab_key_follows_the_eye(self):
        program = self.start_without_pointer()
        items = self.walk(program)
        names = [item.name for item in items]
        first = names.index(CARDS[0])
        names = names[first:] + names[:first]
        items = items[first:] + items[:first]
        self.assertEqual(names, CARDS + FRAME)
        left, right, frame = items[:9], items[9:10], items[10:]
        for column in (left, right):
            places = [(item.centre[1] // 8, item.centre[0]) for item in column]
            self.assertEqual(places, sorted(places))
        self.assertLess(max(item.extents[0] for item in left), right[0].extents[0])
        self.assertEqual(frame, sorted(frame, key=lambda item: item.extents[0]))
        back = self.walk(program, "shift")
        start = back.index(items[0])
        self.assertEqual([items[0], *reversed(items[1:])], back[start:] + back[:start])

    def test_every_control_of_the_cards_is_operated(self):
        program = self.start_without_pointer()
        self.go_to(program, "Left Click")
        self.observer.press("Space")
        self.wait_for_menu(program, "Right Click")
        self.observer.press("Down")
        self.observer.press("Return")
        program.wait_for_stored(mouseButton="right")
        until(lambda: program.focused() and program.focused().name == "Right Click", "the focus does not come back")
        self.go_to(program, "Click Interval")
        self.observer.press("Up")
        program.wait_for_stored(clickIntervalSeconds=7.05)
        self.observer.press("Down")
        self.observer.press("Down")
        program.wait_for_stored(clickIntervalSeconds=6.95)
        self.observer.press("a", "control")
        self.observer.type("1000")
        self.observer.press("Return")
        program.wait_for_stored(clickIntervalSeconds=1000.0)
        self.go_to(program, "Stop After")
        self.observer.press("Left")
        program.wait_for_stored(stopMode="manual")
        self.observer.press("Right")
        program.wait_for_stored(stopMode="after_clicks")
        self.go_to(program, "Stop after", "radio button")
        self.observer.press("Up")
        program.wait_for_stored(stopMode="manual")
        self.observer.press("Down")
        program.wait_for_stored(stopMode="after_clicks")
        self.go_to(program, "Stop after", "text")
        self.observer.press("Up")
        program.wait_for_stored(maxClicks=110)
        self.go_to(program, "Click to record shortcut")
        self.observer.press("Return")
        program.find("push button", "Press keys to record…")
        self.observer.press("z", "control", "alt")
        program.find("push button", "⌃⌥Z")
        self.go_to(program, "Clear hotkey")
        self.observer.press("Space")
        program.wait_for_stored(hotkey=None)
        self.go_to(program, "Choose a preset hotkey")
        self.observer.press("Return")
        self.wait_for_menu(program, "Clear Hotkey")
        self.observer.press("Up")
        self.observer.press("Escape")
        program.wait_until_gone("menu item", "Clear Hotkey")
        self.observer.press("Space")
        self.wait_for_menu(program, "Clear Hotkey")
        self.observer.press("Down")
        self.observer.press("Down")
        self.observer.press("Return")
        program.wait_until_gone("menu item", "Clear Hotkey")
        until(lambda: (program.stored_config() or {}).get("hotkey"), "no hotkey was chosen")
        self.go_to(program, "Start clicking after", "check box")
        self.observer.press("Space")
        program.wait_for_stored(startDelaySeconds=3.0)
        self.go_to(program, "Start clicking after", "text")
        self.observer.press("Up")
        program.wait_for_stored(startDelaySeconds=4.0)
        self.go_to(program, "Click only if mouse is stationary", "check box")
        self.observer.press("Return")
        program.wait_for_stored(requireStationaryMouse=True)
        self.go_to(program, "Click only if mouse is stationary", "text")
        self.observer.press("Down")
        program.wait_for_stored(stationarySeconds=0.9)

    def test_a_run_is_started_and_stopped(self):
        program = self.start_without_pointer(clickIntervalSeconds=1000.0)
        for start, stop in (("Space", "Space"), ("Return", "Return")):
            self.go_to(program, "Start")
            self.observer.press(start)
            program.wait_for_headline("Running")
            self.go_to(program, "Stop")
            self.observer.press(stop)
            program.wait_for_headline("Ready")

    def test_the_menu_and_its_sheets(self):
        program = self.start_without_pointer()
        self.go_to(program, "Menu")
        self.observer.press("Space")
        self.wait_for_menu(program, "Quit")
        items = [item.name for item in program.shown("menu item")]
        self.assertEqual(items, ["Presets and Options…", "About Velloran", "Quit"])
        self.observer.press("Return")
        program.find("dialog", "Presets and Options")
        names = [item.name for item in self.walk(program)]
        first = names.index("Play click sound")
        self.assertEqual(names[first:] + names[:first], ["Play click sound", "Minimize to menu bar", "Presets", "Import", "Export",
                                                         "Reset", "Done"])
        self.observer.press("Escape")
        program.wait_until_gone("dialog", "Presets and Options")
        until(lambda: program.focused() and program.focused().name == "Menu", "the focus does not come back")
        self.observer.press("Space")
        self.wait_for_menu(program, "About Velloran")
        self.observer.press("Down")
        self.observer.press("Return")
        program.find("dialog", "About Velloran")
        self.go_to(program, "Close")
        self.observer.press("Return")
        program.wait_until_gone("dialog", "About Velloran")
        self.observer.press("q", "control")
        self.assertEqual(program.wait_for_end(), 0)

    def test_a_preset_is_saved_applied_and_deleted(self):
        program = self.start_without_pointer(maxClicks=5)
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        self.go_to(program, "Presets")
        self.observer.press("Return")
        self.wait_for_menu(program, "Save current as preset…")
        self.observer.press("Up")
        self.observer.press("Return")
        field = program.find("text", "Preset name")
        until(lambda: program.focused() == field, lambda: f"the focus is at {program.focused()}")
        self.observer.type("Work")
        self.observer.press("Return")
        until(lambda: [preset["name"] for preset in program.stored_presets()] == ["Work"], lambda: program.stored_presets())
        program.wait_until_gone("dialog", "Save preset")
        until(lambda: program.focused() and program.focused().name == "Presets", "the focus does not come back")
        self.observer.press("Space")
        self.wait_for_menu(program, "Work")
        self.observer.press("Return")
        program.wait_for_stored(clickIntervalSeconds=1.0, maxClicks=100)
        program.wait_until_gone("menu item", "Work")
        self.observer.press("Space")
        self.wait_for_menu(program, "Delete Preset")
        self.observer.press("d")
        self.observer.press("Right")
        program.find("menu item", 'Delete "Work"')
        self.observer.press("Return")
        until(lambda: program.stored_presets() == [], lambda: program.stored_presets())

    def selected(self, program):
        """The entry of the open menu that has the keyboard."""
        entries = [item.name for item in program.shown("menu item") if "focused" in item.states]
        return entries[0] if entries else None

    def test_a_resting_pointer_takes_no_menu_from_the_keyboard(self):
        program = self.start_without_pointer()
        chooser = self.go_to(program, "Choose a preset hotkey")
        x, y = chooser.centre
        self.observer.move(x - 60, y + 90)
        self.observer.press("Space")
        self.wait_for_menu(program, "Clear Hotkey")
        entries = program.shown("menu item")
        under = next(item for item in entries if item.extents[1] <= y + 90 < item.extents[1] + item.extents[3])
        for place in (0, 1):
            until(lambda: self.selected(program) == entries[place].name, lambda: f"selected is {self.selected(program)}")
            program.settle()
            self.assertEqual(self.selected(program), entries[place].name)
            self.observer.press("Down")
        self.observer.move(x - 58, y + 91)
        until(lambda: self.selected(program) == under.name, lambda: f"selected is {self.selected(program)}")

    def test_a_long_menu_follows_the_keys(self):
        presets = [{"id": f"00000000-0000-4000-8000-0000000000{number}", "name": f"Preset {number}", "createdAt": 0.0,
                    "config": preferences.config()} for number in range(10, 60)]
        program = self.start({"velloran.presets": preferences.as_bytes(presets)})
        self.observer.move(1450, 1000)
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        self.go_to(program, "Presets")
        self.observer.press("Space")
        self.wait_for_menu(program, "Delete Preset")
        _, top, _, height = program.find("popup menu").extents
        for key, name in (("d", "Delete Preset"), ("Home", "Steady — 1 click/sec, 100 clicks"), ("End", "Save current as preset…")):
            self.observer.press(key)
            item = program.find("menu item", name)
            until(lambda: top <= item.extents[1] and item.extents[1] + item.extents[3] <= top + height,
                  lambda: f"{name} is out of sight: {item.extents}", 1.0)

    def test_the_donation_prompt(self):
        program = self.start({"donation.nextReminderAt": preferences.date(preferences.now() - 1.0)})
        program.find("dialog", "Support Velloran")
        names = [item.name for item in self.walk(program)]
        first = names.index("Donate via Stripe")
        self.assertEqual(names[first:] + names[:first], ["Donate via Stripe", "I've already donated", "Maybe later"])
        self.go_to(program, "Maybe later")
        self.observer.press("Space")
        until(lambda: program.stored().get("donation.remindersShown") == "1", lambda: program.stored())

    def test_what_gets_the_focus_comes_into_sight(self):
        program = self.start_without_pointer(startDelaySeconds=1.0, requireStationaryMouse=True)
        program.place(10, 10, 920, 736)
        _, top, _, height = program.window.extents

        def is_in_sight(item):
            # With the frame around the text of a field, and with the ring.
            around = RING + (FIELD_PADDING if item.role == "text" else 0)
            _, upper, _, tall = item.extents
            return top + TITLE <= upper - around and upper + tall + around <= top + height

        for modifiers in ((), ("shift",)):
            for _ in CARDS + FRAME:
                item = self.tab(program, *modifiers)
                if item.name not in FRAME:
                    until(lambda: is_in_sight(item), lambda: f"{item} is out of sight: {item.extents}")
