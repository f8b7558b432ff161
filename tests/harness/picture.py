"""Pictures of the screen."""

import os

from PIL import ImageGrab

FOLDER = os.environ.get("VELLORAN_PICTURES")


def of_screen(desktop):
    return ImageGrab.grab(xdisplay=desktop.display).convert("RGB")


def keep(picture, name):
    """Saves the picture where the caller of the tests wants to look at it."""
    if FOLDER:
        os.makedirs(FOLDER, exist_ok=True)
        picture.save(os.path.join(FOLDER, name + ".png"), optimize=True)


def colour(red, green, blue):
    """A colour given in 0…1 as a pixel."""
    return tuple(round(255 * part) for part in (red, green, blue))


def over(top, opacity, bottom):
    """The pixel that a translucent colour gives on another."""
    return tuple(round(a * opacity + b * (1 - opacity)) for a, b in zip(top, bottom))


def is_near(pixel, wanted, tolerance=3):
    return all(abs(a - b) <= tolerance for a, b in zip(pixel, wanted))
