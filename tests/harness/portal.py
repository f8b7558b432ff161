"""The desktop's portal for settings and files, as far as the program asks it."""

import threading

from gi.repository import Gio, GLib

from .waiting import until

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
INTERFACE = "org.freedesktop.portal.Settings"
FILES_INTERFACE = "org.freedesktop.portal.FileChooser"
DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{{sa{{sv}}}}" direction="out"/></method>
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface><interface name="{FILES_INTERFACE}">
  <method name="OpenFile"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{{sv}}" direction="in"/>
    <arg type="o" direction="out"/></method>
  <property name="version" type="u" access="read"/>
</interface></node>"""


class SettingsPortal:
    """Answers on a thread of its own, as a service does; one that `answers` not takes questions and leaves them. File dialogs
    stay until they are cancelled."""

    def __init__(self, desktop, settings, answers=True):
        self._settings = settings
        self._answers = answers
        self._unanswered = []
        self._dialog = None
        self.questions = []
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._thread = threading.Thread(target=self._serve, args=[desktop.environment["DBUS_SESSION_BUS_ADDRESS"]], daemon=True)
        self._is_ready = threading.Event()
        self._thread.start()
        assert self._is_ready.wait(20), "the portal did not start"

    def _serve(self, address):
        self._context.push_thread_default()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self._bus.set_exit_on_close(False)
        for interface in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces:
            self._bus.register_object(PATH, interface, self._called, self._read, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (NAME, 4)), None, Gio.DBusCallFlags.NONE, 10000, None)
        self._is_ready.set()
        self._loop.run()
        if not self._bus.is_closed():
            self._bus.close_sync(None)
        self._context.pop_thread_default()

    @staticmethod
    def _read(_connection, _sender, _path, _interface, _property):
        return GLib.Variant("u", 3)

    def _called(self, _connection, sender, _path, _interface, method, arguments, invocation):
        self.questions.append(method)
        if not self._answers:
            self._unanswered.append(invocation)
        elif method == "ReadAll":
            wanted = arguments.unpack()[0]
            found = {group: values for group, values in self._settings.items() if group in wanted}
            invocation.return_value(GLib.Variant("(a{sa{sv}})", (found,)))
        elif method == "OpenFile":
            owner, token = sender[1:].replace(".", "_"), arguments.unpack()[2]["handle_token"]
            self._dialog = sender, f"{PATH}/request/{owner}/{token}"
            invocation.return_value(GLib.Variant("(o)", (self._dialog[1],)))
        else:
            group, key = arguments.unpack()
            if key in self._settings.get(group, {}):
                # The older of the two questions wraps its answer once more.
                value = GLib.Variant("v", self._settings[group][key])
                invocation.return_value(GLib.Variant.new_tuple(GLib.Variant.new_variant(value)))
            else:
                invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "there is no such setting")

    def wait_for_question(self, method):
        until(lambda: method in self.questions, lambda: f"{method} was not asked, only {self.questions}")

    def change(self, group, key, value):
        """Has the user change a setting."""
        self._settings.setdefault(group, {})[key] = value
        self._bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", GLib.Variant("(ssv)", (group, key, value)))
        self._bus.flush_sync(None)

    def cancel_dialog(self):
        """Has the user close the file dialog."""
        owner, path = until(lambda: self._dialog, "there is no dialog")
        self._bus.emit_signal(owner, path, "org.freedesktop.portal.Request", "Response", GLib.Variant("(ua{sv})", (1, {})))
        self._bus.flush_sync(None)

    def close(self):
        self._loop.quit()
        self._thread.join(10)
