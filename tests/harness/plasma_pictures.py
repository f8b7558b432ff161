"""A private Plasma whose screen can be looked at."""

import os
import subprocess

from PIL import Image

from .compositor import SWAY_CONFIGURATION
from .plasma import Plasma
from .waiting import pause


class PlasmaWithPictures(Plasma):
    """A KWin without a screen draws with nothing that pictures could be made of: this one's screen is a window of another compositor."""

    def __init__(self, size, way):
        self._outer_server = None
        super().__init__(size, way)

    def _start_compositor(self):
        path = os.path.join(self.folder, "outer")
        with open(path, "w", encoding="ascii") as file:
            file.write(SWAY_CONFIGURATION.format(width=self._size[0], height=self._size[1]))
        self._outer = os.path.join(self._place, self._start_program("sway", "--config", path))
        self._outer_server = self.server
        return super()._start_compositor()

    def _screen(self):
        return ["--wayland-display", self._outer]

    def picture(self):
        """What the screen shows, pixel for pixel."""
        # The outer compositor lets KWin draw while somebody looks: the first look is for what has changed meanwhile.
        for _ in range(2):
            path = os.path.join(self.folder, "screen.png")
            subprocess.run(["grim", path], check=True, timeout=20,
                           env={**self.environment, "XDG_RUNTIME_DIR": self._place, "WAYLAND_DISPLAY": self._outer})
            pause(0.1)
        with Image.open(path) as screen:
            return screen.convert("RGB")

    def close(self):
        super().close()
        if self._outer_server:
            self._outer_server.stdout.close()
