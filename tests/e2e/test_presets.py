"""The presets menu and the sheet that names a new preset."""

import uuid

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

BUILT_INS = ["Steady — 1 click/sec, 100 clicks", "Rapid — 0.10s, 500 clicks", "AFK — every 30s, manual stop"]
SAVE = "Save current as preset…"
AWKWARD = ["R&D <b>fast</b>", 'He said "go"', "100 % & more…", "x" * 300]


def preset(name, **config):
    return {"id": str(uuid.uuid4()).upper(), "name": name, "config": preferences.config(**config), "createdAt": 812345678.25}


class Presets(DesktopCase):
    def start_with_presets(self, *presets, **config):
        program = self.start({"velloran.config": preferences.as_bytes(preferences.config(**config)),
                              "velloran.presets": preferences.as_bytes(list(presets))})
        program.give_focus()
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        return program

    def open_menu(self, program):
        program.click(program.find(None, "Presets"))
        program.find("menu item", SAVE)

    def entries(self, program):
        """From top to bottom."""
        return [item.name for item in sorted(program.shown("menu item"), key=lambda item: item.extents[1])]

    def choose(self, program, name):
        self.open_menu(program)
        program.click_on("menu item", name)
        program.wait_until_gone("menu item", SAVE)

    def open_delete_menu(self, program):
        self.open_menu(program)
        program.click_on("menu item", "Delete Preset")
        until(lambda: any(name.startswith("Delete \"") for name in self.entries(program)), "the menu does not open")

    def save_as(self, program, name, finish):
        self.choose(program, SAVE)
        field = program.find("text", "Preset name")
        self.observer.type(name)
        until(lambda: field.text == name, lambda: field.text)
        finish()
        program.wait_until_gone("dialog", "Save preset")

    def test_counts_of_presets_keep_every_digit(self):
        counts = {"Largest": 2 ** 63 - 1, "Smallest": -2 ** 63}
        program = self.start_with_presets(*(preset(name, maxClicks=count) for name, count in counts.items()))
        for name, count in counts.items():
            self.choose(program, name)
            program.wait_for_stored(maxClicks=count)
            program.wait_for_text(f"Stop After: {count} clicks")
        self.choose(program, SAVE)
        program.find("text", "Preset name")
        self.observer.type("Kept")
        self.observer.press("Return")
        until(lambda: len(program.stored_presets()) == 3, lambda: program.stored_presets())
        self.assertEqual([entry["config"]["maxClicks"] for entry in program.stored_presets()], [*counts.values(), -2 ** 63])

    def test_the_menu_without_own_presets(self):
        program = self.start_with_presets()
        self.open_menu(program)
        self.assertEqual(self.entries(program), [*BUILT_INS, SAVE])
        self.assertTrue(program.shows("heading", "Built-in"))
        self.assertFalse(program.shows("heading", "My Presets"))
        self.observer.press("Escape")
        program.wait_until_gone("menu item", SAVE)
        self.assertTrue(program.shows("dialog", "Presets and Options"))

    def test_built_ins_are_applied_and_keep_the_hotkey(self):
        program = self.start_with_presets(hotkey=preferences.CONTROL_OPTION_S, playClickSound=True)
        expected = {
            BUILT_INS[0]: {"clickIntervalSeconds": 1.0, "maxClicks": 100, "stopMode": "after_clicks", "startDelaySeconds": 0.0},
            BUILT_INS[1]: {"clickIntervalSeconds": 0.1, "maxClicks": 500, "stopMode": "after_clicks", "startDelaySeconds": 1.0},
            BUILT_INS[2]: {"clickIntervalSeconds": 30.0, "maxClicks": None, "stopMode": "manual", "startDelaySeconds": 3.0,
                           "requireStationaryMouse": True, "stationarySeconds": 5.0},
        }
        for name, fields in expected.items():
            self.choose(program, name)
            program.wait_for_stored(hotkey=preferences.CONTROL_OPTION_S, mouseButton="left", playClickSound=False,
                                    minimizeToTray=False, **fields)
        self.assertEqual(program.find("text", "Click Interval").text, "30.00")

    def test_own_presets_are_listed_letter_for_letter_and_applied(self):
        own = [preset(name, maxClicks=index + 1) for index, name in enumerate(AWKWARD)]
        program = self.start_with_presets(*own)
        self.open_menu(program)
        self.assertEqual(self.entries(program), [*BUILT_INS, *AWKWARD, "Delete Preset", SAVE])
        self.assertTrue(program.shows("heading", "My Presets"))
        x, _, width, _ = program.window.extents
        for item in program.shown("menu item"):
            self.assertTrue(x <= item.extents[0] and item.extents[0] + item.extents[2] <= x + width, item.extents)
        program.click_on("menu item", AWKWARD[0])
        program.wait_for_stored(maxClicks=1)
        self.choose(program, AWKWARD[3])
        program.wait_for_stored(maxClicks=4)

    def test_the_current_settings_are_saved_under_a_trimmed_name(self):
        program = self.start_with_presets(preset("First"), clickIntervalSeconds=0.25, mouseButton="middle")
        self.save_as(program, "  My work  ", lambda: self.observer.press("Return"))
        until(lambda: len(program.stored_presets()) == 2, lambda: program.stored_presets())
        first, second = program.stored_presets()
        self.assertEqual((first["name"], second["name"]), ("First", "My work"))
        self.assertEqual(second["config"], preferences.config(clickIntervalSeconds=0.25, mouseButton="middle"))
        self.assertEqual(str(uuid.UUID(second["id"])).upper(), second["id"])
        self.assertLess(abs(second["createdAt"] - preferences.now()), 60.0)
        self.open_menu(program)
        self.assertEqual(self.entries(program), [*BUILT_INS, "First", "My work", "Delete Preset", SAVE])

    def test_a_blank_name_saves_nothing(self):
        program = self.start_with_presets()
        for name in ("", "   "):
            self.save_as(program, name, lambda: program.click_on("push button", "Save"))
        program.settle()
        self.assertEqual(program.stored_presets(), [])
        self.open_menu(program)
        self.assertEqual(self.entries(program), [*BUILT_INS, SAVE])

    def test_cancel_forgets_the_name_and_escape_keeps_it(self):
        program = self.start_with_presets()
        self.save_as(program, "kept", lambda: self.observer.press("Escape"))
        self.assertTrue(program.shows("dialog", "Presets and Options"))
        self.choose(program, SAVE)
        field = program.find("text", "Preset name")
        self.assertEqual(field.text, "kept")
        program.click_on("push button", "Cancel", within=program.find("dialog", "Save preset"))
        program.wait_until_gone("dialog", "Save preset")
        self.choose(program, SAVE)
        self.assertEqual(program.find("text", "Preset name").text, "")
        self.assertEqual(program.stored_presets(), [])

    def test_deleting_goes_by_identity(self):
        twins = [preset("Twin", maxClicks=1), preset("Twin", maxClicks=2), preset("Other")]
        program = self.start_with_presets(*twins)
        self.open_delete_menu(program)
        self.assertEqual([name for name in self.entries(program) if name.startswith("Delete \"")],
                         ['Delete "Twin"', 'Delete "Twin"', 'Delete "Other"'])
        program.click_on("menu item", 'Delete "Twin"', number=1)
        until(lambda: len(program.stored_presets()) == 2, lambda: program.stored_presets())
        self.assertEqual(program.stored_presets(), [twins[0], twins[2]])

    def test_after_the_last_is_deleted_the_section_is_gone(self):
        program = self.start_with_presets(preset("Only"))
        self.open_delete_menu(program)
        program.click_on("menu item", 'Delete "Only"')
        until(lambda: program.stored_presets() == [], lambda: program.stored_presets())
        program.wait_until_gone("menu item", SAVE)
        self.open_menu(program)
        self.assertEqual(self.entries(program), [*BUILT_INS, SAVE])
