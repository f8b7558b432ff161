"""What can be read from the pixels of a picture."""

import pathlib
import subprocess
import tempfile

import numpy as np
from PIL import Image

def load(path):
    """The picture of a PNG file with alpha; raises when it is not one."""
    with Image.open(path) as picture:
        if picture.format != "PNG" or picture.mode != "RGBA":
            raise ValueError(f"{picture.format} {picture.mode} instead of PNG RGBA")
        return picture.copy()


def rendered(source, width, height):
    """What the SVG renderer makes of a source."""
    with tempfile.TemporaryDirectory() as folder:
        target = pathlib.Path(folder) / "picture.png"
        subprocess.run(
            ["rsvg-convert", "-w", str(width), "-h", str(height), "-o", str(target), str(source)], check=True
        )
        return load(target)


def premultiplied(picture):
    """Colours weighed with alpha, as floats of 0...255, then alpha."""
    values = np.asarray(picture).astype(float)
    values[..., :3] *= values[..., 3:] / 255
    return values


def border(picture, width=2):
    """The highest alpha within the outermost pixels."""
    alpha = np.asarray(picture)[..., 3]
    inner = alpha.copy()
    inner[width:-width, width:-width] = 0
    return int(inner.max())


def _areas(mask):
    """Sizes of the connected areas of a true/false array, the largest first: runs of each row, joined where they touch."""
    parent, size = [], []

    def find(k):
        while parent[k] != k:
            k = parent[k]
        return k

    above = []
    for row in np.pad(mask, ((0, 0), (1, 1)), constant_values=False).astype(np.int8):
        turns = np.flatnonzero(np.diff(row))
        runs = []
        for start, end in zip(turns[::2].tolist(), turns[1::2].tolist()):
            k = len(parent)
            parent.append(k)
            size.append(end - start)
            for other_start, other_end, other in above:
                if other_start < end and start < other_end:
                    root, mine = find(other), find(k)
                    if root != mine:
                        parent[mine] = root
                        size[root] += size[mine]
            runs.append((start, end, k))
        above = runs
    return sorted((size[k] for k in range(len(parent)) if parent[k] == k), reverse=True)


def bodies(picture):
    """Sizes of the connected opaque areas: one dragon is one area."""
    return _areas(np.asarray(picture)[..., 3] > 200)


def holes(picture):
    """Sizes of the enclosed areas through which the background shows."""
    framed = np.pad(np.asarray(picture)[..., 3] < 100, 1, constant_values=True)
    return _areas(framed)[1:]


def displacement(reference, picture, box, reach=6):
    """By how many pixels the part of the reference in the box has moved in the picture, and how unlike it is there."""
    a = premultiplied(reference)
    b = premultiplied(picture)
    left, top, right, bottom = box
    patch = a[top:bottom, left:right]
    best = None
    for dy in range(-reach, reach + 1):
        for dx in range(-reach, reach + 1):
            other = b[top + dy : bottom + dy, left + dx : right + dx]
            error = float(np.abs(patch - other).mean())
            if best is None or error < best[0]:
                best = (error, dx, dy)
    return best[1], best[2], best[0]


def contrast(picture, background):
    """The share of the opaque pixels whose contrast ratio to a background colour is at least 1.6."""

    def luminance(colours):
        values = colours / 255
        linear = np.where(values <= 0.04045, values / 12.92, ((values + 0.055) / 1.055) ** 2.4)
        return linear @ np.array([0.2126, 0.7152, 0.0722])

    pixels = np.asarray(picture).astype(float)
    solid = pixels[pixels[..., 3] > 200][:, :3]
    light, dark = luminance(solid), luminance(np.array(background, dtype=float))
    ratio = (np.maximum(light, dark) + 0.05) / (np.minimum(light, dark) + 0.05)
    return float((ratio >= 1.6).mean())
