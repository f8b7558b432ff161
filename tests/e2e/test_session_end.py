"""The end of the session, as session managers of the X window system tell it."""

from harness import preferences
from harness.case import DesktopCase
from harness.session import SessionManager
from harness.waiting import until


class SessionEnd(DesktopCase):
    def setUp(self):
        self.manager = SessionManager(self.desktop)
        self.addCleanup(self.manager.close)

    def start_in_session(self, **config):
        stored = {"velloran.config": preferences.as_bytes(preferences.config(**config))}
        program = self.start(stored, environment=self.manager.environment)
        self.manager.wait_for("registered")
        return program

    def test_ends_the_program(self):
        program = self.start_in_session()
        self.manager.end_session()
        self.assertEqual(program.wait_for_end(), 0)
        self.manager.wait_for("saved")
        self.manager.wait_for("left")
        self.assertEqual(program.log, "")

    def test_ends_a_run_with_the_button_up(self):
        program = self.start_in_session(clickIntervalSeconds=0.01, stopMode="manual", maxClicks=None)
        stored = program.stored_config()
        program.find("push button", "Start").do()
        self.observer.move(1450, 150)
        until(lambda: self.observer.report()["presses"] >= 20, "the clicks did not come")
        self.manager.end_session()
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.observer.buttons_down(), 0)
        seen = self.observer.report()
        self.assert_equal_clicks(seen, seen["presses"])
        self.assertEqual(program.stored_config(), stored)
