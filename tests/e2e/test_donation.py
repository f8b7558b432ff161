"""The donation prompt and its schedule."""

import os
import signal

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

TITLE = "Support Velloran"


class DonationPrompt(DesktopCase):
    def setUp(self):
        """The browser of this desktop writes down what it is asked for."""
        self.opened_path = os.path.join(self.desktop.folder, "opened-" + self._testMethodName)
        self.desktop.add_tool("xdg-open", f'#!/bin/sh\necho "$1" >>"{self.opened_path}"\n')

    def opened(self):
        try:
            with open(self.opened_path, encoding="utf-8") as file:
                return file.read().split()
        except FileNotFoundError:
            return []

    def start_due(self, shown=0, **options):
        return self.start({"donation.nextReminderAt": preferences.date(preferences.now() - 1.0), "donation.remindersShown": shown},
                          **options)

    def prompt(self, program):
        return program.find("dialog", TITLE)

    def assert_scheduled(self, program, seconds, shown):
        stored = program.stored()
        until(lambda: program.stored().get("donation.remindersShown") == str(shown), lambda: program.stored())
        stored = program.stored()
        ahead = preferences.stored_date(stored["donation.nextReminderAt"]) - preferences.now()
        self.assertTrue(seconds - 15.0 < ahead <= seconds, ahead)
        self.assertNotIn("donation.donated", stored)

    def buttons(self, program):
        return [item.name for item in program.shown("push button", within=self.prompt(program))]

    def test_a_first_start_asks_for_nothing_and_sets_the_schedule_up(self):
        program = self.launch(None)
        program.wait_for_window()
        self.assert_scheduled(program, 60.0, 0)
        program.settle()
        self.assertFalse(program.shows("dialog", TITLE))
        self.assertIn("donation.firstLaunchAt", program.stored())

    def test_maybe_later_puts_it_off_by_the_growing_steps(self):
        for shown, seconds in ((0, 60.0), (1, 60.0), (2, 300.0), (5, 600.0), (6, 1800.0), (41, 1800.0)):
            with self.subTest(shown):
                program = self.start_due(shown)
                self.prompt(program)
                self.assertEqual(self.buttons(program), ["Donate via Stripe", "I've already donated", "Maybe later"])
                program.click_on("push button", "Maybe later")
                program.wait_until_gone("dialog", TITLE)
                self.assert_scheduled(program, seconds, shown + 1)
                program.close()
        self.assertEqual(self.opened(), [])

    def test_already_donated_moves_to_the_slowest_step(self):
        program = self.start_due()
        self.prompt(program)
        program.click_on("push button", "I've already donated")
        program.wait_until_gone("dialog", TITLE)
        self.assert_scheduled(program, 1800.0, 7)

    def start_browser(self, what, **options):
        """Has the donation page opened by a browser that writes down what a command of the shell prints, and returns that."""
        path = os.path.join(self.desktop.folder, "browser-" + self._testMethodName)
        # A shell that leaves the signals as it finds them; some clear what is held back.
        self.desktop.add_tool("xdg-open", f'#!/bin/bash\n{what} >"{path}.new"\nmv "{path}.new" "{path}"\n')
        program = self.start_due(**options)
        self.prompt(program)
        program.click_on("push button", "Donate via Stripe")
        until(lambda: os.path.exists(path), "no browser was opened")
        with open(path, encoding="utf-8") as file:
            return file.read().splitlines()

    def test_the_browser_hears_signals_as_if_started_elsewhere(self):
        lines = self.start_browser('grep -E "^Sig(Blk|Ign):" /proc/self/status')
        masks = {line.split()[0]: int(line.split()[1], 16) for line in lines}
        self.assertEqual(set(masks), {"SigBlk:", "SigIgn:"})
        for number in (signal.SIGHUP, signal.SIGINT, signal.SIGPIPE, signal.SIGTERM):
            for name, mask in masks.items():
                self.assertFalse(mask >> (number - 1) & 1, f"{number.name} in {name}")

    def test_the_browser_does_not_get_what_the_start_was_given(self):
        given = {"DESKTOP_STARTUP_ID": "launcher/7-8-host_TIME1", "XDG_ACTIVATION_TOKEN": "token"}
        names = [line.split("=")[0] for line in self.start_browser("env", environment=given)]
        self.assertIn("DISPLAY", names)
        self.assertEqual(set(names) & set(given), set())

    def test_donating(self):
        program = self.start_due()
        self.prompt(program)
        program.click_on("push button", "Donate via Stripe")
        program.wait_for_text("Stripe opened in your browser. Once your donation is complete, click below.")
        until(lambda: len(self.opened()) == 1, "no browser was opened")
        self.assertEqual(self.buttons(program), ["I completed my donation", "Open link again", "Cancel"])
        program.click_on("push button", "Open link again")
        until(lambda: len(self.opened()) == 2, "the browser was not opened again")
        self.assertEqual(len(set(self.opened())), 1)
        self.assertTrue(self.opened()[0].startswith("https://"))
        self.assertEqual(self.buttons(program), ["I completed my donation", "Open link again", "Cancel"])
        program.click_on("push button", "I completed my donation")
        program.wait_until_gone("dialog", TITLE)
        until(lambda: program.stored().get("donation.donated") == "true", lambda: program.stored())
        self.assertNotIn("donation.nextReminderAt", program.stored())
        program.end()
        again = self.start(folder=program.folder)
        again.settle()
        self.assertFalse(again.shows("dialog", TITLE))

    def test_cancel_while_waiting_puts_off_and_a_new_showing_asks_anew(self):
        program = self.start_due(3)
        self.prompt(program)
        program.click_on("push button", "Donate via Stripe")
        program.find("push button", "I completed my donation")
        program.click_on("push button", "Cancel")
        program.wait_until_gone("dialog", TITLE)
        self.assert_scheduled(program, 300.0, 4)
        program.end()
        stored = {**program.stored(), "donation.nextReminderAt": preferences.date(preferences.now() - 1.0)}
        preferences.write(program.preferences_path, stored)
        again = self.start(folder=program.folder)
        self.assertEqual(self.buttons(again), ["Donate via Stripe", "I've already donated", "Maybe later"])

    def test_escape_puts_nothing_off(self):
        program = self.start_due(1)
        before = program.stored()["donation.nextReminderAt"]
        self.prompt(program)
        self.observer.press("Escape")
        program.wait_until_gone("dialog", TITLE)
        program.settle()
        self.assertEqual(program.stored()["donation.nextReminderAt"], before)
        self.assertEqual(program.stored()["donation.remindersShown"], "1")
        program.end()
        # Still due: the next check shows it again.
        again = self.start(folder=program.folder)
        self.prompt(again)

    def test_a_schedule_of_the_wrong_type_is_silent(self):
        program = self.start({"donation.nextReminderAt": 12})
        program.settle()
        self.assertFalse(program.shows("dialog", TITLE))

    def test_the_prompt_limits_nothing(self):
        config = preferences.config(clickIntervalSeconds=0.02, maxClicks=5, hotkey=preferences.CONTROL_OPTION_S)
        program = self.start({"donation.nextReminderAt": preferences.date(preferences.now() - 1.0),
                              "velloran.config": preferences.as_bytes(config)})
        self.prompt(program)
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.forget()
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.assert_equal_clicks(self.observer.report(), 5)
        self.prompt(program)
