"""The whole program on Plasma, as another window sees it; a hand answers the desktop's dialogs."""

import time
import unittest

from harness import preferences
from harness.compositor_case import LEFT
from harness.plasma import ALT, CONTROL, F4, LETTERS, VERSION
from harness.portal_case import GRANT
from harness.portal_tests import LOST, ClickTests, HotkeyTests, Kills, KillTests, LockTests, LossTests, PermissionTests
from harness.waiting import pause, until
from plasma_case import PlasmaCase

TAKEN = "HotkeyManager: RegisterEventHotKey failed with status -9878"
S = LETTERS["s"]
OPTION_F4 = {"modifierFlagsRaw": preferences.OPTION, "keyCode": 118, "display": "⌥F4"}


@unittest.skipUnless(VERSION > 5, "the desktop does not ask")
class PlasmaPermission(PermissionTests, PlasmaCase):
    pass


@unittest.skipUnless(VERSION == 5, "the desktop asks")
class PlasmaGrants(PlasmaCase):
    def test_the_permission_is_there_without_a_dialog(self):
        program = self.start(maxClicks=20, clickIntervalSeconds=0.02)
        self.assertEqual(self.dialogs(), [])
        self.assert_run(program, 20)


class PlasmaClicks(ClickTests, PlasmaCase):
    pass


@unittest.skipUnless(VERSION > 5, "there is no other way")
class PlasmaClicksByCalls(PlasmaClicks):
    WAY = "calls"


@unittest.skipUnless(VERSION > 5, "the older release lets go of no button when a program ends")
class PlasmaKills(KillTests, PlasmaCase):
    pass


class PlasmaKillsByCalls(PlasmaKills):
    WAY = "calls"


@unittest.skipUnless(VERSION == 5, "the newer release lets go of a button")
class PlasmaKillsThatLeaveButtons(Kills, PlasmaCase):
    def test_what_stays_down_is_let_go_of_by_the_next_click(self):
        down = 0
        for number in self.kills():
            report = self.settled_report()
            presses = [kind for kind, _ in report if kind == "down"]
            self.assertIn(2 * len(presses) - len(report), (0, 1), f"kill {number}: {report[-4:]}")
            if report[-1][0] == "down":
                down += 1
                self.hand.click()
                self.assertEqual(self.settled_report()[-1:], [("up", LEFT)], f"kill {number}")
        print(f"\n50 kills over {self.WAY}: after {down} a button was down")

    def settled_report(self):
        """What the buttons have done, once they rest."""
        report = []

        def rests():
            report.extend(self.witness.report())
            pause(0.5)
            more = self.witness.report()
            report.extend(more)
            return report and not more
        until(rests, "the buttons do not rest")
        return report


class PlasmaHotkey(HotkeyTests, PlasmaCase):
    def test_it_is_given_back_at_the_end(self):
        program = self.start_granted(**self.HOTKEY)
        self.press_until_bound(program, CONTROL, ALT, S)
        self.assertEqual(program.end(), 0)
        self.wait_until_free()

    def test_a_taken_one_is_refused_and_its_holder_named(self):
        program = self.launch(**{**self.HOTKEY, "hotkey": OPTION_F4})
        self.grant()
        until(lambda: TAKEN in program.log, lambda: program.log)
        self.assertEqual(program.log.splitlines().count(TAKEN), 1, program.log)
        program.find("label", "The hotkey is taken on this desktop by KWin (Close Window).", within=self.about(program))
        # The desktop does with it what it did before.
        self.assertTrue(program.is_running())
        self.hand.tap(ALT, F4)
        self.assertEqual(program.wait_for_end(), 0)


class PlasmaStillMouse(PlasmaCase):
    def test_a_moving_mouse_holds_the_clicks_up_until_it_is_still(self):
        program = self.start_granted(requireStationaryMouse=True, stationarySeconds=1.0, clickIntervalSeconds=0.05,
                                     stopMode="manual")
        self.toggle()
        # The place of the pointer is not known before KWin tells it.
        self.witness.wait_for_releases(self.witness.releases() + 10)

        self.witness.report()
        moves = []
        for _ in range(150):
            # On and on, for somebody who looks now and then.
            moves.append(time.monotonic())
            self.hand.move(-3, 0)
            pause(0.02)
        self.witness.wait_for_releases(self.witness.releases() + 10)
        report = self.witness.timed_report()
        self.assert_clicks([(kind, code) for kind, code, _ in report], len(report) // 2)
        presses = [moment for kind, _, moment in report if kind == "down"]
        for press in presses:
            # What was on its way to either of them is not meant.
            meanwhile = [moved for moved in moves if press - 0.95 < moved < press - 0.3]
            self.assertEqual(meanwhile, [], f"it clicks at {press}, while the mouse moves")
        waited = min(press for press in presses if press > moves[-1] + 0.3) - moves[-1]
        print(f"\nfrom the last of {len(moves)} motions to the first click: {waited:.2f} s, with one second to be still for")

    def test_the_script_is_unloaded_at_the_end(self):
        program = self.start_granted(requireStationaryMouse=True, stationarySeconds=0.1, clickIntervalSeconds=0.05, maxClicks=5)
        self.assert_run(program, 5)
        self.assertTrue(self.desktop.has_script())
        self.assertEqual(program.end(), 0)
        until(lambda: not self.desktop.has_script(), "the script stays")


class PlasmaLock(LockTests, PlasmaCase):
    HAS_LOCK = True

    def is_unlocked(self, program):
        if VERSION == 5:
            # Nothing is remembered there, so it waits until the user wants it. Nor does it know where the mouse is before that moves.
            self.hand.move(-1, 0)
            program.find("push button", GRANT).do()


class PlasmaLoss(LossTests, PlasmaCase):
    def test_of_the_compositor_in_a_session_that_starts_it_again(self):
        program = self.start_run(QT_WAYLAND_RECONNECT="1")
        self.desktop.crash_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn(LOST, program.log)


@unittest.skipUnless(VERSION > 5, "there is no other way")
class PlasmaLossByCalls(PlasmaLoss):
    WAY = "calls"
