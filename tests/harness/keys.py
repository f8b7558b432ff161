"""Keys of a United States keyboard by name and by character, as the X server counts them."""

CODES = {
    "Escape": 9, "BackSpace": 22, "Tab": 23, "Return": 36, "Space": 65, "CapsLock": 66, "F1": 67, "F8": 74, "F9": 75, "F10": 76,
    "Home": 110, "Up": 111, "PageUp": 112, "Left": 113, "Right": 114, "End": 115, "Down": 116, "PageDown": 117, "Insert": 118,
    "Delete": 119, "KeypadEnter": 104, "KeypadPlus": 86, "Keypad5": 84, "KeypadPoint": 91, "Shift": 50, "Control": 37, "Alt": 64, "Super": 133, "Menu": 135,
}

_ROWS = ((10, "1234567890-=", "!@#$%^&*()_+"), (24, "qwertyuiop[]", "QWERTYUIOP{}"), (38, "asdfghjkl;'`", 'ASDFGHJKL:"~'),
         (52, "zxcvbnm,./", "ZXCVBNM<>?"), (51, "\\", "|"), (65, " ", " "))

_CHARACTERS = {}
for _first, _plain, _shifted in _ROWS:
    for _index, _character in enumerate(_shifted):
        _CHARACTERS[_character] = (_first + _index, ("shift",))
    for _index, _character in enumerate(_plain):
        _CHARACTERS[_character] = (_first + _index, ())


def code(name):
    """The code of a key named as above, or by the character that it gives without modifiers."""
    return CODES[name] if name in CODES else _CHARACTERS[name][0]


def strokes(text):
    """Pairs of a key code and the modifiers to hold, one for each character."""
    return [_CHARACTERS[character] for character in text]
