"""The application icon: the logo for large sizes, a simplified head for small ones, and the symbolic head in one colour."""

from dragon import logo
from dragon import palette as c
from dragon.geometry import path
from dragon.limbs import pointer_outline
from dragon.paint import Picture
from dragon.place import Place


def scalable():
    """The logo in paths and gradients alone, so that every icon loader can draw it."""
    return logo.draw("app.velloran.Velloran", plain=True)


def small(size):
    """The head for one small size: few shapes, heavy contrast, drawn on a grid of 32 and rendered at `size`."""
    p = Picture(32, 32, "app.velloran.Velloran", plain=True)
    here = Place()
    line = 1.3 if size > 24 else 1.1
    amber = p.linear((0, 12), (0, 0), (0, c.AMBER_DEEP), (0.5, c.AMBER), (1, c.AMBER_LIGHT))
    for outline in (
        here.closed((16.5, 9), (18.4, 5), (16.8, 1.4, "c"), (21.8, 3.6), (23.4, 10)),
        here.closed((22.5, 11.5, "c"), (30.6, 6.2, "c"), (28.9, 11), (30.8, 15.2, "c"), (25.5, 17, "c")),
        here.closed((6.5, 10.5, "c"), (1.2, 8.4, "c"), (2.4, 13.4), (1.2, 18.4, "c"), (6, 19, "c")),
    ):
        p.contour(outline, line)
        p.fill(outline, amber)
    skull = here.closed(
        (14, 6.8), (20.6, 7.6), (25, 12.2), (26.2, 16.6), (28.8, 20.4), (26.4, 24.6), (18.4, 26.8), (9.4, 26),
        (4.4, 21), (4.2, 14), (8, 8.4),
    )
    p.contour(skull, line)
    p.fill(skull, p.radial((12, 11), 20, (0, c.BODY_LIGHT), (0.55, c.BODY), (1, c.BODY_DEEP)))
    horn = here.closed((7.6, 10.4), (7.4, 6), (4, 1.4, "c"), (10.4, 2.4), (13, 9.2), (10.4, 11.4))
    p.contour(horn, line)
    p.fill(horn, amber)
    for x, rx, ry in ((13, 3.7, 4.5), (21.4, 2.5, 4.2)):
        if size > 16:
            p.contour(here.oval(x, 16, rx, ry), line * 0.55)
            p.fill(here.oval(x, 16, rx, ry), c.EYE_WHITE)
            p.fill(here.oval(x + 0.5, 16.6, rx * 0.72, ry * 0.74), c.PUPIL)
            p.fill(here.oval(x - 0.5, 15, rx * 0.3, ry * 0.26), c.EYE_WHITE)
        else:
            # At this size white, iris and pupil would run together: a dark eye with one bright pixel keeps its look.
            p.fill(here.oval(x, 15, rx * 0.9, ry * 0.85), c.PUPIL)
            p.fill(here.oval(x - 0.9, 13, 1.05, 1.05), c.EYE_WHITE)
    if size > 16:
        p.stroke(here.curve((10.6, 22.6), (13.6, 24), (17, 24.4)), c.LINE, 1.4)
    pointer = pointer_outline(Place(20.4 if size > 16 else 19.6, 19.8, 0.172 if size > 16 else 0.18))
    p.contour(pointer, line)
    p.fill(pointer, p.linear((20, 20), (25, 31), (0, c.AMBER_LIGHT), (0.5, c.AMBER), (1, c.AMBER_DEEP)))
    return p


def symbolic():
    """Head and pointer as one flat shape with the eyes left open, on a grid of 16."""
    p = Picture(16, 16, "app.velloran.Velloran-symbolic", plain=True)
    here = Place()
    ink = "#2e3436"
    outlines = [
        here.closed(
            (4.2, 3.9), (3.7, 2.2), (1.8, 0.3, "c"), (5.4, 0.6), (7.2, 2.9, "c"), (8.6, 2.9, "c"), (8.9, 1.7),
            (8.4, 0.3, "c"), (11, 1.4), (11.9, 4.1, "c"), (12.6, 5.2, "c"), (15.8, 3, "c"), (14.9, 5.4), (15.8, 7.8, "c"),
            (13.3, 8.6, "c"), (14.4, 10.4), (14.3, 11.8, "c"), (9.3, 8.9, "c"), (9.3, 13.9, "c"), (5.4, 13.6), (2.6, 11.4),
            (1.8, 9.4, "c"), (0.2, 9.4, "c"), (0.9, 6.8), (0.2, 4.2, "c"), (2.7, 5.2, "c"),
        ),
        here.oval(5.9, 7.7, 1.2, 1.6),
        here.oval(10.4, 7.4, 0.85, 1.45),
    ]
    p.add(f'<path d="{"".join(path(part) for part in outlines)}" fill="{ink}" fill-rule="evenodd"/>')
    pointer = pointer_outline(Place(10.2, 10.15, 0.079))
    p.fill(pointer, ink)
    return p
