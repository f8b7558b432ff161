"""The head, seen from the right front in three quarters; about 200 units wide, centred on the skull."""

from dragon import palette as c
from dragon.eyes import eye
from dragon.geometry import at, curve, spread, xy
from dragon.limbs import plate


def horn(picture, place, points, widths, line, far=False):
    """One horn: a tapering curve with growth rings."""
    outline = place.tube(points, widths, steps=6)
    root, tip = place.xy(*points[0]), place.xy(*points[-1])
    picture.contour(outline, line)
    fill = picture.linear(root, tip, (0, c.AMBER_DEEP), (0.4, c.AMBER), (1, c.AMBER_LIGHT))
    picture.fill(outline, fill)
    centre = place.curve(*points)
    with picture.clipped(outline, fits=True):
        for t in (0.34, 0.52, 0.68):
            middle, way = at(centre, t)
            half = spread(widths, t) * place.scale * (0.9 if picture.plain else 1.2)
            a, b = middle + 1j * way * half, middle - 1j * way * half
            bow = middle - way * half * 0.45
            picture.stroke(curve(xy(a), xy(bow), xy(b)), c.AMBER_SHADE, 2.2 * place.scale, 0.35)
    with picture.clipped(outline):
        picture.edges(outline, 9 * place.scale, 3.5 * place.scale, c.AMBER_SHADE, 0.55, 0.5)
        if far:
            picture.fill(outline, c.SHADE, 0.22)


def frill(picture, place, root, rays, depth, line, far=False):
    """A fin of rays with skin between them, where other animals have ears; `root` is its upper and lower foot."""
    (ax, ay), (bx, by) = root
    mx, my = (ax + bx) / 2, (ay + by) / 2
    shares = [(k + 0.35) / (len(rays) - 0.3) for k in range(len(rays))]
    feet = [(ax + (bx - ax) * share, ay + (by - ay) * share) for share in shares]
    pairs = [(*feet[0], "c"), (*rays[0], "c")]
    for (x0, y0), (x1, y1) in zip(rays, rays[1:]):
        pairs.append(((x0 + x1) / 2 * (1 - depth) + mx * depth, (y0 + y1) / 2 * (1 - depth) + my * depth))
        pairs.append((x1, y1, "c"))
    pairs.append((*feet[-1], "c"))
    skin = place.closed(*pairs)
    picture.contour(skin, line)
    picture.fill(skin, picture.linear(place.xy(mx, my), place.xy(*rays[0]), (0, c.AMBER_DEEP), (0.55, c.AMBER), (1, c.AMBER_LIGHT)))
    with picture.clipped(skin):
        picture.edges(skin, 8 * place.scale, 3 * place.scale, c.AMBER_SHADE, 0.45, 0.5)
        if far:
            picture.fill(skin, c.SHADE, 0.3)
    light, dark = (c.FAR_BODY, c.FAR_DEEP) if far else (c.BODY_LIGHT, c.BODY)
    for k, (x, y) in reversed(list(enumerate(rays))):
        fx, fy = feet[k]
        ray = place.tube([(fx, fy), ((fx + x) / 2, (fy + y) / 2 - 2), (x, y)], [8.5, 5.5, 2.2], steps=4)
        picture.contour(ray, line * 0.5)
        picture.fill(ray, picture.linear(place.xy(fx, fy), place.xy(x, y), (0, dark), (1, light)))


def crest(picture, place, line):
    """The first plates of the back line, from the brow over the crown."""
    for x, y, tall, degrees in ((-55, -77, 31, -30), (9, -93, 23, 8)):
        root = place.point(x, y + 6)
        out = place.point(x, y + 6 - 1) - root
        way = out * 1j / abs(out)
        turn = complex(0, 1) ** (degrees / 90)
        plate(picture, root, -way * turn, out / abs(out) * turn, tall * place.scale, line, 0.55)


# From the corner of the mouth to the tip of the muzzle, where the outline of the skull takes over.
SMILE = ((4, 50), (13, 62), (35, 70), (60, 71), (90, 64), (121, 40))


