"""The flying dragon, in three-quarter view to the right; 540 x 420, turning about one anchor."""

import functools
import math

from dragon import palette as c
from dragon.flying_wing import flying_wing
from dragon.geometry import at, curve, tube, xy
from dragon.head import head
from dragon.limbs import leg, pointer, spines
from dragon.paint import Picture
from dragon.paws import side_paw
from dragon.place import Place

LINE = 4.2
# The one point that stays in every picture of the flight, and where it lies among the coordinates of the parts.
ANCHOR = (290, 258)
ORIGIN = (290, 268)
GIRTH = [44, 60, 54, 36, 23, 14, 8]


def far_legs(p, place, swing):
    """The legs beyond the body, which show below it."""
    fill = p.linear(place.xy(0, 300), place.xy(0, 390), (0, c.FAR_BODY), (1, c.FAR_DEEP))
    for points, widths, foot in (
        (((356, 304), (372, 334), (392, 342)), [20, 16, 12], (400, 343, 24)),
        (((262, 344), (240, 378), (208, 394)), [24, 17, 12], (198, 397, 168)),
    ):
        limb = place.tube(points, widths)
        p.contour(limb, LINE)
        p.form(limb, fill, 12, 3)
        side_paw(p, place.xy(*foot[:2]), foot[2] + swing, LINE, fill)


def near_legs(p, place, swing):
    """A full thigh with the shank drawn back under it, and the arm tucked under the chest."""
    fill = p.linear(place.xy(190, 358), place.xy(180, 398), (0, c.BODY), (1, c.BODY_DEEP))
    shank = place.tube(((190, 366), (166, 380), (140, 380)), [22, 17, 13])
    p.contour(shank, LINE)
    p.form(shank, fill, 12, 3)
    side_paw(p, place.xy(130, 382), 168 + swing, LINE, fill)
    thigh = place.closed((184, 318), (216, 298), (248, 310), (260, 344), (238, 376), (200, 392), (170, 388), (168, 356))
    full = p.linear(place.xy(210, 300), place.xy(196, 392), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP))
    p.contour(thigh, LINE)
    p.form(thigh, full, 20, 5)
    arm = [place.xy(*q) for q in ((304, 300), (308, 342), (338, 356))]
    leg(p, arm, [28, 21, 14], LINE, ((0, c.BODY, 0), (0.25, c.BODY), (1, c.BODY_DEEP)), (0.3, 0.14), shade=12)
    side_paw(p, place.xy(350, 358), 18 + swing, LINE, p.linear(arm[1], arm[2], (0, c.BODY), (1, c.BODY_DEEP)))


def torso(p, place, body, sway):
    """Body and tail in one piece, with the belly plates and the shadow that the head throws."""
    fill = p.linear(place.xy(250, 220), place.xy(280, 380), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP))
    p.fill(body, fill)
    with p.clipped(body):
        with p.group("belly"):
            under = place.curve((386, 280), (320, 318), (246, 350), (178, 368), (116, 372 + sway * 0.15))
            belly = tube(under, [46, 38, 28, 17, 6], steps=10)
            ends = place.xy(300, 300), place.xy(310, 370)
            p.fill(belly, p.linear(*ends, (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            with p.clipped(belly):
                for t in (0.16, 0.3, 0.43, 0.55, 0.67):
                    middle, way = at(under, t)
                    across = 50j * way
                    plate = curve(xy(middle - across), xy(middle + way * 9), xy(middle + across))
                    p.stroke(plate, c.AMBER_SHADE, 3, 0.38)
        p.edges(body, 22, 6)
        x, y = place.xy(388, 262)
        p.fill(Place().oval(x, y, 104, 76), p.pool((x, y), (104, 76), c.SHADE))


def draw(title="DragonFly", lift=34.0, bend=14.0, fold=0.0, pitch=0.0, sway=0.0, swing=0.0):
    """One picture of the flight; pitch and swing of the feet in degrees, sway in units at the tail's end."""
    p = Picture(540, 420, title)
    here = Place(*ANCHOR, 1, pitch, ORIGIN)
    with p.group("wing-far"):
        flying_wing(p, here.point(340, 250), lift, bend, fold, LINE, far=True)
    spine = here.curve(
        (364, 254), (304, 268), (236, 300), (174, 332), (114, 344 + sway * 0.15), (66, 318 + sway * 0.5),
        (50, 268 + sway),
    )
    body = tube(spine, GIRTH, steps=18)
    with p.group("tail"):
        end = spine[-1][3]
        pointer(p, Place(end.real - 32, end.imag - 66, 0.98), LINE)
        p.contour(body, LINE)
    with p.group("spines"):
        spines(p, spine, GIRTH, [0.19, 0.3, 0.44, 0.6, 0.71, 0.82], 1, LINE, lambda t: 38 - 30 * t)
    with p.group("body"):
        far_legs(p, here, swing)
        torso(p, here, body, sway)
        near_legs(p, here, swing)
    with p.group("wing-near"):
        flying_wing(p, here.point(268, 266), lift, bend, fold, LINE, far=False)
    head(p, Place(394, ANCHOR[1] - 46, 0.86, -5), LINE)
    p.add(f'<circle id="anchor" cx="{ANCHOR[0]}" cy="{ANCHOR[1]}" r="1" fill="none"/>')
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
        sway=20 * math.sin(phase - 0.9),
        swing=6 * math.sin(phase - 0.5),
    )
