"""Feet with toes and amber claws, from the front and from the side."""

from dragon import palette as c
from dragon.place import Place

SIDE = (
    (-18, -9), (-4, -17), (12, -17), (24, -13), (25, -5, "c"), (29, 1), (25, 6, "c"), (22, 14), (10, 16), (-6, 15), (-19, 8),
)


def side_paw(picture, where, degrees, line, fill):
    """A foot seen from the side, its toes pointing along `degrees`; toes that point backwards keep their sole below."""
    place = Place(*where, 1, degrees, flip=degrees > 90)
    shape = place.closed(*SIDE)
    picture.contour(shape, line)
    picture.form(shape, fill, 8, 3)
    picture.stroke(place.curve((25, -5), (16, -5), (10, -4)), c.LINE, line * 0.7)
    picture.stroke(place.curve((25, 6), (17, 6), (11, 7)), c.LINE, line * 0.7)
    for x, y in ((23, -11), (28, 0.5), (22, 11)):
        claw = place.closed((x - 4, y - 4.2, "c"), (x + 9, y + 1.5, "c"), (x - 4, y + 4.2, "c"))
        picture.contour(claw, line * 0.45)
        picture.fill(claw, c.AMBER_LIGHT)


def front_paw(picture, place, line, fill, toes=3, width=30):
    """A foot seen from the front: one outline with toes and claws; the ground is at y = 0."""
    step = 2 * width / toes
    pairs = [(-width * 0.86, -26), (-width * 1.06, -8)]
    for k in range(toes):
        left = -width + k * step
        pairs += [(left + step * 0.25, 3), (left + step * 0.75, 3)]
        if k < toes - 1:
            pairs.append((left + step, -3, "c"))
    pairs += [(width * 1.06, -8), (width * 0.86, -26), (0, -36)]
    outline = place.closed(*pairs)
    picture.contour(outline, line)
    picture.form(outline, fill, 9 * place.scale, 4 * place.scale)
    for k in range(1, toes):
        x = -width + k * step
        picture.stroke(place.curve((x, -3), (x * 0.94, -10), (x * 0.9, -15)), c.LINE, line * 0.7)
    for k in range(toes):
        x = -width + (k + 0.5) * step
        claw = place.closed((x - step * 0.24, -1, "c"), (x, -9), (x + step * 0.24, -1, "c"), (x, 5.5))
        picture.contour(claw, line * 0.35)
        picture.fill(claw, c.AMBER_LIGHT)
