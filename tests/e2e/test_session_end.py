"""The end of the session, as session managers of the X window system tell it."""

import os
import subprocess
import threading

from harness import preferences, processes
from harness.case import DesktopCase
from harness.waiting import until

SESSION_MANAGER = os.environ["VELLORAN_SESSION_MANAGER"]


class SessionManager:
    def __init__(self, desktop):
        environment = {**desktop.environment, "ICEAUTHORITY": os.path.join(desktop.folder, "ice-authority")}
        self._process = processes.start([SESSION_MANAGER], environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        bufsize=1)
        self.lines = []
        self._reader = threading.Thread(target=lambda: self.lines.extend(self._process.stdout), daemon=True)
        self._reader.start()
        address = until(lambda: next((line for line in self.lines if line.startswith("address ")), None),
                        "the session manager did not start")
        self.environment = {"SESSION_MANAGER": address.split()[1], "ICEAUTHORITY": environment["ICEAUTHORITY"]}

    def wait_for(self, what):
        until(lambda: what + "\n" in self.lines, lambda: f"nobody {what}: {self.lines}")

    def end_session(self):
        self._process.stdin.write("end\n")

    def close(self):
        self._process.stdin.close()
        processes.end(self._process)
        self._reader.join()
        self._process.stdout.close()


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
