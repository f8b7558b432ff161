"""What can happen to a session on GNOME while a run is on, beside the loss of its parts."""

from gnome_case import GnomeCase
from harness.gnome_windows import GnomeWithWindows
from harness.session_tests import LockedSleepTests, OutputTests, SleepTests, UserSwitchTests
from harness.waiting import until
from test_gnome_window import LEFT_SHIFT, RIGHT_ARROW, SUPER, GnomeWindowCase


class GnomeSleep(SleepTests, GnomeCase):
    def setUp(self):
        super().setUp()
        self.desktop.set("org.gnome.desktop.screensaver", "lock-enabled", "false")


class GnomeSleepWithLock(LockedSleepTests, GnomeCase):
    def wait_until_ready_for_sleep(self):
        """It locks before, and has the machine wait for that."""
        until(self.desktop.is_locked, "it is not locked")


class GnomeUserSwitch(UserSwitchTests, GnomeCase):
    pass


class GnomeOutputs(OutputTests, GnomeWindowCase):
    def make_desktop(self):
        return GnomeWithWindows(self.SIZE, self.WAY, outputs=2)

    def put_on_second(self):
        self.come_to_front()
        self.hand.tap(SUPER, LEFT_SHIFT, RIGHT_ARROW)
        until(lambda: self.desktop.is_drawn_on(2), "it does not go there")
        self.desktop.focus("witness")

    def is_on_first(self):
        return self.desktop.is_drawn_on(1)

    def show_second(self, is_there):
        self.desktop.show_outputs(1 + is_there)

    def point_at_witness(self):
        self.desktop.point_at(*(length - 10 for length in self.SIZE))
        until(self.witness.has_pointer, "the mouse is elsewhere")
