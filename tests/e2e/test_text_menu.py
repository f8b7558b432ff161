"""The menu of a text field."""

from harness.case import DesktopCase
from harness.waiting import until

ENTRIES = ["Cut", "Copy", "Paste", "Select All"]


class TextMenu(DesktopCase):
    def entries(self, program):
        """From top to bottom."""
        return [item.name for item in sorted(program.shown("menu item"), key=lambda item: item.extents[1])]

    def open_menu(self, program, field):
        program.click(field, 3)
        program.find("menu item", "Cut")

    def choose(self, program, name):
        program.click_on("menu item", name)
        program.wait_until_gone("menu item", name)

    def wait_for_focus(self, program, field):
        until(lambda: program.focused() == field, lambda: f"the focus is at {program.focused()}")

    def test_a_right_click_opens_it_and_leaves_what_is_typed_alone(self):
        program = self.start_with()
        field = program.find("text", "Click Interval")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("2.5")
        program.find("push button", "Update")
        self.open_menu(program, field)
        self.assertEqual(self.entries(program), ENTRIES)
        # Nothing is selected, so there is nothing to cut.
        program.find("menu item", "Cut").do()
        program.settle()
        self.observer.press("Escape")
        program.wait_until_gone("menu item", "Cut")
        self.wait_for_focus(program, field)
        self.assertEqual(field.text, "2.5")
        self.assertTrue(program.shows("push button", "Update"))
        self.assertEqual(program.stored_config()["clickIntervalSeconds"], 7.0)
        self.observer.press("Return")
        program.wait_for_stored(clickIntervalSeconds=2.5)

    def test_what_is_cut_here_is_pasted_there(self):
        program = self.start_with(clickIntervalSeconds=0.25)
        field = program.find("text", "Click Interval")
        self.open_menu(program, field)
        self.choose(program, "Select All")
        self.open_menu(program, field)
        self.choose(program, "Cut")
        until(lambda: field.text == "", lambda: field.text)
        self.wait_for_focus(program, field)
        self.assertEqual(program.stored_config()["clickIntervalSeconds"], 0.25)

        other = program.find("text", "Stop after")
        program.click(other)
        # An emptied field that is left has its number again.
        until(lambda: field.text == "0.25", lambda: field.text)
        self.observer.press("a", "control")
        self.observer.press("Menu")
        program.find("menu item", "Paste")
        self.observer.press("Down")
        self.observer.press("Down")
        self.observer.press("Return")
        until(lambda: other.text == "0.25", lambda: other.text)
        self.wait_for_focus(program, other)
        self.assertTrue(program.shows("push button", "Update"))
        self.assertEqual(program.stored_config()["maxClicks"], 100)

    def test_the_name_of_a_preset_has_it_too(self):
        program = self.start_with()
        program.give_focus()
        self.observer.press(",", "control")
        program.click(program.find(None, "Presets"))
        program.click_on("menu item", "Save current as preset…")
        field = program.find("text", "Preset name")
        self.observer.type("Fast")
        until(lambda: field.text == "Fast", lambda: field.text)
        self.observer.press("F10", "shift")
        program.find("menu item", "Select All")
        # Only the menu closes.
        self.observer.press("Escape")
        program.wait_until_gone("menu item", "Select All")
        self.wait_for_focus(program, field)
        self.open_menu(program, field)
        self.choose(program, "Select All")
        self.open_menu(program, field)
        self.choose(program, "Copy")
        self.observer.press("End")
        self.open_menu(program, field)
        self.choose(program, "Paste")
        until(lambda: field.text == "FastFast", lambda: field.text)
        self.observer.press("Return")
        until(lambda: [entry["name"] for entry in program.stored_presets()] == ["FastFast"], lambda: program.stored_presets())
