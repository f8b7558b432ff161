"""One program for each session: what a second start does to the first."""

import os
import signal

from harness.bus import Bus, RefusingOwner
from harness.case import DesktopCase
from harness.startup import StartupListener
from harness.waiting import until


class SecondStart(DesktopCase):
    def setUp(self):
        self.bus = Bus(self.desktop)
        self.addCleanup(self.bus.close)
        self.addCleanup(self.bus.wait_until_free)

    def start_again(self, program, **environment):
        return self.launch(None, folder=program.folder, environment=environment)

    def test_brings_the_first_window_to_the_front(self):
        program = self.start()
        program.lose_focus()
        again = self.start_again(program)
        self.assertEqual(again.wait_for_end(), 0)
        until(lambda: "active" in program.window.states, "the window did not come to the front")
        self.assertTrue(program.is_running())
        self.assertEqual(program.log, "")

    def test_brings_it_out_of_the_task_bar(self):
        program = self.start()
        self.desktop.run_tool("xdotool", "windowminimize", "--sync", program.window_id)
        self.assertEqual(self.start_again(program).wait_for_end(), 0)
        until(lambda: "IsViewable" in self.desktop.run_tool("xwininfo", "-id", program.window_id), "the window stayed minimised")
        until(lambda: "active" in program.window.states, "the window did not get the focus")

    def test_shows_what_the_desktop_handed_to_it(self):
        listener = StartupListener(self.desktop)
        self.addCleanup(listener.close)
        program = self.start()
        program.lose_focus()
        identifier = f'launcher "one"/1-2-host_TIME{listener.server_time()}'
        self.assertEqual(self.start_again(program, DESKTOP_STARTUP_ID=identifier).wait_for_end(), 0)
        until(lambda: "active" in program.window.states, "the window did not come to the front")
        listener.wait_for_end_of(identifier.replace('"', '\\"'))

    def test_the_first_start_ends_its_notification(self):
        listener = StartupListener(self.desktop)
        self.addCleanup(listener.close)
        identifier = f"launcher/3-4-host_TIME{listener.server_time()}"
        self.start(environment={"DESKTOP_STARTUP_ID": identifier})
        listener.wait_for_end_of(identifier)

    def test_of_many_at_the_same_instant_one_stays(self):
        for _ in range(3):
            programs = [self.launch({}) for _ in range(4)]
            until(lambda: sum(not program.is_running() for program in programs) == 3, "not exactly one stayed")
            left = [program for program in programs if program.is_running()][0]
            left.wait_for_window()
            self.assertEqual([program.process.returncode for program in programs if program is not left], [0, 0, 0])
            self.assertEqual(self.bus.owner_process(), left.pid)
            self.assertEqual(left.end(), 0)
            self.bus.wait_until_free()

    def test_takes_over_when_the_first_ends_meanwhile(self):
        program = self.start()
        os.kill(program.pid, signal.SIGSTOP)
        again = self.start_again(program)
        until(lambda: self.bus.connections_of(again.pid), "the second one does not ask")
        os.kill(program.pid, signal.SIGKILL)
        again.wait_for_window()
        self.assertEqual(self.bus.wait_for_owner(again.pid), again.pid)

    def test_does_not_start_beside_one_that_hangs(self):
        program = self.start()
        os.kill(program.pid, signal.SIGSTOP)
        again = self.start_again(program)
        self.assertEqual(again.wait_for_end(), 1)
        self.assertIn("it is running already, but does not answer", again.log)
        os.kill(program.pid, signal.SIGCONT)

    def test_without_a_bus_each_runs(self):
        nowhere = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}
        before = set(self.desktop.windows_of("velloran"))
        programs = [self.launch({}, environment=nowhere) for _ in range(2)]
        until(lambda: len(set(self.desktop.windows_of("velloran")) - before) == 2, "not both opened a window")
        self.assertEqual([program.end() for program in programs], [0, 0])

    def test_does_not_press_one_that_refuses(self):
        # The second is what the bus says for one that ends just then, which is worth another try once its name is free.
        for error in "app.velloran.Velloran.Error.Refused", "org.freedesktop.DBus.Error.NoReply":
            with self.subTest(error=error):
                owner = RefusingOwner(self.desktop, error)
                self.addCleanup(owner.close)
                again = self.launch({})
                self.assertEqual(again.wait_for_end(), 1)
                self.assertIn("it is running already, but does not answer", again.log)
                owner.close()
                self.assertEqual(owner.calls, 1)
