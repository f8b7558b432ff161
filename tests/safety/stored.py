"""The settings that a program on trial finds."""

import os

from harness import preferences

from .surrounded import HOTKEY

SAVE_DELAY = 0.25  # seconds from a change to its save
STORED = preferences.config(clickIntervalSeconds=0.02, stopMode="manual", maxClicks=None, hotkey=HOTKEY)


def store(path, config=None):
    preferences.write(path, {**preferences.quiet_donation(), "velloran.config": preferences.as_bytes(config or STORED)})


def settings_in(folder):
    return os.path.join(folder, "config", "velloran", "velloran.ini")
