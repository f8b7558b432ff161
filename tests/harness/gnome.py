"""A private GNOME on Wayland without a screen, with the portal and all that stands behind it, and a hand and a keyboard for it."""

import glob
import os
import shutil

from gi.repository import Gio, GLib

from . import processes
from .accessible import applications
from .compositor import Compositor
from .desktop import CALL_LIMIT
from .login import LoginManager
from .waiting import pause, until

SOCKET = "wayland-gnome"
ROBOT, ROBOT_PATH = "org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop"
SHELL, SHELL_PATH = "org.gnome.Shell", "/org/gnome/Shell"
FRONT_END, BACK_END = "org.freedesktop.portal.Desktop", "org.freedesktop.impl.portal.desktop.gnome"
SHORTCUTS = "org.gnome.Settings.GlobalShortcutsProvider"

# Keys by evdev's codes.
ESCAPE, CONTROL, ALT, F24 = 1, 29, 56, 194
ROWS = ((16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm"))
LETTERS = {letter: code for first, row in ROWS for code, letter in enumerate(row, first)}
LEFT_BUTTON = 0x110


def executable(name):
    """Where the system keeps a program that is not for users."""
    found = [path for folder in ("/usr/libexec/", "/usr/lib/*/libexec/", "/usr/lib/*/") for path in glob.glob(folder + name)]
    assert found, f"there is no {name}"
    return found[0]


class Hand:
    """The user's mouse and keyboard, for as long as it is held: the seat has none besides."""

    def __init__(self, bus):
        self._bus = bus
        self._session = self._call(ROBOT_PATH, ROBOT, "CreateSession")[0]
        self._do("Start")
        # A device is made with its first event, which may be lost.
        self.move(1, 0)
        self.tap(F24)

    def _call(self, path, interface, method, arguments=None):
        return self._bus.call_sync(ROBOT, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, CALL_LIMIT, None).unpack()

    def _do(self, method, arguments=None):
        self._call(self._session, ROBOT + ".Session", method, arguments)

    def move(self, right, down):
        self._do("NotifyPointerMotionRelative", GLib.Variant("(dd)", (right, down)))

    def press(self, *codes):
        for code in codes:
            self._do("NotifyKeyboardKeycode", GLib.Variant("(ub)", (code, True)))

    def release(self, *codes):
        for code in reversed(codes):
            self._do("NotifyKeyboardKeycode", GLib.Variant("(ub)", (code, False)))

    def tap(self, *codes):
        self.press(*codes)
        pause(0.02)
        self.release(*codes)

    def click(self):
        for is_down in (True, False):
            self._do("NotifyPointerButton", GLib.Variant("(ib)", (LEFT_BUTTON, is_down)))


class Gnome(Compositor):
    """The program's data folder has to be that of the desktop: its portal looks for the program's entry there."""

    NAME = "GNOME"

    def __init__(self, size=(1920, 1080)):
        self.hand = None
        self._login = None
        self._portal = {}
        super().__init__(size)

    @staticmethod
    def is_installed():
        return shutil.which("gnome-shell") is not None

    @property
    def data_home(self):
        return os.path.join(self.environment["HOME"], ".local", "share")

    @property
    def config_home(self):
        return os.path.join(self.environment["HOME"], ".config")

    def _start_compositor(self):
        self.environment.update({"XDG_SESSION_DESKTOP": "gnome", "XDG_SESSION_ID": "1", "LIBGL_ALWAYS_SOFTWARE": "1",
                                 "GDK_BACKEND": "wayland", "GSK_RENDERER": "cairo", "GSETTINGS_BACKEND": "keyfile"})
        self._start_system_bus()
        self.set("org.gnome.shell", "welcome-dialog-last-shown-version", "99.0")
        self.set("org.gnome.desktop.interface", "enable-animations", "false")
        # The witness stays below the program's window when it is clicked on.
        self.set("org.gnome.desktop.wm.preferences", "raise-on-click", "false")
        self.bus_connection = self._connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.server = self._run("shell", ["gnome-shell", "--headless", "--wayland", "--no-x11", f"--wayland-display={SOCKET}",
                                          "--virtual-monitor", f"{self._size[0]}x{self._size[1]}"])
        for name in (SHELL, ROBOT):
            self.wait_for_name(name)
        socket = os.path.join(self.environment["XDG_RUNTIME_DIR"], SOCKET)
        until(lambda: os.path.exists(socket), "the compositor has no socket")
        self.environment["WAYLAND_DISPLAY"] = socket
        self._start_service("permission-store", "xdg-permission-store", "org.freedesktop.impl.portal.PermissionStore")
        self._offer_service(SHORTCUTS, executable("gnome-control-center-global-shortcuts-provider"))
        self.start_back_end()
        self.start_front_end()
        self.hand = Hand(self.bus_connection)
        self.hand.move(2 * self._size[0], 2 * self._size[1])
        self.hand.move(-10, -10)
        self._leave_overview()
        return socket

    def _start_system_bus(self):
        folder = os.path.join(self.folder, "system")
        os.mkdir(folder, 0o700)
        path = os.path.join(folder, "bus.conf")
        with open(os.path.join(self.folder, "bus.conf"), encoding="ascii") as session, open(path, "w", encoding="ascii") as file:
            file.write(session.read().replace("<type>session", "<type>system").replace(self.folder + "/bus", folder + "/bus"))
        reading, writing = os.pipe()
        self._run("system-bus", ["dbus-daemon", "--nofork", "--nopidfile", "--config-file", path, f"--print-address={writing}"],
                  pass_fds=[writing])
        address = self._first_line(reading, writing)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        self._login = LoginManager(address)

    def set(self, schema, key, value):
        self.run_tool("gsettings", "set", schema, key, value)

    def ask_bus(self, method, name):
        return self.bus_connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                             GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, CALL_LIMIT, None).unpack()[0]

    def wait_for_name(self, name, seconds=90.0):
        until(lambda: self.ask_bus("NameHasOwner", name), f"nobody takes the name {name}", seconds)

    def _start_service(self, log, program, name):
        process = self._run(log, [executable(program)])
        self.wait_for_name(name)
        return process

    def _offer_service(self, name, command):
        """Has the bus start it when somebody wants something of it: it ends by itself when nobody does."""
        settings = " ".join(f"{key}={value}" for key, value in self.environment.items())
        with open(os.path.join(self.folder, "services", name + ".service"), "w", encoding="ascii") as file:
            file.write(f"[D-BUS Service]\nName={name}\nExec=/usr/bin/env -i {settings} {command}\n")
        self.bus_connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReloadConfig", None,
                                      None, Gio.DBusCallFlags.NONE, CALL_LIMIT, None)

    def start_back_end(self):
        self._portal[BACK_END] = self._start_service("back-end", "xdg-desktop-portal-gnome", BACK_END)

    def start_front_end(self):
        self._portal[FRONT_END] = self._start_service("front-end", "xdg-desktop-portal", FRONT_END)

    def kill(self, name):
        """Kills the front end or the back end of the portal."""
        self._portal[name].kill()
        self._portal[name].wait()

    def _shell(self, method, *arguments):
        return self.bus_connection.call_sync(SHELL, SHELL_PATH, "org.freedesktop.DBus.Properties", method,
                                             GLib.Variant(*arguments), None, Gio.DBusCallFlags.NONE, CALL_LIMIT, None)

    def _leave_overview(self):
        """It is there when the desktop starts."""
        def is_left():
            if not self._shell("Get", "(ss)", (SHELL, "OverviewActive")).unpack()[0]:
                return True
            self._shell("Set", "(ssv)", (SHELL, "OverviewActive", GLib.Variant("b", False)))
            return False
        until(is_left, "the overview stays")

    def set_locked(self, is_locked):
        self.bus_connection.call_sync("org.gnome.Shell.ScreenShield", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "SetActive",
                                      GLib.Variant("(b)", (is_locked,)), None, Gio.DBusCallFlags.NONE, CALL_LIMIT, None)

    def dialogs(self, service):
        """The windows of one of the portal's programs."""
        try:
            pid = self.ask_bus("GetConnectionUnixProcessID", service)
            application = applications(self.accessibility).get(pid)
            return [frame for frame in application.children if "showing" in frame.states] if application else []
        except GLib.Error:
            return []

    def wait_for_view(self, name):
        pass

    def focus(self, name):
        """Clicks with the mouse where it is, which is on the witness. A window that was just opened may get it after that."""
        def gets_keyboard():
            before = self.witness.releases()
            self.hand.click()
            self.witness.wait_for_releases(before + 1)
            pause(0.2)
            return self.witness.has_focus()
        until(gets_keyboard, "the witness does not get the keyboard")
        self.witness.report()

    def close(self):
        super().close()
        if self._login:
            self._login.close()
