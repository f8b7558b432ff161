"""DragonIdle: seated, alert and friendly, wings folded, tail round to the left; 480 x 480."""

from dragon import palette as c
from dragon.geometry import closed, curve, tube
from dragon.head import head
from dragon.limbs import paw, pointer, spines
from dragon.paint import Picture
from dragon.place import Place
from dragon.wing import wing

LINE = 4.2


def draw():
    """The picture."""
    p = Picture(480, 480, "DragonIdle")
    here = Place()
    with p.group("shadow"):
        ring = here.oval(236, 446, 190, 24)
        glow = p.radial((0, 0), 1, (0, "#000000", 0.55), (0.6, "#000000", 0.4), (1, "#000000", 0))
        p.defs[-1] = p.defs[-1].replace("/>", "/>", 1).replace(
            'gradientUnits="userSpaceOnUse"', 'gradientUnits="userSpaceOnUse" gradientTransform="translate(236 446) scale(190 24)"')
        p.fill(ring, glow)
    with p.group("wing-far"):
        wing(p, 300 + 300j, 340 + 262j, 366 + 218j, [432 + 240j, 428 + 290j, 396 + 326j], 320 + 340j, LINE, 0.8, far=True)
    tail_line = curve((196, 392), (150, 414), (98, 428), (52, 412), (34, 372), (48, 334))
    tail_widths = [44, 36, 25, 18, 12, 8]
    with p.group("tail"):
        pointer(p, Place(28, 268, 1.05, 0), LINE)
        tail = tube(tail_line, tail_widths)
        p.contour(tail, LINE)
    with p.group("spines"):
        spines(p, tail_line, tail_widths, [0.3, 0.44, 0.57, 0.69, 0.8, 0.9], 1, LINE, lambda t: 24 - 15 * t)
    with p.group("tail"):
        p.form(tail, p.linear((150, 380), (60, 440), (0, c.BODY), (1, c.BODY_DEEP)), 14, 5)
    back = curve((226, 232), (188, 268), (158, 318), (140, 372), (142, 410))
    with p.group("spines"):
        spines(p, back, [0, 0], [0.1, 0.3, 0.52, 0.74, 0.93], 1, LINE, lambda t: 24)
    body = closed(
        (230, 226), (190, 266), (158, 318), (136, 378), (150, 426), (214, 440), (290, 436), (326, 400), (336, 340),
        (324, 280), (312, 230), (270, 212),
    )
    with p.group("body"):
        far_leg = tube(curve((316, 330), (324, 380), (322, 424)), [26, 21, 19])
        far_foot = Place(354, 440, 0.8)
        paw(p, far_foot, LINE, p.linear((354, 404), (354, 440), (0, c.FAR_BODY), (1, c.FAR_DEEP)))
        p.contour(body, LINE)
        p.fill(body, p.linear((190, 230), (280, 440), (0, c.BODY_LIGHT), (0.45, c.BODY), (1, c.BODY_DEEP)))
        with p.clipped(body):
            belly = closed((262, 240), (250, 300), (238, 360), (240, 442), (330, 442), (350, 350), (340, 250), (310, 220))
            p.fill(belly, p.linear((250, 240), (330, 430), (0, c.BELLY_LIGHT), (0.5, c.BELLY), (1, c.BELLY_DEEP)))
            for y in (296, 326, 356, 386, 414):
                p.stroke(curve((238, y), (280, y + 12), (340, y - 2)), c.AMBER_SHADE, 3, 0.4)
            p.edges(body, 26, 6)
            p.fill(closed((200, 250), (250, 262), (330, 258), (340, 290), (280, 300), (215, 282)), c.SHADE, 0.35)
        p.contour(far_leg, LINE)
        p.form(far_leg, p.linear((320, 330), (320, 430), (0, c.BODY), (1, c.BODY_DEEP)), 14, 4)
        paw(p, Place(326, 446, 0.86), LINE, p.linear((320, 410), (320, 446), (0, c.BODY), (1, c.BODY_DEEP)))
    with p.group("wing-near"):
        wing(p, 208 + 312j, 158 + 272j, 126 + 204j, [52 + 226j, 50 + 292j, 92 + 344j], 168 + 362j, LINE, 1)
    with p.group("body"):
        near_leg = tube(curve((246, 318), (254, 370), (256, 424)), [32, 26, 22])
        p.contour(near_leg, LINE)
        p.form(near_leg, p.linear((240, 300), (256, 440), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)), 16, 5)
        paw(p, Place(260, 450, 0.95), LINE, p.linear((260, 412), (260, 450), (0, c.BODY), (1, c.BODY_DEEP)))
        haunch = closed((150, 352), (196, 340), (226, 368), (230, 412), (206, 440), (160, 440), (134, 412), (132, 376))
        p.contour(haunch, LINE)
        p.form(haunch, p.linear((160, 340), (210, 440), (0, c.BODY_LIGHT), (0.4, c.BODY), (1, c.BODY_DEEP)), 22, 6)
        paw(p, Place(206, 450, 0.95), LINE, p.linear((206, 412), (206, 450), (0, c.BODY), (1, c.BODY_DEEP)))
    head(p, Place(276, 166, 1.08, 0), LINE)
    return p
