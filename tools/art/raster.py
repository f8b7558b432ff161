"""From SVG to PNG: rendering, and packing without a visible difference."""

import pathlib
import subprocess
import tempfile

import numpy as np
from PIL import Image


def render(source, target, width, height):
    """Renders an SVG file to a PNG file of exactly this size."""
    subprocess.run(["rsvg-convert", "-w", str(width), "-h", str(height), "-o", str(target), str(source)], check=True)


def rendered(source, width, height):
    """The picture of an SVG file at exactly this size."""
    with tempfile.TemporaryDirectory() as folder:
        target = pathlib.Path(folder) / "picture.png"
        render(source, target, width, height)
        with Image.open(target) as picture:
            return picture.convert("RGBA")


def packed(picture):
    """The picture without what nobody sees: the lowest bit of the colours, and any colour where nothing is drawn.

    Alpha stays whole, so that edges and the ground shadow are as smooth as rendered."""
    pixels = np.asarray(picture).copy()
    pixels[..., :3] = pixels[..., :3] & 0xFE
    pixels[pixels[..., 3] == 0] = 0
    return Image.fromarray(pixels, "RGBA")


def write(picture, target):
    """Writes a PNG file as small as a patient packer makes it."""
    packed(picture).save(target)
    subprocess.run(
        ["zopflipng", "-y", "--iterations=8", str(target), str(target)], check=True, stdout=subprocess.DEVNULL
    )
