"""The recorder on GNOME, whose shell asks its user whether the program may have the keys that it keeps for itself."""

import unittest

from harness import processes
from harness.gnome import ALT, CONTROL, ENTER, ESCAPE, LETTERS, SHORTCUTS, Gnome
from harness.recorder_tests import F4, RECORDING, RecorderTests
from harness.waiting import stays, until
from test_gnome_window import DOWN, SUPER, UP, GnomeWindowCase

D, S = LETTERS["d"], LETTERS["s"]
QUESTION = "Allow inhibiting shortcuts"


@unittest.skipUnless(Gnome.binds_for_programs(), "the hotkey is a shortcut of the user's")
class GnomeRecorder(RecorderTests, GnomeWindowCase):
    def start_program(self):
        return self.start_with_both(**self.HOTKEY)

    def come_to_front(self):
        self.desktop.focus("witness")
        super().come_to_front()

    def refuse_new(self):
        self.refuse(SHORTCUTS)

    def is_asked(self):
        return self.desktop.shows(QUESTION)

    def answer(self, key):
        until(self.is_asked, "the shell does not ask")
        self.hand.tap(key)
        until(lambda: not self.is_asked(), "the question stays")
        self.wait_for_keyboard()

    def wait_for_keyboard(self):
        until(lambda: "active" in self.program.window.states, "the window does not get the keyboard back")

    def allow(self):
        """With the button that has the keyboard at first."""
        self.answer(ENTER)

    def deny(self):
        self.answer(ESCAPE)

    def record_unasked(self):
        self.record()
        stays(lambda: not self.is_asked(), "it asks again", 1)

    def start_again(self):
        """The shell knows what to remember an answer for from the second start on: the first one, from nowhere, writes an entry."""
        def is_known():
            self.assertEqual(self.program.end(), 0)
            self.program = self.start(**self.HOTKEY)
            return self.window()["program"] == "app.velloran.Velloran.desktop"
        until(is_known, lambda: f"the shell takes it for {self.window()}")

    def assert_has_all_keys(self):
        self.hand.tap(ALT, F4)
        self.program.wait_for_text("⌥F4")
        self.refuse_new()

    def assert_has_all_keys_but_the_shells(self):
        usual = self.window()["size"]
        self.hand.tap(SUPER, UP)
        until(lambda: self.window()["size"][0] == self.SIZE[0], "the shell does not take its own")
        self.hand.tap(SUPER, DOWN)
        self.wait_for_size(*usual)
        self.assertTrue(self.program.shows_text(RECORDING))
        self.hand.tap(CONTROL, ALT, D)
        self.program.wait_for_text("⌃⌥D")
        self.refuse_new()

    def test_denied_it_records_all_but_the_shells_own_and_asks_no_more(self):
        self.record()
        self.deny()
        self.assert_has_all_keys_but_the_shells()
        processes.wait_for_rest(self.program.pid)
        self.assertEqual(self.program.headline, "Ready")
        self.program.find("push button", "⌃⌥D").do()
        self.program.wait_for_text(RECORDING)
        stays(lambda: not self.is_asked(), "it asks again", 1)

    def test_what_was_denied_is_remembered(self):
        self.start_again()
        self.record()
        self.deny()
        self.start_again()
        self.record_unasked()
        self.assert_has_all_keys_but_the_shells()

    def test_what_was_allowed_is_remembered(self):
        self.start_again()
        self.record()
        self.allow()
        self.start_again()
        self.record_unasked()
        self.assert_has_all_keys()

    def test_denied_the_hotkey_of_the_moment_does_what_it_does(self):
        self.press_until_bound(self.program, CONTROL, ALT, S)
        self.stop(self.program)
        self.record()
        self.deny()
        self.hand.tap(CONTROL, ALT, S)
        self.program.wait_for_headline("Running")
        self.stop(self.program)
        self.assertTrue(self.program.shows_text(RECORDING))

    def test_given_up_before_the_answer_it_takes_no_keys_whatever_that_is(self):
        self.record()
        until(self.is_asked, "the shell does not ask")
        self.program.find("push button", RECORDING).do()
        self.program.find("push button", "⌃⌥S")
        self.allow()
        self.hand.tap(ALT, F4)
        self.assertEqual(self.program.wait_for_end(), 0)

    def test_the_end_of_the_program_takes_the_question_back(self):
        self.record()
        until(self.is_asked, "the shell does not ask")
        self.assertEqual(self.program.end(), 0)
        until(lambda: not self.is_asked(), "the question stays")
        self.desktop.focus("witness")
