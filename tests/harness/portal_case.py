"""What the test classes stand on that drive the whole program through a desktop's own portal."""

import unittest

from . import preferences
from .bus import Bus
from .compositor_case import LEFT
from .program import Program
from .waiting import stays, until

GRANT = "Grant Accessibility Permission"


class PortalCase(unittest.TestCase):
    """One private desktop a test, which `make_desktop` makes; `grant` answers the dialog of its portal."""

    maxDiff = None

    def setUp(self):
        self.desktop = self.make_desktop()
        self.addCleanup(self.desktop.close)
        self.witness = self.desktop.witness
        self.hand = self.desktop.hand
        self.bus = Bus(self.desktop)
        self.addCleanup(self.bus.close)

    def make_desktop(self):
        raise NotImplementedError

    def grant(self):
        raise NotImplementedError

    def grant_again(self):
        """What was granted before: for a desktop that asks once more."""

    def dialogs(self, service=None):
        """Those of that service; of the part of the desktop behind the portal where none is named."""
        return self.desktop.dialogs(service or self.desktop.BACK_END)

    def wait_for_dialog(self, service=None):
        """Waits until the desktop asks, and takes keys for the answer."""
        until(lambda: any("active" in frame.states for frame in self.dialogs(service)), "the desktop does not ask")

    def wait_until_answered(self, service=None):
        until(lambda: not self.dialogs(service), "the dialog stays")

    def launch(self, environment=None, **config):
        """Starts the program with the default configuration and these changes; the desktop may ask its user then."""
        stored = {"velloran.config": preferences.as_bytes(preferences.config(**config))}
        program = Program(self.desktop, stored, environment={"XDG_DATA_HOME": self.desktop.data_home, **(environment or {})})
        self.addCleanup(program.close)
        program.wait_for_window()
        return program

    def start(self, **config):
        """The same, and the permission to click is granted; the witness has the keyboard."""
        program = self.launch(**config)
        self.grant_again()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def start_granted(self, **config):
        """For the first time on this desktop."""
        program = self.launch(**config)
        self.grant()
        self.wait_for_permission(program)
        self.desktop.focus("witness")
        return program

    def wait_for_permission(self, program):
        program.wait_until_gone("push button", GRANT)

    def toggle(self):
        self.bus.act("toggle")

    def about(self, program):
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        return program.find("dialog", "About Velloran")

    def assert_clicks(self, report, count, button=LEFT):
        """Exactly that many presses, each followed by its release, all of one button."""
        self.assertEqual(report, [("down", button), ("up", button)] * count)

    def assert_nothing_is_down(self, when):
        """Of what was seen since the last report. The desktop may let go of a button a little later."""
        report = []

        def is_even():
            report.extend(self.witness.report())
            return len(report) % 2 == 0
        until(is_even, f"a button stays down: {when}", 5)
        self.assertGreater(len(report), 0, when)
        self.assert_clicks(report, len(report) // 2)

    def assert_run(self, program, count, button=LEFT):
        """A run of that many comes to its end, and was seen. Returns the moments of the presses."""
        before = self.witness.releases()
        self.toggle()
        program.wait_for_headline("Completed")
        # The last click may be on its way through the desktop.
        self.witness.wait_for_releases(before + count)
        report = self.witness.timed_report()
        self.assert_clicks([(kind, code) for kind, code, _ in report], count, button)
        stays(lambda: not self.witness.report(), "clicks come after the last", 0.3)
        return [moment for kind, _, moment in report if kind == "down"]
