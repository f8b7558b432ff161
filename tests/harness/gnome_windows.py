"""A private GNOME whose windows and whose screen can be looked at, and whose monitor has any scale."""

import os

from gi.repository import GLib
from PIL import Image

from .gnome import Gnome
from .portal_compositor import BUS

# The shell tells of windows, and takes pictures, for those who have such a name.
TRUSTED_NAME = "org.freedesktop.impl.portal.desktop.gtk"
INTROSPECT, SCREENSHOT, DISPLAYS = "org.gnome.Shell.Introspect", "org.gnome.Shell.Screenshot", "org.gnome.Mutter.DisplayConfig"
TEMPORARY = 1


class GnomeWithWindows(Gnome):
    def _start_compositor(self):
        socket = super()._start_compositor()
        self._ask(BUS, "RequestName", GLib.Variant("(su)", (TRUSTED_NAME, 0)))
        # Scales between whole numbers.
        self.set("org.gnome.mutter", "experimental-features", "['scale-monitor-framebuffer']")
        return socket

    def _ask(self, name, method, arguments=None):
        return self.call(name, "/" + name.replace(".", "/"), name, method, arguments)

    def windows(self):
        """By the titles: how large they are with all that belongs to them, whether they have the keyboard, and whose they are."""
        found = self._ask(INTROSPECT, "GetWindows")[0].values()
        return {window.get("title", ""): {"size": (window["width"], window["height"]), "active": window["has-focus"],
                                          "program": window.get("app-id")} for window in found}

    def picture(self):
        """What the screen shows, pixel for pixel."""
        path = os.path.join(self.folder, "screen.png")
        self._ask(SCREENSHOT, "Screenshot", GLib.Variant("(bbs)", (False, False, path)))
        with Image.open(path) as screen:
            return screen.convert("RGB")

    def place_of(self, size, scale=1, screen=None):
        """Left, top, right and bottom of a window of that size, in pixels, which stands before a black one, below the desktop's bar;
        nothing while none does."""
        screen = screen or self.picture()
        bar = round(scale * 40)
        box = screen.crop((0, bar, *screen.size)).point(lambda value: 255 if value > 4 else 0).getbbox()
        # The desktop may round half a pixel up or down.
        if box is None or max(abs(box[2] - box[0] - size[0]), abs(box[3] - box[1] - size[1])) >= 1:
            return None
        return box[0], box[1] + bar, box[2], box[3] + bar

    def shown(self, size, scale=1):
        """What is to be seen of such a window."""
        screen = self.picture()
        place = self.place_of(size, scale, screen)
        return screen.crop(place) if place else None

    def is_drawn_on(self, number):
        """Whether that output, counted from 1, shows the program's many colours."""
        width, height = self._size
        screen = self.picture()
        part = screen.crop(((number - 1) * width, 0, number * width, height))
        return number * width <= screen.width and len(part.getcolors(1 << 24) or []) > 500

    def show_outputs(self, count):
        """Has that many, beside each other; the others are switched off."""
        serial, monitors, _, _ = self._ask(DISPLAYS, "GetCurrentState")
        shown = [(number * self._size[0], 0, 1, 0, number == 0, [(connector, modes[0][0], {})])
                 for number, ((connector, *_), modes, _) in enumerate(sorted(monitors)[:count])]
        self._ask(DISPLAYS, "ApplyMonitorsConfig", GLib.Variant("(uua(iiduba(ssa{sv}))a{sv})", (serial, TEMPORARY, shown, {})))

    def set_scale(self, scale):
        """The nearest to it that the monitor can have. Returns that."""
        serial, monitors, _, _ = self._ask(DISPLAYS, "GetCurrentState")
        (connector, *_), modes, _ = monitors[0]
        mode, *_, scales, _ = next(one for one in modes if one[-1].get("is-current"))
        nearest = min(scales, key=lambda one: abs(one - scale))
        monitor = (0, 0, nearest, 0, True, [(connector, mode, {})])
        self._ask(DISPLAYS, "ApplyMonitorsConfig", GLib.Variant("(uua(iiduba(ssa{sv}))a{sv})", (serial, TEMPORARY, [monitor], {})))
        return nearest
