"""The recorder on sway: while it records, and only then, the keys that the compositor keeps for itself reach the window."""

import os
import re

from harness.compositor_case import HELD, CompositorCase, S
from harness.waiting import stays, until

SUPER = 64
D = 32
RECORDING = "Press keys to record…"
# How the window goes out of sight, and comes back.
WAYS_OUT = (("workspace 2", "workspace 1"), ('[title="^Velloran$"] move scratchpad', '[title="^Velloran$"] scratchpad show'))
# What the program then says to the compositor.
ASKS = r"-> zwp_keyboard_shortcuts_inhibit_manager_v1[@#]\d+\.inhibit_shortcuts\("
TAKES_BACK = r"-> zwp_keyboard_shortcuts_inhibitor_v1[@#]\d+\.destroy\("


class SwayRecorder(CompositorCase):
    def configure(self):
        self.done = os.path.join(self.desktop.folder, "compositor", "done")
        self.desktop.configure(f"bindsym Mod4+d exec touch {self.done}\n")
        self.desktop.command("reload")

    def setUp(self):
        super().setUp()
        self.configure()
        # What the program and the compositor say to each other.
        self.desktop.environment["WAYLAND_DEBUG"] = "client"
        self.program = self.start_with()
        self.show("nop")

    def count(self, what):
        """How often the program has said that to the compositor."""
        return len(re.findall(what, self.program.log))

    def record(self):
        before = self.count(ASKS)
        self.program.find("push button", "⌃⌥S").do()
        until(lambda: self.count(ASKS) > before, "the compositor is not asked")
        # What was said is sent out with the end of that turn, and read before the compositor answers others.
        self.program.wait_for_text(RECORDING)
        self.desktop.command("nop")

    def show(self, command):
        """The program knows as well that it has the keyboard again."""
        self.desktop.command(command)
        self.desktop.focus("Velloran")
        until(lambda: "active" in self.program.window.states, "the program does not hear of it")

    def assert_is_recorded(self):
        self.witness.tap(D, SUPER)
        until(lambda: self.program.shows_text("⌘D") or os.path.exists(self.done), "nobody gets the combination")
        self.assertFalse(os.path.exists(self.done), "the compositor has taken it")

    def assert_is_the_compositors(self):
        self.witness.tap(D, SUPER)
        until(lambda: os.path.exists(self.done), "the compositor does not get its combination")
        os.unlink(self.done)

    def assert_all_is_over(self):
        """What the program has asked for, it has taken back, and the compositor had nothing to complain of."""
        until(lambda: self.count(TAKES_BACK) == self.count(ASKS), "it holds on to the keys")
        self.assertNotIn(".error(", self.program.log)

    def test_a_combination_of_the_compositors_is_recorded_and_works_again_afterwards(self):
        self.record()
        self.assert_is_recorded()
        self.assert_is_the_compositors()
        self.assert_all_is_over()

    def test_the_hotkey_of_the_moment_can_be_recorded_and_starts_nothing(self):
        self.record()
        self.witness.tap(S, HELD)
        until(lambda: not self.program.shows_text(RECORDING), "it goes on recording")
        stays(lambda: self.program.headline == "Ready", "it starts a run", 0.3)

    def test_out_of_sight_it_leaves_the_keys_alone_and_records_once_it_is_back(self):
        self.record()
        for hide, show in WAYS_OUT:
            with self.subTest(hide):
                self.desktop.command(hide)
                self.assert_is_the_compositors()
                self.show(show)
                self.assertTrue(self.program.shows_text(RECORDING))
        self.assert_is_recorded()
        self.assert_is_the_compositors()
        self.assert_all_is_over()

    def test_given_up_out_of_sight_it_takes_no_keys_afterwards(self):
        for hide, show in WAYS_OUT:
            with self.subTest(hide):
                self.record()
                self.desktop.command(hide)
                self.program.find("push button", RECORDING).do()
                self.program.find("push button", "⌃⌥S")
                self.show(show)
                self.assert_is_the_compositors()
                self.assert_all_is_over()

    def test_the_program_ends_out_of_sight_as_ever(self):
        self.record()
        self.desktop.command("workspace 2")
        self.assertEqual(self.program.end(), 0)
        self.assert_is_the_compositors()
        self.assert_all_is_over()
