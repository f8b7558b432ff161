"""The flying dragon, in three-quarter view to the right; 540 x 420, turning about one anchor."""

import functools
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
ANCHOR = (290, 258)
# Where the anchor lies among the coordinates that the parts are written in.
ORIGIN = (290, 268)

# The spread wing seen from above: (outwards, forwards) from the shoulder.
ELBOW, WRIST = (62, -14), (118, 26)
TIPS = [(238, 6), (214, -84), (138, -124)]
ROOT = (6, -92)
# The chord of a wing on the page, lifted and lowered: its trailing edge hangs the more the lower the wing.
CHORD = {False: (complex(0.62, -0.46), complex(0.34, -0.70)), True: (complex(0.74, 0.02), complex(0.52, -0.40))}
SIDEWAYS = complex(-0.90, -0.14)
UP = complex(0, -1)
SPAN = 1.1


def spread_wing(picture, shoulder, lift, bend, fold, far):
    """A wing hinged on the body's axis: lift in degrees, bend lets the tip lag behind, fold draws it in (0...1)."""

    high, low = CHORD[far]
    share = min(1.0, max(0.0, (lift + 16) / 50))
    chord = low + (high - low) * share

    def put(u, v):
        out = u * (1 - 0.42 * fold * min(1.0, u / 200)) * (0.8 + 0.2 * share)
        back = v - 0.30 * fold * u
        angle = math.radians(lift + bend * (u / 240 - 0.25))
        side = -SIDEWAYS if far else SIDEWAYS
        return shoulder + chord * back + out * (math.cos(angle) * side + math.sin(angle) * UP)

    scale = SPAN
    if far:
        # Seen end on, the far wing shortens most where it points away from the viewer.
        scale *= 0.62 + 0.38 * min(1.0, abs(lift) / 24)
        lift = max(lift, min(56.0, lift + 30 * min(1.0, max(0.0, (lift + 6) / 20))))
        bend *= 0.6
        fold *= 0.4
    wing(
        picture, put(0, 0), put(*[scale * v for v in ELBOW]), put(*[scale * v for v in WRIST]),
        [put(scale * u, scale * v) for u, v in TIPS], put(*ROOT), LINE, scale, far=far,
    )


def tucked(p, place, points, widths, fill, foot):
    """A tucked leg with a small paw at its end; a gradient given as stops lets it grow out of the body."""
    pairs = [place.xy(*q) for q in points]
    if isinstance(fill, tuple):
        leg(p, pairs, widths, LINE, fill, (0.3, 0.3), shade=12)
        fill = p.linear(pairs[-2], pairs[-1], (0, c.BODY), (1, c.BODY_DEEP))
    else:
        limb = tube(curve(*pairs), widths)
        p.contour(limb, LINE)
        p.form(limb, fill, 12, 3)
    x, y, degrees = foot
    out = Place(*place.xy(x, y), 1, degrees)
    flip = -1 if degrees > 90 else 1

    def put(*points):
        return [(px, flip * py, *rest) for px, py, *rest in points]

    shape = out.closed(*put(
        (-18, -9), (-4, -17), (12, -17), (24, -13), (25, -5, "c"), (29, 1), (25, 6, "c"), (22, 14), (10, 16), (-6, 15), (-19, 8)))
    p.contour(shape, LINE)
    p.form(shape, fill, 8, 3)
    p.stroke(out.curve(*put((25, -5), (16, -5), (10, -4))), c.LINE, LINE * 0.7)
    p.stroke(out.curve(*put((25, 6), (17, 6), (11, 7))), c.LINE, LINE * 0.7)
    for cx, cy in ((23, -11), (28, 0.5), (22, 11)):
        claw = out.closed(*put((cx - 4, cy - 4.2, "c"), (cx + 9, cy + 1.5, "c"), (cx - 4, cy + 4.2, "c")))
        p.contour(claw, LINE * 0.45)
        p.fill(claw, c.AMBER_LIGHT)


