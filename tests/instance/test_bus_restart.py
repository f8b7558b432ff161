"""The session bus goes away and comes back."""

import os
import signal

from bus import Bus
from harness import processes
from harness.case import DesktopCase
from harness.waiting import until


class BusRestart(DesktopCase):
    PLACE = None

    def kill_bus(self):
        bus = next(process for process in self.desktop._processes if "dbus-daemon" in process.args)
        bus.send_signal(signal.SIGKILL)
        bus.wait()
        os.unlink(os.path.join(self.desktop.folder, "bus"))

    def start_bus(self):
        log = open(os.path.join(self.desktop.folder, "second-bus.log"), "wb")
        with log:
            bus = processes.start(["dbus-daemon", "--nofork", "--config-file", os.path.join(self.desktop.folder, "bus.conf")],
                                  self.desktop.environment, stdout=log, stderr=log)
        self.addCleanup(processes.end, bus)
        until(lambda: os.path.exists(os.path.join(self.desktop.folder, "bus")), "the session bus did not start")

    def test_is_survived_in_the_middle_of_a_run(self):
        program = self.start_with(stopMode="manual", maxClicks=None, clickIntervalSeconds=0.02)
        self.observer.move(1450, 140)
        first = Bus(self.desktop)
        first.act("toggle")
        until(lambda: self.observer.report()["presses"] >= 5, "no clicks came")

        self.kill_bus()
        before = self.observer.report()["presses"]
        until(lambda: self.observer.report()["presses"] >= before + 50, "the clicks ended with the bus")
        self.start_bus()
        second = Bus(self.desktop)
        self.addCleanup(second.close)
        second.wait_for_owner(program.pid)
        self.assertEqual(self.launch(None, folder=program.folder).wait_for_end(), 0)
        second.act("toggle")
        before = self.observer.report()["presses"]
        self.assertTrue(program.is_running())
        self.assertEqual(program.end(), 0)
        report = self.observer.report()
        self.assertEqual(report["presses"], report["releases"])
        self.assertEqual(report["presses"], before)
