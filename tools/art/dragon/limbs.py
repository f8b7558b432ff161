"""Legs, back plates and the pointer that the tail ends in."""

from dragon import palette as c
from dragon.geometry import at, closed, curve, side, spread, tube, xy


def plate(picture, root, way, out, tall, line, lean):
    """One back plate on its root point: rounded in front, hollow behind, leaning along `way`."""
    half = tall * 0.62
    base = root - out * tall * 0.12
    tip = base + out * tall * 1.05 + way * tall * lean
    outline = closed(
        (*xy(base - way * half), "c"),
        xy(base - way * half * 0.25 + out * tall * 0.68),
        (*xy(tip), "c"),
        xy(base + way * half * 0.75 + out * tall * 0.3),
        (*xy(base + way * half), "c"),
    )
    picture.contour(outline, line * 0.85)
    fill = picture.linear(xy(base), xy(tip), (0, c.AMBER_DEEP), (0.6, c.AMBER), (1, c.AMBER_LIGHT))
    picture.form(outline, fill, tall * 0.28, tall * 0.12, c.AMBER_SHADE, 0.5)


def spines(picture, centre, widths, places, sign, line, height, lean=0.5):
    """Back plates along one side of a centre line; `places` are parameters, `height` a function of them."""
    for t in places:
        point, way = at(centre, t)
        out = sign * 1j * way
        plate(picture, point + out * spread(widths, t), way, out, height(t), line, lean)


def pointer(picture, place, line):
    """The mouse pointer that the tail ends in; its tip at the origin, pointing to the upper left as pointers do."""
    outline = pointer_outline(place)
    picture.contour(outline, line)
    fill = picture.linear(place.xy(0, 0), place.xy(24, 60), (0, c.AMBER_LIGHT), (0.5, c.AMBER), (1, c.AMBER_DEEP))
    picture.form(outline, fill, 7 * place.scale, 3 * place.scale, c.AMBER_SHADE, 0.5)


def pointer_outline(place):
    """The pointer's shape; its stem ends about (33, 69)."""
    return place.closed(
        (0, 0, "c"), (0, 62, "c"), (16, 48, "c"), (27, 72, "c"), (40, 66, "c"), (29, 43, "c"), (50, 41, "c")
    )


def leg(picture, pairs, widths, line, stops, starts=(0.3, 0.3), shade=14):
    """A leg that grows out of the body without a line at its top.

    `starts` tells where the lines of its two sides begin (left of its course first); `stops` is the gradient from top to foot."""
    centre = curve(*pairs)
    outline = tube(centre, widths)
    steps = 20
    for sign, start in zip((-1, 1), starts):
        edge = side(centre, widths, sign, steps)[int(start * steps) :]
        picture.stroke(curve(*[xy(p) for p in edge]), c.LINE, 2 * line)
    top, foot = pairs[0], pairs[-1]
    fill = picture.linear((top[0], top[1] - widths[0]), foot, *stops)
    picture.form(outline, fill, shade, 0)
    lit = side(centre, [0.5 * w for w in widths], 1, steps)[int(0.34 * steps) : int(0.8 * steps)]
    picture.stroke(curve(*[xy(p) for p in lit]), c.RIM, widths[-1] * 0.22, 0.3)
