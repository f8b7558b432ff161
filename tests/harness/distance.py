"""Puts an X server far away: programs that connect here reach it, but everything takes its time both ways."""

import array
import collections
import itertools
import os
import selectors
import socket
import subprocess
import sys
import time

from . import processes

SERVERS = "/tmp/.X11-unix/X"
FIRST_NUMBER = 5000  # real servers count from 0
CHUNK = 65536
MOST_DESCRIPTORS = 16


class Distance:
    """A way to the server of a desktop on which each direction takes that many seconds. Programs take it when DISPLAY has the
    name of this object's `display`."""

    def __init__(self, desktop, seconds):
        # A process of its own: the test may be busy or wait.
        self._process = processes.start([sys.executable, "-m", __name__, SERVERS + desktop.display[1:], str(seconds)],
                                        dict(os.environ), cwd=os.path.dirname(os.path.dirname(__file__)),
                                        stdout=subprocess.PIPE, text=True)
        self._path = self._process.stdout.readline().strip()
        assert self._path, "there is no way to the server"
        self.display = ":" + self._path.removeprefix(SERVERS)

    def close(self):
        processes.end(self._process)
        self._process.stdout.close()
        os.unlink(self._path)


class Direction:
    """What goes from one socket to the other, in order, with the descriptors that came along."""

    def __init__(self, source, target, seconds):
        self.source = source
        self.target = target
        self._seconds = seconds
        self._travelling = collections.deque()

    @property
    def next_arrival(self):
        return self._travelling[0][0] if self._travelling else None

    def take(self):
        """Takes in what is there; false at the end of it, which travels as well."""
        try:
            data, descriptors, _, _ = socket.recv_fds(self.source, CHUNK, MOST_DESCRIPTORS)
        except ConnectionError:
            data, descriptors = b"", []
        self._travelling.append((time.monotonic() + self._seconds, data, descriptors))
        return bool(data)

    def hand_over(self, now):
        """Hands over what has arrived; false once the end has."""
        while self._travelling and self._travelling[0][0] <= now:
            _, data, descriptors = self._travelling.popleft()
            if not data:
                return False
            try:
                self._send(data, descriptors)
            except ConnectionError:
                return False
        return True

    def _send(self, data, descriptors):
        rights = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", descriptors))] if descriptors else []
        sent = self.target.sendmsg([data], rights)
        for descriptor in descriptors:
            os.close(descriptor)
        self.target.sendall(data[sent:])


def listen():
    """A socket with a name that programs take for that of a server."""
    listener = socket.socket(socket.AF_UNIX)
    for number in itertools.count(FIRST_NUMBER):
        try:
            listener.bind(SERVERS + str(number))
        except OSError:
            continue  # another one is there
        listener.listen()
        return listener


def serve(server, seconds):
    selector = selectors.DefaultSelector()
    listener = listen()
    selector.register(listener, selectors.EVENT_READ)
    print(listener.getsockname(), flush=True)
    directions = []
    while True:
        arrivals = [direction.next_arrival for direction in directions if direction.next_arrival is not None]
        patience = max(0.0, min(arrivals) - time.monotonic()) if arrivals else None
        for key, _ in selector.select(patience):
            if key.data is None:
                near, _ = listener.accept()
                far = socket.socket(socket.AF_UNIX)
                far.connect(server)
                for source, target in ((near, far), (far, near)):
                    directions.append(Direction(source, target, seconds))
                    selector.register(source, selectors.EVENT_READ, directions[-1])
            elif not key.data.take():
                selector.unregister(key.fileobj)
        now = time.monotonic()
        for direction in [direction for direction in directions if not direction.hand_over(now)]:
            directions.remove(direction)
            try:
                direction.target.shutdown(socket.SHUT_WR)
            except OSError:
                pass  # gone already


if __name__ == "__main__":
    serve(sys.argv[1], float(sys.argv[2]))
