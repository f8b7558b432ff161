"""What other programs can have the application do, and how the bus starts it."""

import os
import signal

from harness import preferences
from harness.bus import INTERFACE, NAME, Bus
from harness.case import DesktopCase
from harness.program import PROGRAM
from harness.startup import StartupListener
from harness.waiting import until

MANY_CLICKS = {"stopMode": "manual", "maxClicks": None, "clickIntervalSeconds": 0.05}


class Actions(DesktopCase):
    def setUp(self):
        self.bus = Bus(self.desktop)
        self.addCleanup(self.bus.close)
        self.addCleanup(self.bus.wait_until_free)

    def test_toggle_starts_and_stops(self):
        program = self.start_with(**MANY_CLICKS)
        self.observer.move(1450, 140)
        self.bus.act("toggle")
        program.wait_for_headline("Running")
        until(lambda: self.observer.report()["presses"] >= 3, "no clicks came")
        self.bus.act("toggle")
        program.wait_for_headline("Ready")

    def test_toggle_leaves_the_focus_where_it_is(self):
        program = self.start_with(**MANY_CLICKS)
        program.lose_focus()
        self.observer.move(1450, 140)
        self.bus.act("toggle")
        program.wait_for_headline("Running")
        until(lambda: self.observer.report()["presses"] >= 5, "no clicks came")
        self.assertNotIn("active", program.window.states)
        self.bus.act("toggle")

    def test_quit_ends_a_run_cleanly(self):
        program = self.start_with(**MANY_CLICKS)
        self.observer.move(1450, 140)
        self.bus.act("toggle")
        until(lambda: self.observer.report()["presses"] >= 3, "no clicks came")
        self.bus.act("quit")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.observer.buttons_down(), 0)
        report = self.observer.report()
        self.assertEqual(report["presses"], report["releases"])

    def test_what_it_does_not_know_changes_nothing(self):
        program = self.start()
        self.bus.act("explode")
        self.bus.open("file:///etc/passwd")
        self.assertEqual(program.headline, "Ready")
        self.assertTrue(program.is_running())
        self.assertEqual(program.log, "")

    def test_the_desktop_command_reaches_it(self):
        program = self.start_with(**MANY_CLICKS)
        self.observer.move(1450, 140)
        # The command asks the desktop entry first.
        folder = os.path.join(self.desktop.folder, "data", "applications")
        os.makedirs(folder)
        source = os.path.join(os.path.dirname(__file__), "../../../packaging", NAME + ".desktop")
        os.symlink(os.path.abspath(source), os.path.join(folder, NAME + ".desktop"))
        self.desktop.run_tool("env", "XDG_DATA_HOME=" + os.path.dirname(folder), "gapplication", "action", NAME, "toggle")
        program.wait_for_headline("Running")
        self.bus.act("toggle")
        program.wait_for_headline("Ready")


class StartedByTheBus(DesktopCase):
    """The bus starts the program when its name is called."""

    def setUp(self):
        self.bus = Bus(self.desktop)
        self.addCleanup(self.bus.close)
        self.addCleanup(self.bus.wait_until_free)
        folder = self.desktop.folder
        preferences.write(os.path.join(folder, "home/.config/velloran/velloran.ini"), {
            **preferences.quiet_donation(), "velloran.config": preferences.as_bytes(preferences.config(clickIntervalSeconds=0.05))})
        with open(os.path.join(folder, "services", NAME + ".service"), "w", encoding="ascii") as file:
            file.write(f"[D-BUS Service]\nName={NAME}\nExec={PROGRAM}\n")
        self.bus.read_services_anew()
        self.addCleanup(self.end)

    def end(self):
        pid = self.bus.owner_process()
        if pid:
            os.kill(pid, signal.SIGTERM)

    def wait_for_window(self):
        until(lambda: self.desktop.run_tool("xwininfo", "-root", "-tree").count('"Velloran"'), "no window appeared")

    def test_activate_opens_the_window(self):
        self.bus.activate()
        self.wait_for_window()

    def test_the_start_is_over_when_the_window_is_there(self):
        listener = StartupListener(self.desktop)
        self.addCleanup(listener.close)
        identifier = f"shell/5-6-host_TIME{listener.server_time()}"
        self.bus.activate(desktop_startup_id=identifier)
        self.wait_for_window()
        listener.wait_for_end_of(identifier)

    def test_toggle_opens_the_window_and_clicks_nothing(self):
        self.observer.move(1450, 140)
        self.observer.forget()
        self.bus.act("toggle")
        self.wait_for_window()
        # The answer to a later question comes behind whatever the first one had caused.
        self.bus.open()
        self.assertEqual(self.observer.report()["presses"], 0)
        # Now that it runs, the same starts it: the first one has not.
        self.bus.act("toggle")
        until(lambda: self.observer.report()["presses"] >= 3, "no clicks came")
        self.bus.act("toggle")

    def test_the_interface_is_the_desktops(self):
        self.bus.activate()
        self.assertIn(f'<interface name="{INTERFACE}">', self.bus.introspect())
