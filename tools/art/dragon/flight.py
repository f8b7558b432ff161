"""The flying dragon, in three-quarter view to the right; 540 x 420, turning about one anchor."""

import math

from dragon import palette as c
from dragon.geometry import tube, xy
from dragon.head import head
from dragon.limbs import pointer, spines
from dragon.paint import Picture
from dragon.place import Place
from dragon.wing import wing

LINE = 4.2
ANCHOR = (290, 268)

# The spread wing seen from above: (outwards, forwards) from the shoulder.
ELBOW, WRIST = (62, -14), (118, 26)
TIPS = [(238, 6), (214, -84), (138, -124)]
ROOT = (6, -92)
FORWARD = complex(0.80, -0.36)
SIDEWAYS = complex(-0.62, 0.20)
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


def leg(p, place, points, widths, fill, foot, far=False):
    """A tucked leg with a small paw at its end."""
    limb = place.tube(points, widths)
    p.contour(limb, LINE)
    p.form(limb, fill, 12, 4)
    x, y, degrees = foot
    out = Place(*place.xy(x, y), place.scale, degrees)
    shape = out.closed((-17, -10), (-4, -18), (14, -16), (23, -9), (21, -1, "c"), (23, 6), (14, 14), (-6, 16), (-18, 8))
    p.contour(shape, LINE)
    p.form(shape, fill, 8, 3)
    for cx, cy in ((23, -6), (22, 6)):
        claw = out.closed((cx - 3, cy - 4.5, "c"), (cx + 9, cy + 1, "c"), (cx - 3, cy + 4.5, "c"))
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
        spread_wing(p, here.point(*at(330, 250)), lift, bend, fold, True)
    tail_line = here.curve(*ats(
        (250, 300), (190, 326), (132, 342 + sway * 0.1), (78, 326 + sway * 0.4), (56, 282 + sway * 0.8), (74, 236 + sway)))
    tail_widths = [52, 44, 30, 20, 13, 8]
    with p.group("tail"):
        tail_end = tail_line[-1][3]
        tip = Place(tail_end.real - 32, tail_end.imag - 64, 0.95)
        pointer(p, tip, LINE)
        tail = tube(tail_line, tail_widths)
        p.contour(tail, LINE)
    with p.group("spines"):
        spines(p, tail_line, tail_widths, [0.36, 0.5, 0.63, 0.75, 0.87], 1, LINE, lambda t: 30 - 18 * t)
        back = here.curve(*ats((322, 214), (282, 226), (236, 258), (196, 290)))
        spines(p, back, [0, 0], [0.2, 0.5, 0.8], -1, LINE, lambda t: 30)
    body = here.closed(*ats(
        (330, 206), (282, 222), (232, 258), (188, 296), (180, 336), (214, 362), (268, 362), (322, 346), (366, 312),
        (384, 262), (368, 222)))
    with p.group("body"):
        far_fill = p.linear(here.xy(40, 40), here.xy(60, 120), (0, c.FAR_BODY), (1, c.FAR_DEEP))
        leg(p, here, ats((352, 312), (372, 336), (388, 340)), [20, 16, 12], far_fill, (*at(396, 340), 20 + legs))
        leg(p, here, ats((232, 344), (196, 372), (172, 376)), [24, 17, 12], far_fill, (*at(166, 380), 160 + legs))
        p.contour(body, LINE)
        p.fill(tail, p.linear(here.xy(*at(200, 280)), here.xy(*at(70, 360)), (0, c.BODY), (1, c.BODY_DEEP)))
        with p.clipped(tail):
            p.edges(tail, 16, 5)
        p.fill(body, p.linear(here.xy(*at(250, 220)), here.xy(*at(290, 370)), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)))
        with p.clipped(body):
            belly = here.closed(*ats((384, 220), (352, 262), (316, 300), (262, 330), (190, 340), (200, 380), (300, 380), (400, 320), (410, 250)))
            p.fill(belly, p.linear(here.xy(*at(330, 260)), here.xy(*at(330, 370)), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            for a, b in (((236, 326), (246, 370)), ((272, 318), (288, 366)), ((304, 302), (328, 352)), ((332, 280), (362, 326))):
                middle = ((a[0] + b[0]) / 2 + 8, (a[1] + b[1]) / 2 - 4)
                p.stroke(here.curve(*ats(a, middle, b)), c.AMBER_SHADE, 3, 0.4)
            p.edges(body, 22, 6)
            p.fill(here.oval(*at(388, 244), 82, 66), c.SHADE, 0.32)
    with p.group("body"):
        near = p.linear(here.xy(-60, 40), here.xy(-40, 120), (0, c.BODY_LIGHT), (0.35, c.BODY), (1, c.BODY_DEEP))
        leg(p, here, ats((212, 318), (206, 352), (170, 384), (146, 386)), [40, 36, 20, 14], near, (*at(136, 390), 164 + legs))
        leg(p, here, ats((300, 306), (312, 346), (338, 356)), [26, 21, 15], near, (*at(350, 358), 16 + legs))
    with p.group("wing-near"):
        spread_wing(p, here.point(*at(282, 262)), lift, bend, fold, False)
    head(p, Place(396, 206, 0.88, -4), LINE)
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
            lift=12 - 46 * math.cos(phase),
            bend=-34 * math.sin(phase) + 8,
            fold=0.75 * rising,
            pitch=-2.5 * math.sin(phase + 0.6),
            sway=22 * math.sin(phase - 0.9),
            legs=6 * math.sin(phase - 0.5),
        )
