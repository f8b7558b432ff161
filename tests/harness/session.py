"""A session manager of the X window system, for one session."""

import os
import subprocess
import threading

from . import processes
from .waiting import until

PROGRAM = os.environ.get("VELLORAN_SESSION_MANAGER")


class SessionManager:
    """Programs join when they get `environment`."""

    def __init__(self, desktop):
        environment = {**desktop.environment, "ICEAUTHORITY": os.path.join(desktop.folder, "ice-authority")}
        self._process = processes.start([PROGRAM], environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
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
