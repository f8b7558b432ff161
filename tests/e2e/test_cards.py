"""What the cards edit, and that the stored settings follow."""

import os
import time

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

SAVE_DELAY = 0.25
CLOCK_STEP = 0.01  # by which the clock of the file system may be behind


class SavingTime(DesktopCase):
    def test_a_change_is_stored_a_quarter_of_a_second_later(self):
        program = self.start_with()
        program.wait_for_stored(**preferences.DEFAULTS)
        item = program.find("push button", "Increase Stop after")
        pressed = time.time()
        item.do()
        program.wait_for_stored(maxClicks=110)
        self.assertGreaterEqual(os.stat(program.preferences_path).st_mtime - pressed, SAVE_DELAY - CLOCK_STEP)

    def test_a_burst_of_changes_is_stored_once_with_the_last_value(self):
        program = self.start_with()
        program.wait_for_stored(**preferences.DEFAULTS)
        item = program.find("push button", "Increase Stop after")
        seen = []
        for _ in range(10):
            item.do()
            seen.append(program.stored_config()["maxClicks"])
        last = time.time()
        if last - os.stat(program.preferences_path).st_mtime > 10 * SAVE_DELAY:
            self.assertEqual(set(seen), {100})
        until(lambda: seen.append(program.stored_config()["maxClicks"]) or seen[-1] == 200, lambda: f"stored were {seen}")
        self.assertLessEqual(set(seen), {100, 200})

    def test_a_change_in_the_last_moment_is_not_stored(self):
        program = self.start_with()
        program.wait_for_stored(**preferences.DEFAULTS)
        program.find("push button", "Increase Stop after").do()
        self.assertEqual(program.end(), 0)
        self.assertEqual(program.stored_config()["maxClicks"], 100)


class ClickConfigCard(DesktopCase):
    def test_the_mouse_button_is_chosen_from_a_menu(self):
        program = self.start_with()
        names = ["Left Click", "Right Click", "Middle Click"]
        for index, (name, raw) in enumerate(zip(names, ("left", "right", "middle"))):
            program.click(program.find("push button", names[index - 1] if index else names[0]))
            items = [item.name for item in until(lambda: program.shown("menu item"), "the menu does not open")]
            self.assertEqual(items, names)
            program.click_on("menu item", name)
            program.find("push button", name)
            program.wait_for_stored(mouseButton=raw)
            program.wait_for_text(f"Mouse Button: {name}")

    def test_a_typed_interval_is_stored_and_badged(self):
        program = self.start_with()
        field = program.find("text", "Click Interval")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("0.5")
        program.find("push button", "Update")
        self.assertEqual(program.stored_config()["clickIntervalSeconds"], 7.0)
        self.observer.press("Return")
        program.wait_for_text("Updated")
        self.assertEqual(field.text, "0.50")
        program.wait_for_stored(clickIntervalSeconds=0.5)
        program.wait_for_text("Click Interval: 0.50 seconds")
        until(lambda: not program.shows_text("Updated"), "the badge stays")

    def test_the_update_button_stores_what_is_typed(self):
        program = self.start_with()
        field = program.find("text", "Click Interval")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("99999")
        program.click_on("push button", "Update")
        program.wait_for_stored(clickIntervalSeconds=3600.0)
        until(lambda: field.text == "3600.00", lambda: field.text)

    def test_leaving_the_field_stores_and_nonsense_reverts(self):
        program = self.start_with()
        field = program.find("text", "Click Interval")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("2.5")
        self.observer.press("Tab")
        program.wait_for_stored(clickIntervalSeconds=2.5)
        until(lambda: not program.shows_text("Updated"), "the badge stays")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("abc")
        until(lambda: field.text == "abc", lambda: field.text)
        self.observer.press("Tab")
        until(lambda: field.text == "2.50", lambda: field.text)
        self.assertFalse(program.shows_text("Updated"))
        program.find("push button", "Increase Click Interval").do()
        program.wait_for_stored(clickIntervalSeconds=2.55)

    def test_steppers_drop_what_is_typed_and_show_no_badge(self):
        program = self.start_with()
        field = program.find("text", "Click Interval")
        program.click(field)
        self.observer.type("123")
        program.find("push button", "Update")
        program.click_on("push button", "Decrease Click Interval")
        until(lambda: field.text == "6.95", lambda: field.text)
        self.assertFalse(program.shows_text("Updated"))
        program.wait_for_stored(clickIntervalSeconds=6.95)

    def test_what_is_typed_counts_for_a_run_that_is_started_then(self):
        program = self.start_with(maxClicks=7)
        program.click_on("text", "Click Interval")
        self.observer.press("a", "control")
        self.observer.type("0.02")
        program.find("push button", "Update")
        start = program.find("push button", "Start").centre
        self.observer.click(*start)
        self.observer.forget()
        self.observer.move(1450, 150)
        program.wait_for_headline("Completed", 10)
        program.wait_for_stored(clickIntervalSeconds=0.02)


