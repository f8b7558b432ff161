"""Desktops on which something is missing or broken."""

import os

from harness import preferences
from harness.case import DesktopCase
from harness.desktop import Desktop
from harness.waiting import stays, until

HOTKEY = preferences.CONTROL_OPTION_S
PERMISSION_MESSAGE = ("Accessibility permission is required for automated clicking. "
                      "Please allow Velloran in System Settings → Privacy & Security → Accessibility.")
WAYLAND_REASON = "Input cannot be posted: the desktop's portal has not answered."


class MissingServices(DesktopCase):
    """Without a bus nobody can look into the program: the hotkey, the clicks and the stored settings have to tell."""

    def run_ten_clicks(self, environment, **config):
        stored = preferences.config(clickIntervalSeconds=0.03, maxClicks=10, hotkey=HOTKEY, **config)
        program = self.launch({"velloran.config": preferences.as_bytes(stored)}, environment=environment)
        program.window_id
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.forget()
        self.observer.press("s", "control", "alt")
        until(lambda: self.observer.report()["releases"] >= 10, "the clicks did not come")
        stays(lambda: self.observer.report()["presses"] == 10, "clicks come after the last", 0.2)
        self.assert_equal_clicks(self.observer.report(), 10)
        self.assertTrue(program.is_running())
        return program

    def test_no_session_bus(self):
        for address in (None, "unix:path=/nowhere/bus"):
            with self.subTest(address):
                program = self.run_ten_clicks({"DBUS_SESSION_BUS_ADDRESS": address, "XDG_RUNTIME_DIR": None})
                self.assertEqual(program.end(), 0)
                program.close()

    def test_no_sound_server(self):
        program = self.run_ten_clicks({"PULSE_SERVER": "unix:/nowhere/pulse"}, playClickSound=True)
        self.assertEqual(program.end(), 0)
        self.assertEqual(program.log, "")

    def test_nobody_reads_the_log(self):
        reading, writing = os.pipe()
        os.close(reading)
        self.addCleanup(os.close, writing)
        # There the log is written to at the start, before any library has said what to do with broken pipes.
        program = self.launch({}, stderr=writing, environment={
            "XDG_SESSION_TYPE": "wayland", "QT_QPA_PLATFORM": "xcb", "DBUS_SESSION_BUS_ADDRESS": None, "XDG_RUNTIME_DIR": None})
        program.window_id
        program.wait_for_stored(**preferences.DEFAULTS)
        self.assertEqual(program.end(), 0)

    def test_no_variables_but_the_display(self):
        bare = {name: None for name in self.desktop.environment}
        bare.update({"XDG_CONFIG_HOME": None, "XDG_CACHE_HOME": None, "XDG_DATA_HOME": None, "XDG_STATE_HOME": None,
                     "DISPLAY": self.desktop.display, "HOME": self.desktop.environment["HOME"]})
        program = self.launch(None, environment=bare)
        program.window_id
        path = os.path.join(self.desktop.environment["HOME"], ".config", "velloran", "velloran.ini")
        until(lambda: "velloran.config" in preferences.read(path), "nothing was stored")
        self.assertEqual(preferences.stored_json(preferences.read(path)["velloran.config"]), preferences.DEFAULTS)
        self.assertEqual(program.end(), 0)

    def test_the_command_line_says_nothing(self):
        program = self.start(arguments=["-platform", "bogus", "-geometry", "950x800+30+30", "-style", "bogus", "--help", "file"])
        self.assertEqual(program.headline, "Ready")
        self.assertEqual(program.end(), 0)
        self.assertEqual(program.log, "")

    def test_the_variables_of_the_toolkit_count(self):
        program = self.launch({}, environment={"QT_QPA_PLATFORM": "bogus"})
        self.assertNotEqual(program.wait_for_end(), 0)
        self.assertIn("bogus", program.log)

    def test_no_display_is_told_in_one_line(self):
        program = self.launch({}, environment={"DISPLAY": None})
        self.assertEqual(program.wait_for_end(), 1)
        self.assertEqual(program.log.splitlines(), ["Velloran: there is no display to open a window on."])

    def test_a_display_that_does_not_answer(self):
        program = self.launch({}, environment={"DISPLAY": self.desktop.display + "77"})
        self.assertEqual(program.wait_for_end(), 1)
        *said_by_toolkit, last = program.log.splitlines()
        self.assertEqual(last, "Velloran: there is no display to open a window on.")
        self.assertTrue(all(line.startswith("qt.qpa.") for line in said_by_toolkit), program.log)


