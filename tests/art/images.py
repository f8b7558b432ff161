"""The raster images that the program looks up by name, and their sources."""

import itertools
import sys

import numpy as np
from PIL import Image

import pixels
import vector

FLIGHT = ["DragonFly"] + [f"DragonFly{k}" for k in range(1, 8)]
SIZES = {"DragonIdle": (480, 480), "Logo": (512, 512), **{name: (540, 420) for name in FLIGHT}}
# Scaled by tools/art/decoding for where the program shows them at one pixel a point; the tests of the views compare them.
SCALED = {"DragonIdle-52x52", "DragonIdle-56x56", "DragonIdle-64x64", "DragonIdle-160x160", "DragonFly-180x140"}
DRAGON = {"body", "belly", "wing-near", "wing-far", "tail", "head", "horns", "eyes", "spines"}
GROUPS = {"DragonIdle": DRAGON | {"shadow"}, "Logo": {"head", "horns", "eyes", "spines", "tail"}}
# The face in the pictures of the flight: it keeps still while the rest beats and trails.
FACE = (335, 170, 485, 285)
LARGEST_IMAGE = 160_000
LARGEST_TOTAL = 1_500_000
# The highest mean difference of a channel between an image and its source drawn anew: packing drops the lowest bit.
DRAWN_ALIKE = 1.0


def check(tree, report):
    """All checks of this group."""
    folder = tree / "src/ui/art"
    found = {path.stem for path in folder.glob("*.png")}
    names = set(SIZES) | SCALED
    report.expect(found == names, "the images have exactly their names", ", ".join(sorted(found ^ names)))
    loaded = {}
    for name in SIZES:
        picture = report.attempt(f"{name} can be read", lambda name=name: pixels.load(folder / f"{name}.png"))
        if picture is not None:
            loaded[name] = picture
            _image(folder, name, picture, report)
    _sources(tree, folder, report)
    _flight(folder, loaded, report)
    _small(loaded, report)
    everything = [*folder.glob("*.png"), *(tree / "packaging/icons").rglob("*.png")]
    total = sum(path.stat().st_size for path in everything)
    report.expect(total < LARGEST_TOTAL, f"all raster files together are below {LARGEST_TOTAL} bytes", total)


def _image(folder, name, picture, report):
    report.expect(picture.size == SIZES[name], f"{name} is {SIZES[name][0]} x {SIZES[name][1]}", picture.size)
    report.expect(pixels.border(picture) == 0, f"{name} is clear in its corners and along its edges", pixels.border(picture))
    covered = float((np.asarray(picture)[..., 3] > 200).mean())
    report.expect(0.2 < covered < 0.8, f"{name} fills its frame", f"{covered:.0%}")
    areas = pixels.bodies(picture)
    report.expect(len(areas) == 1, f"{name} is one figure without stray shapes", areas)
    gaps = [area for area in pixels.holes(picture) if area < 12]
    report.expect(not gaps, f"{name} has no gaps between its parts", gaps)
    size = (folder / f"{name}.png").stat().st_size
    report.expect(size < LARGEST_IMAGE, f"{name} weighs less than {LARGEST_IMAGE} bytes", size)


def _sources(tree, folder, report):
    sys.path.insert(0, str(tree / "tools/art"))
    import build

    for name, draw in build.pictures():
        source = folder / "source" / f"{name}.svg"
        root = report.attempt(f"{name}.svg can be read", lambda source=source: vector.parse(source))
        if root is None:
            continue
        missing = GROUPS.get(name, DRAGON) - vector.groups(root)
        report.expect(not missing, f"{name}.svg has its named layers", ", ".join(sorted(missing)))
        odd = vector.elements(root) - vector.LAYERED
        report.expect(not odd, f"{name}.svg keeps to shapes and gradients", ", ".join(sorted(odd)))
        report.expect(not vector.repeated(root), f"{name}.svg names nothing twice", vector.repeated(root))
        report.expect(not vector.missing(root), f"{name}.svg refers to nothing that is missing", vector.missing(root))
        report.expect(draw().text() == source.read_text(encoding="utf-8"), f"{name}.svg is what the drawing code draws")
        picture = report.attempt(f"{name}.png can be compared", lambda name=name: pixels.load(folder / f"{name}.png"))
        if picture is not None and picture.size == SIZES[name]:
            anew = pixels.rendered(source, *SIZES[name])
            away = float(np.abs(pixels.premultiplied(anew) - pixels.premultiplied(picture)).mean())
            report.expect(away < DRAWN_ALIKE, f"{name}.png shows {name}.svg", f"{away:.2f} levels apart")


def _flight(folder, loaded, report):
    anchors = {}
    for name in FLIGHT:
        source = folder / "source" / f"{name}.svg"
        place = report.attempt(f"{name} has an anchor", lambda source=source: vector.anchor(vector.parse(source)))
        if place is not None:
            anchors[name] = place
    report.expect(len(anchors) == 8 and len(set(anchors.values())) == 1, "the flight has one anchor", set(anchors.values()))
    frames = [loaded[name] for name in FLIGHT if name in loaded]
    if len(frames) != len(FLIGHT) or any(frame.size != SIZES["DragonFly"] for frame in frames) or not anchors:
        return
    x, y = (round(value) for value in next(iter(anchors.values())))
    for name, frame in zip(FLIGHT, frames):
        alpha = np.asarray(frame)[y - 8 : y + 9, x - 8 : x + 9, 3]
        report.expect(int(alpha.min()) == 255, f"{name} covers the anchor", int(alpha.min()))
        dx, dy, away = pixels.displacement(frames[0], frame, FACE)
        report.expect((dx, dy) == (0, 0) and away < 12, f"{name} keeps the face in its place", f"{dx}, {dy}, {away:.1f} levels apart")
    beat = [pixels.premultiplied(frame) for frame in frames[1:]]
    steps = [float(np.abs(a - b).mean()) for a, b in zip(beat, beat[1:] + beat[:1])]
    least = min(float(np.abs(a - b).mean()) for a, b in itertools.combinations(beat, 2))
    report.expect(least > 1.5, "no two pictures of the beat are the same", f"{least:.1f} levels apart")
    report.expect(max(steps) < 3 * min(steps), "the beat goes round in even steps", [round(step, 1) for step in steps])


def _small(loaded, report):
    """The eyes must survive the title bar: bright and dark right beside each other."""
    if "DragonIdle" not in loaded:
        return
    for size in (52, 56):
        picture = loaded["DragonIdle"].resize((size, size), Image.Resampling.LANCZOS)
        grey = np.asarray(picture.convert("L")).astype(int)
        face = grey[size // 5 : size // 2, size * 55 // 100 : size * 85 // 100]
        bright, dark = int((face > 190).sum()), int((face < 60).sum())
        report.expect(bright >= 4 and dark >= 8, f"DragonIdle looks at something at {size} pixels", f"{bright} bright, {dark} dark")
