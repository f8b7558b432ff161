"""What the window looks like on a desktop whose clicks go through a portal: the pictures in docs/window.md."""

from . import picture, preferences
from .waiting import pause, until

CONFIG = {"hotkey": preferences.CONTROL_OPTION_S, "clickIntervalSeconds": 900.0, "maxClicks": 3}


class PictureTests:
    """Stands beside a `PortalCase` among the bases of a test class. That has `program`, with that configuration, `shown`, what is to
    be seen of its window if anything, and what the names of its pictures begin with."""

    PICTURES = None

    def keep(self, name):
        # The mascot takes a moment to lift off, a sheet to open.
        pause(1)
        seen = until(self.shown, "the window does not show")
        # Nothing plain.
        self.assertGreater(len(seen.getcolors(1 << 24) or []), 500)
        picture.keep(seen, f"{self.PICTURES}-{name}")

    def test_it_runs(self):
        self.program.find("push button", "Start").do()
        self.program.wait_for_headline("Running")
        self.keep("running")

    def test_it_tells_how_the_desktop_is_used(self):
        sheet = self.about(self.program)
        self.program.find("label", "Input is posted through the desktop's portal.", within=sheet)
        self.keep("about")
