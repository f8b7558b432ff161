"""A Wayland session of GNOME's in which the hotkey can only go among the user's own shortcuts."""

import subprocess

from harness import preferences
from harness.bus import Bus
from harness.case import DesktopCase
from harness.waiting import stays, until

SESSION = {"WAYLAND_DISPLAY": "wayland-7", "QT_QPA_PLATFORM": "xcb", "GSETTINGS_BACKEND": "keyfile"}
SCHEMA = "org.gnome.settings-daemon.plugins.media-keys"
FOLDER = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/"
ENTRY = f"{SCHEMA}.custom-keybinding:{FOLDER}velloran/"
THE_USERS = f"['{FOLDER}custom0/']"
REASON = "The hotkey goes among your own shortcuts in the desktop's settings, once you have agreed."
FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
TITLE = "Keyboard Shortcut"


class GnomeHotkey(DesktopCase):
    def setUp(self):
        self.service = Bus(self.desktop)
        self.addCleanup(self.service.close)
        self.service.take_name("org.gnome.SettingsDaemon.MediaKeys")

    def start_with_hotkey(self, **options):
        stored = preferences.config(hotkey=preferences.CONTROL_OPTION_S)
        program = self.start({"velloran.config": preferences.as_bytes(stored)}, environment=SESSION, **options)
        self.settings(program, "set", SCHEMA, "custom-keybindings", THE_USERS)
        return program

    def settings(self, program, *arguments):
        """What the desktop's tool says to that; the settings are in the profile of the program."""
        return subprocess.run(["gsettings", *arguments], env=program.environment, check=True, capture_output=True, text=True,
                              timeout=20).stdout.strip()

    def list(self, program):
        return self.settings(program, "get", SCHEMA, "custom-keybindings")

    def wait_for_list(self, program, wanted):
        until(lambda: self.list(program) == wanted, lambda: f"the list is {self.list(program)}, not {wanted}")

    def agree(self, program):
        sheet = program.find("dialog", TITLE)
        program.find("heading", "Add Ctrl+Alt+S to your shortcuts?", within=sheet)
        program.find("push button", "Add Shortcut", within=sheet).do()
        self.wait_for_list(program, f"{THE_USERS[:-1]}, '{FOLDER}velloran/']")
        until(lambda: program.find("push button", "⌃⌥S").description == "Start / Stop Hotkey", "there is something to say")

    def press(self, program):
        command = self.settings(program, "get", ENTRY, "command").strip("'")
        subprocess.run(command, shell=True, env=program.environment, check=True, capture_output=True, timeout=20)

    def about(self, program):
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        return program.find("dialog", "About Velloran")

    def test_once_agreed_it_starts_the_program_and_cleared_it_goes(self):
        program = self.start_with_hotkey()
        self.agree(program)
        self.assertEqual(self.settings(program, "get", ENTRY, "binding"), "'<Control><Alt>s'")
        self.press(program)
        # It may click nowhere: that is how it tells that it was started.
        program.wait_for_headline("Error")
        about = self.about(program)
        program.find("label", REASON, within=about)
        self.assertEqual(program.shown("text", "Line for the hotkey", within=about), [])
        self.assertNotIn(FAILURE, program.log)
        program.find("push button", "Close", within=about).do()
        program.find("push button", "Clear hotkey").do()
        self.wait_for_list(program, THE_USERS)
        self.assertEqual(self.settings(program, "get", ENTRY, "binding"), "''")

    def test_with_the_program_it_goes_and_comes_without_a_question(self):
        program = self.start_with_hotkey()
        self.agree(program)
        self.assertEqual(program.end(), 0)
        self.assertEqual(self.list(program), THE_USERS)
        program = self.start(folder=program.folder, environment=SESSION)
        self.wait_for_list(program, f"{THE_USERS[:-1]}, '{FOLDER}velloran/']")
        self.assertEqual(program.shown("dialog", TITLE), [])

    def test_refused_it_is_one_line_in_the_log_and_a_line_for_a_key(self):
        program = self.start_with_hotkey()
        program.find("push button", "Not Now", within=program.find("dialog", TITLE)).do()
        until(lambda: FAILURE in program.log, lambda: program.log)
        program.wait_until_gone("dialog", TITLE)
        stays(lambda: not program.shown("dialog", TITLE), "it is asked again", 0.5)
        self.assertEqual(self.list(program), THE_USERS)
        self.assertEqual(program.log.splitlines().count(FAILURE), 1, program.log)
        program.find("text", "Line for the hotkey", within=self.about(program))