def _haunch(p, place, ats, legs):
    """The near hind leg: a full thigh, the shank drawn back under it, the sole behind."""
    fill = p.linear(place.xy(*ats((210, 300))[0]), place.xy(*ats((196, 392))[0]), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP))
    tucked(p, place, ats((190, 366), (166, 380), (140, 380)), [22, 17, 13], p.linear(place.xy(-100, 90), place.xy(-110, 130), (0, c.BODY), (1, c.BODY_DEEP)), (*ats((130, 382))[0], 168 + legs))
    thigh = place.closed(*ats((184, 318), (216, 298), (248, 310), (260, 344), (238, 376), (200, 392), (170, 388), (168, 356)))
    p.contour(thigh, LINE)
    p.form(thigh, fill, 20, 5)


def draw(title="DragonFly", lift=34.0, bend=14.0, fold=0.0, pitch=0.0, sway=0.0, legs=0.0):
    """One picture of the flight; pitch and leg swing in degrees, sway in units at the tail's end."""
    p = Picture(540, 420, title)
    here = Place(*ANCHOR, 1, pitch)

    def at(x, y):
        return (x - ORIGIN[0], y - ORIGIN[1])

    def ats(*pairs):
        return [(*at(q[0], q[1]), *q[2:]) for q in pairs]

    with p.group("wing-far"):
        spread_wing(p, here.point(*at(340, 250)), lift, bend, fold, True)
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
        tucked(p, here, ats((262, 344), (240, 378), (208, 394)), [24, 17, 12], far, (*at(198, 397), 168 + legs))
        p.fill(body, p.linear(here.xy(*at(250, 220)), here.xy(*at(280, 380)), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)))
        with p.clipped(body):
            under = here.curve(*ats((386, 280), (320, 318), (246, 350), (178, 368), (116, 372 + sway * 0.15)))
            belly = tube(under, [46, 38, 28, 17, 6], steps=10)
            p.fill(belly, p.linear(here.xy(*at(300, 300)), here.xy(*at(310, 370)), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            with p.clipped(belly):
                for t in (0.16, 0.3, 0.43, 0.55, 0.67):
                    middle, way = along(under, t)
                    across = 1j * way * 50
                    p.stroke(curve(xy(middle - across), xy(middle + way * 9), xy(middle + across)), c.AMBER_SHADE, 3, 0.38)
            p.edges(body, 22, 6)
            x, y = here.xy(*at(388, 262))
            p.fill(Place().oval(x, y, 104, 76), p.pool((x, y), (104, 76), c.SHADE))
        near = (0, c.BODY, 0), (0.25, c.BODY), (1, c.BODY_DEEP)
        _haunch(p, here, ats, legs)
        tucked(p, here, ats((304, 300), (308, 342), (338, 356)), [28, 21, 14], near, (*at(350, 358), 18 + legs))
    with p.group("wing-near"):
        spread_wing(p, here.point(*at(268, 266)), lift, bend, fold, False)
    head(p, Place(394, 222 - ORIGIN[1] + ANCHOR[1], 0.86, -5), LINE)
    with p.group("anchor"):
        p.add(f'<circle cx="{ANCHOR[0]}" cy="{ANCHOR[1]}" r="1" fill="none"/>')
    return p


def frames():
    """Name and drawing of DragonFly1 to DragonFly7: one beat, up stroke then down stroke, that runs round without a seam."""
    for k in range(7):
        yield f"DragonFly{k + 1}", functools.partial(frame, k)


def frame(k):
    """One picture of the beat; the wings begin low, and what hangs on them follows later."""
    phase = 2 * math.pi * k / 7
    return draw(
        f"DragonFly{k + 1}",
        lift=10 - 32 * math.cos(phase),
        bend=-26 * math.sin(phase) + 6,
        fold=0.6 * max(0.0, math.sin(phase)),
        pitch=-2.5 * math.sin(phase + 0.6),
        sway=22 * math.sin(phase - 0.9),
        legs=6 * math.sin(phase - 0.5),
    )
