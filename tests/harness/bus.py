"""What another program on the session bus does to the application."""

import threading

from gi.repository import Gio, GLib

from .waiting import until

NAME = "app.velloran.Velloran"
PATH = "/app/velloran/Velloran"
INTERFACE = "org.freedesktop.Application"
CALL_LIMIT = 20000  # milliseconds


class Bus:
    """A connection of its own to the session bus of a desktop."""

    def __init__(self, desktop):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(desktop.environment["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        self.connection.set_exit_on_close(False)

    def close(self):
        if not self.connection.is_closed():
            self.connection.close_sync(None)

    def _call(self, name, path, interface, method, arguments):
        return self.connection.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, CALL_LIMIT,
                                         None).unpack()

    def _ask_bus(self, method, arguments=None):
        return self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments)

    def owner_process(self):
        """The process that has the application's name; nothing while none has."""
        try:
            return self._ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (NAME,)))[0]
        except GLib.Error:
            return None

    def wait_for_owner(self, pid=None):
        until(lambda: self.owner_process() == pid if pid else self.owner_process(), f"nobody took the name: {pid}")
        return self.owner_process()

    def wait_until_free(self):
        until(lambda: self.owner_process() is None, "the name is still taken")

    def connections_of(self, pid):
        """How many connections a process has to the bus."""
        count = 0
        for name in self._ask_bus("ListNames")[0]:
            try:
                is_its = name.startswith(":") and self._ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0] == pid
            except GLib.Error:  # gone meanwhile
                continue
            count += is_its
        return count

    def take_name(self, name=NAME):
        """Has that name from now on; by default the application's."""
        do_not_queue = 4
        self._ask_bus("RequestName", GLib.Variant("(su)", (name, do_not_queue)))

    def read_services_anew(self):
        self._ask_bus("ReloadConfig")

    def activate(self, **platform_data):
        data = {name.replace("_", "-"): GLib.Variant("s", text) for name, text in platform_data.items()}
        self._call(NAME, PATH, INTERFACE, "Activate", GLib.Variant("(a{sv})", (data,)))

    def act(self, action):
        self._call(NAME, PATH, INTERFACE, "ActivateAction", GLib.Variant("(sava{sv})", (action, [], {})))

    def open(self, *uris):
        self._call(NAME, PATH, INTERFACE, "Open", GLib.Variant("(asa{sv})", (uris, {})))

    def introspect(self):
        return self._call(NAME, PATH, "org.freedesktop.DBus.Introspectable", "Introspect", None)[0]


class RefusingOwner:
    """Somebody who has the application's name and answers with an error, at once, whoever asks for the window."""

    DESCRIPTION = f"""<node><interface name="{INTERFACE}"><method name="Activate"><arg type="a{{sv}}"/></method></interface></node>"""

    def __init__(self, desktop, error):
        self._error = error
        self.calls = 0
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._is_ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=[desktop], daemon=True)
        self._thread.start()
        assert self._is_ready.wait(20), "the owner did not start"

    def _serve(self, desktop):
        self._context.push_thread_default()
        bus = Bus(desktop)
        bus.connection.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(self.DESCRIPTION).interfaces[0], self._called, None, None)
        bus.take_name()
        self._is_ready.set()
        self._loop.run()
        bus.close()
        self._context.pop_thread_default()

    def _called(self, _connection, _sender, _path, _interface, _method, _arguments, invocation):
        self.calls += 1
        invocation.return_dbus_error(self._error, "no")

    def close(self):
        self._loop.quit()
        self._thread.join(10)
