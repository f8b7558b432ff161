"""The settings of a user whose program ends at any moment: each value that is found then is old or new."""

import contextlib
import dataclasses
import math
import os
import re
import shutil
import tempfile
import time

from harness import preferences

ENDLESS = 1_000_000
HOTKEY = preferences.CONTROL_OPTION_S
SAVE_DELAY = 0.25  # seconds from the last of some changes of the configuration to its save; all else is saved at once
# The same on a busy machine: a turn of the program is late by half a second there. What comes sooner may put the save off.
LONGEST_CALM = SAVE_DELAY + 0.5
# A save waits half a second for a lock, at most, and then for the disk.
LONGEST_WRITING = 1.0
SETTLED = LONGEST_CALM + LONGEST_WRITING


def _config(clicks, still):
    """Runs are fast, whatever is applied."""
    return preferences.config(clickIntervalSeconds=0.01, maxClicks=clicks, stationarySeconds=still, hotkey=HOTKEY)


# What can be applied, and is never deleted.
APPLIED = {"One": _config(ENDLESS, 1.0), "Two": _config(2 * ENDLESS, 2.0)}


@dataclasses.dataclass
class Found:
    """What a life has left of what was said: in words, how many of its values had to be newer than at its start, how many of these
    were, and what was found in the place of the others, with what had to be."""
    how: str
    owed: int
    kept: int
    lost: list


class Profile:
    """A folder that each life of the program gets from the one before."""

    # Starts with the time to click, on what a life before had left, and how many of them did.
    starts = 0
    starts_with_clicks = 0
    is_new = True

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

    def left_over(self):
        """What is in it that nobody asked for: files beside the settings and their lock, or folders beside theirs."""
        settings = os.path.dirname(self.path)
        found = [name for name in os.listdir(settings) if name not in ("velloran.ini", "velloran.ini.lock")]
        found += [name for name in os.listdir(os.path.dirname(settings)) if name != "velloran"]
        return found + [name for name in os.listdir(self.folder) if name not in ("config", "log")]

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)


class History:
    """The values that something has had, and when the program heard of each."""

    def __init__(self, value):
        self.values = [value]
        self._said = [-math.inf]
        self._heard = [-math.inf]

    def say(self, value):
        """Is said from now on. It counts as heard once `hear` is called, when the program has answered."""
        self.values.append(value)
        self._said.append(time.monotonic())
        self._heard.append(math.inf)

    def hear(self):
        if self._heard[-1] == math.inf:
            self._heard[-1] = time.monotonic()

    def newest_owed(self, blow, calm, writing):
        """The place of the newest value that has to be found behind a blow at that moment: nothing was said for `calm` seconds behind
        it, which starts its writing, and that had its time as well."""
        owed = 0
        for place, heard in enumerate(self._heard):
            behind = (*self._said, blow)[place + 1]
            if min(behind, blow) - heard >= calm and blow - heard >= calm + writing:
                owed = place
        return owed

    def is_there(self, value, owed):
        """Whether it is the one that is owed, or a newer one."""
        return value in self.values[owed:]


class Expectations:
    """What the file may hold: what it held at the start, and everything that has been said since, unless something newer is owed."""

    def __init__(self, profile):
        self._path = profile.path
        stored = preferences.read(self._path)
        self._configs = History(preferences.stored_json(stored["velloran.config"]))
        self._presets = History(self._names_in(stored))
        self._shown = History(int(stored["donation.remindersShown"]))
        self._due = stored["donation.nextReminderAt"]

    @staticmethod
    def _names_in(stored):
        return [preset["name"] for preset in preferences.stored_json(stored["velloran.presets"])]

    @property
    def is_reminder_due(self):
        return preferences.stored_date(self._due) < preferences.now()

    @property
    def config(self):
        return self._configs.values[-1]

    @property
    def presets(self):
        return self._presets.values[-1]

    def configure(self, **changes):
        self._configs.say({**self.config, **changes})

    def keep(self, names):
        self._presets.say(names)

    def put_off(self):
        self._shown.say(self._shown.values[-1] + 1)

    def hear(self):
        """The program has answered to what was said last."""
        for history in (self._configs, self._presets, self._shown):
            history.hear()

    def check(self, blow, is_sudden):
        """The file reads, and everything in it is one of these. `blow` is when the program was ended, and `is_sudden` whether without a
        word: else it writes what it has begun to save, but saves nothing else. Returns what was found."""
        with open(self._path, encoding="latin-1", newline="") as file:
            text = file.read()
        assert re.fullmatch(r"\[General\]\n(?:[a-z]+\.[A-Za-z]+=[^\n]*\n)+", text), text
        stored = preferences.read(self._path)
        config, names, shown = (preferences.stored_json(stored["velloran.config"]), self._names_in(stored),
                                int(stored["donation.remindersShown"]))
        for history, value in ((self._configs, config), (self._presets, names), (self._shown, shown)):
            assert value in history.values, (value, history.values)
        for preset in preferences.stored_json(stored["velloran.presets"]):
            assert set(preset) == {"id", "name", "config", "createdAt"}, preset
            assert preset["config"] == APPLIED.get(preset["name"], preset["config"]), preset
        # The count and the date are one change.
        assert (stored["donation.nextReminderAt"] == self._due) == (shown == self._shown.values[0]), (stored, self._due, shown)
        assert preferences.stored_date(stored["donation.firstLaunchAt"]) < preferences.now()
        return self._compare((config, names, shown), blow, LONGEST_WRITING if is_sudden else 0.0)

    def _compare(self, values, blow, writing):
        histories = (self._configs, self._presets, self._shown)
        owed = [history.newest_owed(blow, calm, writing) for history, calm in zip(histories, (LONGEST_CALM, 0.0, 0.0))]
        kept = [history.is_there(value, place) for history, value, place in zip(histories, values, owed) if place > 0]
        if all(len(history.values) == 1 for history in histories):
            how = "what was there"
        elif values == tuple(history.values[-1] for history in histories):
            how = "all that was said"
        else:
            how = "what was there" if values == tuple(history.values[0] for history in histories) else "some of what was said"
        lost = [(value, history.values[place:]) for history, value, place in zip(histories, values, owed)
                if not history.is_there(value, place)]
        return Found(how, len(kept), sum(kept), lost)
