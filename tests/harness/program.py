"""The program itself, on a private desktop with a profile of its own."""

import os
import shutil
import signal
import subprocess
import tempfile

from gi.repository import GLib

from . import preferences, processes
from .accessible import applications
from .waiting import TookTooLong, pause, until

PROGRAM = os.environ["VELLORAN_PROGRAM"]


class Program:
    """Starts at once, and is ready when its window shows. `stored` are the preferences to start with; nothing for a first start.
    What it says goes to a file, unless another descriptor is given. `limits` are what `prlimit` is told: they hold from the beginning."""

    def __init__(self, desktop, stored=None, environment=None, folder=None, stderr=None, arguments=(), limits=()):
        self.desktop = desktop
        self.observer = desktop.observer
        self.owns_folder = folder is None
        self.folder = folder or tempfile.mkdtemp(prefix="profile-", dir=desktop.folder)
        os.chmod(self.folder, 0o755)
        self.preferences_path = os.path.join(self.folder, "config", "velloran", "velloran.ini")
        self.log_path = os.path.join(self.folder, "log")
        if stored is not None:
            preferences.write(self.preferences_path, {**preferences.quiet_donation(), **stored})
        self.environment = {**desktop.environment, **{"XDG_" + name.upper() + "_HOME": os.path.join(self.folder, name)
                                                      for name in ("config", "cache", "data", "state")}}
        for name, value in (environment or {}).items():
            if value is None:
                self.environment.pop(name, None)
            else:
                self.environment[name] = value
        with open(self.log_path, "ab") as log:
            # The tests may have been started by something that ignores hanging up.
            limiting = ["prlimit", *limits] if limits else []
            command = [*desktop.as_user, "env", "--default-signal=HUP", *limiting, PROGRAM, *arguments]
            self.process = processes.start(command, self.environment, stdout=log, stderr=stderr or log, cwd=self.folder)
        self._window = None
        self._window_id = None
        self._status_texts = None

    # Life

    @property
    def pid(self):
        return self.process.pid

    @property
    def log(self):
        return processes.read_all(self.log_path)

    def is_running(self):
        return self.process.poll() is None

    def toolkit_version(self):
        """The first two numbers of it."""
        found = [name for name in processes.mapped_files(self.pid) if name.startswith("libQt6Gui.so.")]
        return tuple(int(part) for part in found[0].split(".")[2:4])

    def follows_scales(self):
        """Whether its window is drawn anew when its output gets another scale, and at scales between whole numbers."""
        return self.toolkit_version() > (6, 4)

    def wait_for_window(self):
        self._window = until(self._find_window, lambda: f"no window appeared; the program says: {self.log}")
        return self

    def _find_window(self):
        if not self.is_running():
            raise TookTooLong(f"the program ended with {self.process.returncode}: {self.log}")
        try:
            for frame in applications(self.desktop.accessibility)[self.pid].children:
                # Dialogs have names of their own.
                if frame.name == "Velloran" and "showing" in frame.states and frame.extents[2] > 0:
                    return frame
        except (GLib.Error, KeyError):
            pass
        return None

    def wait_for_end(self, seconds=20.0):
        until(lambda: not self.is_running(), "the program does not end", seconds)
        return self.process.returncode

    def end(self):
        """Ends the program as the system does at logout, and returns its exit code."""
        if self.is_running():
            self.process.send_signal(signal.SIGTERM)
        return self.wait_for_end()

    def close(self):
        processes.end(self.process)
        if self.owns_folder:
            shutil.rmtree(self.folder, ignore_errors=True)

    # What it shows

    @property
    def window(self):
        if self._window is None:
            self.wait_for_window()
        return self._window

    @property
    def frames(self):
        """All windows that show, by their names; the main one is called as the program is."""
        found = {}
        for frame in applications(self.desktop.accessibility)[self.pid].children:
            try:
                if "showing" in frame.states:
                    found[frame.name] = frame
            except GLib.Error:
                continue  # closed meanwhile
        return found

    def shown(self, role=None, name=None, within=None):
        """Everything to be seen of that role and name."""
        return (within or self.window).find_all(role, name)

    def find(self, role=None, name=None, within=None, number=0):
        """The one that is shown of that role and name, as soon as it is."""
        def look():
            found = self.shown(role, name, within)
            return found[number] if len(found) > number else None
        return until(look, lambda: f"no {role} {name!r}; there is {[(item.role, item.name) for item in self.shown(within=within)]}")

    def shows(self, role=None, name=None):
        return bool(self.shown(role, name))

    def wait_until_gone(self, role, name):
        until(lambda: not self.shows(role, name), f"{role} {name!r} is still there")

    def texts(self):
        """The names and descriptions of everything to be seen."""
        found = []
        for item in self.window.walk():
            try:
                found += [text for text in (item.name, item.description) if text]
            except GLib.Error:
                continue
        return found

    def shows_text(self, text):
        return text in self.texts()

    def wait_for_text(self, text):
        until(lambda: self.shows_text(text), lambda: f"{text!r} is not shown, but {self.texts()}")

    def card(self, title):
        """The card with that heading, or with that text in its place."""
        def look():
            for card in self.window.children:
                if any(child.name == title for child in card.children if child.role in ("heading", "label")):
                    return card
            return None
        return until(look, f"there is no card {title!r}")

    def _live_texts(self):
        """The headline and the message. While one word fades into the next there may be no headline to be seen."""
        def look():
            found = self.card("Status").find_all("alert message")
            return found if len(found) == 2 else None
        if self._status_texts is None:
            self._status_texts = until(look, "the status has no headline and message")
        return self._status_texts

    @property
    def headline(self):
        return self._live_texts()[0].name

    @property
    def message(self):
        return self._live_texts()[1].name

    def wait_for_headline(self, text, seconds=30.0):
        until(lambda: self.headline == text, lambda: f"the headline is {self.headline!r}, not {text!r}: {self.message!r}", seconds)

    # What is done to it

    @property
    def window_id(self):
        """How the X server calls the window."""
        if self._window_id is None:
            self._window_id = until(self._find_window_id, "the X server shows no window of the program")
        return self._window_id

    def has_window(self):
        """Whether the window shows, as the X server sees it; assistive tools need a bus for that."""
        pids = []
        for window in self.desktop.windows_of("velloran"):
            try:
                pids.append(self.desktop.run_tool("xdotool", "getwindowpid", window).strip())
            except subprocess.CalledProcessError:
                continue  # closed meanwhile
        return str(self.pid) in pids

    def _find_window_id(self):
        found = self.desktop.windows_of("velloran")
        assert len(found) <= 1, found
        return found[0] if found else None

    def place(self, x, y, width, height):
        """Moves the window and changes its size, as another program does."""
        wanted = (x, y, width, height)
        self.desktop.run_tool("xdotool", "windowsize", self.window_id, str(width), str(height), "windowmove", self.window_id, str(x),
                              str(y))
        until(lambda: tuple(self.window.extents) == wanted, lambda: f"the window is at {self.window.extents}, not at {wanted}")
        self.give_focus()

    def click(self, item, button=1):
        """Clicks with the pointer in the middle of it."""
        self.observer.click(*item.centre, button)

    def click_on(self, role, name, within=None, number=0):
        self.click(self.find(role, name, within, number))

    def settle(self):
        """Lets the program take in all input that was sent before: it answers a few questions behind it."""
        self.observer.position()
        for _ in range(5):
            self.window.states
            pause(0.01)

    def give_focus(self):
        """Makes the window the active one, as a task bar does."""
        if "active" not in self.window.states:
            self.desktop.run_tool("xdotool", "windowactivate", self.window_id)
        until(lambda: "active" in self.window.states, "the window does not become active")
        self.settle()

    def lose_focus(self):
        """Makes the observer's window the active one."""
        other = self.desktop.run_tool("xdotool", "search", "--onlyvisible", "--name", "^Another program$").split()[0]
        self.desktop.run_tool("xdotool", "windowactivate", other)
        until(lambda: "active" not in self.window.states, "the window keeps the focus")

    def focused(self):
        """What has the keyboard, if anything has."""
        for frame in self.frames.values():
            for item in frame.walk():
                if "focused" in item.states and item.role != "frame":
                    return item
        return None

    # What it stores

    def stored(self):
        return preferences.read(self.preferences_path)

    def stored_config(self):
        text = self.stored().get("velloran.config")
        return preferences.stored_json(text) if text else None

    def stored_presets(self):
        text = self.stored().get("velloran.presets")
        return preferences.stored_json(text) if text else []

    def wait_for_stored(self, **fields):
        """Waits until the stored configuration has these fields; None stands for a field that is not there."""
        def has_fields():
            try:
                config = self.stored_config()
            except ValueError:
                return False  # what a test has damaged is not replaced yet
            return config is not None and all(config.get(name) == value for name, value in fields.items())
        until(has_fields, lambda: f"stored is {self.stored_config()}, not {fields}")

    def wait_for_hotkey(self, name, *modifiers):
        """Waits until the program holds the hotkey. Not right after a change: each look takes the combination for a moment, and a
        program that asks for it just then does not get it. Once the change is stored it has asked."""
        until(lambda: not self.observer.has_hotkey_free(name, *modifiers), f"the hotkey {modifiers} {name} was not registered")
