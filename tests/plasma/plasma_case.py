"""What the test classes on Plasma stand on: one private desktop a test, whose dialogs a hand answers."""

import unittest

from harness.plasma import ENTER, ESCAPE, VERSION, Plasma
from harness.portal_case import PortalCase
from harness.waiting import pause, until


@unittest.skipUnless(Plasma.is_installed(), "Plasma is not installed")
class PlasmaCase(PortalCase):
    # What the desktop prefers.
    WAY = "libei" if VERSION > 5 else "calls"
    HAS_LOCK = False

    def make_desktop(self):
        return Plasma(way=self.WAY, has_lock=self.HAS_LOCK)

    def answer(self, key):
        """Presses it when the dialog has the keyboard, until that is answered."""
        self.wait_for_dialog()

        def is_answered():
            if not self.dialogs():
                return True
            if any("active" in frame.states for frame in self.dialogs()):
                self.hand.tap(key)
                pause(0.5)
            return False
        until(is_answered, "the dialog stays")

    def grant(self):
        """That it be remembered is ticked already. The older release grants it by itself, and only says so."""
        if VERSION > 5:
            self.answer(ENTER)

    def refuse(self):
        self.answer(ESCAPE)
