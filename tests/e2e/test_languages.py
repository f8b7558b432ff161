"""The user's language and region: the window is in English, and numbers have a full stop, wherever it runs."""

import os
import subprocess

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

COMMA, TURKISH, RIGHT_TO_LEFT = "de_DE.UTF-8", "tr_TR.UTF-8", "ar_EG.UTF-8"


class Languages(DesktopCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.locales = os.path.join(cls.desktop.folder, "locales")
        os.mkdir(cls.locales)
        for name in (COMMA, TURKISH, RIGHT_TO_LEFT):
            language, encoding = name.split(".")
            # Its warnings about the language's own data give a status of one.
            subprocess.run(["localedef", "-c", "-i", language, "-f", encoding, os.path.join(cls.locales, name)],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False, timeout=60)
            assert os.path.exists(os.path.join(cls.locales, name, "LC_NUMERIC")), name

    def start_in(self, language, **config):
        stored = preferences.config(clickIntervalSeconds=0.25, **config)
        environment = {"LC_ALL": language, "LANG": language, "LOCPATH": self.locales}
        return self.start({"velloran.config": preferences.as_bytes(stored)}, environment=environment)

    def check_numbers(self, program):
        field = program.find("text", "Click Interval")
        self.assertEqual(field.text, "0.25")
        program.click(field)
        until(lambda: "focused" in field.states, "the field has no focus")
        self.observer.press("a", "control")
        self.observer.type("1.75")
        self.observer.press("Return")
        program.wait_for_stored(clickIntervalSeconds=1.75)
        self.assertEqual(field.text, "1.75")
        program.wait_for_text("1.75 seconds")

    def texts_and_places(self, program):
        return [(item.role, item.name, tuple(item.extents)) for item in program.window.walk()]

    def test_a_decimal_comma(self):
        self.check_numbers(self.start_in(COMMA))

    def test_turkish(self):
        program = self.start_in(TURKISH)
        self.check_numbers(program)
        # The letter that has another capital there.
        program.find("push button", "Click to record shortcut").do()
        self.observer.press("i", "control", "alt")
        program.wait_for_stored(hotkey={"modifierFlagsRaw": preferences.CONTROL | preferences.OPTION, "keyCode": 34,
                                        "display": "⌃⌥I"})

    def test_right_to_left_changes_no_place(self):
        plain = self.start_in("C.UTF-8")
        expected = self.texts_and_places(plain)
        self.assertEqual(plain.end(), 0)
        program = self.start_in(RIGHT_TO_LEFT)
        self.assertEqual(self.texts_and_places(program), expected)
        self.check_numbers(program)

    def test_no_unicode(self):
        program = self.start_in("C", hotkey=preferences.CONTROL_OPTION_S)
        self.check_numbers(program)
        self.assertTrue(any("⌃⌥S" in text for text in program.texts()))
