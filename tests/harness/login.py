"""A login manager, and a display manager for a desktop that wants both before it has a screen to lock."""

import os
import threading

from gi.repository import Gio, GLib

LOGIN, DISPLAYS = "org.freedesktop.login1", "org.gnome.DisplayManager"
SESSION, USER = "/org/freedesktop/login1/session/_31", "/org/freedesktop/login1/user/me"

DESCRIPTION = """<node>
<interface name="org.freedesktop.login1.Manager">
  <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
  <method name="GetSessionByPID"><arg type="u" direction="in"/><arg type="o" direction="out"/></method>
  <method name="GetUser"><arg type="u" direction="in"/><arg type="o" direction="out"/></method>
  <method name="ListSessions"><arg type="a(susso)" direction="out"/></method>
  <method name="CanSuspend"><arg type="s" direction="out"/></method>
  <method name="CanRebootToBootLoaderMenu"><arg type="s" direction="out"/></method>
  <method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="h" direction="out"/></method>
  <signal name="PrepareForSleep"><arg type="b"/></signal>
  <property name="BlockInhibited" type="s" access="read"/><property name="IdleHint" type="b" access="read"/>
</interface>
<interface name="org.freedesktop.login1.Session">
  <method name="SetLockedHint"><arg type="b" direction="in"/></method>
  <property name="Id" type="s" access="read"/><property name="State" type="s" access="read"/>
  <property name="Class" type="s" access="read"/><property name="Type" type="s" access="read"/>
  <property name="Active" type="b" access="read"/><property name="LockedHint" type="b" access="read"/>
  <property name="Remote" type="b" access="read"/><property name="Seat" type="(so)" access="read"/>
  <property name="User" type="(uo)" access="read"/><property name="Name" type="s" access="read"/>
  <signal name="Lock"/><signal name="Unlock"/>
</interface>
<interface name="org.freedesktop.login1.User">
  <property name="Display" type="(so)" access="read"/><property name="Sessions" type="a(so)" access="read"/>
  <property name="UID" type="u" access="read"/>
</interface>
<interface name="org.gnome.DisplayManager.Manager">
  <method name="RegisterSession"><arg type="a{sv}" direction="in"/></method>
  <method name="OpenReauthenticationChannel"><arg type="s" direction="in"/><arg type="s" direction="out"/></method>
  <property name="Version" type="s" access="read"/>
</interface></node>"""

PLACES = {
    "org.freedesktop.login1.Manager": ["/org/freedesktop/login1"],
    "org.freedesktop.login1.Session": [SESSION, "/org/freedesktop/login1/session/auto", "/org/freedesktop/login1/session/self"],
    "org.freedesktop.login1.User": [USER, "/org/freedesktop/login1/user/self"],
    "org.gnome.DisplayManager.Manager": ["/org/gnome/DisplayManager/Manager"],
}


class LoginManager:
    """One user with one session, on a system bus at that address; on a thread of its own."""

    def __init__(self, address):
        self._is_locked = False
        self._is_active = True
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._is_ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=[address], daemon=True)
        self._thread.start()
        assert self._is_ready.wait(20), "the login manager did not start"

    def _serve(self, address):
        self._context.push_thread_default()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self._bus.set_exit_on_close(False)
        for interface in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces:
            for path in PLACES[interface.name]:
                self._bus.register_object(path, interface, self._called, self._read, None)
        for name in (LOGIN, DISPLAYS):
            self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                                GLib.Variant("(su)", (name, 4)), None, Gio.DBusCallFlags.NONE, 10000, None)
        self._is_ready.set()
        self._loop.run()
        if not self._bus.is_closed():
            self._bus.close_sync(None)
        self._context.pop_thread_default()

    def _read(self, _connection, _sender, _path, _interface, name):
        session = ("1", SESSION)
        return GLib.Variant(*{
            "Id": ("s", "1"), "State": ("s", "active"), "Class": ("s", "user"), "Type": ("s", "wayland"), "Active": ("b", self._is_active),
            "LockedHint": ("b", self._is_locked), "Remote": ("b", False), "Seat": ("(so)", ("seat0", "/org/freedesktop/login1/seat/seat0")),
            "User": ("(uo)", (os.getuid(), USER)), "Name": ("s", "somebody"), "Display": ("(so)", session),
            "Sessions": ("a(so)", [session]), "UID": ("u", os.getuid()), "Version": ("s", "48"), "BlockInhibited": ("s", ""),
            "IdleHint": ("b", False)}[name])

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        if method in ("GetSession", "GetSessionByPID"):
            invocation.return_value(GLib.Variant("(o)", (SESSION,)))
        elif method == "GetUser":
            invocation.return_value(GLib.Variant("(o)", (USER,)))
        elif method == "ListSessions":
            invocation.return_value(GLib.Variant("(a(susso))", ([("1", os.getuid(), "somebody", "seat0", SESSION)],)))
        elif method.startswith("Can"):
            invocation.return_value(GLib.Variant("(s)", ("no",)))
        elif method == "Inhibit":
            reading, writing = os.pipe()
            descriptors = Gio.UnixFDList.new()
            invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (descriptors.append(writing),)), descriptors)
            os.close(reading)
            os.close(writing)
        elif method == "OpenReauthenticationChannel":
            # A click on the lock screen asks for a password. Told that there is nobody to check it, the shell would ask on and on.
            pass
        elif method == "SetLockedHint":
            self.set_locked(arguments.unpack()[0])
            invocation.return_value(None)
        else:
            invocation.return_value(None)

    def _tell(self, name, value):
        self._bus.emit_signal(None, SESSION, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                              GLib.Variant("(sa{sv}as)", ("org.freedesktop.login1.Session", {name: GLib.Variant("b", value)}, [])))

    def set_locked(self, is_locked):
        self._is_locked = is_locked
        self._tell("LockedHint", is_locked)

    def set_active(self, is_active):
        """Whether the user of the session is the one that the screen shows."""
        self._is_active = is_active
        self._tell("Active", is_active)

    def prepare_for_sleep(self, begins):
        self._bus.emit_signal(None, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                              GLib.Variant("(b)", (begins,)))

    def unlock(self):
        """Asks the desktop to unlock the screen, as for an administrator."""
        self._bus.emit_signal(None, SESSION, "org.freedesktop.login1.Session", "Unlock", None)

    def close(self):
        self._loop.quit()
        self._thread.join(10)
