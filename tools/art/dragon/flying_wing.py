"""The spread wing: one flat plan, hinged on the body's axis and seen in three quarters."""

import math

from dragon.wing import wing

# The plan seen from above: (outwards, forwards) from the shoulder.
ELBOW, WRIST = (62, -14), (118, 26)
TIPS = ((238, 6), (214, -84), (138, -124))
ROOT = (6, -92)
SPAN = 1.1
REACH = 238 * SPAN

# The way outwards on the page for the near wing (the far one's is its opposite), and the way upwards.
SIDEWAYS = complex(-0.90, -0.14)
UP = complex(0, -1)
# The chord on the page, of the raised and of the lowered wing: the lower the wing, the more its trailing edge hangs.
NEAR_CHORD = (complex(0.62, -0.46), complex(0.34, -0.70))
FAR_CHORD = (complex(0.74, 0.02), complex(0.52, -0.40))


def between(low, high, value):
    """Where a value lies between two others, as 0...1."""
    return min(1.0, max(0.0, (value - low) / (high - low)))


def flying_wing(picture, shoulder, lift, bend, fold, line, far):
    """Lift in degrees; bend in degrees is how much the tip is ahead of the arm; fold (0...1) draws the wing in."""
    raised = between(-16, 34, lift)
    scale = SPAN
    if far:
        # It points away from the viewer and shortens most where it passes level; raised, it must clear the head.
        scale *= 0.46 + 0.54 * (min(1.0, lift / 14) if lift > 0 else min(1.0, -lift / 24) ** 2)
        lift = max(lift, min(56.0, lift + 30 * between(-6, 14, lift)))
        bend, fold = 0.6 * bend, 0.4 * fold
    high, low = FAR_CHORD if far else NEAR_CHORD
    chord = low + (high - low) * raised
    side = -SIDEWAYS if far else SIDEWAYS

    def put(u, v):
        u, v = scale * u, scale * v
        out = u * (1 - 0.42 * fold * min(1.0, u / 200)) * (0.8 + 0.2 * raised)
        angle = math.radians(lift + bend * (u / REACH - 0.25))
        return shoulder + chord * (v - 0.30 * fold * u) + out * (math.cos(angle) * side + math.sin(angle) * UP)

    wing(picture, put(0, 0), put(*ELBOW), put(*WRIST), [put(*tip) for tip in TIPS], put(*ROOT), line, scale, far=far)
