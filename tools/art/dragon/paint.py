"""An SVG picture: gradients and clip paths defined once, named groups, and parts shaded from one light."""

from dragon import palette
from dragon.geometry import number, path

# The light stands above and a little to the left; both edges of every part are derived from this one direction.
LIGHT = (-0.42, -0.91)


class Picture:
    """One SVG file in the making; sizes are in its own units, one per pixel of the full-size raster."""

    def __init__(self, width, height, title, plain=False):
        """`plain` keeps to paths, gradients and groups, for renderers that know no clip paths."""
        self.width, self.height, self.title, self.plain = width, height, title, plain
        self.defs, self.body, self.depth, self.names, self.muted = [], [], 1, 0, 0
        self.groups = {}

    def _name(self, stem):
        self.names += 1
        return f"{stem}{self.names}"

    def _path(self, segments, close=True):
        return path(segments, close, 1 if self.width > 64 else 2)

    def add(self, text):
        """Appends one element to the innermost open group."""
        if not self.muted:
            self.body.append("  " * self.depth + text)

    def group(self, name=None, transform=None, opacity=None):
        """A group, to be used with `with`; a name used again gets a number behind it, since ids are unique."""
        if name:
            self.groups[name] = self.groups.get(name, 0) + 1
            name += str(self.groups[name]) if self.groups[name] > 1 else ""
        return _Group(self, name, transform, opacity)

    def linear(self, a, b, *stops):
        """A linear gradient from point a to point b; stops are (offset, colour[, opacity])."""
        name = self._name("shade")
        ends = f'x1="{number(a[0])}" y1="{number(a[1])}" x2="{number(b[0])}" y2="{number(b[1])}"'
        self._gradient("linearGradient", name, ends, stops)
        return f"url(#{name})"

    def radial(self, centre, radius, *stops):
        """A radial gradient about a centre."""
        name = self._name("glow")
        ends = f'cx="{number(centre[0])}" cy="{number(centre[1])}" r="{number(radius)}"'
        self._gradient("radialGradient", name, ends, stops)
        return f"url(#{name})"

    def pool(self, centre, radii, colour="#000"):
        """A round shadow that fades out, flattened to the two radii."""
        name = self._name("pool")
        x, y = centre
        self.defs.append(
            f'<radialGradient id="{name}" gradientUnits="userSpaceOnUse" cx="0" cy="0" r="1"'
            f' gradientTransform="translate({x} {y}) scale({radii[0]} {radii[1]})"><stop offset="0" stop-color="{colour}"'
            f' stop-opacity="0.55"/><stop offset="0.6" stop-color="{colour}" stop-opacity="0.36"/>'
            f'<stop offset="1" stop-color="{colour}" stop-opacity="0"/></radialGradient>'
        )
        return f"url(#{name})"

    def _gradient(self, kind, name, ends, stops):
        text = "".join(
            f'<stop offset="{s[0]}" stop-color="{s[1]}"' + (f' stop-opacity="{s[2]}"' if len(s) > 2 else "") + "/>"
            for s in stops
        )
        self.defs.append(f'<{kind} id="{name}" gradientUnits="userSpaceOnUse" {ends}>{text}</{kind}>')

    def fill(self, outline, colour, opacity=None):
        """A filled outline without edges."""
        extra = f' opacity="{opacity}"' if opacity is not None else ""
        self.add(f'<path d="{self._path(outline)}" fill="{colour}"{extra}/>')

    def stroke(self, segments, colour, width, opacity=None):
        """A drawn line with round ends."""
        extra = f' opacity="{opacity}"' if opacity is not None else ""
        self.add(
            f'<path d="{self._path(segments, close=False)}" fill="none" stroke="{colour}" stroke-width="{number(width)}"'
            f' stroke-linecap="round" stroke-linejoin="round"{extra}/>'
        )

    def contour(self, outline, weight, colour=palette.LINE):
        """The dark line around a part: only its outer half stays visible once the part is painted."""
        self.add(
            f'<path d="{self._path(outline)}" fill="{colour}" stroke="{colour}" stroke-width="{number(2 * weight)}"'
            ' stroke-linejoin="round"/>'
        )

    def clipped(self, outline, fits=False):
        """A group that shows only what lies inside the outline, to be used with `with`.

        A plain picture has no such group: it leaves out what is painted there, unless it fits inside by itself."""
        if self.plain:
            return _Group(self, None, None, None) if fits else _Muted(self)
        name = self._name("inside")
        self.defs.append(f'<clipPath id="{name}"><path d="{self._path(outline)}"/></clipPath>')
        return _Group(self, None, None, None, f"url(#{name})")

    def form(self, outline, fill, shade=14, rim=5, shade_colour=palette.SHADE, shade_depth=0.5, rim_strength=0.55):
        """A part with volume: fill, a soft dark edge away from the light and a bright one towards it; lengths in units."""
        self.fill(outline, fill)
        with self.clipped(outline):
            self.edges(outline, shade, rim, shade_colour, shade_depth, rim_strength)

    def edges(self, outline, shade, rim, shade_colour=palette.SHADE, shade_depth=0.5, rim_strength=0.55):
        """The two edges of `form`, for use inside `clipped` after details have been painted."""
        steps = max(2, min(6, round(shade / 3)))
        for k in range(steps):
            reach = shade * (k + 1) / steps
            self._crescent(outline, LIGHT[0] * reach, LIGHT[1] * reach, shade_colour, shade_depth / steps)
        bands = ((2.6, 0.14), (1.98, 0.2), (1.36, 0.3), (0.74, 0.4)) if rim >= 3 else ((2, 0.4), (0.9, 0.5))
        for reach, strength in bands if rim else ():
            self._crescent(outline, -LIGHT[0] * rim * reach, -LIGHT[1] * rim * reach, palette.RIM, rim_strength * strength)

    def _crescent(self, outline, dx, dy, colour, opacity):
        """What of the clip lies outside the outline moved by (dx, dy)."""
        shifted = [tuple(p + complex(dx, dy) for p in segment) for segment in outline]
        w, h = self.width, self.height
        frame = f"M{-w} {-h}H{2 * w}V{2 * h}H{-w}Z"
        self.add(f'<path d="{frame}{self._path(shifted)}" fill-rule="evenodd" fill="{colour}" opacity="{number(opacity)}"/>')

    def text(self):
        """The whole SVG file."""
        head = (
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width}" height="{self.height}"'
            f' viewBox="0 0 {self.width} {self.height}">\n  <title>{self.title}</title>\n'
        )
        defs = "  <defs>\n" + "".join(f"    {d}\n" for d in self.defs) + "  </defs>\n"
        return head + defs + "\n".join(self.body) + "\n</svg>\n"


class _Group:
    """Opens a group on entry and closes it on exit."""

    def __init__(self, picture, name, transform, opacity, clip=None):
        self.picture = picture
        values = (("id", name), ("transform", transform), ("opacity", opacity), ("clip-path", clip))
        self.attributes = "".join(f' {key}="{value}"' for key, value in values if value is not None)

    def __enter__(self):
        self.picture.add(f"<g{self.attributes}>")
        self.picture.depth += 1
        return self.picture

    def __exit__(self, *_):
        self.picture.depth -= 1
        self.picture.add("</g>")


class _Muted:
    """Leaves out what is painted inside."""

    def __init__(self, picture):
        self.picture = picture

    def __enter__(self):
        self.picture.muted += 1
        return self.picture

    def __exit__(self, *_):
        self.picture.muted -= 1
