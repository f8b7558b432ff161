"""What the program keeps away from."""

import os
import random
import subprocess
import sys

from harness import preferences
from harness.case import DesktopCase
from harness.file_dialogs import choose_file
from harness.waiting import until
from safety.driving import Driver

SOURCE = os.path.join(os.path.dirname(__file__), "..", "harness", "openings.c")
HOTKEY = preferences.CONTROL_OPTION_S
# Nothing comes out of these, and no input goes in.
HARMLESS = ("/dev/null", "/dev/urandom", "/dev/random", "/dev/shm/")


class Isolation(DesktopCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.library = os.path.join(cls.desktop.folder, "openings.so")
        subprocess.run([os.environ.get("CC", "cc"), "-shared", "-fPIC", "-O1", "-o", cls.library, SOURCE], check=True)

    def watch(self, name):
        """The environment of a program that is watched, and where it is written down what it opens."""
        path = os.path.join(self.desktop.folder, name)
        return {"LD_PRELOAD": self.library, "VELLORAN_OPENINGS": path}, path

    def use_everything(self, program):
        def type_text(text):
            for character in text:
                if character == "\t":
                    self.observer.press("Tab")
                else:
                    self.observer.type(character)

        def resize(width, height):
            self.desktop.run_tool("xdotool", "windowsize", program.window_id, str(width), str(height))

        def switch_layout(name):
            self.desktop.run_tool("setxkbmap", name)

        Driver(program, random.Random(1), resize, switch_layout, type_text).do_everything_once()
        switch_layout("us")
        program.place(*self.PLACE)
        self.observer.press(",", "control")
        for name in ("Export", "Import"):
            path = os.path.join(program.folder, "configuration.json")
            choose_file(program, name, path)
            until(lambda: os.path.exists(path), "nothing was written")

    def test_no_network_and_no_device(self):
        environment, path = self.watch("openings")
        stored = preferences.config(clickIntervalSeconds=0.03, maxClicks=10, playClickSound=True, hotkey=HOTKEY)
        program = self.start({"velloran.config": preferences.as_bytes(stored)}, environment=environment)
        program.wait_for_hotkey("s", "control", "alt")
        self.observer.move(1450, 150)
        self.observer.press("s", "control", "alt")
        program.wait_for_headline("Completed")
        self.use_everything(program)
        self.assertEqual(program.end(), 0)
        with open(path, encoding="utf-8") if os.path.exists(path) else open(os.devnull, encoding="utf-8") as file:
            opened = [line.split(" ", 1)[1] for line in file.read().splitlines()]
        self.assertEqual([name for name in opened if not name.startswith(HARMLESS)], [])

    def test_they_would_be_seen(self):
        environment, path = self.watch("those of another")
        script = "import os, socket; socket.socket(socket.AF_INET).close(); os.close(os.open('/dev/zero', os.O_RDONLY))"
        subprocess.run([sys.executable, "-c", script], env={**os.environ, **environment}, check=True)
        with open(path, encoding="utf-8") as file:
            self.assertEqual([line for line in file.read().splitlines() if line in ("socket 2", "device /dev/zero")],
                             ["socket 2", "device /dev/zero"])
