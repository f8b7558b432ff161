"""A session bus that takes connections and answers nothing."""

import os
import signal
import socket
import time

from harness import preferences
from harness.bus import Bus
from harness.case import DesktopCase
from harness.waiting import pause, stays, until

# Waiting for the bus comes on top of a usual start.
LONGEST_WAIT_FOR_BUS = 2.5
COMPLAINT = "Velloran: the session bus does not answer. The program goes on without it.\n"


class SilentBus(DesktopCase):
    PLACE = None

    def take_place(self, path):
        """Has somebody at that place who takes connections and says nothing."""
        place = socket.socket(socket.AF_UNIX)
        self.addCleanup(place.close)
        place.bind(path)
        place.listen(100)

    def time_to_window(self, **environment):
        """Starts the program, and ends it when its window is there."""
        start = time.monotonic()
        program = self.launch({}, environment=environment)
        until(lambda: program.has_window(), "no window appeared")
        seconds = time.monotonic() - start
        log = program.log
        self.assertEqual(program.end(), 0)
        return seconds, log

    def test_does_not_keep_the_window_back(self):
        path = os.path.join(self.desktop.folder, "silent")
        self.take_place(path)
        usual, log = self.time_to_window()
        self.assertEqual(log, "")
        seconds, log = self.time_to_window(DBUS_SESSION_BUS_ADDRESS="unix:path=" + path)
        self.assertEqual(log, COMPLAINT)
        self.assertLess(seconds, 2 * usual + LONGEST_WAIT_FOR_BUS)

    def test_is_found_where_nothing_names_it(self):
        path = os.path.join(self.desktop.folder, "runtime", "bus")
        self.take_place(path)
        self.addCleanup(os.unlink, path)
        usual, _ = self.time_to_window()
        seconds, log = self.time_to_window(DBUS_SESSION_BUS_ADDRESS=None)
        self.assertEqual(log, COMPLAINT)
        self.assertLess(seconds, 2 * usual + LONGEST_WAIT_FOR_BUS)

    def test_is_taken_when_it_answers_after_all(self):
        self.desktop.bus.send_signal(signal.SIGSTOP)
        self.addCleanup(self.desktop.bus.send_signal, signal.SIGCONT)
        program = self.launch({})
        until(lambda: program.has_window(), "no window appeared")
        self.desktop.bus.send_signal(signal.SIGCONT)
        connection = Bus(self.desktop)
        self.addCleanup(connection.close)
        connection.wait_for_owner(program.pid)
        self.assertEqual(self.launch(None, folder=program.folder).wait_for_end(), 0)
        self.assertEqual(program.end(), 0)

    def test_that_falls_silent_in_mid_run_holds_nothing_up(self):
        interval = 0.02
        stored = preferences.config(clickIntervalSeconds=interval, stopMode="manual", hotkey=preferences.CONTROL_OPTION_S)
        program = self.launch({"velloran.config": preferences.as_bytes(stored)})
        program.window_id
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.forget()
        self.observer.press("s", "control", "alt")
        until(lambda: self.observer.report()["releases"] >= 10, "the clicks did not come")
        self.desktop.bus.send_signal(signal.SIGSTOP)
        self.addCleanup(self.desktop.bus.send_signal, signal.SIGCONT)
        before, start = self.observer.report()["releases"], time.monotonic()
        until(lambda: self.observer.report()["releases"] >= before + 200, "the clicks do not go on")
        self.assertLess(time.monotonic() - start, 2 * 200 * interval)
        self.observer.press("s", "control", "alt")
        until(lambda: not self.comes_more(), "the run cannot be stopped")
        stays(lambda: not self.comes_more(), "clicks come after the stop", 0.3)
        report = self.observer.report()
        self.assert_equal_clicks(report, report["releases"])
        start = time.monotonic()
        self.assertEqual(program.end(), 0)
        self.assertLess(time.monotonic() - start, 5, "the end waits for the bus")

    def comes_more(self):
        before = self.observer.report()["presses"]
        pause(0.1)
        return self.observer.report()["presses"] != before
