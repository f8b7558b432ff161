"""The whole program where Hyprland's socket tells where the pointer is: on sway, with a socket that answers as Hyprland's does."""

import os
import socket
import threading

from harness.compositor_case import CompositorCase
from harness.waiting import until

RULE = ("check box", "Click only if mouse is stationary")
REASON = "Hyprland is asked over its socket where the pointer is."
LIMIT = "Hyprland does not say at the moment where the pointer is, so the still-mouse rule lets no click through."


class Socket:
    """Answers each question for the pointer's place, which is another each time while it moves."""

    def __init__(self, path):
        self.moves = False
        self.questions = 0
        self._path = path
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(path)
        self._listener.listen()
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            try:
                connection = self._listener.accept()[0]
            except OSError:
                return
            with connection:
                if connection.recv(64) == b"j/cursorpos":
                    self.questions += 1
                    place = 10 * (self.questions % 50) if self.moves else 1
                    connection.sendall(b'{\n    "x": %d,\n    "y": 7\n}' % place)

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        os.unlink(self._path)


class HyprlandProgram(CompositorCase):
    def setUp(self):
        super().setUp()
        folder = os.path.join(self.desktop.environment["XDG_RUNTIME_DIR"], "hypr", "of-the-tests")
        os.makedirs(folder)
        self.path = os.path.join(folder, ".socket.sock")
        self.hyprland = Socket(self.path)
        self.desktop.environment["HYPRLAND_INSTANCE_SIGNATURE"] = "of-the-tests"

    def test_clicks_come_when_the_pointer_is_still_and_stop_with_the_answers(self):
        self.hyprland.moves = True
        program = self.start_with(requireStationaryMouse=True, stationarySeconds=0.3, clickIntervalSeconds=0.05, stopMode="manual")
        self.assertEqual(program.find(*RULE).description, "")
        self.press_hotkey()
        begun = self.hyprland.questions
        until(lambda: self.hyprland.questions > begun + 10, "the pointer's place is not asked for")
        self.assertEqual(self.witness.releases(), 0, "clicked under a mouse that moves")
        self.hyprland.moves = False
        self.witness.wait_for_releases(3)
        self.hyprland.close()
        until(lambda: program.find(*RULE).description == LIMIT, lambda: program.find(*RULE).description)
        self.assertIn(LIMIT + "\n", program.log)
        self.assert_ended("clicks come without an answer")
        released = self.witness.releases()
        self.hyprland = Socket(self.path)
        self.witness.wait_for_releases(released + 2)
        until(lambda: program.find(*RULE).description == "", lambda: program.find(*RULE).description)
        program.find("push button", "Menu").do()
        program.find("menu item", "About Velloran").do()
        program.find("label", REASON, within=program.find("dialog", "About Velloran"))