class StopConditionsCard(DesktopCase):
    UNTIL_STOPPED = "Clicking continues until you press Stop or the hotkey."
    COUNTED = "Total number of clicks before automatically stopping."

    def test_the_toggle_and_the_radio_buttons_agree(self):
        program = self.start_with()
        self.assertTrue(program.shows_text(self.COUNTED))
        for control, mode, text, summary in (("Run Until Stopped", "manual", self.UNTIL_STOPPED, "Run until stopped"),
                                             ("Stop After", "after_clicks", self.COUNTED, "100 clicks"),
                                             ("Run until manually stopped", "manual", self.UNTIL_STOPPED, "Run until stopped"),
                                             ("Stop after", "after_clicks", self.COUNTED, "100 clicks")):
            program.click(program.find(None, control))
            program.wait_for_text(text)
            program.wait_for_text(f"Stop After: {summary}")
            program.wait_for_stored(stopMode=mode, maxClicks=100)
            self.assertEqual([name for name in ("Run until manually stopped", "Stop after")
                              if "checked" in program.find("radio button", name).states],
                             ["Run until manually stopped" if mode == "manual" else "Stop after"])

    def test_the_first_switch_to_counting_stores_a_hundred(self):
        program = self.start_with(stopMode="manual", maxClicks=None)
        self.assertEqual(program.find("text", "Stop after").text, "100")
        program.wait_for_stored(maxClicks=None)
        program.click(program.find(None, "Stop After"))
        program.wait_for_stored(stopMode="after_clicks", maxClicks=100)

    def test_counting_without_a_count_reads_differently_in_both_cards_and_cannot_be_started(self):
        program = self.start_with(maxClicks=None)
        self.assertEqual(program.find("text", "Stop after").text, "100")
        program.wait_for_text("Stop After: 0 clicks")
        program.click_on("push button", "Start")
        program.settle()
        self.assertEqual(program.headline, "Ready")

    def test_the_count_is_typed_and_stepped(self):
        program = self.start_with()
        field = program.find("text", "Stop after")
        program.click_on("push button", "Increase Stop after")
        program.wait_for_stored(maxClicks=110)
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("20000000")
        self.observer.press("Return")
        program.wait_for_stored(maxClicks=10_000_000)
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("2.5")
        self.observer.press("Return")
        until(lambda: field.text == "10000000", lambda: field.text)

    def test_the_count_of_a_run_without_one_cannot_be_edited(self):
        program = self.start_with(stopMode="manual", maxClicks=70)
        program.click_on("text", "Stop after")
        self.observer.type("5")
        program.click_on("push button", "Increase Stop after")
        program.find("push button", "Decrease Stop after").do()
        program.settle()
        self.assertEqual(program.find("text", "Stop after").text, "70")
        # A change that does arrive shows that the others were through.
        program.click_on("push button", "Increase Click Interval")
        program.wait_for_stored(clickIntervalSeconds=7.05, maxClicks=70)


