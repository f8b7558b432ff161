"""What tells programs that the screen is locked, in place of a desktop's."""

import threading

from gi.repository import Gio, GLib

from .bus import Bus

NAME = "org.freedesktop.ScreenSaver"
PATH = "/org/freedesktop/ScreenSaver"
DESCRIPTION = f"""<node><interface name="{NAME}"><method name="GetActive"><arg type="b" direction="out"/></method>
<signal name="ActiveChanged"><arg type="b"/></signal></interface></node>"""


class ScreenLock:
    """Tells from the beginning that the screen is not locked."""

    def __init__(self, desktop):
        self._is_locked = False
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._is_ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=[desktop], daemon=True)
        self._thread.start()
        assert self._is_ready.wait(20), "the lock did not start"

    def _serve(self, desktop):
        self._context.push_thread_default()
        self._bus = Bus(desktop)
        self._bus.connection.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], self._called, None, None)
        self._bus.take_name(NAME)
        self._is_ready.set()
        self._loop.run()
        self._bus.close()
        self._context.pop_thread_default()

    def _called(self, _connection, _sender, _path, _interface, _method, _arguments, invocation):
        invocation.return_value(GLib.Variant("(b)", (self._is_locked,)))

    def set(self, is_locked):
        self._is_locked = is_locked
        self._bus.connection.emit_signal(None, PATH, NAME, "ActiveChanged", GLib.Variant("(b)", (is_locked,)))

    def close(self):
        self._loop.quit()
        self._thread.join(10)
