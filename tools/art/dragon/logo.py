"""Logo: the head with the pointer that the tail ends in; 512 x 512."""

from dragon.head import head
from dragon.limbs import pointer
from dragon.paint import Picture
from dragon.place import Place

LINE = 7


def draw():
    """The picture."""
    p = Picture(512, 512, "Logo")
    head(p, Place(262, 290, 1.66, 0), LINE)
    with p.group("pointer"):
        pointer(p, Place(352, 372, 1.9), LINE)
    return p
