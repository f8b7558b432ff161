"""Logo: the head, and under it the tail that ends in the pointer; 512 x 512, in colour and in one colour."""

import re

from dragon import palette as c
from dragon.geometry import curve, tube
from dragon.head import head
from dragon.limbs import pointer, spines
from dragon.paint import Picture
from dragon.place import Place

LINE = 7
HEAD = Place(266, 216, 1.36, 0)
POINTER = Place(366, 338, 2.05)
TAIL = ((168, 290), (134, 350), (160, 416), (240, 460), (340, 482), (430, 474))
GIRTH = [36, 35, 28, 20, 14, 10]


def draw(title="Logo", plain=False):
    """The picture; plain for renderers that know paths and gradients only."""
    p = Picture(512, 512, title, plain)
    centre = curve(*TAIL)
    tail = tube(centre, GIRTH)
    with p.group("tail"):
        pointer(p, POINTER, LINE)
        p.contour(tail, LINE)
        with p.group("spines"):
            spines(p, centre, GIRTH, [0.2, 0.36, 0.51], 1, LINE, lambda t: 48 - 40 * t, 0.3)
        p.form(tail, p.linear((130, 330), (330, 500), (0, c.BODY), (1, c.BODY_DEEP)), 20, 8)
    head(p, HEAD, LINE)
    return p


def one_colour(ink):
    """SVG text of the logo in one ink: surfaces are inked, lines and pupils stay open, shading is left out."""
    p = draw("Logo in one colour", plain=True)
    shapes = []
    for element in p.body:
        if "opacity=" in element or c.RIM in element:
            continue
        element = element.replace(c.LINE, "#000").replace(c.PUPIL, "#000")
        shapes.append(re.sub(r'fill="(url\([^)]*\)|#(?!000)[0-9a-f]{6})"', 'fill="#fff"', element))
    mask = '<mask id="shape" maskUnits="userSpaceOnUse" x="0" y="0" width="512" height="512">'
    return (
        '<svg xmlns="http://www.w3.org/2000/svg" width="512" height="512" viewBox="0 0 512 512">\n'
        f"  <title>{p.title}</title>\n  <defs>{mask}\n" + "\n".join(shapes) + "\n  </mask></defs>\n"
        f'  <rect width="512" height="512" fill="{ink}" mask="url(#shape)"/>\n</svg>\n'
    )
