"""Settings that cannot be read or written, as far as it is about the file and not about what is in it."""

import hashlib
import os

from harness import preferences
from harness.case import DesktopCase
from harness.desktop import Desktop
from harness.waiting import until


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


class UnusualSettingsFile(DesktopCase):
    def start_on(self, content):
        """Starts the program on a settings file with that content."""
        folder = os.path.join(self.desktop.folder, self._testMethodName)
        path = os.path.join(folder, "config", "velloran", "velloran.ini")
        os.makedirs(os.path.dirname(path))
        with open(path, "wb") as file:
            file.write(content)
        return self.start(folder=folder)

    def test_fifty_megabytes_are_left_alone(self):
        content = b"[General]\n" + b"x=" + b"y" * (50 * 1024 * 1024) + b"\n"
        program = self.start_on(content)
        before = digest(program.preferences_path)
        self.assertEqual(program.headline, "Ready")
        program.find("push button", "Increase Stop after").do()
        until(lambda: program.find("text", "Stop after").text == "110", "the field does not follow")
        self.assertEqual(program.end(), 0)
        self.assertEqual(digest(program.preferences_path), before)

    def test_an_empty_file_is_a_first_start(self):
        program = self.start_on(b"")
        self.assertEqual(program.headline, "Ready")
        program.wait_for_stored(**preferences.DEFAULTS)

    def test_random_bytes_are_a_first_start(self):
        # The same on every run, and nothing like text.
        content = b"".join(hashlib.sha256(str(number).encode()).digest() for number in range(4096))
        program = self.start_on(content)
        self.assertEqual(program.headline, "Ready")
        program.wait_for_stored(**preferences.DEFAULTS)


class ForeignSettings(DesktopCase):
    """Two users on one machine: what belongs to the other one stays as it is."""

    USER = 65534

    @classmethod
    def setUpClass(cls):
        if os.geteuid() != 0:
            cls.skipTest(cls, "only the administrator can be two users")
        cls.desktop = Desktop(cls.SCREEN, cls.USER)
        cls.addClassCleanup(cls.desktop.close)
        cls.observer = cls.desktop.observer

    def make_folder(self):
        folder = os.path.join(self.desktop.folder, self._testMethodName)
        os.makedirs(os.path.join(folder, "config", "velloran"))
        for name in ("cache", "data", "state"):
            os.mkdir(os.path.join(folder, name))
        return folder

    def test_a_file_of_another_user_is_neither_read_nor_replaced(self):
        folder = self.make_folder()
        self.desktop.give_to_user(folder)
        path = os.path.join(folder, "config", "velloran", "velloran.ini")
        preferences.write(path, {"velloran.config": preferences.as_bytes(preferences.config(maxClicks=4711))})
        os.chmod(path, 0o600)
        before = digest(path)
        program = self.start(folder=folder)
        self.assertEqual(program.find("text", "Stop after").text, "100")
        self.assertEqual(program.end(), 0)
        self.assertEqual(digest(path), before)
        self.assertEqual(os.stat(path).st_uid, 0)

    def test_a_home_that_is_not_there(self):
        nowhere = {"HOME": "/nonexistent", **{f"XDG_{name}_HOME": None for name in ("CONFIG", "CACHE", "DATA", "STATE")}}
        program = self.start(folder=self.make_folder(), environment=nowhere)
        self.assertEqual(program.headline, "Ready")
        self.assertEqual(program.end(), 0)

    def test_no_home_at_all(self):
        nowhere = {"HOME": None, **{f"XDG_{name}_HOME": None for name in ("CONFIG", "CACHE", "DATA", "STATE")}}
        program = self.start(folder=self.make_folder(), environment=nowhere)
        self.assertEqual(program.headline, "Ready")
        program.find("push button", "Increase Stop after").do()
        until(lambda: program.find("text", "Stop after").text == "110", "the field does not follow")
        self.assertEqual(program.end(), 0)

    def test_a_home_that_is_read_only(self):
        folder = self.make_folder()
        readonly = {"HOME": folder, **{f"XDG_{name}_HOME": None for name in ("CONFIG", "CACHE", "DATA", "STATE")}}
        program = self.start(folder=folder, environment=readonly)
        self.assertEqual(program.headline, "Ready")
        self.assertEqual(program.end(), 0)
        self.assertFalse(os.path.exists(os.path.join(folder, ".config")))
