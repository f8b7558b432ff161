"""What KWin's windows are and what is done to them, by scripts that run in it."""

import json
import os

from gi.repository import Gio, GLib

from .waiting import until

KWIN = "org.kde.KWin"
NAME = "app.velloran.Test"
INTERFACE = f"""<node><interface name="{NAME}"><method name="tell"><arg type="s" direction="in"/></method></interface></node>"""

# The older release calls some things by other names.
SCRIPT = """const all = workspace.windowList ? workspace.windowList() : workspace.clientList();
const find = title => all.filter(w => w.caption == title)[0];
const active = workspace.windowList ? workspace.activeWindow : workspace.activeClient;
function activate(w) {
    if (workspace.windowList) { workspace.activeWindow = w; } else { workspace.activeClient = w; }
}
const told = %s;
callDBus("%s", "/windows", "app.velloran.Test", "tell", JSON.stringify(told === undefined ? null : told));
"""
WINDOWS = """all.map(w => ({caption: w.caption, titleHeight: w.frameGeometry.height - w.bufferGeometry.height, active: w == active,
    x: w.frameGeometry.x, y: w.frameGeometry.y, width: w.frameGeometry.width, height: w.frameGeometry.height}))"""


class KWinWindows:
    """Speaks to the KWin on that connection of a session bus; scripts are kept in a folder."""

    def __init__(self, connection, call, folder, is_new):
        self._connection = connection
        self._call = call
        self._path = os.path.join(folder, "windows.js")
        self._is_new = is_new
        self._told = None
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        connection.register_object("/windows", interface, self._take, None, None)

    def _take(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self._told = arguments.unpack()[0]
        invocation.return_value(None)

    def run(self, expression):
        """What an expression gives in KWin."""
        self._told = None
        with open(self._path, "w", encoding="ascii") as file:
            file.write(SCRIPT % (expression, self._connection.get_unique_name()))
        number = self._script("loadScript", GLib.Variant("(ss)", (self._path, "windows")))[0]
        self._call(KWIN, f"/Scripting/Script{number}" if self._is_new else f"/{number}", "org.kde.kwin.Script", "run")

        def are_told():
            GLib.MainContext.default().iteration(False)
            return self._told
        told = json.loads(until(are_told, "KWin does not answer"))
        self._script("unloadScript", GLib.Variant("(s)", ("windows",)))
        return told

    def _script(self, method, arguments):
        return self._call(KWIN, "/Scripting", "org.kde.kwin.Scripting", method, arguments)

    def all(self):
        """By the titles: how much KWin adds to their height, where they are, and whether they have the keyboard."""
        return {window.pop("caption"): window for window in self.run(WINDOWS)}

    def activate(self, title):
        """As a task bar does."""
        self.run(f"activate(find({json.dumps(title)}))")

    def place(self, title, x, y, width, height):
        self.run(f"find({json.dumps(title)}).frameGeometry = {{x: {x}, y: {y}, width: {width}, height: {height}}}")
