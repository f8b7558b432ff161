"""What an X server holds for a process."""

from Xlib import display
from Xlib.ext import res


class HeldByServer:
    """Asks on a connection of its own."""

    def __init__(self, desktop):
        self._display = display.Display(desktop.display)

    def close(self):
        self._display.close()

    def count(self, pid):
        """How many windows, pictures and the like, and the size of the pictures in KiB; of all connections of the process."""
        answer = self._display.res_query_client_ids([{"client": 0, "mask": res.LocalClientPIDMask}])
        clients = [identity.spec.client for identity in answer.ids if pid in list(identity.value)]
        assert clients, f"the server knows no connection of {pid}"
        things = sum(kind.count for client in clients for kind in self._display.res_query_client_resources(client).types)
        return things, sum(self._display.res_query_client_pixmap_bytes(client).bytes for client in clients) // 1024
