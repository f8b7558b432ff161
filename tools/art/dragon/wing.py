"""A bat wing from its joints: membrane with scalloped edge, arm, fingers and thumb claw."""

from dragon import palette as c
from dragon.geometry import after, at, curve, side, tube, xy
from dragon.geometry import line as straight


def hollow(a, b, towards, depth):
    """One edge of the membrane from finger tip to finger tip, drawn in towards the wrist."""
    pull = (a + b) / 2 + (towards - (a + b) / 2) * depth * 1.5
    return (a, a + (pull - a) * 0.62, b + (pull - b) * 0.62, b)


def bowed(a, b, bow):
    """A finger from a to b, bent sideways by a share of its length."""
    return curve(xy(a), xy((a + b) / 2 + 1j * (b - a) * bow), xy(b))


def wing(picture, shoulder, elbow, wrist, tips, root, line, size, far=False, bow=0.08, depth=0.24):
    """Joints are complex points; `tips` run from the leading finger to the last, `root` is where the membrane meets the back."""
    fingers = [bowed(wrist, tip, bow * (1 - k / max(1, len(tips) - 1) * 1.4)) for k, tip in enumerate(tips)]
    bone_line = curve(xy(shoulder), xy(elbow), xy(wrist))
    ends = [*tips, root]
    depths = [depth] * (len(tips) - 1) + [depth * 0.8]
    edge = [hollow(a, b, wrist, d) for a, b, d in zip(ends, ends[1:], depths)]
    # The skin begins a little way along the arm, so that the shoulder can melt into the back.
    start = len(bone_line) * 0.2
    armpit = at(bone_line, 0.2)[0]
    first = bone_line[0]
    membrane = [after(first, start), *bone_line[1:], *fingers[0], *edge, straight(root, armpit)]
    picture.contour(membrane, line)
    middle = sum(tips) / len(tips)
    warm = picture.linear(xy(wrist), xy(middle), (0, c.AMBER_DEEP), (0.55, c.AMBER), (1, c.AMBER_LIGHT))
    picture.fill(membrane, warm)
    with picture.clipped(membrane):
        for a, b, d in zip(ends, ends[1:], depths):
            valley = hollow(a, b, wrist, d)
            pit = (valley[1] + valley[2]) / 2
            fold = [straight(wrist, pit), (pit, valley[2], valley[2], b), straight(b, wrist)]
            picture.fill(fold, c.AMBER_SHADE, 0.15)
        picture.edges(membrane, 10 * size, 3 * size, c.AMBER_SHADE, 0.4, 0.5)
        if far:
            picture.fill(membrane, c.AMBER_SHADE, 0.5)
    skin = (c.FAR_BODY, c.FAR_DEEP, c.FAR_DEEP) if far else (c.BODY_LIGHT, c.BODY, c.BODY_FLANK)
    for finger in reversed(fingers):
        bone = tube(finger, [5.6 * size, 4 * size, 2.2 * size], steps=5)
        picture.contour(bone, line * 0.5)
        picture.fill(bone, picture.linear(xy(wrist), xy(finger[-1][3]), (0, skin[1]), (1, skin[0])))
    _claw(picture, wrist, (wrist - elbow) / abs(wrist - elbow), line, size)
    widths = [17 * size, 11 * size, 8 * size]
    arm = tube(bone_line, widths, steps=5)
    for sign in (-1, 1):
        picture.stroke(curve(*[xy(p) for p in side(bone_line, widths, sign, 12)[3:]]), c.LINE, 2 * line)
    fill = picture.linear(xy(shoulder), xy(wrist), (0, skin[2], 0 if not far else 1), (0.13, skin[1]), (1, skin[0]))
    picture.fill(arm, fill)
    lit = 1 if (wrist - shoulder).real < 0 else -1
    for sign, colour, width, opacity in ((lit, c.RIM, 3, 0.4), (-lit, c.SHADE, 5, 0.3)):
        along = side(bone_line, [0.52 * w for w in widths], sign, 12)[4:12]
        picture.stroke(curve(*[xy(p) for p in along]), colour, width * size, opacity)


def _claw(picture, wrist, way, line, size):
    """The thumb's claw, pointing on from the arm."""
    claw = tube(
        curve(xy(wrist), xy(wrist + way * 15 * size), xy(wrist + way * 24 * size - 1j * way * 7 * size)),
        [7 * size, 5 * size, 1],
        steps=4,
    )
    picture.contour(claw, line * 0.8)
    picture.form(claw, c.AMBER_LIGHT, 5 * size, 2 * size, c.AMBER_SHADE)
