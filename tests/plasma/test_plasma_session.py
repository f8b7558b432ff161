"""What can happen to a session on Plasma while a run is on, beside the loss of its parts."""

from harness.plasma import Plasma
from harness.session_tests import LockedSleepTests, OutputTests, SleepTests, UserSwitchTests
from harness.waiting import until
from plasma_case import PlasmaCase


class PlasmaSleep(SleepTests, PlasmaCase):
    def make_desktop(self):
        return Plasma(way=self.WAY, has_lock=True, wakes_locked=False)


class PlasmaSleepWithLock(LockedSleepTests, PlasmaCase):
    HAS_LOCK = True


class PlasmaUserSwitch(UserSwitchTests, PlasmaCase):
    # And with it a login manager.
    HAS_LOCK = True


class PlasmaOutputs(OutputTests, PlasmaCase):
    NAME = "Velloran"

    def make_desktop(self):
        return Plasma(way=self.WAY, outputs=2)

    def setUp(self):
        super().setUp()
        self.program = self.start_program()

    def x(self):
        return self.desktop.windows.all()[self.NAME]["x"]

    def put_on_second(self):
        width = self.desktop.size[0]
        # Not in the middle, where the mouse may come to be when its output goes.
        left = width // 2 + 20
        self.desktop.windows.place(self.NAME, width + left, 100, 920, 800)
        until(lambda: self.x() == width + left, "it stays where it is")

    def is_on_first(self):
        return self.x() < self.desktop.size[0]

    def show_second(self, is_there):
        self.desktop.set_output(2, "enable" if is_there else "disable")

    def point_at_witness(self):
        """Which may have gone with an output, and come back with it."""
        def is_there():
            witness = self.desktop.windows.all()["witness"]
            self.desktop.point_at(witness["x"] + witness["width"] - 10, witness["y"] + witness["height"] - 10)
            return self.witness.has_pointer()
        until(is_there, "the mouse is elsewhere")
