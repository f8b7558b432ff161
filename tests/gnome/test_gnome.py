"""The whole program on GNOME, as another window sees it; a hand answers the desktop's dialogs."""

import unittest

from gnome_case import GnomeCase
from harness import preferences
from harness.gnome import ALT, CONTROL, ESCAPE, LETTERS, SHORTCUTS, Gnome
from harness.portal_case import GRANT
from harness.portal_compositor import HAS_LIBEI
from harness.portal_tests import ClickTests, HotkeyTests, KillTests, LockTests, LossTests, PermissionTests
from harness.waiting import stays, until

FAILURE = "HotkeyManager: RegisterEventHotKey failed with status -9879"
S, D = LETTERS["s"], LETTERS["d"]
CONTROL_OPTION_D = {"modifierFlagsRaw": preferences.CONTROL | preferences.OPTION, "keyCode": 2, "display": "⌃⌥D"}


class GnomePermission(PermissionTests, GnomeCase):
    pass


class GnomeClicks(ClickTests, GnomeCase):
    pass


@unittest.skipUnless(HAS_LIBEI, "there is no other way")
class GnomeClicksByCalls(GnomeClicks):
    WAY = "calls"


class GnomeKills(KillTests, GnomeCase):
    pass


@unittest.skipUnless(HAS_LIBEI, "there is no other way")
class GnomeKillsByCalls(GnomeKills):
    WAY = "calls"


@unittest.skipUnless(Gnome.binds_for_programs(), "the hotkey is a shortcut of the user's")
class GnomeHotkey(HotkeyTests, GnomeCase):
    def start_with_hotkey(self):
        return self.start_with_both(**self.HOTKEY)

    def test_it_is_asked_for_once_as_long_as_it_stays_the_same(self):
        program = self.start_with_hotkey()
        self.assertEqual(program.end(), 0)
        program = self.start(**self.HOTKEY)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(self.desktop.dialogs(SHORTCUTS), [])
        self.assertEqual(program.end(), 0)
        program = self.launch(**{**self.HOTKEY, "hotkey": CONTROL_OPTION_D})
        self.add_shortcut()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.press_until_bound(program, CONTROL, ALT, D)
        self.hand.tap(CONTROL, ALT, S)
        stays(lambda: program.headline == "Running", "the former hotkey stops it", 1)
        self.assertEqual(program.end(), 0)
        # The desktop has forgotten that one meanwhile.
        program = self.launch(**self.HOTKEY)
        self.add_shortcut()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        self.press_until_bound(program, CONTROL, ALT, S)

    def test_refused_it_is_one_line_in_the_log(self):
        program = self.launch(**self.HOTKEY)
        self.answer_both(shortcut=(ESCAPE,))
        until(lambda: FAILURE in program.log, lambda: program.log)
        stays(lambda: not self.desktop.dialogs(SHORTCUTS), "it is asked again", 2)
        self.assertEqual(program.log.splitlines().count(FAILURE), 1, program.log)
        # And it is that which was refused, not the clicks.
        self.wait_for_permission(program)


class GnomeLock(LockTests, GnomeCase):
    def is_unlocked(self, program):
        if not self.desktop.remembers():
            stays(lambda: not self.dialogs(), "it asks by itself", 2)
            program.find("push button", GRANT).do()
            self.grant()


class GnomeLockByCalls(GnomeLock):
    WAY = "calls"


class GnomeLoss(LossTests, GnomeCase):
    pass


@unittest.skipUnless(HAS_LIBEI, "there is no other way")
class GnomeLossByCalls(GnomeLoss):
    WAY = "calls"
