"""A Wayland session of GNOME's in which the hotkey can only go among the user's own shortcuts."""

import subprocess

from harness import preferences
from harness.bus import Bus
from harness.case import DesktopCase
from harness.compositor_case import CompositorCase
from harness.program import Program
from harness.waiting import stays, until

SESSION = {"WAYLAND_DISPLAY": "wayland-7", "QT_QPA_PLATFORM": "xcb", "GSETTINGS_BACKEND": "keyfile"}
SCHEMA = "org.gnome.settings-daemon.plugins.media-keys"
FOLDER = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/"
ENTRY = f"{SCHEMA}.custom-keybinding:{FOLDER}velloran/"
THE_USERS = f"['{FOLDER}custom0/']"
REASON = "The hotkey goes among your own shortcuts in the desktop's settings, once you have agreed."
FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
TITLE = "Keyboard Shortcut"


def start_service(case):
    """The desktop's own, for keys."""
    service = Bus(case.desktop)
    case.addCleanup(service.close)
    service.take_name("org.gnome.SettingsDaemon.MediaKeys")


def settings(program, *arguments):
    """What the desktop's tool says to that; the settings are in the profile of the program."""
    return subprocess.run(["gsettings", *arguments], env=program.environment, check=True, capture_output=True, text=True,
                          timeout=20).stdout.strip()


def agree(program):
    sheet = program.find("dialog", TITLE)
    program.find("heading", "Add Ctrl+Alt+S to your shortcuts?", within=sheet)
    program.find("push button", "Add Shortcut", within=sheet).do()
    until(lambda: f"'{FOLDER}velloran/'" in settings(program, "get", SCHEMA, "custom-keybindings"), "it is not in the list")
    until(lambda: program.find("push button", "⌃⌥S").description == "Start / Stop Hotkey", "there is something to say")


def press(program, times=1):
    """What the desktop does; several times it does so at once."""
    command = settings(program, "get", ENTRY, "command").strip("'")
    started = [subprocess.Popen(command, shell=True, env=program.environment, stdout=subprocess.DEVNULL) for _ in range(times)]
    assert [process.wait(20) for process in started] == [0] * times


class GnomeHotkey(DesktopCase):
    def setUp(self):
        start_service(self)

    def start_with_hotkey(self, **options):
        stored = preferences.config(hotkey=preferences.CONTROL_OPTION_S)
        program = self.start({"velloran.config": preferences.as_bytes(stored)}, environment=SESSION, **options)
        settings(program, "set", SCHEMA, "custom-keybindings", THE_USERS)
        return program

    def list(self, program):
        return settings(program, "get", SCHEMA, "custom-keybindings")

    def wait_for_list(self, program, wanted):
        until(lambda: self.list(program) == wanted, lambda: f"the list is {self.list(program)}, not {wanted}")

    def agree(self, program):
        agree(program)
        self.wait_for_list(program, f"{THE_USERS[:-1]}, '{FOLDER}velloran/']")

    def about(self, program):
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        return program.find("dialog", "About Velloran")

    def test_once_agreed_it_starts_the_program_and_cleared_it_goes(self):
        program = self.start_with_hotkey()
        self.agree(program)
        self.assertEqual(settings(program, "get", ENTRY, "binding"), "'<Control><Alt>s'")
        press(program)
        # It may click nowhere: that is how it tells that it was started.
        program.wait_for_headline("Error")
        about = self.about(program)
        program.find("label", REASON, within=about)
        self.assertEqual(program.shown("text", "Line for the hotkey", within=about), [])
        self.assertNotIn(FAILURE, program.log)
        program.find("push button", "Close", within=about).do()
        program.find("push button", "Clear hotkey").do()
        self.wait_for_list(program, THE_USERS)
        until(lambda: settings(program, "get", ENTRY, "binding") == "''", "its binding stays")

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


class GnomeHotkeyRun(CompositorCase):
    """Where clicks are made: on a compositor that binds no keys for programs."""

    def test_a_repetition_stops_what_the_key_has_started(self):
        start_service(self)
        stored = preferences.config(hotkey=preferences.CONTROL_OPTION_S, clickIntervalSeconds=1000.0, stopMode="manual")
        program = Program(self.desktop, {"velloran.config": preferences.as_bytes(stored)},
                          environment={"SWAYSOCK": None, "XDG_CURRENT_DESKTOP": "GNOME", "GSETTINGS_BACKEND": "keyfile"})
        self.addCleanup(program.close)
        program.wait_for_window()
        agree(program)
        press(program)
        program.wait_for_headline("Running")
        # A held key is told of like this. That it is held would be no reason to go on.
        press(program, times=2)
        program.wait_for_headline("Ready")
        stays(lambda: program.headline == "Ready", "it starts again", 0.5)
