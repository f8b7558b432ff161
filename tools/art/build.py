#!/usr/bin/python3
"""Draws the artwork: SVG sources, the raster images of the program and the application icon.

Without names everything is made; with names (DragonIdle, Logo, icons ...) only those."""

import argparse
import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from dragon import flight, icon, idle, logo  # noqa: E402  (found by the path set above)
from raster import render, rendered, write  # noqa: E402

TREE = pathlib.Path(__file__).resolve().parents[2]
IMAGES = TREE / "src/ui/art"
SOURCES = IMAGES / "source"
ICONS = TREE / "packaging/icons/hicolor"
NAME = "app.velloran.Velloran"
SMALL_SIZES = (16, 22, 24, 32)
LARGE_SIZES = (48, 64, 128, 256, 512)


def pictures():
    """The pictures that the program looks up by name, in their order."""
    yield "DragonIdle", idle.draw
    yield "DragonFly", flight.draw
    yield from flight.frames()
    yield "Logo", logo.draw


def make_picture(draw, quick):
    """Writes one SVG source and its raster image."""
    picture = draw()
    source = SOURCES / f"{picture.title}.svg"
    source.write_text(picture.text(), encoding="utf-8")
    target = IMAGES / f"{picture.title}.png"
    if quick:
        render(source, target, picture.width, picture.height)
    else:
        write(rendered(source, picture.width, picture.height), target)


def make_icons():
    """Writes the icon theme's tree and the sources of the small drawings."""
    scalable = ICONS / f"scalable/apps/{NAME}.svg"
    symbolic = ICONS / f"symbolic/apps/{NAME}-symbolic.svg"
    for path, picture in ((scalable, icon.scalable()), (symbolic, icon.symbolic())):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(picture.text(), encoding="utf-8")
    for size in SMALL_SIZES + LARGE_SIZES:
        source = scalable
        if size in SMALL_SIZES:
            source = SOURCES / f"Icon{size}.svg"
            source.write_text(icon.small(size).text(), encoding="utf-8")
        target = ICONS / f"{size}x{size}/apps/{NAME}.png"
        target.parent.mkdir(parents=True, exist_ok=True)
        write(rendered(source, size, size), target)


def main():
    """Builds what the command line names."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--quick", action="store_true", help="do not pack the images")
    parser.add_argument("names", nargs="*")
    arguments = parser.parse_args()
    SOURCES.mkdir(parents=True, exist_ok=True)
    for title, draw in pictures():
        if not arguments.names or title in arguments.names:
            make_picture(draw, arguments.quick)
    if not arguments.names or "Logo" in arguments.names:
        (SOURCES / "LogoOneColour.svg").write_text(logo.one_colour("#ffffff"), encoding="utf-8")
    if not arguments.names or "icons" in arguments.names:
        make_icons()


if __name__ == "__main__":
    main()
