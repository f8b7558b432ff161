"""Where a part stands: scale, turn and position, applied to the points rather than to the drawing.

The light is fixed in the picture, so parts are turned before they are shaded."""

import cmath
import math

from dragon import geometry


class Place:
    """Maps a part's own coordinates to those of the picture: its origin comes to lie on (x, y)."""

    def __init__(self, x=0.0, y=0.0, scale=1.0, degrees=0.0, origin=(0.0, 0.0), flip=False):
        self.to = complex(x, y)
        self.scale = scale
        self.turn = scale * cmath.exp(1j * math.radians(degrees))
        self.origin = complex(*origin)
        self.flip = flip

    def point(self, x, y):
        """One point of the part, as a complex number of the picture; `flip` turns the part upside down first."""
        return (complex(x, -y if self.flip else y) - self.origin) * self.turn + self.to

    def xy(self, x, y):
        """One point of the part, as a pair of the picture."""
        return geometry.xy(self.point(x, y))

    def _pairs(self, pairs):
        return [(*self.xy(p[0], p[1]), *p[2:]) for p in pairs]

    def closed(self, *pairs):
        """A closed outline given in the part's coordinates."""
        return geometry.closed(*self._pairs(pairs))

    def curve(self, *pairs):
        """An open curve given in the part's coordinates."""
        return geometry.curve(*self._pairs(pairs))

    def oval(self, x, y, rx, ry, degrees=0.0):
        """An ellipse about (x, y) given in the part's coordinates."""
        turn = cmath.exp(1j * math.radians(degrees))
        ring = [complex(rx, 0), complex(0, ry), complex(-rx, 0), complex(0, -ry)]
        return self.closed(*[geometry.xy(complex(x, y) + p * turn) for p in ring])

    def tube(self, pairs, widths, **options):
        """A tapering limb given in the part's coordinates."""
        return geometry.tube(self.curve(*pairs), [w * self.scale for w in widths], **options)
