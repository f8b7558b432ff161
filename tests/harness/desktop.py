"""A private X server with a window manager, a session bus and an accessibility bus, for as long as it is used."""

import os
import shutil
import subprocess
import tempfile

from gi.repository import Gio, GLib

from . import processes
from .observer import Observer
from .waiting import until

CALL_LIMIT = 10000  # milliseconds

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={folder}/bus</listen>
  <servicedir>{folder}/services</servicedir>
  <policy context="default"><allow user="*"/><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
"""

# No key and no button is bound: a bound one stops input until the manager has looked at it, and lets keys overtake clicks.
WINDOW_MANAGER_CONFIGURATION = """<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <keyboard/>
  <mouse/>
</openbox_config>
"""


class Desktop:
    """All of it, and the program, run as another user where one is named; only the administrator can ask for that."""

    def __init__(self, size=(1600, 1100), user=None):
        self.folder = tempfile.mkdtemp(prefix="velloran-e2e-")
        self.user = user
        self.as_user = [] if user is None else ["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups", "--pdeathsig=KILL"]
        self._processes = []
        self._connections = []
        self.observer = None
        try:
            self._start(size)
        except BaseException:
            self.close()
            raise

    def _start(self, size):
        for name in ("home", "runtime", "services", "tools", "openbox"):
            os.mkdir(os.path.join(self.folder, name), 0o700)
            self.give_to_user(os.path.join(self.folder, name))
        os.chmod(self.folder, 0o711)
        self.give_to_user(self.folder)
        self.environment = {
            # The tests ask for things that go in that moment, and what the program says is looked at.
            "QT_LOGGING_RULES": "qt.accessibility.atspi.warning=false",
            "PATH": os.path.join(self.folder, "tools") + ":/usr/bin:/bin", "HOME": os.path.join(self.folder, "home"),
            "XDG_RUNTIME_DIR": os.path.join(self.folder, "runtime"), "XDG_SESSION_TYPE": "x11", "LC_ALL": "C.UTF-8",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_FONT_DPI": "96", "NO_AT_BRIDGE": "0",
        }
        self._start_server(size)
        self._start_window_manager()
        self._start_bus()
        self.observer = Observer(self.environment, (size[0] - 280, 40, 260, 200), "--raw")

    def _run(self, name, arguments, **options):
        log = open(os.path.join(self.folder, name + ".log"), "wb")
        process = processes.start([*self.as_user, *arguments], self.environment, stdout=log, stderr=log, **options)
        log.close()
        self._processes.append(process)
        return process

    def _start_server(self, size):
        reading, writing = os.pipe()
        self.server = self._run("server", ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{size[0]}x{size[1]}x24", "-ac",
                                           "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
        self.display = ":" + self._first_line(reading, writing)
        self.environment["DISPLAY"] = self.display

    @staticmethod
    def _first_line(reading, writing):
        """What a process that was just started says of itself, once it can be reached."""
        os.close(writing)
        with os.fdopen(reading) as pipe:
            line = pipe.readline().strip()
        assert line, "a process of the desktop did not start"
        return line

    def _start_window_manager(self):
        path = os.path.join(self.folder, "openbox", "rc.xml")
        with open(path, "w", encoding="ascii") as file:
            file.write(WINDOW_MANAGER_CONFIGURATION)
        self.start_window_manager()

    def start_window_manager(self):
        """Starts one, also after another has been killed."""
        path = os.path.join(self.folder, "openbox", "rc.xml")
        ready = os.path.join(self.folder, "window-manager-is-ready")
        if os.path.exists(ready):
            os.unlink(ready)
        self.window_manager = self._run("window-manager", ["openbox", "--config-file", path, "--startup", f"touch {ready}"])
        until(lambda: os.path.exists(ready), "the window manager did not start")

    def _start_bus(self):
        """Offers accessibility and nothing else: no portal, no settings, no notifications."""
        shutil.copy("/usr/share/dbus-1/services/org.a11y.Bus.service", os.path.join(self.folder, "services"))
        path = os.path.join(self.folder, "bus.conf")
        with open(path, "w", encoding="ascii") as file:
            file.write(BUS_CONFIGURATION.format(folder=self.folder))
        reading, writing = os.pipe()
        self.bus = self._run("bus", ["dbus-daemon", "--nofork", "--config-file", path, f"--print-address={writing}"],
                             pass_fds=[writing])
        # The rest is the identity of this one bus: with it, a bus that starts anew at the same place would be refused.
        address = self._first_line(reading, writing).split(",guid=")[0]
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        session = self._connect(address)
        answer = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, GLib.VariantType("(s)"),
                                   Gio.DBusCallFlags.NONE, CALL_LIMIT, None)
        self.accessibility = self._connect(answer.unpack()[0])

    def _connect(self, address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        connection.set_exit_on_close(False)
        self._connections.append(connection)
        return connection

    def give_to_user(self, folder):
        """Lets the user of this desktop have a folder with all that it holds."""
        if self.user is not None:
            for path, _, files in os.walk(folder):
                for name in [path, *(os.path.join(path, file) for file in files)]:
                    os.chown(name, self.user, self.user)

    def add_tool(self, name, script):
        """A program that others find before the system's own."""
        path = os.path.join(self.folder, "tools", name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(script)
        os.chmod(path, 0o755)

    def run_tool(self, *arguments):
        """Runs a command on this desktop and returns what it prints."""
        return subprocess.run(arguments, env=self.environment, check=True, capture_output=True, text=True, timeout=20).stdout

    def windows_of(self, window_class):
        """How the X server calls the windows of that class that can be seen."""
        try:
            return self.run_tool("xdotool", "search", "--onlyvisible", "--class", f"^{window_class}$").split()
        except subprocess.CalledProcessError:
            return []  # says that there is none

    def end_bus(self):
        """Has the session bus crash. Accessibility may go with it."""
        self.bus.kill()
        self.bus.wait()
        os.unlink(os.path.join(self.folder, "bus"))

    def start_bus_again(self):
        """Another session bus at the same address."""
        self.bus = self._run("second-bus", ["dbus-daemon", "--nofork", "--config-file", os.path.join(self.folder, "bus.conf")])
        until(lambda: os.path.exists(os.path.join(self.folder, "bus")), "the session bus did not start")

    def end_window_manager(self):
        """Has the window manager crash."""
        self.window_manager.kill()
        self.window_manager.wait()

    def end_server(self):
        self.server.kill()
        self.server.wait()

    def close(self):
        if self.observer:
            self.observer.close()
        for connection in self._connections:
            if not connection.is_closed():
                connection.close_sync(None)
        for process in reversed(self._processes):
            processes.end(process)
        shutil.rmtree(self.folder, ignore_errors=True)
