"""The hotkey among the user's own shortcuts, which is where GNOME has none for programs, or its portal may not give them: the desktop's
service for keys presses it."""

import os
import signal
import tempfile

from gnome_case import GnomeCase
from harness import preferences
from harness.gnome import ALT, CONTROL, LETTERS, Gnome
from harness.portal_tests import HotkeyTests
from harness.program import Program
from harness.waiting import stays, until

FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
TAKEN = "HotkeyManager: RegisterEventHotKey failed with status -9878"
TITLE = "Keyboard Shortcut"
S = LETTERS["s"]
SCHEMA = "org.gnome.settings-daemon.plugins.media-keys"
FOLDER = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/"
OURS, ANOTHER = FOLDER + "velloran/", FOLDER + "custom0/"


class GnomeUsersShortcut(HotkeyTests, GnomeCase):
    # Half a second has to be without a repetition before a key counts as let go of.
    SOONEST_PRESS = 0.6

    def make_desktop(self):
        return Gnome(way=self.WAY, binds=False)

    def launch(self, profile=None, **config):
        """With the settings of the desktop; with the same preferences as before where a profile is named."""
        stored = {"velloran.config": preferences.as_bytes(preferences.config(**config))}
        if profile:
            stored = None
        else:
            profile = tempfile.mkdtemp(prefix="profile-", dir=self.desktop.folder)
            os.mkdir(os.path.join(profile, "config"))
            os.symlink(os.path.join(self.desktop.config_home, "glib-2.0"), os.path.join(profile, "config", "glib-2.0"))
        program = Program(self.desktop, stored, environment={"XDG_DATA_HOME": self.desktop.data_home}, folder=profile)
        self.addCleanup(program.close)
        program.wait_for_window()
        return program

    def start_with_hotkey(self):
        """The desktop asks for the clicks, and the program for the shortcut."""
        program = self.launch(**self.HOTKEY)
        self.grant()
        self.wait_for_permission(program)
        sheet = program.find("dialog", TITLE)
        program.find("heading", "Add Ctrl+Alt+S to your shortcuts?", within=sheet)
        self.assertEqual(self.entries(), [])
        program.find("push button", "Add Shortcut", within=sheet).do()
        until(lambda: self.entries() == [OURS], "it does not get among the user's shortcuts")
        self.desktop.focus("witness")
        return program

    def start_again(self, program):
        """With the same preferences; the program does not ask."""
        program = self.launch(program.folder)
        self.grant_again()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.assertEqual(program.shown("dialog", TITLE), [])
        return program

    def entries(self):
        """The places of the user's own shortcuts."""
        text = self.desktop.run_tool("gsettings", "get", SCHEMA, "custom-keybindings")
        return [part for part in text.split("'") if part.startswith("/")]

    def test_it_is_asked_for_once_as_long_as_it_stays_the_same(self):
        program = self.start_with_hotkey()
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(program.end(), 0)
        self.assertEqual(self.entries(), [])
        self.wait_until_free()
        program = self.start_again(program)
        self.press_until_bound(program, CONTROL, ALT, S)

    def test_cleared_it_is_the_windows_again(self):
        program = self.start_with_hotkey()
        self.press_until_bound(program, CONTROL, ALT, S)
        self.stop(program)
        program.find("push button", "Clear hotkey").do()
        until(lambda: self.entries() == [], "it stays among the user's shortcuts")
        self.wait_until_free()
        self.assertEqual(program.headline, "Ready")

    def test_refused_it_is_one_line_in_the_log(self):
        program = self.launch(**self.HOTKEY)
        self.grant()
        program.find("push button", "Not Now", within=program.find("dialog", TITLE)).do()
        until(lambda: FAILURE in program.log, lambda: program.log)
        stays(lambda: not program.shown("dialog", TITLE), "it is asked again", 2)
        self.assertEqual(program.log.splitlines().count(FAILURE), 1, program.log)
        self.assertEqual(self.entries(), [])
        self.wait_for_permission(program)
        self.wait_until_free()
        self.assertEqual(program.headline, "Ready")

    def test_what_a_killed_program_has_left_starts_nothing_and_serves_the_next(self):
        program = self.start_with_hotkey()
        self.press_until_bound(program, CONTROL, ALT, S)
        program.process.send_signal(signal.SIGKILL)
        program.process.wait()
        self.bus.wait_until_free()
        self.desktop.focus("witness")
        self.assertEqual(self.entries(), [OURS])
        self.hand.tap(CONTROL, ALT, S)
        stays(lambda: self.bus.owner_process() is None, "the key starts it", 2)
        program = self.start_again(program)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(program.end(), 0)
        self.assertEqual(self.entries(), [])

    def test_one_that_another_entry_has_is_refused_and_stays_that_ones(self):
        pressed = os.path.join(self.desktop.folder, "pressed")
        for key, value in (("name", "Mine"), ("command", f"touch {pressed}"), ("binding", "<Control><Alt>s")):
            self.desktop.set(f"{SCHEMA}.custom-keybinding:{ANOTHER}", key, value)
        self.desktop.set(SCHEMA, "custom-keybindings", f"['{ANOTHER}']")
        program = self.launch(**self.HOTKEY)
        self.grant()
        until(lambda: TAKEN in program.log, lambda: program.log)
        self.assertEqual(program.shown("dialog", TITLE), [])
        self.assertEqual(self.entries(), [ANOTHER])
        self.wait_for_permission(program)
        self.desktop.focus("witness")

        def is_pressed():
            self.hand.tap(CONTROL, ALT, S)
            return os.path.exists(pressed)
        until(is_pressed, "the key does not do what its user wants")
        self.assertEqual(program.headline, "Ready")
