"""The head, seen from the right front in three quarters; about 200 units wide, centred on the skull."""

from dragon import palette as c
from dragon.geometry import spread


def horn(picture, place, points, widths, line, far=False):
    """One horn: a tapering curve with growth rings."""
    outline = place.tube(points, widths, steps=6)
    root, tip = place.xy(*points[0]), place.xy(*points[-1])
    picture.contour(outline, line)
    fill = picture.linear(root, tip, (0, c.AMBER_DEEP), (0.4, c.AMBER), (1, c.AMBER_LIGHT))
    picture.fill(outline, fill)
    centre = place.curve(*points)
    with picture.clipped(outline):
        from dragon.geometry import at

        for t in (0.3, 0.5, 0.68):
            middle, way = at(centre, t)
            half = spread(widths, t) * place.scale * 1.2
            a, b = middle + 1j * way * half, middle - 1j * way * half
            bow = middle - way * half * 0.45
            from dragon.geometry import curve, xy

            picture.stroke(curve(xy(a), xy(bow), xy(b)), c.AMBER_SHADE, 2.2 * place.scale, 0.35)
        picture.edges(outline, 9 * place.scale, 3.5 * place.scale, c.AMBER_SHADE, 0.55, 0.5)
        if far:
            picture.fill(outline, c.SHADE, 0.22)


def ear(picture, place, outline, inner, root, tip, line, far=False):
    """A fin-shaped ear with a warm inside."""
    shape = place.closed(*outline)
    picture.contour(shape, line)
    fill = picture.linear(place.xy(*root), place.xy(*tip), (0, c.BODY), (1, c.BODY_LIGHT))
    if far:
        fill = picture.linear(place.xy(*root), place.xy(*tip), (0, c.FAR_DEEP), (1, c.FAR_BODY))
    picture.form(shape, fill, 10 * place.scale, 4 * place.scale)
    inside = place.closed(*inner)
    warm = picture.linear(place.xy(*root), place.xy(*tip), (0, c.AMBER_DEEP), (1, c.AMBER))
    picture.form(inside, warm, 7 * place.scale, 0, c.AMBER_SHADE, 0.5)
    if far:
        picture.fill(inside, c.SHADE, 0.3)


def eye(picture, place, x, y, rx, ry, look, lean, line):
    """One eye: white, iris, pupil, two lights and a lid; `look` moves the gaze."""
    s = place.scale
    white = place.oval(x, y, rx, ry, lean)
    picture.contour(white, line * 0.7)
    picture.fill(white, c.EYE_WHITE)
    ix, iy = x + look[0] * rx, y + look[1] * ry
    with picture.clipped(white):
        iris = place.oval(ix, iy, rx * 0.8, ry * 0.78, lean)
        centre = place.xy(ix, iy + ry * 0.35)
        picture.fill(iris, picture.radial(centre, ry * s, (0, c.IRIS_LIGHT), (0.55, c.IRIS), (1, c.IRIS_DEEP)))
        picture.fill(place.oval(ix, iy - ry * 0.04, rx * 0.5, ry * 0.54, lean), c.PUPIL)
        shadow = place.closed((x - rx * 1.3, y - ry * 1.2), (x, y - ry * 0.62), (x + rx * 1.3, y - ry * 1.0), (x, y - ry * 1.8))
        picture.fill(shadow, c.SHADE, 0.35)
        picture.fill(place.oval(ix - rx * 0.3, iy - ry * 0.34, rx * 0.27, ry * 0.24), c.EYE_WHITE)
        picture.fill(place.oval(ix + rx * 0.28, iy + ry * 0.36, rx * 0.13, ry * 0.11), c.EYE_WHITE, 0.85)
    lid = place.closed(
        (x - rx * 1.12, y - ry * 0.34, "c"),
        (x - rx * 0.72, y - ry * 0.9),
        (x + rx * 0.05, y - ry * 1.16),
        (x + rx * 0.8, y - ry * 0.82),
        (x + rx * 1.08, y - ry * 0.36, "c"),
        (x + rx * 0.7, y - ry * 0.68),
        (x + rx * 0.02, y - ry * 0.95),
        (x - rx * 0.66, y - ry * 0.7),
    )
    picture.fill(lid, c.LINE)


