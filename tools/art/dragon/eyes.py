"""The eyes: what makes the dragon look at something."""

import math

from dragon import palette as c


def eye(picture, place, x, y, rx, ry, look, lean, line):
    """One eye: white, iris, pupil, two lights and a lid; `look` moves the gaze, as shares of the eye's radii."""
    s = place.scale
    with picture.group("eyes"):
        white = place.oval(x, y, rx, ry, lean)
        picture.contour(white, line * 0.7)
        picture.fill(white, c.EYE_WHITE)
        ix, iy = x + look[0] * rx, y + look[1] * ry
        iris = place.oval(ix, iy, rx * 0.82, ry * 0.8, lean)
        centre = place.xy(ix, iy + ry * 0.35)
        picture.fill(iris, picture.radial(centre, ry * s, (0, c.IRIS_LIGHT), (0.55, c.IRIS), (1, c.IRIS_DEEP)))
        picture.fill(place.oval(ix, iy - ry * 0.02, rx * 0.54, ry * 0.58, lean), c.PUPIL)
        with picture.clipped(white):
            shadow = place.closed(
                (x - rx * 1.3, y - ry * 1.2), (x, y - ry * 0.66), (x + rx * 1.3, y - ry), (x, y - ry * 1.8)
            )
            picture.fill(shadow, c.SHADE, 0.35)
        picture.fill(place.oval(ix - rx * 0.3, iy - ry * 0.34, rx * 0.29, ry * 0.25), c.EYE_WHITE)
        picture.fill(place.oval(ix + rx * 0.28, iy + ry * 0.36, rx * 0.14, ry * 0.12), c.EYE_WHITE, 0.85)
        picture.fill(place.closed(*_lid(x, y, rx, ry)), c.LINE)


def _lid(x, y, rx, ry):
    """The upper lid: a crescent on the rim of the eye, thickest above the pupil."""
    steps = 6
    outer, inner = [], []
    for k in range(steps + 1):
        share = k / steps
        angle = math.radians(197 + 148 * share)
        thick = math.sin(math.pi * share)
        for edge, reach in ((outer, 1.03 + 0.17 * thick), (inner, 1.0 - 0.03 * thick)):
            edge.append((x + rx * reach * math.cos(angle), y + ry * reach * math.sin(angle)))
    return [(*outer[0], "c"), *outer[1:-1], (*outer[-1], "c"), *reversed(inner[1:-1])]
