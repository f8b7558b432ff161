"""A private GNOME on Wayland without a screen, with the portal and all that stands behind it, and a hand and a keyboard for it."""

import os
import shutil
import signal

from gi.repository import Gio, GLib

from . import processes
from .accessible import applications
from .desktop import CALL_LIMIT
from .login import LoginManager
from .portal_compositor import ALT, CONTROL, ESCAPE, FRONT_END, LETTERS, SPACE, Hand, PortalCompositor, executable, executables
from .waiting import TookTooLong, until

SOCKET = "wayland-gnome"
ROBOT, ROBOT_PATH = "org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop"
SHELL, SHELL_PATH = "org.gnome.Shell", "/org/gnome/Shell"
SHIELD, SHIELD_PATH, SCREEN_LOCK = "org.gnome.Shell.ScreenShield", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"
BACK_END = "org.freedesktop.impl.portal.desktop.gnome"
SHORTCUTS, PROVIDER = "org.gnome.Settings.GlobalShortcutsProvider", "gnome-control-center-global-shortcuts-provider"
USERS_SHORTCUTS = "org.gnome.SettingsDaemon.MediaKeys"

# By evdev's codes.
ENTER, F4, F24 = 28, 62, 194


class GnomeHand(Hand):
    """A session of the shell's own for robots."""

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

    def _key(self, code, is_down):
        self._do("NotifyKeyboardKeycode", GLib.Variant("(ub)", (code, is_down)))

    def _button(self, code, is_down):
        self._do("NotifyPointerButton", GLib.Variant("(ib)", (code, is_down)))


class Gnome(PortalCompositor):
    """Programs have shortcuts of their own where it can have them, but for `binds=False`: then there are the user's only, as before
    GNOME 48."""

    NAME = "GNOME"
    BACK_END = BACK_END
    BACK_END_PROGRAM = "xdg-desktop-portal-gnome"

    def __init__(self, size=(1920, 1080), way="libei", outputs=1, binds=True):
        self._outputs = outputs
        self._binds = binds and self.binds_for_programs()
        self.login = None
        super().__init__(size, way)

    @staticmethod
    def is_installed():
        return shutil.which("gnome-shell") is not None

    @staticmethod
    def binds_for_programs():
        """Whether programs can have shortcuts of their own, through the portal; else there are those of the user only."""
        return bool(executables(PROVIDER))

    def _start_compositor(self):
        self.environment.update({"XDG_SESSION_DESKTOP": "gnome", "XDG_SESSION_ID": "1", "LIBGL_ALWAYS_SOFTWARE": "1",
                                 "GDK_BACKEND": "wayland", "GSK_RENDERER": "cairo", "GSETTINGS_BACKEND": "keyfile"})
        self._start_system_bus()
        self.set("org.gnome.shell", "welcome-dialog-last-shown-version", "99.0")
        self.set("org.gnome.desktop.interface", "enable-animations", "false")
        # The mouse comes by the corner of the screen.
        self.set("org.gnome.desktop.interface", "enable-hot-corners", "false")
        # The witness stays below the program's window when it is clicked on.
        self.set("org.gnome.desktop.wm.preferences", "raise-on-click", "false")
        monitors = ["--virtual-monitor", f"{self._size[0]}x{self._size[1]}"] * self._outputs
        self.server = self._run("shell", ["gnome-shell", "--headless", "--wayland", "--no-x11", f"--wayland-display={SOCKET}", *monitors])
        self._wait_for_shell()
        for name in (SHELL, ROBOT):
            self.wait_for_name(name)
        socket = os.path.join(self.environment["XDG_RUNTIME_DIR"], SOCKET)
        until(lambda: os.path.exists(socket), "the compositor has no socket")
        self.environment["WAYLAND_DISPLAY"] = socket
        self._start_service("permission-store", "xdg-permission-store", "org.freedesktop.impl.portal.PermissionStore")
        if self._binds:
            self._offer_service(SHORTCUTS, executable(PROVIDER))
        elif self.binds_for_programs():
            self._keep_shortcuts_from_programs()
        self.start_back_end()
        self.start_front_end()
        self.hand = GnomeHand(self.bus_connection)
        # What opens comes to the output of the mouse.
        self.point_at(self._size[0] - 10, self._size[1] - 10)
        self._leave_overview()
        if not self._binds:
            self._start_service("keys", "gsd-media-keys", USERS_SHORTCUTS)
        return socket

    def _keep_shortcuts_from_programs(self):
        """As a GNOME does that has none for them."""
        folder = os.path.join(self.config_home, "xdg-desktop-portal")
        os.makedirs(folder)
        with open(os.path.join(folder, "portals.conf"), "w", encoding="ascii") as file:
            file.write("[preferred]\ndefault=gnome;gtk\norg.freedesktop.impl.portal.GlobalShortcuts=none\n")

    def _wait_for_shell(self):
        """A program that GNOME Shell 43 starts while it comes up may stand still before it is one, and the shell waits for it: it can
        do without any."""
        def is_up():
            return "GNOME Shell started" in processes.read_all(os.path.join(self.folder, "shell.log"))
        try:
            until(is_up, "the shell does not come up", 20)
        except TookTooLong:
            for child in processes.children(self.server.pid):
                os.kill(child, signal.SIGKILL)
            until(is_up, "the shell does not come up", 90)

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
        self.login = LoginManager(address)

    def set(self, schema, key, value):
        self.run_tool("gsettings", "set", schema, key, value)

    def _offer_service(self, name, command):
        """Has the bus start it when somebody wants something of it: it ends by itself when nobody does."""
        settings = " ".join(f"{key}={value}" for key, value in self.environment.items())
        with open(os.path.join(self.folder, "services", name + ".service"), "w", encoding="ascii") as file:
            file.write(f"[D-BUS Service]\nName={name}\nExec=/usr/bin/env -i {settings} {command}\n")
        self.read_services_anew()

    def _shell(self, method, *arguments):
        return self.call(SHELL, SHELL_PATH, "org.freedesktop.DBus.Properties", method, GLib.Variant(*arguments))

    def _leave_overview(self):
        """It is there when the desktop starts."""
        def is_left():
            if not self._shell("Get", "(ss)", (SHELL, "OverviewActive"))[0]:
                return True
            self._shell("Set", "(ssv)", (SHELL, "OverviewActive", GLib.Variant("b", False)))
            return False
        until(is_left, "the overview stays")

    def lock(self):
        """As its user does: what an idle one would get is taken back by a click before it is complete."""
        self.call(SHIELD, SHIELD_PATH, SCREEN_LOCK, "Lock")

    def unlock(self):
        self.call(SHIELD, SHIELD_PATH, SCREEN_LOCK, "SetActive", GLib.Variant("(b)", (False,)))

    def is_locked(self):
        return self.call(SHIELD, SHIELD_PATH, SCREEN_LOCK, "GetActive")[0]

    def shows(self, text):
        """Whether the shell itself does, not a window."""
        shell = applications(self.accessibility).get(self.server.pid)
        return any(stage.find_all("label", text) for stage in (shell.children if shell else []))

    def close(self):
        super().close()
        if self.login:
            self.login.close()


__all__ = ["ALT", "BACK_END", "CONTROL", "ENTER", "ESCAPE", "FRONT_END", "LETTERS", "SHORTCUTS", "SPACE", "Gnome"]