class UnwritableSettings(DesktopCase):
    """As an ordinary user: nothing is read-only for the administrator."""

    USER = 65534

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(cls.SCREEN, cls.USER if os.geteuid() == 0 else None)
        cls.addClassCleanup(cls.desktop.close)
        cls.observer = cls.desktop.observer

    def start_read_only(self, stored):
        folder = os.path.join(self.desktop.folder, f"locked-{self._testMethodName}")
        path = os.path.join(folder, "config", "velloran", "velloran.ini")
        preferences.write(path, stored)
        for name in ("cache", "data", "state"):
            os.mkdir(os.path.join(folder, name))
        self.desktop.give_to_user(folder)
        os.chmod(path, 0o444)
        os.chmod(os.path.dirname(path), 0o555)
        self.addCleanup(os.chmod, os.path.dirname(path), 0o755)
        with open(path, "rb") as file:
            return self.start(folder=folder), file.read()

    def test_a_read_only_folder_keeps_what_it_holds_and_the_program_runs_on(self):
        config = preferences.config(clickIntervalSeconds=0.03, maxClicks=10, hotkey=HOTKEY)
        program, before = self.start_read_only({**preferences.quiet_donation(),
                                                "velloran.config": preferences.as_bytes(config)})
        self.assertFalse(os.access(os.path.dirname(program.preferences_path), os.W_OK) and os.geteuid() != 0)
        program.find("push button", "Increase Stop after").do()
        until(lambda: program.find("text", "Stop after").text == "20", "the field does not follow")
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.forget()
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assert_equal_clicks(self.observer.report(), 20)
        self.assertEqual(program.end(), 0)
        with open(program.preferences_path, "rb") as file:
            self.assertEqual(file.read(), before)

    def test_a_first_start_in_a_read_only_folder(self):
        program, before = self.start_read_only({})
        self.assertEqual((program.headline, program.message), ("Ready", "Clicking is stopped"))
        self.assertEqual(program.end(), 0)
        with open(program.preferences_path, "rb") as file:
            self.assertEqual(file.read(), before)


class DamagedSettings(DesktopCase):
    def test_a_damaged_configuration_reads_as_the_defaults(self):
        valid = preferences.config()
        without_a_field = {name: value for name, value in valid.items() if name != "playClickSound"}
        for damaged in (b"{", b"\xff\xfe", b"[]", without_a_field, {**valid, "stopMode": "after"}, {**valid, "maxClicks": 1.5},
                        {**valid, "clickIntervalSeconds": True}):
            with self.subTest(damaged):
                program = self.start({"velloran.config": preferences.as_bytes(damaged)})
                self.assertEqual(program.find("text", "Click Interval").text, "7.00")
                self.assertEqual(program.find("text", "Stop after").text, "100")
                program.wait_for_stored(**preferences.DEFAULTS)
                program.close()

    def test_damaged_presets_stay_as_they_are_until_the_next_save(self):
        whole = {"id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427", "name": "Whole", "config": preferences.config(), "createdAt": 8e8}
        broken = {name: value for name, value in whole.items() if name != "createdAt"}
        text = preferences.as_bytes([whole, broken])
        program = self.start({"velloran.presets": text})
        program.wait_for_stored(**preferences.DEFAULTS)
        self.assertEqual(program.stored()["velloran.presets"], text)
        program.find("push button", "Menu").do()
        program.find("menu item", "Presets and Options…").do()
        program.find(None, "Presets").do()
        program.find("menu item", "Save current as preset…")
        self.assertFalse(program.shows(None, "My Presets"))
        self.assertFalse(program.shows(None, "Whole"))
        program.find("menu item", "Save current as preset…").do()
        program.find("text", "Preset name")
        self.observer.type("New")
        program.find("push button", "Save").do()
        until(lambda: program.stored()["velloran.presets"] != text, "the preset was not saved")
        self.assertEqual([preset["name"] for preset in program.stored_presets()], ["New"])

    def test_a_file_that_is_no_settings_file(self):
        program = self.launch(None)
        program.close()
        os.makedirs(os.path.dirname(program.preferences_path))
        with open(program.preferences_path, "wb") as file:
            file.write(b"\0\1\2 nonsense\n[[[\n=\n" + bytes(range(256)))
        program = self.start(folder=program.folder)
        self.assertEqual(program.headline, "Ready")
        program.wait_for_stored(**preferences.DEFAULTS)


