"""A private sound server."""

import os
import subprocess

from . import processes
from .waiting import until


class SoundServer:
    """Without a device: what is played to it goes nowhere. Started by `start`, also after another has ended."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.path = os.path.join(desktop.folder, "runtime", "sound")
        self._process = None

    def start(self):
        if os.path.exists(self.path):
            os.unlink(self.path)
        self._process = processes.start(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--disallow-exit", "-L",
             "module-null-sink sink_name=test", "-L", f"module-native-protocol-unix auth-anonymous=1 socket={self.path}"],
            self._desktop.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        until(lambda: os.path.exists(self.path), "the sound server did not start")

    def send(self, number):
        self._process.send_signal(number)

    def kill(self):
        self._process.kill()
        self._process.wait()

    @property
    def environment(self):
        """For programs that shall be heard by it."""
        return {"PULSE_SERVER": f"unix:{self.path}"}

    def clients(self):
        """Who plays something, a line for each."""
        answer = subprocess.run(["pactl", "list", "short", "sink-inputs"], env={**self._desktop.environment, **self.environment},
                                capture_output=True, text=True, check=False, timeout=20)
        return answer.stdout.strip()
