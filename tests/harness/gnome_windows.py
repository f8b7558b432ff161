"""A private GNOME whose windows and whose screen can be looked at, and whose monitor has any scale."""

import os

from gi.repository import Gio, GLib
from PIL import Image

from .desktop import CALL_LIMIT
from .gnome import Gnome

# The shell tells of windows, and takes pictures, for those who have such a name.
TRUSTED_NAME = "org.freedesktop.impl.portal.desktop.gtk"
INTROSPECT, SCREENSHOT, DISPLAYS = "org.gnome.Shell.Introspect", "org.gnome.Shell.Screenshot", "org.gnome.Mutter.DisplayConfig"
TEMPORARY = 1


class GnomeWithWindows(Gnome):
    def _start_compositor(self):
        socket = super()._start_compositor()
        self._call("org.freedesktop.DBus", "RequestName", GLib.Variant("(su)", (TRUSTED_NAME, 0)))
        # Scales between whole numbers.
        self.set("org.gnome.mutter", "experimental-features", "['scale-monitor-framebuffer']")
        return socket

    def _call(self, name, method, arguments=None):
        return self.bus_connection.call_sync(name, "/" + name.replace(".", "/"), name, method, arguments, None, Gio.DBusCallFlags.NONE,
                                             CALL_LIMIT, None).unpack()

    def windows(self):
        """By the titles: how large they are with all that belongs to them, and whether they have the keyboard."""
        found = self._call(INTROSPECT, "GetWindows")[0].values()
        return {window.get("title", ""): {"size": (window["width"], window["height"]), "active": window["has-focus"]}
                for window in found}

    def picture(self):
        """What the screen shows, pixel for pixel."""
        path = os.path.join(self.folder, "screen.png")
        self._call(SCREENSHOT, "Screenshot", GLib.Variant("(bbs)", (False, False, path)))
        with Image.open(path) as screen:
            return screen.convert("RGB")

    def set_scale(self, scale):
        """The nearest to it that the monitor can have. Returns that."""
        serial, monitors, _, _ = self._call(DISPLAYS, "GetCurrentState")
        (connector, *_), modes, _ = monitors[0]
        mode, *_, scales, _ = next(one for one in modes if one[-1].get("is-current"))
        nearest = min(scales, key=lambda one: abs(one - scale))
        monitor = (0, 0, nearest, 0, True, [(connector, mode, {})])
        self._call(DISPLAYS, "ApplyMonitorsConfig", GLib.Variant("(uua(iiduba(ssa{sv}))a{sv})", (serial, TEMPORARY, [monitor], {})))
        return nearest
