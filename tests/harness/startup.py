"""What a task bar hears about programs that start: the desktop's start-up notifications."""

from Xlib import X, display

from .waiting import until


class StartupListener:
    """Hears every such message on the server from now on."""

    def __init__(self, desktop):
        self._display = display.Display(desktop.display)
        self._first = self._display.intern_atom("_NET_STARTUP_INFO_BEGIN")
        self._next = self._display.intern_atom("_NET_STARTUP_INFO")
        self._display.screen().root.change_attributes(event_mask=X.PropertyChangeMask)
        self._display.sync()
        self._partial = {}
        self.messages = []

    def close(self):
        self._display.close()

    def _take_in(self):
        while self._display.pending_events():
            event = self._display.next_event()
            if event.type != X.ClientMessage or event.client_type not in (self._first, self._next):
                continue
            before = b"" if event.client_type == self._first else self._partial.pop(event.window.id, b"")
            text = before + bytes(event.data[1])
            if b"\0" in text:
                self.messages.append(text.split(b"\0")[0].decode())
            else:
                self._partial[event.window.id] = text

    def wait_for_end_of(self, identifier):
        """Waits until somebody says that the start with that identifier is over."""
        def is_over():
            self._take_in()
            return any(message.startswith("remove:") and identifier in message for message in self.messages)
        until(is_over, lambda: f"the start {identifier} did not end: {self.messages}")

    def server_time(self):
        """The server's clock, as a user's action would be stamped."""
        root = self._display.screen().root
        atom = self._display.intern_atom("_VELLORAN_TEST_TIME")
        root.change_property(atom, self._display.intern_atom("STRING"), 8, b"x")
        self._display.sync()
        stamp = []

        def is_stamped():
            while self._display.pending_events():
                event = self._display.next_event()
                if event.type == X.PropertyNotify and event.atom == atom:
                    stamp.append(event.time)
            return stamp
        until(is_stamped, "the server does not tell its time")
        return stamp[-1]
