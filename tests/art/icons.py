"""The application icon in the icon theme's tree."""

import sys

import numpy as np

import pixels
import vector

NAME = "app.velloran.Velloran"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
PANELS = {"bright": (242, 242, 242), "dark": (30, 32, 38)}


def check(tree, report):
    """All checks of this group."""
    theme = tree / "packaging/icons/hicolor"
    expected = {f"{size}x{size}/apps/{NAME}.png" for size in SIZES}
    expected |= {f"scalable/apps/{NAME}.svg", f"symbolic/apps/{NAME}-symbolic.svg"}
    found = {str(path.relative_to(theme)) for path in theme.rglob("*") if path.is_file()}
    report.expect(found == expected, "the icon theme's tree is complete", ", ".join(sorted(found ^ expected)))
    for size in SIZES:
        path = theme / f"{size}x{size}/apps/{NAME}.png"
        picture = report.attempt(f"the icon of {size} can be read", lambda path=path: pixels.load(path))
        if picture is not None:
            _raster(picture, size, report)
    _vectors(tree, theme, report)


def _raster(picture, size, report):
    report.expect(picture.size == (size, size), f"the icon of {size} has its size", picture.size)
    alpha = np.asarray(picture)[..., 3]
    corner = max(1, size // 16)
    corners = [alpha[:corner, :corner], alpha[:corner, -corner:], alpha[-corner:, :corner], alpha[-corner:, -corner:]]
    highest = max(int(part.max()) for part in corners)
    report.expect(highest < 64, f"the icon of {size} is clear in its corners", highest)
    for panel, colour in PANELS.items():
        share = pixels.contrast(picture, colour)
        report.expect(share > 0.6, f"the icon of {size} stands out on a {panel} panel", f"{share:.0%}")


def _vectors(tree, theme, report):
    sys.path.insert(0, str(tree / "tools/art"))
    from dragon import icon

    for kind, path, draw in (
        ("scalable", theme / f"scalable/apps/{NAME}.svg", icon.scalable),
        ("symbolic", theme / f"symbolic/apps/{NAME}-symbolic.svg", icon.symbolic),
    ):
        root = report.attempt(f"the {kind} icon can be read", lambda path=path: vector.parse(path))
        if root is None:
            continue
        odd = vector.elements(root) - vector.PLAIN
        report.expect(not odd, f"the {kind} icon keeps to what every loader draws", ", ".join(sorted(odd)))
        report.expect(not vector.repeated(root), f"the {kind} icon names nothing twice", vector.repeated(root))
        report.expect(not vector.missing(root), f"the {kind} icon refers to nothing that is missing", vector.missing(root))
        report.expect(draw().text() == path.read_text(encoding="utf-8"), f"the {kind} icon is what the drawing code draws")
        if kind == "symbolic":
            report.expect(len(vector.inks(root)) == 1, "the symbolic icon has one colour", vector.inks(root))
            report.expect(root.get("viewBox") == "0 0 16 16", "the symbolic icon is drawn on 16", root.get("viewBox"))
            alpha = np.asarray(pixels.rendered(path, 64, 64))[..., 3] > 127
            report.expect(0.25 < alpha.mean() < 0.75, "the symbolic icon is a shape", f"{alpha.mean():.0%}")
