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


SHORTCUTS_INTERFACE = "org.freedesktop.portal.GlobalShortcuts"
SHORTCUTS_DESCRIPTION = f"""<node><interface name="{SHORTCUTS_INTERFACE}">
  <method name="CreateSession"><arg type="a{{sv}}" direction="in"/><arg type="o" direction="out"/></method>
  <method name="BindShortcuts"><arg type="o" direction="in"/><arg type="a(sa{{sv}})" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{{sv}}" direction="in"/><arg type="o" direction="out"/></method>
  <property name="version" type="u" access="read"/>
</interface></node>"""


class SettingsPortal:
    """Answers on a thread of its own, as a service does; one that `answers` not takes questions and leaves them. File dialogs
    stay until they are cancelled."""

    DESCRIPTIONS = [DESCRIPTION]

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
        for description in self.DESCRIPTIONS:
            for interface in Gio.DBusNodeInfo.new_for_xml(description).interfaces:
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


class ShortcutsPortal(SettingsPortal):
    """Binds the shortcuts that it is asked for to what `words` say; to nothing without any, as its user would."""

    DESCRIPTIONS = [DESCRIPTION, SHORTCUTS_DESCRIPTION]

    def __init__(self, desktop, words):
        self._words = words
        self._session = None
        self.bound = []
        super().__init__(desktop, {})

    def _called(self, connection, sender, path, interface, method, arguments, invocation):
        if interface != SHORTCUTS_INTERFACE:
            super()._called(connection, sender, path, interface, method, arguments, invocation)
            return
        options = arguments.unpack()[-1]
        owner = sender[1:].replace(".", "_")
        request = f"{PATH}/request/{owner}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        if method == "CreateSession":
            self._session = sender, f"{PATH}/session/{owner}/{options['session_handle_token']}"
            self._respond(sender, request, 0, {"session_handle": GLib.Variant("s", self._session[1])})
        elif self._words is None:
            self._respond(sender, request, 1, {})
        else:
            self.bound = [identifier for identifier, _ in arguments.unpack()[1]]
            words = {"trigger_description": GLib.Variant("s", self._words)}
            shortcuts = GLib.Variant("a(sa{sv})", [(identifier, words) for identifier in self.bound])
            self._respond(sender, request, 0, {"shortcuts": shortcuts})

    def _respond(self, sender, request, response, results):
        self._bus.emit_signal(sender, request, "org.freedesktop.portal.Request", "Response",
                              GLib.Variant("(ua{sv})", (response, results)))

    def wait_for(self, identifier):
        until(lambda: self.bound == [identifier], lambda: f"bound is {self.bound}, not {identifier}")

    def press(self):
        """Has the user press the shortcut."""
        sender, session = self._session
        for signal in ("Activated", "Deactivated"):
            self._bus.emit_signal(sender, PATH, SHORTCUTS_INTERFACE, signal,
                                  GLib.Variant("(osta{sv})", (session, self.bound[0], 1, {})))
        self._bus.flush_sync(None)