def head(picture, place, line, look=(0.16, 0.08)):
    """The whole head in the order in which its parts cover each other."""
    s = place.scale
    with picture.group("horns"):
        horn(picture, place, [(42, -70), (38, -98), (22, -124), (-4, -140)], [17, 14, 9, 1], line, far=True)
    with picture.group("head"):
        ear(
            picture, place,
            [(72, -46, "c"), (96, -66), (132, -74, "c"), (122, -42), (88, -6, "c")],
            [(84, -44, "c"), (102, -58), (122, -64, "c"), (112, -40), (90, -20, "c")],
            (78, -28), (132, -74), line, far=True,
        )
        skull = place.closed(
            (-4, -90), (42, -82), (76, -52), (90, -16), (95, 8), (109, 30), (110, 54), (88, 76), (48, 88),
            (0, 88), (-50, 80), (-90, 50), (-102, 6), (-88, -44), (-52, -78),
        )
        picture.contour(skull, line)
        fill = picture.radial(place.xy(-14, -46), 172 * s, (0, c.BODY_LIGHT), (0.5, c.BODY), (1, c.BODY_DEEP))
        picture.fill(skull, fill)
        with picture.clipped(skull):
            muzzle = place.closed((34, 44), (58, 26), (92, 20), (122, 34), (122, 70), (80, 96), (30, 98), (2, 84), (8, 60))
            cream = picture.linear(place.xy(50, 20), place.xy(40, 96), (0, c.BELLY_LIGHT), (0.55, c.BELLY), (1, c.BELLY_DEEP))
            picture.fill(muzzle, cream)
            blush = picture.radial(place.xy(-40, 44), 30 * s, (0, c.AMBER_DEEP, 0.6), (1, c.AMBER_DEEP, 0))
            picture.fill(place.oval(-40, 44, 30, 22), blush)
            for x, y, r in ((-58, -34, 7), (-42, -52, 5), (-70, -14, 4.5)):
                picture.fill(place.oval(x, y, r * 1.2, r, -30), c.RIM, 0.28)
            picture.edges(skull, 20 * s, 6 * s)
        eye(picture_eyes(picture), place, 16, -6, 29, 36, look, 4, line)
        eye(picture_eyes(picture), place, 74, -8, 17.5, 32, look, 2, line)
        for x, y in ((72, 36), (100, 36)):
            picture.fill(place.oval(x, y, 4.6, 3.2, 28 if x < 90 else -28), c.AMBER_SHADE, 0.85)
        picture.stroke(place.curve((8, 48), (14, 60), (34, 69), (62, 70), (86, 62)), c.LINE, 4.6 * s)
        picture.stroke(place.curve((86, 62), (97, 67), (106, 60)), c.LINE, 4 * s)
        picture.stroke(place.curve((2, 52), (8, 46), (15, 45)), c.LINE, 4 * s)
        fang = place.closed((30, 67, "c"), (36, 80, "c"), (44, 70, "c"))
        picture.fill(fang, c.EYE_WHITE)
        picture.stroke(place.curve((30, 67), (36, 80), (44, 70)), c.LINE, 2.4 * s)
        ear(
            picture, place,
            [(-78, -44, "c"), (-112, -66), (-156, -62, "c"), (-148, -28), (-126, 4), (-92, 16, "c")],
            [(-86, -32, "c"), (-112, -50), (-142, -50, "c"), (-134, -26), (-118, -4), (-94, 4, "c")],
            (-84, -14), (-156, -62), line,
        )
    with picture.group("horns"):
        horn(picture, place, [(-30, -70), (-42, -104), (-68, -130), (-104, -140)], [20, 16, 10, 1], line)


def picture_eyes(picture):
    """The picture itself; the eyes are drawn straight into it."""
    return picture
