"""What assistive tools are told of a program, read straight from the accessibility bus. Every call has a time limit."""

from gi.repository import Gio, GLib

CALL_LIMIT = 10000  # milliseconds

ACCESSIBLE, ACTION, COMPONENT, VALUE, TEXT, APPLICATION = (
    "org.a11y.atspi." + name for name in ("Accessible", "Action", "Component", "Value", "Text", "Application"))

# By number, as far as the tests ask for them.
STATES = {1: "active", 4: "checked", 7: "editable", 8: "enabled", 11: "focusable", 12: "focused", 17: "multi line", 20: "pressed",
          23: "selected", 24: "sensitive", 25: "showing", 26: "single line", 30: "visible", 41: "checkable", 43: "read only"}


class Accessible:
    def __init__(self, connection, owner, path):
        self.connection = connection
        self.owner = owner
        self.path = path

    def __eq__(self, other):
        return isinstance(other, Accessible) and (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        try:
            return f"<{self.role} {self.name!r}>"
        except GLib.Error:
            return f"<gone {self.path}>"

    def call(self, interface, method, arguments=None):
        answer = self.connection.call_sync(self.owner, self.path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                           CALL_LIMIT, None)
        return answer.unpack()

    def read(self, interface, name):
        return self.call("org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (interface, name)))[0]

    @property
    def name(self):
        return self.read(ACCESSIBLE, "Name")

    @property
    def description(self):
        return self.read(ACCESSIBLE, "Description")

    @property
    def role(self):
        """A button that opens a menu is any button: older toolkits tell no difference."""
        role = self.call(ACCESSIBLE, "GetRoleName")[0]
        return "push button" if role == "button menu" else role

    @property
    def states(self):
        low, high = self.call(ACCESSIBLE, "GetState")[0]
        bits = low | high << 32
        return {name for number, name in STATES.items() if bits >> number & 1}

    @property
    def children(self):
        return [Accessible(self.connection, owner, path) for owner, path in self.call(ACCESSIBLE, "GetChildren")[0]]

    @property
    def extents(self):
        """Position on the screen and size: x, y, width, height."""
        return self.call(COMPONENT, "GetExtents", GLib.Variant("(u)", (0,)))[0]

    @property
    def centre(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2

    @property
    def actions(self):
        return [name for name, _, _ in self.call(ACTION, "GetActions")[0]]

    @property
    def value(self):
        return self.read(VALUE, "CurrentValue")

    @property
    def text(self):
        return self.call(TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    def do(self, action="Press"):
        """Does what an assistive tool does to press a control."""
        names = [name.lower() for name in self.actions]
        self.call(ACTION, "DoAction", GLib.Variant("(i)", (names.index(action.lower()),)))

    def focus(self):
        self.call(COMPONENT, "GrabFocus")

    def walk(self):
        """This object and everything below it that is to be seen, in the order of the tree. What is scrolled out of sight has a
        place and counts; what is hidden has none."""
        pending = [self]
        while pending:
            item = pending.pop()
            try:
                children = item.children
                is_shown = item.extents[2] > 0
            except GLib.Error:
                continue  # went away meanwhile
            if not is_shown:
                continue
            yield item
            pending.extend(reversed(children))

    def find_all(self, role=None, name=None):
        """Everything to be seen below with that role and that name; a function may be given instead of a name."""
        found = []
        for item in self.walk():
            try:
                if (role is None or item.role == role) and (name is None or
                                                            (name(item.name) if callable(name) else item.name == name)):
                    found.append(item)
            except GLib.Error:
                continue
        return found


def applications(connection):
    """The accessible programs, by process id."""
    root = Accessible(connection, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
    found = {}
    for child in root.children:
        try:
            answer = connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          "GetConnectionUnixProcessID", GLib.Variant("(s)", (child.owner,)), None,
                                          Gio.DBusCallFlags.NONE, CALL_LIMIT, None)
        except GLib.Error:
            continue
        found[answer.unpack()[0]] = child
    return found
