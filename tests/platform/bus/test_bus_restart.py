"""The session bus goes away and comes back."""

from harness.bus import Bus
from harness.case import DesktopCase
from harness.waiting import stays, until


class BusRestart(DesktopCase):
    PLACE = None

    def test_is_survived_in_the_middle_of_a_run(self):
        program = self.start_with(stopMode="manual", maxClicks=None, clickIntervalSeconds=0.02)
        self.observer.move(1450, 140)
        first = Bus(self.desktop)
        first.act("toggle")
        until(lambda: self.observer.report()["presses"] >= 5, "no clicks came")

        self.desktop.end_bus()
        before = self.observer.report()["presses"]
        until(lambda: self.observer.report()["presses"] >= before + 50, "the clicks ended with the bus")
        self.desktop.start_bus_again()
        second = Bus(self.desktop)
        self.addCleanup(second.close)
        second.wait_for_owner(program.pid)
        self.assertEqual(self.launch(None, folder=program.folder).wait_for_end(), 0)
        second.act("toggle")
        before = self.observer.report()["presses"]
        # The one that was under way may follow.
        stays(lambda: self.observer.report()["presses"] <= before + 1, "the run goes on", 0.3)
        self.assertTrue(program.is_running())
        self.assertEqual(program.end(), 0)
        report = self.observer.report()
        self.assertEqual(report["presses"], report["releases"])
