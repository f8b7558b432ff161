#!/usr/bin/python3
"""Sheets of all artwork at the sizes in use, on the window's own background and on panels, for judging by eye."""

import pathlib
import struct
import sys
import wave

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import numpy as np  # noqa: E402
from PIL import Image, ImageDraw, ImageFont  # noqa: E402

from build import ICONS, IMAGES, LARGE_SIZES, NAME, SMALL_SIZES, SOURCES, TREE  # noqa: E402
from dragon.flight import ANCHOR  # noqa: E402
from dragon.palette import BACKGROUND_BOTTOM, BACKGROUND_TOP  # noqa: E402
from raster import rendered  # noqa: E402

SHEETS = TREE / "docs/art"
STUDIES = SHEETS / "studies"
FLIGHT = ["DragonFly"] + [f"DragonFly{k}" for k in range(1, 8)]
MUTED = (117, 128, 153, 255)


def background(width, height):
    """The window's background: a vertical gradient."""
    share = np.linspace(0, 1, height)[:, None, None]
    rows = np.array(BACKGROUND_TOP) * (1 - share) + np.array(BACKGROUND_BOTTOM) * share
    pixels = np.broadcast_to((rows * 255).round().astype(np.uint8), (height, width, 3))
    return Image.fromarray(np.ascontiguousarray(pixels), "RGB").convert("RGBA")


def fitted(picture, width, height):
    """The picture scaled to fit, as the program shows it."""
    share = min(width / picture.width, height / picture.height)
    size = (round(picture.width * share), round(picture.height * share))
    return picture.resize(size, Image.Resampling.LANCZOS)


def image(name):
    """One raster image of the program."""
    return Image.open(IMAGES / f"{name}.png").convert("RGBA")


def label(sheet, x, y, text):
    """A small caption."""
    ImageDraw.Draw(sheet).text((x, y), text, fill=MUTED, font=ImageFont.load_default())


def row(sheet, pictures, x, y, gap=20):
    """Pictures side by side, each with its size below."""
    for picture in pictures:
        sheet.alpha_composite(picture, (x, y))
        label(sheet, x, y + picture.height + 4, f"{picture.width} x {picture.height}")
        x += picture.width + gap


def save(sheet, name):
    """Writes a sheet without alpha."""
    sheet.convert("RGB").save(SHEETS / name, optimize=True)


def studies():
    """The three designs from which one was chosen."""
    sheet = background(660, 3 * 390 + 10)
    for k, name in enumerate(("a-cub", "b-wyrm", "c-hatchling")):
        row(sheet, [rendered(STUDIES / f"{name}.svg", s, s) for s in (360, 160, 52)], 20, 10 + k * 390)
    save(sheet, "studies.png")


def poses():
    """Rest and flight at every size in use, at one and two pixels a point."""
    sheet = background(1000, 730)
    row(sheet, [fitted(image("DragonIdle"), s, s) for s in (360, 160, 112, 104, 56, 52)], 20, 14)
    row(sheet, [fitted(image("DragonFly"), w, h) for w, h in ((360, 280), (180, 140))], 20, 420)
    save(sheet, "poses.png")


def beat():
    """The seven pictures of the wing beat, with a cross on the anchor."""
    sheet = background(4 * 285 + 20, 2 * 235)
    for k, name in enumerate(FLIGHT[1:]):
        x, y = 15 + k % 4 * 285, 5 + k // 4 * 232
        picture = fitted(image(name), 270, 210)
        sheet.alpha_composite(picture, (x, y))
        ax, ay = x + ANCHOR[0] / 2, y + ANCHOR[1] / 2
        draw = ImageDraw.Draw(sheet)
        draw.line((ax - 5, ay, ax + 5, ay), fill="white")
        draw.line((ax, ay - 5, ax, ay + 5), fill="white")
        label(sheet, x, y + 212, name)
    save(sheet, "beat.png")


def silhouettes():
    """Every pose in pure black."""
    names = ["DragonIdle", "Logo", *FLIGHT]
    sheet = Image.new("RGBA", (5 * 230, 2 * 200), "white")
    for k, name in enumerate(names):
        picture = fitted(image(name), 210, 180)
        black = Image.new("RGBA", picture.size, "black")
        sheet.paste(black, (10 + k % 5 * 230, 10 + k // 5 * 200), picture.getchannel("A"))
    save(sheet, "silhouettes.png")


def logos():
    """The logo in colour and in one colour, bright on dark and dark on bright."""
    sheet = background(1000, 360)
    row(sheet, [fitted(image("Logo"), s, s) for s in (300, 128, 64)], 20, 14)
    mono = rendered(SOURCES / "LogoOneColour.svg", 200, 200)
    sheet.alpha_composite(mono, (570, 60))
    ImageDraw.Draw(sheet).rectangle((785, 30, 985, 290), fill=(242, 242, 242, 255))
    sheet.paste(Image.new("RGBA", (200, 200), "black"), (785, 60), mono.getchannel("A"))
    save(sheet, "logo.png")


def icons():
    """The application icon on a bright and on a dark panel, the small sizes enlarged as well."""
    sheet = Image.new("RGBA", (1160, 760), (242, 242, 242, 255))
    sheet.paste((30, 32, 38, 255), (0, 380, 1160, 760))
    for top, ink in ((0, "#2e3436"), (380, "#eeeeec")):
        x = 20
        for size in SMALL_SIZES + LARGE_SIZES[:-1]:
            picture = Image.open(ICONS / f"{size}x{size}/apps/{NAME}.png").convert("RGBA")
            sheet.alpha_composite(picture, (x, top + 20))
            if size in SMALL_SIZES:
                big = picture.resize((size * 4, size * 4), Image.Resampling.NEAREST)
                sheet.alpha_composite(big, (20 + (0, 74, 172, 278)[SMALL_SIZES.index(size)], top + 240))
            x += size + 16
        for size in (16, 32, 64):
            alpha = rendered(ICONS / f"symbolic/apps/{NAME}-symbolic.svg", size, size).getchannel("A")
            sheet.paste(Image.new("RGBA", (size, size), ink), (x, top + 20), alpha)
            x += size + 16
    save(sheet, "icons.png")


def tick():
    """The wave of the tick, full and at its quiet end."""
    with wave.open(str(TREE / "src/platform/pulse/tick/tick.wav")) as file:
        rate = file.getframerate()
        data = file.readframes(file.getnframes())
    values = struct.unpack(f"<{len(data) // 2}h", data)
    sheet = background(900, 330)
    draw = ImageDraw.Draw(sheet)
    for top, gain, text in ((20, 1, "full scale"), (180, 100, "the same, 100 times as loud")):
        draw.line((20, top + 60, 880, top + 60), fill=(255, 255, 255, 40))
        points = []
        for k, value in enumerate(values):
            height = max(-1.0, min(1.0, gain * value / 32768))
            points.append((20 + 860 * k / len(values), top + 60 - 58 * height))
        draw.line(points, fill=(84, 140, 255, 255), width=2)
        label(sheet, 24, top - 14, text)
    for ms in range(int(len(values) / rate * 1000) + 1):
        x = 20 + 860 * ms * rate / 1000 / len(values)
        draw.line((x, 306, x, 311), fill=MUTED)
        label(sheet, x + 2, 312, f"{ms} ms")
    save(sheet, "tick.png")


def main():
    """All sheets."""
    SHEETS.mkdir(parents=True, exist_ok=True)
    for make in (studies, poses, beat, silhouettes, logos, icons, tick):
        make()


if __name__ == "__main__":
    main()
