"""The stored preferences, as a file."""

import json
import os
import time

REFERENCE = 978307200.0  # 2001-01-01 00:00:00 UTC

DEFAULTS = {
    "mouseButton": "left", "clickIntervalSeconds": 7.0, "stopMode": "after_clicks", "maxClicks": 100, "startDelaySeconds": 0.0,
    "requireStationaryMouse": False, "stationarySeconds": 1.0, "playClickSound": False, "minimizeToTray": False,
}
CONTROL, OPTION, SHIFT, COMMAND = 0x40000, 0x80000, 0x20000, 0x100000
CONTROL_OPTION_S = {"modifierFlagsRaw": CONTROL | OPTION, "keyCode": 1, "display": "⌃⌥S"}


def now():
    """The current time as dates are stored."""
    return time.time() - REFERENCE


def config(**changes):
    """A stored configuration: the defaults with `changes`. None takes a field out."""
    fields = {**DEFAULTS, **changes}
    return {name: value for name, value in fields.items() if value is not None}


def quiet_donation():
    """A schedule that asks for nothing during a test."""
    return {"donation.firstLaunchAt": date(now()), "donation.nextReminderAt": date(now() + 3600.0), "donation.remindersShown": 0}


def date(seconds):
    return f"Date({seconds!r})"


def as_bytes(value):
    """JSON, or bytes as they are, in the form in which bytes are stored."""
    data = value if isinstance(value, bytes) else json.dumps(value, ensure_ascii=False, separators=(",", ":")).encode()
    text = ""
    behind_number = False
    for byte in data:
        character = chr(byte)
        if character in '"\\':
            text += "\\" + character
            behind_number = False
        elif byte < 0x20 or byte >= 0x7F or (behind_number and character in "0123456789abcdefABCDEF"):
            text += f"\\x{byte:x}"
            behind_number = True
        else:
            text += character
            behind_number = False
    return f'"@ByteArray({text})"'


def write(path, values):
    """Writes a file with the given keys; booleans and numbers are stored as such, everything else as it is given."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="ascii") as file:
        file.write("[General]\n")
        for key, value in values.items():
            file.write(f"{key}={str(value).lower() if isinstance(value, bool) else value}\n")


def read(path):
    """The keys of a file with their texts; nothing where there is no file."""
    try:
        with open(path, encoding="latin-1", newline="") as file:
            lines = file.read().split("\n")
    except FileNotFoundError:
        return {}
    return dict(line.split("=", 1) for line in lines if "=" in line)


def stored_bytes(text):
    """The bytes that a stored text stands for."""
    assert text.startswith('"@ByteArray(') and text.endswith(')"'), text
    body = text[len('"@ByteArray('):-2]
    result = bytearray()
    index = 0
    while index < len(body):
        character = body[index]
        index += 1
        if character != "\\":
            result.append(ord(character))
        elif body[index] == "x":
            end = index + 1
            while end < len(body) and body[end] in "0123456789abcdefABCDEF":
                end += 1
            result.append(int(body[index + 1:end], 16))
            index = end
        else:
            result.append(ord({"n": "\n", "t": "\t", "r": "\r"}.get(body[index], body[index])))
            index += 1
    return bytes(result)


def stored_json(text):
    return json.loads(stored_bytes(text))


def stored_date(text):
    assert text.startswith("Date(") and text.endswith(")"), text
    return float(text[len("Date("):-1])
