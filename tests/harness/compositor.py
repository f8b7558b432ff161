"""A private desktop on Wayland: a compositor without a screen, a session bus and an accessibility bus, and another client that
plays the user."""

import json
import os
import shutil
import subprocess

from . import cursors, processes
from .desktop import Desktop
from .waiting import LONGEST_WAIT, until

WITNESS = os.environ["VELLORAN_WITNESS"]

# The compositor refuses to run as the administrator, who runs it as the user that has nothing.
SUBSTITUTE_FOR_ROOT = 65534

SWAY_CONFIGURATION = """xwayland disable
output HEADLESS-1 resolution {width}x{height}
default_border none
focus_follows_mouse no
exec echo up $WAYLAND_DISPLAY
"""


class Compositor(Desktop):
    """All of it, but for what tells compositors apart: how one is started and asked to do something."""

    NAME = None

    def __init__(self, size=(1600, 1000), configuration=""):
        self._configuration = configuration
        self._size = size
        self.witness = None
        self.server = None
        super().__init__(size)

    def _start(self, size):
        for name in ("home", "services", "tools", "runtime", "compositor"):
            os.mkdir(os.path.join(self.folder, name), 0o700)
        os.chmod(self.folder, 0o755)
        self._place = os.path.join(self.folder, "compositor")
        self._as_somebody = []
        if os.getuid() == 0:
            os.chown(self._place, SUBSTITUTE_FOR_ROOT, SUBSTITUTE_FOR_ROOT)
            self._as_somebody = ["setpriv", f"--reuid={SUBSTITUTE_FOR_ROOT}", f"--regid={SUBSTITUTE_FOR_ROOT}", "--clear-groups",
                                 "--pdeathsig=KILL"]
        self.environment = {
            "QT_LOGGING_RULES": "qt.accessibility.atspi.warning=false",
            "PATH": os.path.join(self.folder, "tools") + ":/usr/bin:/bin", "HOME": os.path.join(self.folder, "home"),
            "XDG_RUNTIME_DIR": os.path.join(self.folder, "runtime"), "XDG_SESSION_TYPE": "wayland",
            "XDG_CURRENT_DESKTOP": self.NAME, "QT_QPA_PLATFORM": "wayland", "LC_ALL": "C.UTF-8",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "NO_AT_BRIDGE": "0",
        }
        self._start_bus()
        # Every system that has such a desktop has a bus of its own; one that is absent is looked for again and again.
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        # By its whole path: clients have a runtime folder of their own.
        self.environment["WAYLAND_DISPLAY"] = os.path.join(self._place, self._start_compositor())
        self.witness = Witness(self.environment)

    def _start_program(self, *arguments, **differences):
        """Starts the compositor, and returns how it calls its socket: it is configured to print that once it is up."""
        environment = {**self.environment, "HOME": self._place, "XDG_RUNTIME_DIR": self._place, "WLR_BACKENDS": "headless",
                       "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1", **differences}
        with open(os.path.join(self.folder, "compositor.log"), "ab") as log:
            self.server = processes.start([*self._as_somebody, *arguments], environment, stdout=subprocess.PIPE, stderr=log)
        self._processes.append(self.server)
        line = self.server.stdout.readline().decode().split()
        assert line[:1] == ["up"], "the compositor did not start"
        return line[1]

    def wait_for_view(self, name):
        """Waits until the compositor shows the window with that title."""
        raise NotImplementedError

    def focus(self, name):
        """Gives the keyboard to the window with that title."""
        raise NotImplementedError

    def picture(self, path):
        self.run_tool("grim", path)

    def close(self):
        if self.witness:
            self.witness.close()
        super().close()
        if self.server and self.server.stdout:
            self.server.stdout.close()


class Sway(Compositor):
    """Further lines of configuration may be given, and are replaced by `configure` and a reload."""

    NAME = "sway"

    def configure(self, lines, **files):
        """Has the configuration end with these lines, and files of those names beside it. Read with the next reload."""
        for name, text in {**files, "config": SWAY_CONFIGURATION.format(width=self._size[0], height=self._size[1]) + lines}.items():
            path = os.path.join(self.folder, name)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            os.chmod(path, 0o644)

    def _start_compositor(self):
        self.environment["SWAYSOCK"] = os.path.join(self._place, "commands")
        self.configure(self._configuration)
        return self._start_program("sway", "--config", os.path.join(self.folder, "config"))

    def start_again(self):
        """Another one in the place of the one that has ended."""
        self.witness.close()
        self.server.stdout.close()
        # One that is killed leaves it, and it would not be used again.
        os.unlink(self.environment["SWAYSOCK"])
        self.environment["WAYLAND_DISPLAY"] = os.path.join(self._place, self._start_compositor())
        self.witness = Witness(self.environment)

    def command(self, words):
        """Has the compositor do something, in the words of its configuration."""
        self.run_tool("swaymsg", "--quiet", "--", words)

    def tree(self):
        return json.loads(self.run_tool("swaymsg", "--raw", "--type", "get_tree"))

    def view(self, name):
        """What the compositor knows of the window with that title; nothing while there is none."""
        pending = [self.tree()]
        while pending:
            node = pending.pop()
            if node.get("pid") and node["name"] == name:
                return node
            pending += node["nodes"] + node["floating_nodes"]
        return None

    def wait_for_view(self, name):
        until(lambda: self.view(name), f"the compositor shows no window {name}")

    def focus(self, name):
        def is_focused():
            # What opens, and an output that comes, may take it away again.
            self.command(f'[title="^{name}$"] focus')
            return self.view(name)["focused"]
        until(is_focused, f"{name} does not get the focus")


