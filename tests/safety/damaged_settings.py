"""Settings in whose file something has gone wrong."""

import contextlib

from harness import preferences
from harness.waiting import until

from .stored import STORED, settings_in
from .surrounded import Surrounded

REMINDER = "Support Velloran"


def damaged(text, chance):
    """Some bits flipped, the end cut off, or a stretch of random bytes in it."""
    text = bytearray(text)
    kind = chance.choice(("flips", "cut", "random"))
    if kind == "flips":
        for _ in range(chance.choice((1, 1, 3, 30))):
            text[chance.randrange(len(text))] ^= 1 << chance.randrange(8)
    elif kind == "cut":
        del text[chance.randrange(len(text)):]
    else:
        begin = chance.randrange(len(text))
        text[begin:begin + chance.randint(1, 200)] = chance.randbytes(chance.randint(1, 200))
    return bytes(text), kind


def has_saved(program, interval):
    """Whether that is stored; what is damaged may not read before."""
    with contextlib.suppress(AssertionError, IndexError, KeyError, TypeError, ValueError):
        return abs(program.stored_config()["clickIntervalSeconds"] - interval) < 0.001
    return False


def settings_are_damaged(chance):
    """The program starts, shows something that can be changed, saves it, and finds it at the next start."""
    with Surrounded() as place:
        folder = place.make_profile()
        path = settings_in(folder)
        presets = [{"id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427", "name": "Whole", "config": preferences.config(), "createdAt": 8e8}]
        preferences.write(path, {**preferences.quiet_donation(), "velloran.config": preferences.as_bytes(STORED),
                                 "velloran.presets": preferences.as_bytes(presets)})
        with open(path, "rb") as file:
            text, kind = damaged(file.read(), chance)
        with open(path, "wb") as file:
            file.write(text)
        shown = None
        for is_again in (False, True):
            program = place.start(folder=folder, is_waited_for=False)
            program.wait_for_window()
            # Its date may be what was damaged.
            if program.shows("dialog", REMINDER):
                program.find("push button", "Maybe later").do()
                program.wait_until_gone("dialog", REMINDER)
            field = program.find("text", "Click Interval")
            if is_again:
                assert field.text == shown, (kind, text, field.text, shown)
            else:
                before = field.text
                program.find("push button", "Increase Click Interval").do()
                until(lambda: field.text != before, lambda: f"the field does not follow: {kind}, {text}")
                shown = field.text
                until(lambda: has_saved(program, float(shown)), lambda: f"it is not saved: {kind}, {text}")
            program.process.terminate()
            assert program.wait_for_end() == 0, (program.process.returncode, program.log, kind, text)
