"""A Wayland session in which only the desktop's portal binds keys."""

from harness import preferences
from harness.case import DesktopCase
from harness.portal import ShortcutsPortal
from harness.waiting import stays, until

SESSION = {"WAYLAND_DISPLAY": "wayland-7", "QT_QPA_PLATFORM": "xcb"}
REASON = "The hotkey is a shortcut of the desktop's portal, which may ask before it binds one."
FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
ADVICE = " A key of the desktop's own can be bound to this command: gapplication action app.velloran.Velloran toggle"


class PortalHotkey(DesktopCase):
    def start_portal(self, words):
        portal = ShortcutsPortal(self.desktop, words)
        self.addCleanup(portal.close)
        return portal

    def start_with_hotkey(self):
        stored = preferences.config(hotkey=preferences.CONTROL_OPTION_S)
        return self.start({"velloran.config": preferences.as_bytes(stored)}, environment=SESSION)

    def help_of(self, program):
        return program.find("push button", "⌃⌥S").description

    def wait_for_help(self, program, wanted):
        until(lambda: self.help_of(program) == wanted, lambda: self.help_of(program))

    def about(self, program):
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        return program.find("dialog", "About Velloran")

    def test_is_bound_and_starts_the_program(self):
        portal = self.start_portal("Press <Control><Alt>s")
        program = self.start_with_hotkey()
        portal.wait_for("toggle-ctrl-alt-s")
        self.wait_for_help(program, "Start / Stop Hotkey")
        portal.press()
        # It may click nowhere: that is how it tells that it was started.
        program.wait_for_headline("Error")
        about = self.about(program)
        program.find("label", REASON, within=about)
        self.assertEqual(program.shown("text", "Line for the hotkey", within=about), [])
        self.assertNotIn(FAILURE, program.log)

    def test_another_key_is_shown(self):
        self.start_portal("Press <Control>F9")
        program = self.start_with_hotkey()
        self.wait_for_help(program, "Start / Stop Hotkey. The hotkey on this desktop is: Press <Control>F9")
        program.find("label", "The hotkey on this desktop is: Press <Control>F9", within=self.about(program))

    def test_refused_it_is_one_line_in_the_log_and_a_line_for_a_key(self):
        self.start_portal(None)
        program = self.start_with_hotkey()
        self.wait_for_help(program, "Start / Stop Hotkey. This desktop did not give the program its hotkey." + ADVICE)
        self.assertEqual(program.log.splitlines().count(FAILURE), 1, program.log)
        program.find("text", "Line for the hotkey", within=self.about(program))

    def test_goes_and_comes_with_the_portal(self):
        first = self.start_portal("Ctrl+Alt+S")
        program = self.start_with_hotkey()
        first.wait_for("toggle-ctrl-alt-s")
        first.close()
        self.wait_for_help(program, "Start / Stop Hotkey. The global hotkey does not work here: "
                                    "the desktop's portal does not answer." + ADVICE)
        second = self.start_portal("Ctrl+Alt+S")
        second.wait_for("toggle-ctrl-alt-s")
        self.wait_for_help(program, "Start / Stop Hotkey")
        second.press()
        program.wait_for_headline("Error")
        second.close()
        self.start_portal("Ctrl+Alt+S").wait_for("toggle-ctrl-alt-s")
        # By now each sentence was true at least twice.
        told = [line for line in program.log.splitlines() if line.startswith("This desktop: ")]
        self.assertEqual(sorted(told), sorted(set(told)))
        for sentence in (REASON, "The global hotkey does not work here: the desktop's portal does not answer."):
            self.assertIn("This desktop: " + sentence, told)

    def test_hotkey_that_is_cleared_is_given_back(self):
        portal = self.start_portal("Ctrl+Alt+S")
        program = self.start_with_hotkey()
        portal.wait_for("toggle-ctrl-alt-s")
        self.wait_for_help(program, "Start / Stop Hotkey")
        program.find("push button", "Clear hotkey").do()
        program.find("push button", "Click to record shortcut")
        portal.press()
        stays(lambda: program.headline == "Ready", "it was started", 0.3)