class SwayWithPointers(Sway):
    """Its pointers, and those of its clients, are told apart by their colour. Newer toolkits let the compositor draw them, which
    does not go by the environment."""

    def _start_compositor(self):
        theme = cursors.write_theme(self.folder)
        self.environment.update(theme)
        self._configuration += f"seat * xcursor_theme {theme['XCURSOR_THEME']} {theme['XCURSOR_SIZE']}\n"
        return super()._start_compositor()


class Labwc(Compositor):
    """Its configuration is the contents of the root element. It cannot be asked for anything; what opens has the focus."""

    NAME = "labwc"

    @staticmethod
    def is_installed():
        return shutil.which("labwc") is not None

    def _start_compositor(self):
        with open(os.path.join(self.folder, "rc.xml"), "w", encoding="utf-8") as file:
            file.write(f"<labwc_config>{self._configuration}</labwc_config>")
        return self._start_program("labwc", "--config-dir", self.folder, "--startup", "sh -c 'echo up $WAYLAND_DISPLAY'")

    def wait_for_view(self, name):
        pass

    def focus(self, name):
        pass


class Witness:
    """A window that fills its place, with the mouse on it; sees buttons and keys, and types. By evdev's codes."""

    CONTROL, ALT = 4, 8

    def __init__(self, environment):
        self._process = processes.start([WITNESS], environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        line = self._read()
        assert line == "ready", f"the witness did not start: {line}"

    @property
    def pid(self):
        return self._process.pid

    def _read(self):
        return self._process.stdout.readline().strip()

    def _ask(self, question):
        self._process.stdin.write(question + "\n")
        return int(self._read() or "-1")

    def releases(self):
        return self._ask("releases")

    def keys(self):
        """How many keys the window has seen pressed."""
        return self._ask("keys")

    def has_focus(self):
        """Whether it has the keyboard."""
        return self._ask("focus") == 1

    def has_pointer(self):
        """Whether the mouse is on it: then it gets the clicks."""
        return self._ask("pointer") == 1

    def abilities(self):
        """What the compositor says that it does with windows; nothing where it is too old to tell."""
        bits = self._ask("abilities")
        return {name for number, name in enumerate(("menu", "maximize", "fullscreen", "minimize"), 1) if bits >> number & 1}

    def press(self, code, modifiers=0):
        """Everything that comes of it has been sent out when this returns."""
        self._ask(f"press {code} {modifiers}")

    def release(self, code, modifiers=0):
        self._ask(f"release {code} {modifiers}")

    def tap(self, code, modifiers=0):
        self.press(code, modifiers)
        self.release(code, modifiers)

    def load(self, layout):
        """Gives the keyboard another layout, by its customary name."""
        self._ask(f"layout {layout}")

    def move(self, x, y, size):
        """Puts the mouse on that place of a desktop of that size."""
        self._ask(f"move {round(x)} {round(y)} {size[0]} {size[1]}")

    def press_button(self, code):
        self._ask(f"down {code}")

    def release_button(self, code):
        self._ask(f"up {code}")

    def activation_token(self):
        """What a launcher hands on for the last key that this window got, so that another one may come to the front."""
        self._process.stdin.write("token\n")
        return self._read().removeprefix("token ")

    def timed_report(self):
        """What the buttons did since the last report, in order: "down" or "up", the button, and when the window was told, by
        the system's monotonic clock in seconds."""
        lines = [self._read().split() for _ in range(self._ask("report"))]
        return [(kind, int(code), int(arrival) / 1e9) for kind, code, _, arrival in lines]

    def report(self):
        """The same without the moments."""
        return [(kind, code) for kind, code, _ in self.timed_report()]

    def wait_for_releases(self, count, seconds=LONGEST_WAIT):
        until(lambda: self.releases() >= count, lambda: f"{self.releases()} releases, not {count}", seconds)

    def close(self):
        self._process.stdin.close()
        processes.end(self._process)
        self._process.stdout.close()
