"""What the test classes on Wayland stand on: one private desktop a test, since some end it."""

import random
import signal
import sys
import unittest

from . import preferences
from .compositor import Sway, Witness
from .program import Program
from .waiting import pause, stays, until

# The hotkey of these tests, by evdev's code.
S = 31
HOTKEY = preferences.CONTROL_OPTION_S
HELD = Witness.CONTROL | Witness.ALT
LEFT, RIGHT, MIDDLE = 0x110, 0x111, 0x112


class CompositorCase(unittest.TestCase):
    maxDiff = None
    COMPOSITOR = Sway
    CONFIGURATION = ""

    def setUp(self):
        self.desktop = self.COMPOSITOR(configuration=self.CONFIGURATION)
        self.addCleanup(self.desktop.close)
        self.witness = self.desktop.witness

    def start_with(self, **config):
        """Starts the program with the default configuration and these changes, beside the witness, which has the focus."""
        stored = {"velloran.config": preferences.as_bytes(preferences.config(**{"hotkey": HOTKEY, **config}))}
        program = Program(self.desktop, stored)
        self.addCleanup(program.close)
        program.wait_for_window()
        self.desktop.wait_for_view("Velloran")
        self.desktop.focus("witness")
        return program

    def press_hotkey(self):
        """Presses it until it is registered, which the window that has the focus notices by not getting it."""
        def is_swallowed():
            before = self.witness.keys()
            self.witness.tap(S, HELD)
            return self.witness.keys() == before
        until(is_swallowed, "the window gets the hotkey")

    def assert_ended(self, what, seconds=0.3):
        """No click comes any more, but for the one that was under way."""
        ended = self.witness.releases()
        stays(lambda: self.witness.releases() <= ended + 1, what, seconds)

    def assert_clicks(self, report, count, button=LEFT):
        """Exactly that many presses, each followed by its release, all of one button."""
        self.assertEqual(report, [("down", button), ("up", button)] * count)

    def assert_kills_leave_no_button_down(self, toggle, clean_up=lambda: None):
        """Fifty programs one after the other, each killed at a random moment of its run, which `toggle` starts."""
        chance = random.Random(50)
        clicks = 0
        for number in range(50):
            program = self.start_with(clickIntervalSeconds=0.01, stopMode="manual")
            toggle()
            self.witness.wait_for_releases(clicks + 1)
            pause(chance.uniform(0, 0.03))
            program.process.send_signal(signal.SIGKILL)
            program.process.wait()
            report = []

            def is_even():
                # What was under way comes through the compositor a little later.
                report.extend(self.witness.report())
                return len(report) % 2 == 0
            until(is_even, f"a button stays down after kill {number}", 5)
            self.assertGreater(len(report), 0, f"kill {number}")
            self.assert_clicks(report, len(report) // 2)
            clicks = self.witness.releases()
            program.close()
            clean_up()
        print(f"50 programs killed in the middle of a run: {clicks} clicks, each with its release", file=sys.stderr)
