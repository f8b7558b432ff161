"""A private Plasma on Wayland without a screen: KWin with the portal and what stands behind it, and a user's hand for it."""

import os
import shutil
import socket
import subprocess

from gi.repository import GLib

from . import processes
from .kwin_windows import KWIN, KWinWindows
from .login import LoginManager
from .portal_compositor import ALT, CONTROL, ESCAPE, FRONT_END, LETTERS, Hand, PortalCompositor

SOCKET = "wayland-plasma"
BACK_END = "org.freedesktop.impl.portal.desktop.kde"
PERMISSIONS = "org.freedesktop.impl.portal.PermissionStore"
SHORTCUTS, SCREEN_LOCK = "org.kde.kglobalaccel", "org.freedesktop.ScreenSaver"
HAND = os.environ.get("VELLORAN_KWIN_HAND", "none")
VERSION = 6 if shutil.which("kbuildsycoca6") else 5

# By evdev's codes.
ENTER, F4 = 28, 62

# The witness stays below the program's window when it is clicked on.
SETTINGS = {
    "kwinrc": "[MouseBindings]\nCommandWindow1=Activate and pass click\nCommandWindow2=Activate and pass click\n"
              "CommandWindow3=Activate and pass click\n[Windows]\nClickRaise=false\n",
    "kdeglobals": "[KDE]\nAnimationDurationFactor=0\n",
    "kxkbrc": "[Layout]\nUse=true\nLayoutList=us,de\n",
}

# Where KWin has no door for emulated input: it asks the entry of a program what that may have.
HAND_ENTRY = f"""[Desktop Entry]
Type=Application
Name=Hand
Exec={HAND}
NoDisplay=true
X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input
"""


class PlasmaHand(Hand):
    """A program that asks KWin for it."""

    def __init__(self, environment):
        self._process = processes.start([HAND], environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        assert self._process.stdout.readline().strip() == "ready", "KWin takes no hand"

    def _do(self, *words):
        self._process.stdin.write(" ".join(str(word) for word in words) + "\n")
        assert self._process.stdout.readline().strip() == "done", f"the hand does not {words}"

    def move(self, right, down):
        self._do("move", right, down)

    def _key(self, code, is_down):
        self._do("press" if is_down else "release", code)

    def _button(self, code, is_down):
        self._do("down" if is_down else "up", code)

    def close(self):
        self._process.stdin.close()
        processes.end(self._process)
        self._process.stdout.close()


class Plasma(PortalCompositor):
    """It may be one that can be locked, with a login manager, and which wakes up locked or not; and one with several outputs beside
    each other."""

    NAME = "KDE"
    BACK_END = BACK_END
    BACK_END_PROGRAM = "xdg-desktop-portal-kde"

    def __init__(self, size=(1920, 1080), way="libei", has_lock=False, wakes_locked=True, outputs=1):
        self._has_lock = has_lock
        self._wakes_locked = wakes_locked
        self._outputs = outputs
        self.login = None
        self._windows = None
        super().__init__(size, way)

    @staticmethod
    def is_installed():
        return shutil.which("kwin_wayland") is not None and os.path.exists(HAND)

    def _start_compositor(self):
        self.environment.update({"XDG_SESSION_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": str(VERSION),
                                 "XDG_MENU_PREFIX": "plasma-", "LIBGL_ALWAYS_SOFTWARE": "1", "QT_QUICK_BACKEND": "software",
                                 "QT_FORCE_STDERR_LOGGING": "1"})
        os.makedirs(self.config_home)
        lock = f"[Daemon]\nAutolock=false\nLockOnResume={str(self._wakes_locked).lower()}\n"
        for name, text in {**SETTINGS, "kscreenlockerrc": lock}.items():
            with open(os.path.join(self.config_home, name), "w", encoding="ascii") as file:
                file.write(text)
        if self._has_lock:
            self.login = LoginManager(self.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        os.makedirs(os.path.join(self.data_home, "applications"))
        with open(os.path.join(self.data_home, "applications", "hand.desktop"), "w", encoding="ascii") as file:
            file.write(HAND_ENTRY)
        # KWin knows its own portal, and what other programs may have, by the database of services.
        self.run_tool(f"kbuildsycoca{VERSION}")
        # What is granted to the program's file lets it start only where that can be granted.
        self._kwin = os.path.join(self._place, "kwin_wayland")
        shutil.copyfile(shutil.which("kwin_wayland"), self._kwin)
        os.chmod(self._kwin, 0o755)
        path = self.environment["WAYLAND_DISPLAY"] = os.path.join(self.environment["XDG_RUNTIME_DIR"], SOCKET)
        # As in a session of Plasma's: the place outlives the compositor.
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._listener.bind(path)
        self._listener.listen(64)
        self.start_server()
        self._start_service("permission-store", "xdg-permission-store", PERMISSIONS)
        self.start_back_end()
        self.start_front_end()
        return path

    def start_server(self):
        """Starts the compositor, also after another has been killed, and gives it a hand."""
        command = ["env", "-u", "WAYLAND_DISPLAY", "-u", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "QT_QPA_PLATFORM=", self._kwin,
                   *self._screen(), "--width", str(self._size[0]), "--height", str(self._size[1]),
                   "--output-count", str(self._outputs), "--wayland-fd", str(self._listener.fileno()),
                   "--socket", SOCKET, *([] if self._has_lock else ["--no-lockscreen"])]
        self.server = self._run("kwin", command, pass_fds=[self._listener.fileno()])
        for name in (KWIN, SHORTCUTS, "org.kde.keyboard"):
            self.wait_for_name(name)
        self.hand = PlasmaHand(self.environment)
        self.hand.move(2 * self._size[0], 2 * self._size[1])
        self.hand.move(-10, -10)

    @staticmethod
    def _screen():
        """What makes KWin do without one."""
        return ["--virtual"]

    def end_server(self):
        """With its place, as the session ends with it."""
        self.hand.close()
        self.hand = None
        self._listener.close()
        super().end_server()

    def crash_server(self):
        """Its place stays, for the next."""
        self.hand.close()
        self.hand = None
        super().end_server()

    def set_layout(self, number):
        self.call("org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts", "setLayout", GLib.Variant("(u)", (number,)))

    def has_script(self):
        """Whether KWin has the program's."""
        return self.call(KWIN, "/Scripting", "org.kde.kwin.Scripting", "isScriptLoaded",
                         GLib.Variant("(s)", ("app.velloran.Velloran",)))[0]

    @property
    def windows(self):
        """KWin's, with what a script can do to them."""
        if self._windows is None:
            self._windows = KWinWindows(self.bus_connection, self.call, self._place, VERSION > 5)
        return self._windows

    def set_output(self, number, what):
        """Changes an output, counted from 1, in the words of Plasma's own tool."""
        self.run_tool("kscreen-doctor", f"output.{number}.{what}")

    def lock(self):
        self.call(SCREEN_LOCK, "/ScreenSaver", SCREEN_LOCK, "Lock")

    def unlock(self):
        """As the login manager does for an administrator."""
        self.login.unlock()

    def is_locked(self):
        return self.call(SCREEN_LOCK, "/ScreenSaver", SCREEN_LOCK, "GetActive")[0]

    def close(self):
        if self.hand:
            self.hand.close()
        super().close()
        self._listener.close()
        if self.login:
            self.login.close()


__all__ = ["ALT", "BACK_END", "CONTROL", "ENTER", "ESCAPE", "F4", "FRONT_END", "LETTERS", "VERSION", "Plasma"]
