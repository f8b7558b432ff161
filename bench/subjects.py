"""Who is measured: builds of the program, the least that there can be, and other programs for the same."""

import contextlib
import os
import shutil
import subprocess
import tempfile

import meters
from harness import preferences, processes
from harness.waiting import until


class Clicker:
    """A program without a window that clicks as often as its arguments say."""

    def __init__(self, name, arguments):
        self.name = name
        self._arguments = arguments  # of the count and the interval in seconds

    @contextlib.contextmanager
    def ready(self, screen, count, interval):
        """Gives what begins the run, and returns its process."""
        with contextlib.ExitStack() as stack:
            def begin():
                process = processes.start(self._arguments(count, interval), screen.environment, stdout=subprocess.DEVNULL)
                stack.callback(processes.end, process)
                return process
            yield begin


def bare_thread(path):
    return Clicker("bare thread", lambda count, interval: [path, str(count), str(interval)])


def other_clickers():
    """Those that are installed."""
    known = {
        "xdotool": lambda count, interval: ["xdotool", "click", "--repeat", str(count), "--delay", str(round(interval * 1000)), "1"],
        "xte": lambda count, interval: ["xte", *(["mouseclick 1", f"usleep {round(interval * 1e6)}"] * count)],
    }
    return [Clicker(name, arguments) for name, arguments in known.items() if shutil.which(name)]


class Launched:
    """A program with a window, as soon as that is mapped."""

    def __init__(self, screen, path, environment):
        def start():
            return processes.start([path], {**screen.environment, **environment}, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.process, self.seconds_to_map = screen.start_and_wait_until_mapped(start)

    @property
    def pid(self):
        return self.process.pid

    def __enter__(self):
        return self

    def __exit__(self, *_):
        processes.end(self.process)


class BareWindow:
    name = "bare window"

    def __init__(self, path):
        self._path = path

    def launch(self, screen):
        return Launched(screen, self._path, {})


class Build:
    """The program as it was built in a folder."""

    def __init__(self, name, folder):
        self.name = name
        self.folder = folder
        self._path = os.path.join(folder, "src", "velloran")

    def launch(self, screen, presets=(), **config):
        """With a home of its own, whose caches it has filled before: what it saves between two launches is not measured."""
        return self._launch(screen, self._path, "home of " + self.name, {}, presets, config)

    def launch_as_stranger(self, screen):
        """From another file and without a bus: another program for those beside it, which shares nothing with them but the toolkit."""
        path = os.path.join(screen.folder, "stranger")
        if not os.path.exists(path):
            shutil.copy(self._path, path)
        return self._launch(screen, path, "home of a stranger", {"DBUS_SESSION_BUS_ADDRESS": "disabled:"}, (), {})

    @staticmethod
    def _launch(screen, path, home, environment, presets, config):
        home = os.path.join(screen.folder, home)
        stored = {**preferences.quiet_donation(),
                  "velloran.config": preferences.as_bytes(preferences.config(hotkey=preferences.CONTROL_OPTION_S, **config))}
        if presets:
            stored["velloran.presets"] = preferences.as_bytes(list(presets))
        preferences.write(os.path.join(home, "config", "velloran", "velloran.ini"), stored)
        homes = {"XDG_" + name.upper() + "_HOME": os.path.join(home, name) for name in ("config", "cache", "data", "state")}
        return Launched(screen, path, {**homes, **environment})

    @contextlib.contextmanager
    def at_rest(self, screen, is_minimised=False, **config):
        """Launched, out of the way of the clicks, with its hotkey, and asleep."""
        with self.launch(screen, **config) as launched:
            screen.move_window_away()
            if is_minimised:
                screen.minimise_window()
            meters.wait_for_rest(launched.pid)
            # Not earlier: each look takes the hotkey for a moment, and whoever asks for it just then does not get it.
            until(lambda: not screen.has_hotkey_free(), "the hotkey was not registered")
            yield launched
