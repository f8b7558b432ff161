"""Smooth outlines from few points: Hobby splines, tapering tubes, affine transforms and SVG path text."""

import cmath
import math

import numpy as np

# A curve is a list of cubic segments (start, control, control, end); points are complex numbers.


def points(*pairs):
    """Complex points from (x, y) pairs or (x, y, "c") triples; returns the points and the set of corner indices."""
    return [complex(p[0], p[1]) for p in pairs], {i for i, p in enumerate(pairs) if len(p) > 2}


def _velocity(theta, phi):
    """Hobby's length of a control arm for a departure angle theta and an arrival angle phi."""
    top = 2 + math.sqrt(2) * (math.sin(theta) - math.sin(phi) / 16) * (math.sin(phi) - math.sin(theta) / 16) * (
        math.cos(theta) - math.cos(phi)
    )
    return top / (3 * (1 + 0.5 * (math.sqrt(5) - 1) * math.cos(theta) + 0.5 * (3 - math.sqrt(5)) * math.cos(phi)))


def _solve(pts, closed):
    """The cubic segments of the smooth curve through pts, by John Hobby's choice of tangents."""
    n = len(pts)
    count = n if closed else n - 1
    delta = [pts[(k + 1) % n] - pts[k] for k in range(count)]
    length = [abs(d) for d in delta]
    turn = [0.0] * n
    for k in range(n):
        if closed or 0 < k < n - 1:
            turn[k] = cmath.phase(delta[k % count] / delta[k - 1])
    matrix = np.zeros((n, n))
    right = np.zeros(n)
    for k in range(n):
        if not closed and k == 0:
            matrix[0, 0] = matrix[0, 1] = 1
            right[0] = -turn[1]
        elif not closed and k == n - 1:
            matrix[k, k - 1] = matrix[k, k] = 1
        else:
            before, after = 1 / length[k - 1], 1 / length[k % count]
            matrix[k, k - 1] += before
            matrix[k, k] += 2 * before + 2 * after
            matrix[k, (k + 1) % n] += after
            right[k] = -2 * before * turn[k] - after * turn[(k + 1) % n]
    theta = np.linalg.solve(matrix, right)
    segments = []
    for k in range(count):
        a, b = pts[k], pts[(k + 1) % n]
        out = theta[k]
        into = -turn[(k + 1) % n] - theta[(k + 1) % n]
        segments.append(
            (
                a,
                a + cmath.exp(1j * out) * delta[k] * _velocity(out, into),
                b - cmath.exp(-1j * into) * delta[k] * _velocity(into, out),
                b,
            )
        )
    return segments


def curve(*pairs, closed=False):
    """The smooth curve through the pairs, broken at those marked as corners."""
    pts, corners = points(*pairs)
    if len(pts) == 2:
        return [line(pts[0], pts[1])]
    if closed and not corners:
        return _solve(pts, True)
    if closed:
        first = min(corners)
        pts = pts[first:] + pts[:first] + [pts[first]]
        corners = {(c - first) for c in corners}
    breaks = sorted(corners | {0, len(pts) - 1})
    segments = []
    for a, b in zip(breaks, breaks[1:]):
        run = pts[a : b + 1]
        segments += [line(run[0], run[1])] if len(run) == 2 else _solve(run, False)
    return segments


def closed(*pairs):
    """The smooth closed outline through the pairs, broken at those marked as corners."""
    return curve(*pairs, closed=True)


def line(a, b):
    """A straight segment."""
    return (a, a + (b - a) / 3, b - (b - a) / 3, b)


def at(segments, t):
    """The point and unit direction at t in 0...1 of the curve, each segment taking an equal share."""
    place = min(max(t, 0.0), 1.0) * len(segments)
    index = min(int(place), len(segments) - 1)
    u = place - index
    p0, p1, p2, p3 = segments[index]
    v = 1 - u
    point = v**3 * p0 + 3 * v * v * u * p1 + 3 * v * u * u * p2 + u**3 * p3
    slope = v * v * (p1 - p0) + 2 * v * u * (p2 - p1) + u * u * (p3 - p2)
    if abs(slope) < 1e-9:
        slope = p3 - p0
    return point, slope / abs(slope)


def after(segment, u):
    """What is left of one cubic segment after u in 0...1."""
    p0, p1, p2, p3 = segment
    a, b, c = p0 + (p1 - p0) * u, p1 + (p2 - p1) * u, p2 + (p3 - p2) * u
    d, e = a + (b - a) * u, b + (c - b) * u
    return (d + (e - d) * u, e, c, p3)


def side(segments, widths, sign, steps):
    """Points beside a centre line, at the distance that the widths (spread evenly along it) tell."""
    result = []
    for k in range(steps + 1):
        t = k / steps
        point, direction = at(segments, t)
        result.append(point + sign * 1j * direction * spread(widths, t))
    return result


def spread(values, t):
    """The value at t in 0...1 of a smooth run of values spread evenly."""
    place = t * (len(values) - 1)
    index = min(int(place), len(values) - 2)
    u = place - index
    u = u * u * (3 - 2 * u) * 0.5 + u * 0.5
    return values[index] * (1 - u) + values[index + 1] * u


def tube(segments, widths, steps=None, start_cap=True):
    """The outline of a tapering limb along a centre line; round at the start unless told otherwise, at the end if wide."""
    steps = steps or 2 * len(segments)
    left = side(segments, widths, -1, steps)
    right = side(segments, widths, 1, steps)
    head, head_way = at(segments, 0)
    tail, tail_way = at(segments, 1)
    pairs = [xy(p) for p in left]
    if widths[-1] > 1.5:
        pairs.append(xy(tail + tail_way * widths[-1]))
    else:
        pairs[-1] = (*xy(tail), "c")
        right = right[:-1]
    pairs += [xy(p) for p in reversed(right)]
    if start_cap:
        pairs.append(xy(head - head_way * widths[0]))
    else:
        pairs[0] = (*pairs[0], "c")
        pairs[-1] = (*pairs[-1], "c")
    return closed(*pairs)


def xy(point):
    """The (x, y) pair of a complex point."""
    return (point.real, point.imag)


def number(value, decimals=2):
    """A length with at most so many decimals."""
    text = f"{value:.{decimals}f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def path(segments, close=True, decimals=2):
    """SVG path data of a curve."""

    def text(point):
        return f"{number(point.real, decimals)} {number(point.imag, decimals)}"

    cubics = ("C" + " ".join(text(p) for p in segment[1:]) for segment in segments)
    return "M" + text(segments[0][0]) + "".join(cubics) + ("Z" if close else "")
