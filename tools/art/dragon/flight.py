"""The flying dragon, in three-quarter view to the right; 540 x 420, turning about one anchor."""

import math

from dragon import palette as c
from dragon.geometry import at as along
from dragon.geometry import curve, tube, xy
from dragon.head import head
from dragon.limbs import leg, pointer, spines
from dragon.paint import Picture
from dragon.place import Place
from dragon.wing import wing

LINE = 4.2
ANCHOR = (290, 268)

# The spread wing seen from above: (outwards, forwards) from the shoulder.
ELBOW, WRIST = (62, -14), (118, 26)
TIPS = [(238, 6), (214, -84), (138, -124)]
ROOT = (6, -92)
FORWARD = complex(0.70, -0.26)
SIDEWAYS = complex(-0.74, -0.16)
UP = complex(0, -1)


def spread_wing(picture, shoulder, lift, bend, fold, far):
    """A wing hinged on the body's axis: lift in degrees, bend lets the tip lag behind, fold draws it in (0...1)."""

    def put(u, v):
        out = u * (1 - 0.42 * fold * min(1.0, u / 200))
        back = v - 0.30 * fold * u
        angle = math.radians(lift + bend * (u / 240 - 0.25))
        side = -SIDEWAYS if far else SIDEWAYS
        return shoulder + FORWARD * back + out * (math.cos(angle) * side + math.sin(angle) * UP)

    scale = 0.92 if far else 1
    wing(
        picture, put(0, 0), put(*[scale * v for v in ELBOW]), put(*[scale * v for v in WRIST]),
        [put(scale * u, scale * v) for u, v in TIPS], put(*ROOT), LINE, 1.05 * scale, far=far,
    )


def tucked(p, place, points, widths, fill, foot):
    """A tucked leg with a small paw at its end; a gradient given as stops lets it grow out of the body."""
    pairs = [place.xy(*q) for q in points]
    if isinstance(fill, tuple):
        leg(p, pairs, widths, LINE, fill, start=0.25, shade=12)
        fill = p.linear(pairs[-2], pairs[-1], (0, c.BODY), (1, c.BODY_DEEP))
    else:
        limb = tube(curve(*pairs), widths)
        p.contour(limb, LINE)
        p.form(limb, fill, 12, 3)
    x, y, degrees = foot
    out = Place(*place.xy(x, y), 1, degrees)
    flip = -1 if degrees > 90 else 1
    shape = out.closed(*[(px, flip * py) for px, py in ((-17, -10), (-4, -18), (14, -16), (23, -9), (21, -1, "c")[:2], (23, 6), (14, 14), (-6, 16), (-18, 8))])
    p.contour(shape, LINE)
    p.form(shape, fill, 8, 3)
    for cx, cy in ((20, -11), (24, -1), (20, 10)):
        claw = out.closed((cx - 4, cy - 4.5, "c"), (cx + 9, cy + 1, "c"), (cx - 4, cy + 4.5, "c"))
        p.contour(claw, LINE * 0.5)
        p.fill(claw, c.AMBER_LIGHT)


def draw(title="DragonFly", lift=44.0, bend=26.0, fold=0.0, pitch=0.0, sway=0.0, legs=0.0):
    """One picture of the flight; pitch and leg swing in degrees, sway in units at the tail's end."""
    p = Picture(540, 420, title)
    here = Place(*ANCHOR, 1, pitch)

    def at(x, y):
        return (x - ANCHOR[0], y - ANCHOR[1])

    def ats(*pairs):
        return [(*at(q[0], q[1]), *q[2:]) for q in pairs]

    with p.group("wing-far"):
        spread_wing(p, here.point(*at(322, 250)), lift, bend, fold, True)
    spine = here.curve(*ats(
        (364, 254), (304, 268), (236, 300), (174, 332), (114, 344 + sway * 0.15), (66, 318 + sway * 0.5),
        (50, 268 + sway)))
    girth = [44, 60, 54, 36, 23, 14, 8]
    with p.group("tail"):
        end = spine[-1][3]
        pointer(p, Place(end.real - 32, end.imag - 66, 0.98), LINE)
    body = tube(spine, girth, steps=18)
    p.contour(body, LINE)
    with p.group("spines"):
        spines(p, spine, girth, [0.2, 0.31, 0.42, 0.53, 0.64, 0.74, 0.84], 1, LINE, lambda t: 38 - 30 * t)
    with p.group("body"):
        far = p.linear(here.xy(*at(0, 300)), here.xy(*at(0, 390)), (0, c.FAR_BODY), (1, c.FAR_DEEP))
        tucked(p, here, ats((356, 304), (372, 334), (392, 342)), [20, 16, 12], far, (*at(400, 343), 24 + legs))
        tucked(p, here, ats((226, 346), (190, 366), (166, 366)), [24, 17, 12], far, (*at(158, 368), 166 + legs))
        p.fill(body, p.linear(here.xy(*at(250, 220)), here.xy(*at(280, 380)), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)))
        with p.clipped(body):
            under = here.curve(*ats((386, 288), (320, 326), (246, 356), (178, 372), (116, 372 + sway * 0.15)))
            belly = tube(under, [46, 38, 28, 17, 6], steps=10)
            p.fill(belly, p.linear(here.xy(*at(300, 300)), here.xy(*at(310, 370)), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            for t in (0.16, 0.3, 0.43, 0.55, 0.67):
                middle, way = along(under, t)
                across = 1j * way * 50
                p.stroke(curve(xy(middle - across), xy(middle + way * 9), xy(middle + across)), c.AMBER_SHADE, 3, 0.38)
            p.edges(body, 22, 6)
            thrown = here.oval(*at(384, 262), 84, 58)
            p.fill(thrown, p.radial(here.xy(*at(384, 262)), 84, (0, c.SHADE, 0.6), (0.8, c.SHADE, 0.45), (1, c.SHADE, 0.12)))
        near = (0, c.BODY, 0), (0.25, c.BODY), (1, c.BODY_DEEP)
        tucked(p, here, ats((218, 312), (204, 350), (166, 382), (142, 384)), [40, 34, 19, 13], near, (*at(132, 387), 166 + legs))
        tucked(p, here, ats((304, 300), (308, 342), (338, 356)), [28, 21, 14], near, (*at(350, 358), 18 + legs))
    with p.group("wing-near"):
        spread_wing(p, here.point(*at(284, 258)), lift, bend, fold, False)
    head(p, Place(394, 222, 0.86, -5), LINE)
    with p.group("anchor"):
        p.add(f'<circle cx="{ANCHOR[0]}" cy="{ANCHOR[1]}" r="1" fill="none"/>')
    return p


def frames():
    """DragonFly1 to DragonFly7: one wing beat, up stroke to down stroke, that runs round without a seam."""
    for k in range(7):
        phase = 2 * math.pi * k / 7
        rising = max(0.0, math.sin(phase))
        yield draw(
            f"DragonFly{k + 1}",
            lift=20 - 42 * math.cos(phase),
            bend=-34 * math.sin(phase) + 8,
            fold=0.6 * rising,
            pitch=-2.5 * math.sin(phase + 0.6),
            sway=22 * math.sin(phase - 0.9),
            legs=6 * math.sin(phase - 0.5),
        )
