"""The settings of a user whose program ends at any moment: each value that is found then is old or new."""

import contextlib
import os
import re
import shutil
import tempfile

from harness import preferences

ENDLESS = 1_000_000
HOTKEY = preferences.CONTROL_OPTION_S


def _config(clicks, still):
    """Runs are fast, whatever is applied."""
    return preferences.config(clickIntervalSeconds=0.01, maxClicks=clicks, stationarySeconds=still, hotkey=HOTKEY)


# What can be applied, and is never deleted.
APPLIED = {"One": _config(ENDLESS, 1.0), "Two": _config(2 * ENDLESS, 2.0)}


class Profile:
    """A folder that each life of the program gets from the one before."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="velloran-profile-")
        self.path = os.path.join(self.folder, "config", "velloran", "velloran.ini")
        presets = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "name": name, "createdAt": 1.0, "config": config}
                   for number, (name, config) in enumerate(APPLIED.items())]
        preferences.write(self.path, {**preferences.quiet_donation(), "velloran.config": preferences.as_bytes(APPLIED["One"]),
                                      "velloran.presets": preferences.as_bytes(presets)})

    def remind(self):
        """Has the reminder be due at the next start."""
        preferences.write(self.path, {**preferences.read(self.path),
                                      "donation.nextReminderAt": preferences.date(preferences.now() - 1.0)})

    def forget_log(self):
        """What the program said in the life before."""
        with contextlib.suppress(FileNotFoundError):
            os.remove(os.path.join(self.folder, "log"))

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)


class Expectations:
    """What the file may hold: what it held at the start, and everything that has been said since."""

    def __init__(self, profile):
        self._path = profile.path
        stored = preferences.read(self._path)
        self._configs = [preferences.stored_json(stored["velloran.config"])]
        self._presets = [self._names_in(stored)]
        self._shown = [int(stored["donation.remindersShown"])]
        self._due = stored["donation.nextReminderAt"]

    @staticmethod
    def _names_in(stored):
        return [preset["name"] for preset in preferences.stored_json(stored["velloran.presets"])]

    @property
    def is_reminder_due(self):
        return preferences.stored_date(self._due) < preferences.now()

    @property
    def config(self):
        return self._configs[-1]

    @property
    def presets(self):
        return self._presets[-1]

    def configure(self, **changes):
        self._configs.append({**self.config, **changes})

    def keep(self, names):
        self._presets.append(names)

    def put_off(self):
        self._shown.append(self._shown[-1] + 1)

    def check(self):
        """The file reads, and everything in it is one of these. Returns whether it is all old, all new, or some of both."""
        with open(self._path, encoding="latin-1", newline="") as file:
            text = file.read()
        assert re.fullmatch(r"\[General\]\n(?:[a-z]+\.[A-Za-z]+=[^\n]*\n)+", text), text
        stored = preferences.read(self._path)
        config = preferences.stored_json(stored["velloran.config"])
        assert config in self._configs, (config, self._configs)
        assert self._names_in(stored) in self._presets, (stored["velloran.presets"], self._presets)
        for preset in preferences.stored_json(stored["velloran.presets"]):
            assert set(preset) == {"id", "name", "config", "createdAt"}, preset
            assert preset["config"] == APPLIED.get(preset["name"], preset["config"]), preset
        shown = int(stored["donation.remindersShown"])
        assert shown in self._shown, (stored, self._shown)
        # The count and the date are one change.
        assert (stored["donation.nextReminderAt"] == self._due) == (shown == self._shown[0]), (stored, self._due, self._shown)
        assert preferences.stored_date(stored["donation.firstLaunchAt"]) < preferences.now()
        found = (config, self._names_in(stored), shown)
        said = (self._configs, self._presets, self._shown)
        if all(len(values) == 1 for values in said):
            return "what was there"
        if found == tuple(values[-1] for values in said):
            return "all that was said"
        return "what was there" if found == tuple(values[0] for values in said) else "some of what was said"
