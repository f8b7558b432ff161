"""A sway whose outputs can be pulled out."""

import json
import os
import re
import subprocess

from .compositor import SWAY_CONFIGURATION, Sway
from .waiting import until


def sway_with_outputs(**options):
    """Headless outputs can be pulled out since 1.8."""
    said = subprocess.run(["sway", "--version"], capture_output=True, text=True, check=True).stdout
    version = tuple(int(part) for part in re.search(r"(\d+)\.(\d+)", said).groups())
    return (SwayWithOutputs if version >= (1, 8) else SwayInSway)(**options)


class SwayWithOutputs(Sway):
    """Has two outputs beside each other, `FIRST` and `SECOND`, which can be pulled out."""

    FIRST, SECOND = "HEADLESS-1", "HEADLESS-2"

    def _start_compositor(self):
        self.environment["SWAYSOCK"] = os.path.join(self._place, "commands")
        width, height = self._size
        self.configure(f"output {self.FIRST} position 0 0\noutput {self.SECOND} resolution {width}x{height} position {width} 0\n" +
                       self._configuration)
        return self._start_program("sway", "--config", os.path.join(self.folder, "config"), WLR_HEADLESS_OUTPUTS="2")

    def outputs(self):
        return [output["name"] for output in json.loads(self.run_tool("swaymsg", "--raw", "--type", "get_outputs"))]

    def output_of(self, name):
        """Which one has the window with that title; nothing while none has."""
        for output in self.tree()["nodes"]:
            pending = [output]
            while pending:
                node = pending.pop()
                if node.get("pid") and node["name"] == name:
                    return output["name"]
                pending += node["nodes"] + node["floating_nodes"]
        return None

    def put_pointer_on_witness(self):
        """Where it stays even if the window becomes half as wide, until the window has been told."""
        outputs = [output["rect"] for output in json.loads(self.run_tool("swaymsg", "--raw", "--type", "get_outputs"))]
        size = (max(rect["x"] + rect["width"] for rect in outputs), max(rect["y"] + rect["height"] for rect in outputs))
        rect = self.view("witness")["rect"]
        self.witness.move(rect["x"] + rect["width"] / 4, rect["y"] + rect["height"] / 2, size)
        until(self.witness.has_pointer, "the mouse is elsewhere")

    def unplug(self, name):
        self._pull_out(name)
        until(lambda: name not in self.outputs(), f"{name} stays")

    def _pull_out(self, name):
        self.command(f"output {name} unplug")


class SwayInSway(SwayWithOutputs):
    """The same for older releases, whose outputs without a screen stay: these are windows of another compositor."""

    FIRST, SECOND = "WL-1", "WL-2"

    def _start_compositor(self):
        commands = os.path.join(self._place, "outer-commands")
        path = os.path.join(self.folder, "outer")
        with open(path, "w", encoding="utf-8") as file:
            file.write(SWAY_CONFIGURATION.format(width=2 * self._size[0], height=self._size[1]))
        outer = self._start_program("sway", "--config", path, SWAYSOCK=commands)
        self._outer_server = self.server
        self._outer = {"SWAYSOCK": commands}
        self.environment["SWAYSOCK"] = os.path.join(self._place, "commands")
        self.configure(f"output {self.FIRST} position 0 0\noutput {self.SECOND} position {2 * self._size[0]} 0\n" + self._configuration)
        return self._start_program("sway", "--config", os.path.join(self.folder, "config"), WLR_BACKENDS="wayland",
                                   WLR_WL_OUTPUTS="2", WAYLAND_DISPLAY=outer)

    def _pull_out(self, name):
        subprocess.run(["swaymsg", "--quiet", "--", f'[title="{name}"] kill'], env={**self.environment, **self._outer}, check=True,
                       timeout=20)

    def close(self):
        super().close()
        self._outer_server.stdout.close()
