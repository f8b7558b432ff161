"""DragonIdle: seated, alert and friendly, wings folded, tail round to the left; 480 x 480."""

from dragon import palette as c
from dragon.geometry import closed, curve, tube
from dragon.head import head
from dragon.limbs import leg, pointer, spines
from dragon.paint import Picture
from dragon.paws import front_paw
from dragon.place import Place
from dragon.wing import wing

LINE = 4.2
TAIL = ((190, 388), (140, 420), (92, 432), (50, 420), (32, 388), (44, 356))
TAIL_WIDTHS = [44, 34, 24, 17, 12, 8]
BACK = ((214, 226), (182, 262), (152, 314), (134, 362), (120, 392))


def shadow(p):
    """The soft shadow on the ground."""
    p.fill(Place().oval(226, 448, 206, 24), p.pool((226, 448), (206, 24)))


def back_and_tail(p):
    """Tail and the unbroken row of plates from the nape to its end."""
    tail_line = curve(*TAIL)
    with p.group("tail"):
        pointer(p, Place(12, 288, 1.02), LINE)
        tail = tube(tail_line, TAIL_WIDTHS)
        p.contour(tail, LINE)
    with p.group("spines"):
        spines(p, tail_line, TAIL_WIDTHS, [0.44, 0.6, 0.76], 1, LINE, lambda t: 29 - 19 * t)
        spines(p, curve(*BACK), [0, 0], [0.08, 0.3, 0.53, 0.74, 0.94], 1, LINE, lambda t: 30 - 4 * t)
    with p.group("tail"):
        p.form(tail, p.linear((150, 380), (60, 440), (0, c.BODY), (1, c.BODY_DEEP)), 14, 5)


def torso(p):
    """Chest and belly with their plates, and the shadow that the head throws."""
    body = closed(
        (226, 218), (186, 258), (152, 314), (130, 372), (140, 426), (206, 444), (300, 446), (334, 404), (340, 344),
        (330, 284), (318, 232), (270, 206),
    )
    p.contour(body, LINE)
    p.fill(body, p.linear((180, 230), (270, 440), (0, c.BODY_LIGHT), (0.45, c.BODY), (1, c.BODY_DEEP)))
    with p.clipped(body):
        with p.group("belly"):
            belly = closed(
                (312, 226), (280, 266), (266, 330), (262, 390), (268, 446), (330, 446), (326, 380), (328, 320), (334, 270),
                (330, 230),
            )
            p.fill(belly, p.linear((250, 240), (330, 430), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            with p.clipped(belly):
                for y in (300, 328, 356, 384, 410):
                    p.stroke(curve((246, y - 2), (296, y + 9), (346, y - 4)), c.AMBER_SHADE, 3, 0.38)
        p.edges(body, 26, 6)
        thrown = closed((180, 230), (216, 262), (270, 284), (320, 286), (360, 270), (360, 200), (200, 190))
        p.fill(thrown, p.linear((270, 240), (276, 290), (0, c.SHADE, 0.75), (0.7, c.SHADE, 0.42), (1, c.SHADE, 0.1)))


def draw():
    """The picture."""
    p = Picture(480, 480, "DragonIdle")
    solid = (0, c.BODY_FLANK), (0.3, c.BODY), (1, c.BODY_DEEP)
    shaded = (0, c.FAR_BODY), (0.35, c.BODY_SHADED), (1, c.BODY_DEEP)
    with p.group("shadow"):
        shadow(p)
    with p.group("wing-far"):
        wing(p, 306 + 306j, 346 + 258j, 378 + 206j, [458 + 228j, 450 + 290j, 408 + 332j], 326 + 344j, LINE, 0.8, far=True)
    back_and_tail(p)
    with p.group("body"):
        front_paw(p, Place(364, 441, 0.8), LINE, p.linear((354, 404), (354, 440), (0, c.FAR_BODY), (1, c.FAR_DEEP)))
        torso(p)
        leg(p, ((326, 292), (340, 356), (333, 428)), [27, 20, 18], LINE, shaded, (0.3, 0.04))
        front_paw(p, Place(336, 448, 0.86), LINE, p.linear((320, 410), (320, 446), (0, c.BODY), (1, c.BODY_DEEP)))
    with p.group("wing-near"):
        wing(p, 206 + 306j, 150 + 266j, 118 + 196j, [38 + 206j, 42 + 270j, 84 + 318j], 164 + 342j, LINE, 1)
    with p.group("body"):
        leg(p, ((246, 318), (266, 370), (263, 430)), [37, 26, 20, 21], LINE, solid, (0.08, 0.18), shade=10)
        front_paw(p, Place(266, 452, 0.95), LINE, p.linear((260, 412), (260, 450), (0, c.BODY), (1, c.BODY_DEEP)))
        haunch = closed((152, 358), (188, 344), (216, 366), (222, 410), (202, 442), (160, 442), (134, 414), (134, 380))
        p.contour(haunch, LINE)
        p.form(haunch, p.linear((160, 340), (210, 440), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)), 22, 6)
        front_paw(p, Place(198, 452, 0.95), LINE, p.linear((198, 412), (198, 450), (0, c.BODY), (1, c.BODY_DEEP)))
    head(p, Place(282, 169, 1.08, 0), LINE)
    return p
