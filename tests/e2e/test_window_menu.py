"""The menu of the window manager, asked for by a right click on the title."""

from Xlib import X, Xatom, display

from harness.case import DesktopCase
from harness.waiting import until


class WindowManager:
    """Plays a window manager that has such a menu, beside the one that has not."""

    def __init__(self, desktop):
        self._display = display.Display(desktop.display)
        self._root = self._display.screen().root
        self._request = self._display.intern_atom("_GTK_SHOW_WINDOW_MENU")
        self._supported = self._display.intern_atom("_NET_SUPPORTED")
        self._before = list(self._root.get_full_property(self._supported, Xatom.ATOM).value)
        self._set([*self._before, self._request])
        self._root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self._display.sync()

    def _set(self, messages):
        self._root.change_property(self._supported, Xatom.ATOM, 32, messages)

    def wait_for_request(self):
        """The window that the menu is asked for, and the place of the menu."""
        requests = []

        def is_asked():
            while self._display.pending_events():
                event = self._display.next_event()
                if event.type == X.ClientMessage and event.client_type == self._request:
                    _, data = event.data
                    requests.append((event.window.id, data[1], data[2]))
            return requests
        until(is_asked, "the window manager was not asked for its menu")
        return requests

    def close(self):
        self._set(self._before)
        self._display.sync()
        self._display.close()


class WindowMenu(DesktopCase):
    def test_the_window_managers_is_asked_for_at_the_pointer(self):
        manager = WindowManager(self.desktop)
        self.addCleanup(manager.close)
        program = self.start()
        self.observer.click(410, 40, 3)
        self.assertEqual(manager.wait_for_request(), [(int(program.window_id), 410, 40)])
        program.settle()
        self.assertFalse(program.shows("menu item", "Minimize"))

    def test_without_one_the_window_has_its_own(self):
        program = self.start()
        self.observer.click(410, 40, 3)
        program.find("menu item", "Minimize")