def skull_outline(place):
    """The skull with cheek, muzzle and chin, clockwise from the crown."""
    return place.closed(
        (-6, -90), (40, -84), (74, -58), (90, -24), (97, 0), (114, 16), (121, 40), (109, 62), (84, 78), (44, 90),
        (0, 90), (-52, 80), (-90, 48), (-101, 4), (-87, -44), (-52, -78),
    )


def head(picture, place, line, look=(0.16, 0.08)):
    """The whole head in the order in which its parts cover each other."""
    s = place.scale
    with picture.group("horns"):
        horn(picture, place, [(46, -66), (50, -96), (38, -124), (14, -144)], [15, 13, 9, 1], line, far=True)
    with picture.group("head"):
        frill(picture, place, ((66, -57), (90, -14)), [(124, -92), (140, -58), (128, -26)], 0.30, line, far=True)
        frill(picture, place, ((-66, -44), (-78, 26)), [(-144, -84), (-164, -38), (-136, 4)], 0.26, line)
        with picture.group("spines"):
            crest(picture, place, line)
        skull = skull_outline(place)
        picture.contour(skull, line)
        fill = picture.radial(place.xy(-14, -46), 172 * s, (0, c.BODY_LIGHT), (0.5, c.BODY), (1, c.BODY_DEEP))
        picture.fill(skull, fill)
        jaw = [*place.curve(*SMILE), *skull[6:9]]
        back = place.curve((44, 90), (24, 78), (4, 50))
        cream = picture.linear(place.xy(50, 56), place.xy(40, 96), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP))
        picture.fill([*jaw, *back], cream)
        picture.stroke(back, c.LINE, 2 * s, 0.35)
        snout = picture.radial(place.xy(78, 22), 38 * s, (0, c.BODY_LIGHT, 0.95), (0.6, c.BODY_LIGHT, 0.4), (1, c.BODY_LIGHT, 0))
        picture.fill(place.oval(78, 28, 36, 32), snout)
        blush = picture.radial(place.xy(-34, 42), 27 * s, (0, c.BLUSH, 0.6), (0.5, c.BLUSH, 0.36), (1, c.BLUSH, 0))
        picture.fill(place.oval(-34, 42, 27, 24), blush)
        for x, y, r in ((-72, -14, 6), (-64, -35, 7), (-79, 7, 4.5)):
            picture.fill(place.oval(x, y, r * 1.15, r, -30), c.RIM, 0.3)
        with picture.clipped(skull):
            picture.edges(skull, 20 * s, 6 * s)
        eye(picture, place, 16, -10, 30, 37, look, 4, line)
        eye(picture, place, 74, -12, 18, 33, look, 2, line)
        _mouth(picture, place)
    with picture.group("horns"):
        horn(picture, place, [(-26, -68), (-32, -101), (-56, -130), (-92, -146)], [19, 16, 10, 1], line)
        cuff = [(-52, -68), (-44, -56), (-26, -50), (-8, -54), (0, -64)]
        lip = place.closed((-52, -68, "c"), *cuff[1:-1], (0, -64, "c"), (-6, -52), (-14, -44.5), (-28, -41), (-46, -48))
        picture.fill(lip, fill)
        picture.stroke(place.curve(*cuff), c.LINE, line * 0.9)
        picture.stroke(place.curve((-44, -51), (-26, -45), (-8, -49)), c.RIM, 2.4 * s, 0.45)


def _mouth(picture, place):
    """Nostrils, a closed smile and one small fang."""
    s = place.scale
    for x, y, lean in ((84, 28, 24), (109, 26, -30)):
        picture.fill(place.oval(x, y, 5, 3.4, lean), c.LINE, 0.9)
    fang = place.closed((40, 71, "c"), (46.5, 84, "c"), (54, 72, "c"))
    picture.fill(fang, c.EYE_WHITE)
    picture.stroke(place.curve((40, 72), (46.5, 84, "c"), (54, 73)), c.LINE, 2.6 * s)
    picture.stroke(place.curve(*SMILE), c.LINE, 4.4 * s)
    picture.stroke(place.curve((-3, 55), (3, 49), (11, 47)), c.LINE, 4 * s)
