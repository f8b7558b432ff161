"""What desktops on Wayland have in common whose clicks go through a portal: services on the bus, dialogs and a hand that answers them."""

import glob
import os

from gi.repository import Gio, GLib

from .accessible import applications
from .compositor import Compositor
from .desktop import CALL_LIMIT
from .waiting import pause, until

FRONT_END = "org.freedesktop.portal.Desktop"
BUS, BUS_PATH = "org.freedesktop.DBus", "/org/freedesktop/DBus"

# Keys and buttons by evdev's codes.
ESCAPE, CONTROL, ALT, SPACE = 1, 29, 56, 57
ROWS = ((16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm"))
LETTERS = {letter: code for first, row in ROWS for code, letter in enumerate(row, first)}
LEFT_BUTTON = 0x110

# Clicks go by one of these, so nobody may do the other. A system without the library has the other only.
WAYS = {"libei": "NotifyPointerButton", "calls": "ConnectToEIS"}
HAS_LIBEI = bool(glob.glob("/usr/lib/*/libei.so.1"))
FORBIDDEN = """<deny send_interface="org.freedesktop.portal.RemoteDesktop" send_member="{}"/>"""


def executables(name):
    """Where the system keeps a program that is not for users; nothing where it has none."""
    return [path for folder in ("/usr/libexec/", "/usr/lib/*/libexec/", "/usr/lib/*/") for path in glob.glob(folder + name)]


def executable(name):
    found = executables(name)
    assert found, f"there is no {name}"
    return found[0]


class Hand:
    """The user's mouse and keyboard, for as long as it is held: the seat has none besides."""

    def move(self, right, down):
        raise NotImplementedError

    def _key(self, code, is_down):
        raise NotImplementedError

    def _button(self, code, is_down):
        raise NotImplementedError

    def press(self, *codes):
        for code in codes:
            self._key(code, True)

    def release(self, *codes):
        for code in reversed(codes):
            self._key(code, False)

    def tap(self, *codes):
        self.press(*codes)
        pause(0.02)
        self.release(*codes)

    def press_button(self, code=LEFT_BUTTON):
        self._button(code, True)

    def release_button(self, code=LEFT_BUTTON):
        self._button(code, False)

    def click(self):
        self.press_button()
        self.release_button()


class PortalCompositor(Compositor):
    """Its portal takes clicks in one of the `WAYS` only. The program's data folder has to be that of the desktop: its portal looks
    for the program's entry there."""

    BACK_END = None
    BACK_END_PROGRAM = None

    def __init__(self, size=(1920, 1080), way="libei"):
        self._way = way
        self.hand = None
        self._portal = {}
        super().__init__(size)

    def _start_bus(self):
        super()._start_bus()
        path = os.path.join(self.folder, "bus.conf")
        with open(path, encoding="ascii") as file:
            configuration = file.read()
        with open(path, "w", encoding="ascii") as file:
            file.write(configuration.replace("</policy>", FORBIDDEN.format(WAYS[self._way]) + "</policy>"))
        self.bus_connection = self._connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.read_services_anew()

    @property
    def data_home(self):
        return os.path.join(self.environment["HOME"], ".local", "share")

    @property
    def config_home(self):
        return os.path.join(self.environment["HOME"], ".config")

    @property
    def size(self):
        return self._size

    def point_at(self, x, y):
        self.hand.move(-2 * self._size[0], -2 * self._size[1])
        self.hand.move(x, y)

    def call(self, name, path, interface, method, arguments=None):
        """Calls somebody on the session bus, and returns what is answered."""
        return self.bus_connection.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, CALL_LIMIT,
                                             None).unpack()

    def ask_bus(self, method, name):
        return self.call(BUS, BUS_PATH, BUS, method, GLib.Variant("(s)", (name,)))[0]

    def read_services_anew(self):
        self.call(BUS, BUS_PATH, BUS, "ReloadConfig")

    def remembers(self):
        """Whether its portal knows what was granted before; the first version does not."""
        return self.call(FRONT_END, "/org/freedesktop/portal/desktop", "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", ("org.freedesktop.portal.RemoteDesktop", "version")))[0] > 1

    def wait_for_name(self, name, seconds=90.0):
        until(lambda: self.ask_bus("NameHasOwner", name), f"nobody takes the name {name}", seconds)

    def _start_service(self, log, program, name):
        process = self._run(log, [executable(program)])
        self.wait_for_name(name)
        return process

    def start_back_end(self):
        self._portal[self.BACK_END] = self._start_service("back-end", self.BACK_END_PROGRAM, self.BACK_END)

    def start_front_end(self):
        self._portal[FRONT_END] = self._start_service("front-end", "xdg-desktop-portal", FRONT_END)

    def kill(self, name):
        """Kills the front end or the back end of the portal."""
        self._portal[name].kill()
        self._portal[name].wait()

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