class HoverHelp(DesktopCase):
    """What a desktop cannot do stands where the user looks for it."""

    NOTHING_WORKS = {"WAYLAND_DISPLAY": "wayland-7", "QT_QPA_PLATFORM": "xcb"}
    NO_HOTKEY = "The global hotkey does not work here."
    CONCERNED = {("push button", "Start"): WAYLAND_REASON,
                 ("push button", "Click to record shortcut"):
                     NO_HOTKEY + " A key of the desktop's own can be bound to this command: "
                                 "gapplication action app.velloran.Velloran toggle",
                 ("check box", "Click only if mouse is stationary"):
                     "The pointer's position is not known here, so the still-mouse rule never lets a click through."}

    def assert_helps(self, program, control, sentence):
        item = program.find(*control)
        self.assertIn(sentence, item.description)
        self.observer.move(*item.centre)
        # All of it is shown, and inside the window.
        x, y, width, height = program.find("label", sentence).extents
        left, top, window_width, window_height = program.window.extents
        self.assertTrue(left < x and x + width < left + window_width, (x, width))
        self.assertTrue(top < y and y + height < top + window_height, (y, height))
        self.observer.move(1450, 150)
        program.wait_until_gone("label", sentence)

    def test_stands_at_the_control_that_does_not_work(self):
        program = self.start(environment=self.NOTHING_WORKS)
        for control, sentence in self.CONCERNED.items():
            with self.subTest(control):
                self.assert_helps(program, control, sentence)

    def test_stands_at_a_disabled_button_too(self):
        stored = preferences.config(clickIntervalSeconds=0.0)
        program = self.start({"velloran.config": preferences.as_bytes(stored)}, environment=self.NOTHING_WORKS)
        program.find("push button", "Start").do()
        program.settle()
        # It would be an error if the button could be pressed.
        self.assertEqual(program.headline, "Ready")
        self.assert_helps(program, ("push button", "Start"), WAYLAND_REASON)

    def test_the_same_stands_in_about(self):
        program = self.start(environment=self.NOTHING_WORKS)
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        about = program.find("dialog", "About Velloran")
        for sentence in ("Nothing here tells where the pointer is. " + self.CONCERNED["check box", "Click only if mouse is stationary"],
                         WAYLAND_REASON):
            program.find("label", sentence, within=about)
        until(lambda: any(self.NO_HOTKEY in label.name for label in program.shown("label", within=about)),
              "nothing is said of the hotkey")

    def test_is_not_there_where_everything_works(self):
        program = self.start()
        self.assertEqual([program.find(*control).description for control in self.CONCERNED], ["", "Start / Stop Hotkey", ""])
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        about = program.find("dialog", "About Velloran")
        program.find("heading", "This desktop", within=about)
        for sentence in ("Input is posted through the X server: the session runs on one.",
                         "An X server asks nobody for a permission.", "The X server lets a program grab keys.",
                         "The X server tells where the pointer is."):
            program.find("label", sentence, within=about)


class WaylandSessions(DesktopCase):
    def test_starts_without_a_backend_and_never_clicks(self):
        for variables in ({"XDG_SESSION_TYPE": "wayland"}, {"WAYLAND_DISPLAY": "wayland-7"}):
            with self.subTest(variables):
                stored = preferences.config(clickIntervalSeconds=0.01, hotkey=HOTKEY)
                program = self.start({"velloran.config": preferences.as_bytes(stored)},
                                     environment={**variables, "QT_QPA_PLATFORM": "xcb"})
                program.find("push button", "Grant Accessibility Permission")
                self.assertEqual(program.headline, "Ready")
                program.find("push button", "Start").do()
                program.wait_for_headline("Error")
                self.assertEqual(program.message, PERMISSION_MESSAGE)
                stays(lambda: self.observer.report()["presses"] == 0, "something was clicked", 0.5)
                self.assertEqual(program.log.splitlines().count(WAYLAND_REASON), 1, program.log)
                self.assertTrue(self.observer.has_hotkey_free("s", "control", "alt"))
                self.assertEqual(program.end(), 0)
                program.close()


class TakenHotkeys(DesktopCase):
    def start_with_hotkey(self, modifiers, display):
        return self.start_with(hotkey={"modifierFlagsRaw": modifiers, "keyCode": 1, "display": display})

    def test_a_hotkey_that_another_program_has_is_one_line_in_the_log(self):
        self.observer.ask("grab 39 control alt")
        self.addCleanup(self.observer.ask, "ungrab 39 control alt")
        program = self.start_with_hotkey(preferences.CONTROL | preferences.OPTION, "⌃⌥S")
        until(lambda: program.log, "nothing is logged")
        program.settle()
        self.assertEqual(program.log, "HotkeyManager: RegisterEventHotKey failed with status -9878\n")

    def test_a_hotkey_that_is_lost_later_is_no_line_in_the_log(self):
        self.observer.ask("grab 39 mod3")
        self.addCleanup(self.observer.ask, "ungrab 39 mod3")
        program = self.start_with_hotkey(preferences.COMMAND, "⌘S")
        program.wait_for_hotkey("s", "super")
        self.addCleanup(self.desktop.run_tool, "setxkbmap", "us")
        self.desktop.run_tool("xmodmap", "-e", "clear mod4", "-e", "clear mod3", "-e", "add mod3 = Super_L")
        until(lambda: self.observer.has_hotkey_free("s", "super"), "the program keeps a key that means something else now")
        program.settle()
        self.assertEqual(program.log, "")
