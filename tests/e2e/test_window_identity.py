"""What task bars and docks know the window by."""

import configparser
import os

from harness.case import DesktopCase

ENTRY = os.path.join(os.path.dirname(__file__), "../../packaging/app.velloran.Velloran.desktop")


class WindowIdentity(DesktopCase):
    def property(self, program, name):
        return self.desktop.run_tool("xprop", "-id", program.window_id, name)

    def test_matches_the_desktop_entry(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(ENTRY, encoding="utf-8")
        main = entry["Desktop Entry"]
        program = self.start()
        self.assertEqual(self.property(program, "WM_CLASS").strip(),
                         f'WM_CLASS(STRING) = "{os.path.basename(main["Exec"])}", "{main["StartupWMClass"]}"')
        self.assertIn(f'"{main["Name"]}"', self.property(program, "_NET_WM_NAME"))

    def test_assistive_tools_know_its_name(self):
        program = self.start()
        self.assertEqual([(frame.role, frame.name) for frame in program.frames.values()], [("frame", "Velloran")])

    def test_brings_its_icon(self):
        program = self.start()
        self.assertIn("Icon (128 x 128)", self.property(program, "_NET_WM_ICON"))
