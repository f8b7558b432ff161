"""Recording a hotkey from the keyboard."""

from harness import preferences
from harness.case import DesktopCase
from harness.preferences import COMMAND, CONTROL, OPTION, SHIFT
from harness.waiting import until

IDLE = "Click to record shortcut"
RECORDING = "Press keys to record…"


class Recorder(DesktopCase):
    def start_recording(self, **config):
        program = self.start_with(**config)
        self.recorder = program.find("push button", config["hotkey"]["display"] if "hotkey" in config else IDLE)
        program.click(self.recorder)
        program.find("push button", RECORDING)
        return program

    def hotkey(self, modifiers, code, display):
        return {"modifierFlagsRaw": modifiers, "keyCode": code, "display": display}

    def test_combinations_that_mean_something_else_in_the_window(self):
        for name, modifiers, recorded in (
                ("s", ("control", "alt"), self.hotkey(CONTROL | OPTION, 1, "⌃⌥S")),
                ("q", ("control",), self.hotkey(CONTROL, 12, "⌃Q")),
                (",", ("control",), self.hotkey(CONTROL, 43, "⌃,")),
                ("Tab", ("control",), self.hotkey(CONTROL, 48, "⌃⇥")),
                ("Tab", ("shift",), self.hotkey(SHIFT, 48, "⇧⇥")),
                ("Return", ("control",), self.hotkey(CONTROL, 36, "⌃↩")),
                ("Space", ("shift",), self.hotkey(SHIFT, 49, "⇧Space")),
                ("a", ("shift",), self.hotkey(SHIFT, 0, "⇧A")),
                ("Up", ("alt",), self.hotkey(OPTION, 126, "⌥↑")),
                ("F9", ("super",), self.hotkey(COMMAND, 101, "⌘F9")),
                ("F8", ("control",), self.hotkey(CONTROL, 100, "⌃F8")),
                ("k", ("control", "alt", "shift", "super"), self.hotkey(CONTROL | OPTION | SHIFT | COMMAND, 40, "⌃⌥⇧⌘K"))):
            with self.subTest(recorded["display"]):
                program = self.start_recording()
                self.observer.press(name, *modifiers)
                program.find("push button", recorded["display"])
                program.wait_for_stored(hotkey=recorded)
                program.wait_for_text("Hotkey: " + recorded["display"])
                self.assertTrue(program.is_running())
                self.assertFalse(program.shows("dialog"))
                self.assertEqual(program.focused().name, recorded["display"])
                program.close()

    def test_keypad_keys_are_called_by_their_sign_while_num_lock_is_on(self):
        self.addCleanup(self.observer.ask, "lock num off")
        for lock, name, recorded in (
                ("on", "Keypad5", self.hotkey(CONTROL, 87, "⌃5")),
                ("on", "KeypadPoint", self.hotkey(CONTROL, 65, "⌃.")),
                ("on", "KeypadPlus", self.hotkey(CONTROL, 69, "⌃+")),
                ("off", "Keypad5", self.hotkey(CONTROL, 87, "⌃KEYPAD 5")),
                ("off", "KeypadPoint", self.hotkey(CONTROL, 65, "⌃KEYPAD .")),
                ("off", "KeypadPlus", self.hotkey(CONTROL, 69, "⌃+"))):
            with self.subTest(recorded["display"], lock=lock):
                self.observer.ask("lock num " + lock)
                program = self.start_recording()
                self.observer.press(name, "control")
                program.wait_for_stored(hotkey=recorded)
                program.wait_for_text("Hotkey: " + recorded["display"])
                program.close()

    def test_keys_alone_are_swallowed_and_recording_goes_on(self):
        program = self.start_recording()
        for name in ("a", "Tab", "Return", "Space", "Down", "Delete", "F9", "KeypadEnter", "Menu"):
            self.observer.press(name)
        for name in ("Shift", "Control", "Alt", "Super", "CapsLock", "CapsLock"):
            self.observer.press(name)
        program.settle()
        self.assertTrue(program.shows("push button", RECORDING))
        self.assertEqual(program.focused().name, RECORDING)
        self.assertEqual(program.shown("menu item"), [])
        self.assertEqual([program.find("text", name).text for name in ("Click Interval", "Stop after")], ["7.00", "100"])
        self.observer.press("z", "control", "alt")
        program.wait_for_stored(hotkey=self.hotkey(CONTROL | OPTION, 6, "⌃⌥Z"))

    def test_keys_do_not_reach_a_field_that_was_being_edited(self):
        program = self.start_with()
        program.click_on("text", "Click Interval")
        self.observer.press("a", "control")
        self.observer.type("3")
        program.click_on("push button", IDLE)
        program.find("push button", RECORDING)
        self.observer.type("45")
        self.observer.press("6", "control")
        program.wait_for_stored(clickIntervalSeconds=3.0, hotkey=self.hotkey(CONTROL, 22, "⌃6"))
        self.assertEqual(program.find("text", "Click Interval").text, "3.00")

    def test_escape_cancels_also_with_modifiers(self):
        for modifiers in ((), ("control",), ("shift",), ("control", "alt")):
            with self.subTest(modifiers):
                program = self.start_recording(hotkey=preferences.CONTROL_OPTION_S)
                self.observer.press("Escape", *modifiers)
                program.find("push button", "⌃⌥S")
                program.settle()
                self.assertEqual(program.stored_config()["hotkey"], preferences.CONTROL_OPTION_S)
                program.close()

    def test_a_second_press_of_the_button_cancels(self):
        program = self.start_recording()
        program.click(self.recorder)
        program.find("push button", IDLE)
        self.observer.press("z", "control", "alt")
        program.settle()
        self.assertTrue(program.shows("push button", IDLE))

    def test_keys_work_again_after_a_recording(self):
        program = self.start_recording()
        self.observer.press("z", "control", "alt")
        program.find("push button", "⌃⌥Z")
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        self.observer.press("Escape")
        program.wait_until_gone("dialog", "Presets and Options")
        self.observer.press("q", "control")
        self.assertEqual(program.wait_for_end(), 0)

    def test_clearing_does_not_end_a_recording(self):
        program = self.start_recording(hotkey=preferences.CONTROL_OPTION_S)
        program.click_on("push button", "Clear hotkey")
        program.wait_for_stored(hotkey=None)
        self.assertTrue(program.shows("push button", RECORDING))
        self.observer.press("z", "control", "alt")
        program.wait_for_stored(hotkey=self.hotkey(CONTROL | OPTION, 6, "⌃⌥Z"))

    def test_a_recorded_hotkey_works_at_once(self):
        program = self.start_recording(clickIntervalSeconds=0.02, maxClicks=3)
        self.observer.press("k", "control", "super")
        program.wait_for_stored(hotkey=self.hotkey(CONTROL | COMMAND, 40, "⌃⌘K"))
        program.wait_for_hotkey("k", "control", "super")
        self.observer.move(1450, 150)
        self.observer.forget()
        self.observer.press("k", "control", "super")
        program.wait_for_headline("Completed")
        self.assert_equal_clicks(self.observer.report(), 3)

    def test_the_hotkey_in_force_is_recorded_again_like_any_other(self):
        program = self.start_recording(hotkey=preferences.CONTROL_OPTION_S)
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.press("F9", "control")
        program.wait_for_stored(hotkey=self.hotkey(CONTROL, 101, "⌃F9"))
        program.wait_for_hotkey("F9", "control")
        until(lambda: self.observer.has_hotkey_free("s", "control", "alt"), "the old hotkey is kept")
