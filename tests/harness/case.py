"""What the test classes stand on: one private desktop a class, a fresh profile a test."""

import unittest

from . import picture, preferences
from .desktop import Desktop
from .program import Program


class DesktopCase(unittest.TestCase):
    maxDiff = None
    SCREEN = (1600, 1100)
    # Tall enough for all cards at once.
    PLACE = (10, 10, 920, 1040)

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(cls.SCREEN)
        cls.addClassCleanup(cls.desktop.close)
        cls.observer = cls.desktop.observer

    def start(self, stored=None, **options):
        """Starts the program with these preferences and waits for its window."""
        program = self.launch(stored if stored is not None or "folder" in options else {}, **options)
        program.wait_for_window()
        if self.PLACE:
            program.place(*self.PLACE)
        self.observer.forget()
        return program

    def launch(self, stored, **options):
        """Starts the program without waiting for anything."""
        program = Program(self.desktop, stored, **options)
        self.addCleanup(self._finish, program)
        return program

    def start_with(self, **config):
        """Starts the program with the default configuration and these changes."""
        return self.start({"velloran.config": preferences.as_bytes(preferences.config(**config))})

    def _finish(self, program):
        if self._has_failed() and self.desktop.server.poll() is None:
            picture.keep(picture.of_screen(self.desktop), "failed " + self.id())
        program.close()

    def assert_equal_clicks(self, report, count, button=1):
        """Exactly that many presses, each followed by its release, all of one button."""
        self.assertEqual((report["presses"], report["releases"], report["inPairs"]), (count, count, True), report)
        if count:
            self.assertEqual(report["buttons"], {str(button): count})

    def _has_failed(self):
        # Known only inside the framework until the test is over, and then the screen is another.
        return self._outcome is not None and not self._outcome.success