class StartOptionsCard(DesktopCase):
    def test_the_start_delay_is_ticked_edited_and_unticked(self):
        program = self.start_with()
        field = program.find("text", "Start clicking after")
        program.click(field)
        self.observer.type("9")
        program.settle()
        self.assertEqual(field.text, "0")
        # The whole row is the target, its empty end as well.
        x, y, width, height = program.find("check box", "Start clicking after").extents
        self.observer.click(x + width - 5, y + height // 2)
        program.wait_for_stored(startDelaySeconds=3.0)
        program.wait_for_text("Delay: 3 seconds")
        self.assertEqual(field.text, "3")
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type("2.5")
        self.observer.press("Return")
        program.wait_for_stored(startDelaySeconds=2.5)
        program.wait_for_text("Delay: 2.50 seconds")
        program.click_on("check box", "Start clicking after")
        program.wait_for_stored(startDelaySeconds=0.0)
        until(lambda: "checked" not in program.find("check box", "Start clicking after").states, "it stays ticked")

    def test_a_delay_of_nothing_unticks(self):
        program = self.start_with(startDelaySeconds=10.0)
        self.assertIn("checked", program.find("check box", "Start clicking after").states)
        program.click_on("text", "Start clicking after")
        self.observer.press("a", "control")
        self.observer.type("0")
        self.observer.press("Return")
        program.wait_for_stored(startDelaySeconds=0.0)
        until(lambda: "checked" not in program.find("check box", "Start clicking after").states, "it stays ticked")

    def test_the_rule_of_the_still_mouse(self):
        program = self.start_with()
        field = program.find("text", "Click only if mouse is stationary")
        program.click(field)
        self.observer.type("9")
        program.settle()
        self.assertEqual(field.text, "1.0")
        program.wait_for_text("Stationary Check: Off")
        program.click_on("check box", "Click only if mouse is stationary")
        program.wait_for_stored(requireStationaryMouse=True)
        program.wait_for_text("Stationary Check: 1.0 seconds")
        program.click_on("push button", "Increase Click only if mouse is stationary")
        program.wait_for_stored(stationarySeconds=1.1)
        program.wait_for_text("Stationary Check: 1.1 seconds")

    def test_ready_made_hotkeys(self):
        program = self.start_with()
        self.assertTrue(program.shows_text("Press keys to record shortcut"))
        program.click(program.find(None, "Choose a preset hotkey"))
        names = [item.name for item in until(lambda: program.shown("menu item"), "the menu does not open")]
        self.assertEqual(names, ["⌘⌥A  (Command + Option + A)", "⌃⌥C  (Control + Option + C)", "⌃⌥S  (Control + Option + S)",
                                 "⌘⇧F  (Command + Shift + F)", "⌃⌥Z  (Control + Option + Z)", "⌃F8  (Control + F8)",
                                 "⌃F9  (Control + F9)", "⌃F10 (Control + F10)", "Clear Hotkey"])
        program.click_on("menu item", names[5])
        program.wait_for_stored(hotkey={"modifierFlagsRaw": preferences.CONTROL, "keyCode": 100, "display": "⌃F8"})
        program.wait_for_text("Press your hotkey anywhere to start/stop")
        program.wait_for_text("Hotkey: ⌃F8")
        program.wait_for_hotkey("F8", "control")
        program.click(program.find(None, "Choose a preset hotkey"))
        program.click_on("menu item", "Clear Hotkey")
        program.wait_for_stored(hotkey=None)
        program.wait_for_text("Hotkey: Not set")
        program.wait_for_text("Press keys to record shortcut")
        until(lambda: self.observer.has_hotkey_free("F8", "control"), "the hotkey is not given back")

    def test_the_clear_button(self):
        program = self.start_with(hotkey=preferences.CONTROL_OPTION_S)
        program.click_on("push button", "Clear hotkey")
        program.wait_for_stored(hotkey=None)
        program.wait_until_gone("push button", "Clear hotkey")


class OptionsSheet(DesktopCase):
    def open_options(self, program):
        program.give_focus()
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")

    def test_additional_options(self):
        program = self.start_with()
        self.open_options(program)
        program.click_on("check box", "Play click sound")
        program.wait_for_stored(playClickSound=True, minimizeToTray=False)
        program.click_on("check box", "Minimize to menu bar")
        program.wait_for_stored(playClickSound=True, minimizeToTray=True)
        program.click_on("push button", "Done")
        program.wait_until_gone("dialog", "Presets and Options")

    def test_reset_keeps_the_hotkey(self):
        program = self.start_with(clickIntervalSeconds=0.5, stopMode="manual", maxClicks=7, startDelaySeconds=4.0,
                                  mouseButton="right", playClickSound=True, hotkey=preferences.CONTROL_OPTION_S)
        self.open_options(program)
        program.click_on("push button", "Reset")
        program.wait_for_stored(**preferences.DEFAULTS, hotkey=preferences.CONTROL_OPTION_S)

    def test_escape_closes_and_the_window_below_cannot_be_used_meanwhile(self):
        program = self.start_with()
        start = program.find("push button", "Increase Stop after").centre
        self.open_options(program)
        self.observer.click(*start)
        program.settle()
        self.observer.press("Escape")
        program.wait_until_gone("dialog", "Presets and Options")
        self.observer.click(*start)
        program.wait_for_stored(maxClicks=110)
