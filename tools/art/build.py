#!/usr/bin/python3
"""Writes the SVG sources of the artwork and renders the raster images from them."""

import argparse
import pathlib
import subprocess
import sys

TREE = pathlib.Path(__file__).resolve().parents[2]
SOURCES = TREE / "src/ui/art/source"
IMAGES = TREE / "src/ui/art"
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.dont_write_bytecode = True

from dragon import flight, idle, logo  # noqa: E402  (the path above comes first)


def render(source, target, width, height):
    """Renders an SVG file to a PNG file of exactly this size."""
    subprocess.run(
        ["rsvg-convert", "-w", str(width), "-h", str(height), "-o", str(target), str(source)], check=True
    )


def pictures():
    """Every picture of the program."""
    yield idle.draw()
    yield flight.draw()
    yield from flight.frames()
    yield logo.draw()


def main():
    """Builds the named pictures, or all of them."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("names", nargs="*")
    names = parser.parse_args().names
    SOURCES.mkdir(parents=True, exist_ok=True)
    for picture in pictures():
        if names and picture.title not in names:
            continue
        source = SOURCES / f"{picture.title}.svg"
        source.write_text(picture.text(), encoding="utf-8")
        render(source, IMAGES / f"{picture.title}.png", picture.width, picture.height)


if __name__ == "__main__":
    main()
