#!/usr/bin/env python3
"""Tests tools/check_layers on copies of the sources in which one include was added."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
CHECKER = TREE / "tools" / "check_layers"

FORBIDDEN = [
    ("base/text.cpp", '"async/EventLoop.h"'),
    ("base/text.cpp", "<QString>"),
    ("async/Task.h", '"platform/Platform.h"'),
    ("async/ThreadQueue.cpp", "<QtCore/qthread.h>"),
    ("platform/Platform.cpp", '"model/MouseButton.h"'),
    ("platform/Platform.h", '"platform/x11/X11Server.h"'),
    ("platform/HotKeys.h", "<xcb/xcb.h>"),
    ("hotkeys/HotkeyCombo.cpp", '"model/MouseButton.h"'),
    ("hotkeys/HotkeyCombo.h", '"hotkeys/HotkeyManager.h"'),
    ("hotkeys/HotkeyCombo.h", '"async/EventLoop.h"'),
    ("hotkeys/HotkeyManager.cpp", '"engine/AutoClickerStore.h"'),
    ("model/AutoClickerConfig.h", '"hotkeys/HotkeyManager.h"'),
    ("model/AutoClickerConfig.h", '"presets/Preset.h"'),
    ("model/durations.cpp", '"platform/Platform.h"'),
    ("presets/PresetStore.cpp", '"engine/ClickEngine.h"'),
    ("presets/Preset.cpp", "<pulse/stream.h>"),
    ("donation/DonationManager.cpp", '"model/AutoClickerConfig.h"'),
    ("engine/AutoClickerStore.cpp", '"donation/DonationManager.h"'),
    ("engine/AutoClickerStore.cpp", '"ui/cards/RunModel.h"'),
    ("engine/clickLoop.cpp", "<QtGlobal>"),
    ("engine/clickLoop.cpp", '"chooseDesktop.h"'),
    ("engine/clickLoop.cpp", '"../platform/x11/X11Server.h"'),
    ("engine/clickLoop.cpp", "<platform/x11/X11Server.h>"),
    ("platform/x11/X11Server.cpp", '"platform/qt/QtEventLoop.h"'),
    ("platform/x11/X11Server.cpp", '"model/MouseButton.h"'),
    ("platform/x11/X11Server.cpp", "<QObject>"),
    ("platform/qt/QtEventLoop.cpp", "<xcb/xcb.h>"),
    ("platform/qt/QtPreferences.cpp", '"presets/PresetStore.h"'),
    ("platform/pulse/PulseSounds.cpp", "<QString>"),
    ("keys/KeyNames.cpp", '"platform/x11/X11Keyboard.h"'),
    ("platform/bus/SessionBus.cpp", '"platform/windowmanager/WindowRaiser.h"'),
    ("platform/bus/SessionBus.cpp", '"platform/Platform.h"'),
    ("platform/bus/busProbe.cpp", "<xcb/xcb.h>"),
    ("ui/cards/RunModel.cpp", '"platform/x11/X11Server.h"'),
    ("ui/cards/RunModel.cpp", '"platform/bus/SessionBus.h"'),
    ("ui/cards/RunModel.cpp", '"platform/qt/QtPreferences.h"'),
    ("ui/cards/RunModel.cpp", "<xcb/xcb.h>"),
    ("presets/PresetStore.cpp", '"presets/view/SavePresetModel.h"'),
    ("hotkeys/view/KeyEventMonitor.cpp", '"platform/x11/X11Keyboard.h"'),
    ("presets/view/PresetsModel.cpp", '"engine/AutoClickerStore.h"'),
    ("donation/view/DonationModel.cpp", '"ui/cards/RunModel.h"'),
    ("keys/KeyNames.cpp", '"platform/KeyCharacters.h"'),
    ("engine/clickLoop.cpp", '"engine/NoSuchFile.h"'),
    ("engine/clickLoop.cpp", "SOME_MACRO"),
]

ALLOWED = [
    ("async/Task.cpp", '"base/text.h"'),
    ("hotkeys/HotkeyManager.cpp", '"async/Task.h"'),
    ("presets/Preset.cpp", '"model/durations.h"'),
    ("engine/clickLoop.cpp", '"hotkeys/HotkeyManager.h"'),
    ("engine/clickLoop.cpp", "<vector>"),
    ("platform/x11/X11Server.cpp", '"keys/KeyNames.h"'),
    ("ui/cards/RunModel.cpp", '"engine/ClickEngine.h"'),
    ("ui/cards/RunModel.cpp", "<QtGlobal>"),
    ("platform/portal/Portal.cpp", '"platform/bus/SessionBus.h"'),
    ("main.cpp", '"platform/x11/X11Server.h"'),
    ("main.cpp", "<xcb/xcb.h>"),
]


def check(folder):
    return subprocess.run([sys.executable, CHECKER, folder], capture_output=True, text=True, check=False)


class LayersTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = Path(folder.name) / "src"
        shutil.copytree(TREE / "src", self.source, ignore=shutil.ignore_patterns("*.png", "*.svg", "*.qml"))

    def check_with(self, file, include):
        """The checker's answer when one line is put before a file, which is then restored."""
        path = self.source / file
        text = path.read_text(encoding="utf-8")
        path.write_text(f"#include {include}\n{text}", encoding="utf-8")
        answer = check(self.source)
        path.write_text(text, encoding="utf-8")
        return answer

    def test_the_sources_are_clean(self):
        answer = check(self.source)
        self.assertEqual(answer.returncode, 0, answer.stdout)
        self.assertRegex(answer.stdout, r"^[1-9][0-9]+ files, 0 forbidden includes\n$")

    def test_forbidden_includes_are_found_where_they_are(self):
        for file, include in FORBIDDEN:
            with self.subTest(file=file, include=include):
                answer = self.check_with(file, include)
                self.assertEqual(answer.returncode, 1, answer.stdout)
                self.assertIn(f"{file}:1: ", answer.stdout)
                self.assertIn(", 1 forbidden includes\n", answer.stdout)

    def test_allowed_includes_pass(self):
        for file, include in ALLOWED:
            with self.subTest(file=file, include=include):
                answer = self.check_with(file, include)
                self.assertEqual(answer.returncode, 0, answer.stdout)

    def test_spacing_does_not_hide_an_include(self):
        path = self.source / "base" / "text.cpp"
        path.write_text('  #  include   <QString>\n', encoding="utf-8")
        self.assertEqual(check(self.source).returncode, 1)

    def test_file_of_no_layer_is_found(self):
        stray = self.source / "helpers" / "stray.h"
        stray.parent.mkdir()
        stray.write_text("#pragma once\n", encoding="utf-8")
        answer = check(self.source)
        self.assertEqual(answer.returncode, 1)
        self.assertIn("helpers/stray.h: belongs to no layer", answer.stdout)

    def test_folder_without_sources_is_no_success(self):
        with tempfile.TemporaryDirectory() as empty:
            self.assertEqual(check(empty).returncode, 1)


if __name__ == "__main__":
    unittest.main()
