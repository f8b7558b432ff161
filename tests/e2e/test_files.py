"""Import and export through the toolkit's own file dialogs."""

import json
import os

from harness import preferences
from harness.case import DesktopCase
from harness.file_dialogs import choose_file, name_field, open_dialog, wait_until_closed, wait_until_open
from harness.waiting import until


class ImportAndExport(DesktopCase):
    CONFIG = {"mouseButton": "middle", "clickIntervalSeconds": 0.125, "stopMode": "manual", "maxClicks": 77,
              "startDelaySeconds": 2.5, "requireStationaryMouse": True, "stationarySeconds": 0.3, "playClickSound": True,
              "minimizeToTray": True, "hotkey": preferences.CONTROL_OPTION_S}

    def start_with_options(self, **config):
        program = self.start_with(**config)
        program.give_focus()
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        return program

    def test_an_exported_configuration_comes_back_by_import(self):
        program = self.start_with_options(**self.CONFIG)
        path = os.path.join(program.folder, "export.json")
        choose_file(program, "Export", path)
        until(lambda: os.path.exists(path), "nothing was written")
        with open(path, encoding="utf-8") as file:
            text = file.read()
        exported = json.loads(text)
        self.assertEqual(exported, self.CONFIG)
        self.assertEqual(list(exported), sorted(exported))
        self.assertGreater(len(text.splitlines()), len(exported))
        program.click_on("push button", "Reset")
        program.find("push button", "Done").do()
        program.wait_until_gone("dialog", "Presets and Options")
        program.click_on("push button", "Clear hotkey")
        program.wait_for_stored(**preferences.DEFAULTS, hotkey=None)
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        choose_file(program, "Import", path)
        program.wait_for_stored(**self.CONFIG)
        program.wait_for_hotkey("s", "control", "alt")

    def test_counts_keep_every_digit_on_their_way_in_and_out(self):
        program = self.start_with_options()
        for name, count in (("largest.json", 2 ** 63 - 1), ("smallest.json", -2 ** 63)):
            path = os.path.join(program.folder, name)
            with open(path, "w", encoding="utf-8") as file:
                json.dump({**self.CONFIG, "stopMode": "after_clicks", "maxClicks": count}, file)
            choose_file(program, "Import", path)
            program.wait_for_stored(maxClicks=count)
            program.wait_for_text(f"Stop After: {count} clicks")
            exported = path + ".out.json"
            choose_file(program, "Export", exported)
            until(lambda: os.path.exists(exported), "nothing was written")
            with open(exported, encoding="utf-8") as file:
                self.assertEqual(json.load(file)["maxClicks"], count)

    def test_the_proposed_name(self):
        program = self.start_with_options()
        dialog = open_dialog(program, "Export")
        until(lambda: name_field(dialog).text == "Velloran-config.json", lambda: name_field(dialog).text)
        self.observer.press("Escape")
        wait_until_closed(program)
        self.assertEqual([name for name in os.listdir(program.folder) if name.endswith(".json")], [])

    def test_what_is_no_configuration_changes_nothing(self):
        program = self.start_with_options(**self.CONFIG)
        contents = {"nonsense.json": b"{]", "list.json": b"[]", "preset.json": json.dumps(
            {"id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427", "name": "x", "config": preferences.DEFAULTS, "createdAt": 1}).encode()}
        for name, content in contents.items():
            path = os.path.join(program.folder, name)
            with open(path, "wb") as file:
                file.write(content)
            choose_file(program, "Import", path)
        program.settle()
        # A change that does arrive shows that the others were through.
        program.click_on("check box", "Play click sound")
        program.wait_for_stored(**{**self.CONFIG, "playClickSound": False})

    def test_the_next_dialog_can_be_asked_for_at_once(self):
        program = self.start_with_options()
        place = program.find("push button", "Import").centre
        for _ in range(3):
            self.observer.click(*place)
            dialog = wait_until_open(program, "Import")
            name_field(dialog)
            self.observer.press("Escape")
            wait_until_closed(program)

    def test_the_window_below_a_dialog_cannot_be_used(self):
        program = self.start_with_options()
        sound = program.find("check box", "Play click sound").centre
        open_dialog(program, "Import")
        self.observer.click(*sound)
        program.settle()
        self.observer.press("Escape")
        wait_until_closed(program)
        program.click_on("check box", "Minimize to menu bar")
        program.wait_for_stored(minimizeToTray=True, playClickSound=False)

    def test_a_failing_export_says_nothing(self):
        program = self.start_with_options()
        dialog = open_dialog(program, "Export")
        self.observer.press("a", "control")
        field = name_field(dialog)
        self.observer.type("/sys/velloran.json")
        until(lambda: field.text == "/sys/velloran.json", lambda: field.text)
        self.observer.press("Return")
        wait_until_closed(program)
        self.assertTrue(program.shows("push button", "Export"))
        self.assertEqual(program.log, "")
