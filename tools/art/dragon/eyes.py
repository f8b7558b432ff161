"""The eyes: what makes the dragon look at something."""

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
        lid = place.closed(
            (x - rx * 1.14, y - ry * 0.34, "c"),
            (x - rx * 0.72, y - ry * 0.92),
            (x + rx * 0.05, y - ry * 1.18),
            (x + rx * 0.8, y - ry * 0.84),
            (x + rx * 1.1, y - ry * 0.36, "c"),
            (x + rx * 0.7, y - ry * 0.68),
            (x + rx * 0.02, y - ry * 0.94),
            (x - rx * 0.66, y - ry * 0.7),
        )
        picture.fill(lid, c.LINE)
