"""What the test classes on GNOME stand on: one private desktop a test, whose dialogs a hand answers."""

import unittest

from harness.gnome import ALT, BACK_END, ESCAPE, LETTERS, SHORTCUTS, SPACE, Gnome
from harness.portal_case import PortalCase
from harness.portal_compositor import HAS_LIBEI
from harness.waiting import TookTooLong, pause, until


@unittest.skipUnless(Gnome.is_installed(), "GNOME is not installed")
class GnomeCase(PortalCase):
    # What the desktop prefers.
    WAY = "libei" if HAS_LIBEI else "calls"

    def make_desktop(self):
        return Gnome(way=self.WAY)

    def grant(self):
        """That it be remembered is ticked already."""
        self.wait_for_dialog()
        until(self.is_switched_on, "there is nothing to share")
        self.hand.tap(ALT, LETTERS["s"])
        self.wait_until_answered()

    def grant_again(self):
        if not self.desktop.remembers():
            self.grant()

    def switch_on(self):
        """What is asked for. The keyboard is on it from the beginning where it has no key of its own."""
        rows = [row for frame in self.dialogs() for row in frame.find_all("list item")]
        if any("focused" in row.states for row in rows):
            self.hand.tap(SPACE)
        else:
            self.hand.tap(ALT, LETTERS["i"])

    def is_switched_on(self):
        """Switches it on as often as it takes: a dialog that is only just there may let a key go by."""
        if not self.may_share():
            self.switch_on()
            try:
                until(self.may_share, "nothing has come of the key", 3)
            except TookTooLong:
                return False
        return True

    def may_share(self):
        """Whether the dialog can be granted: what is asked for is switched on. Some toolkits name a button by its key as well."""
        return any("sensitive" in button.states for frame in self.dialogs()
                   for button in frame.find_all("button", lambda name: name.endswith("Share")))

    def refuse(self, service=None):
        self.wait_for_dialog(service)
        self.hand.tap(ESCAPE)
        self.wait_until_answered(service)

    def add_shortcut(self):
        self.wait_for_dialog(SHORTCUTS)
        self.hand.tap(ALT, LETTERS["a"])
        self.wait_until_answered(SHORTCUTS)

    def start_with_both(self, **config):
        """For the first time on this desktop, which asks for the clicks and for a hotkey."""
        program = self.launch(**config)
        self.answer_both()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def answer_both(self, shortcut=(ALT, LETTERS["a"])):
        """In whatever order they come, and whichever is in front of the other. `shortcut` is what the one for the hotkey gets."""
        def asking():
            return {service for service in (BACK_END, SHORTCUTS) if self.dialogs(service)}

        asked = set()

        def are_answered():
            for service, keys in ((BACK_END, (ALT, LETTERS["s"])), (SHORTCUTS, shortcut)):
                frames = self.dialogs(service)
                asked.update({service} if frames else ())
                if any("active" in frame.states for frame in frames):
                    if service == BACK_END and not self.may_share():
                        self.switch_on()
                    else:
                        self.hand.tap(*keys)
                    pause(0.5)
            return asked == {BACK_END, SHORTCUTS} and not asking()
        until(are_answered, lambda: f"asked was {asked}, and is {asking()}")
