"""How often a program is refused memory."""

import os
import subprocess


class RefusedMemory:
    """None at first. It is counted for programs whose environment has what is in `environment`."""

    def __init__(self, folder):
        library = os.path.join(folder, "refusals.so")
        source = os.path.join(os.path.dirname(__file__), "refusedMemory.c")
        subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-fno-builtin", "-o", library, source], check=True)
        self._path = os.path.join(folder, "refusals")
        with open(self._path, "wb") as file:
            file.write(bytes(8))
        self.environment = {"LD_PRELOAD": library, "VELLORAN_REFUSALS": self._path}

    def count(self):
        with open(self._path, "rb") as file:
            return int.from_bytes(file.read(8), "little")
