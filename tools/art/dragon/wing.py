"""A bat wing from its joints: membrane with scalloped edge, arm, fingers and thumb claw."""

from dragon import palette as c
from dragon.geometry import closed, curve, side, tube, xy


def scallop(a, b, towards, depth):
    """The middle of a membrane edge between two finger tips, pulled towards the wrist."""
    middle = (a + b) / 2
    return middle + (towards - middle) * depth


def bowed(a, b, bow):
    """A finger from a to b, bent sideways by a share of its length."""
    return curve(xy(a), xy((a + b) / 2 + 1j * (b - a) * bow), xy(b))


def wing(picture, shoulder, elbow, wrist, tips, root, line, size, far=False, bow=0.08, depth=0.22):
    """Joints are complex points; `tips` run from the leading finger to the last, `root` is where the membrane meets the back."""
    fingers = [bowed(wrist, tip, bow * (1 - k / max(1, len(tips) - 1) * 1.4)) for k, tip in enumerate(tips)]
    pairs = [(*xy(shoulder), "c"), xy(elbow), (*xy(wrist), "c")]
    lead = fingers[0][0][3]
    pairs += [xy(lead), (*xy(tips[0]), "c")]
    for a, b in zip(tips, tips[1:]):
        pairs += [xy(scallop(a, b, wrist, depth)), (*xy(b), "c")]
    pairs += [xy(scallop(tips[-1], root, wrist, depth * 0.8)), (*xy(root), "c")]
    membrane = closed(*pairs)
    picture.contour(membrane, line)
    middle = sum(tips) / len(tips)
    warm = picture.linear(xy(wrist), xy(middle), (0, c.AMBER_DEEP), (0.5, c.AMBER), (1, c.AMBER_LIGHT))
    picture.fill(membrane, warm)
    with picture.clipped(membrane):
        for a, b in zip(tips, tips[1:] + [root]):
            fold = closed((*xy(wrist), "c"), (*xy(b), "c"), xy((scallop(a, b, wrist, depth) * 2 + b) / 3), xy((a + b * 2) / 3 * 0.6 + wrist * 0.4))
            picture.fill(fold, c.AMBER_SHADE, 0.16)
        picture.edges(membrane, 10 * size, 3 * size, c.AMBER_SHADE, 0.4, 0.5)
        if far:
            picture.fill(membrane, c.AMBER_SHADE, 0.5)
    skin = (c.FAR_BODY, c.FAR_DEEP, c.FAR_DEEP) if far else (c.BODY_LIGHT, c.BODY, "#5a9afa")
    for finger in reversed(fingers):
        bone = tube(finger, [5.6 * size, 4 * size, 2.2 * size], steps=5)
        picture.contour(bone, line * 0.5)
        picture.fill(bone, picture.linear(xy(wrist), xy(finger[-1][3]), (0, skin[1]), (1, skin[0])))
    bone_line = curve(xy(shoulder), xy(elbow), xy(wrist))
    arm_widths = [17 * size, 11 * size, 8 * size]
    arm = tube(bone_line, arm_widths, steps=5)
    claw_way = (wrist - elbow) / abs(wrist - elbow)
    claw = tube(
        curve(xy(wrist), xy(wrist + claw_way * 15 * size), xy(wrist + claw_way * 24 * size - 1j * claw_way * 7 * size)),
        [7 * size, 5 * size, 1], steps=4,
    )
    picture.contour(claw, line * 0.8)
    picture.form(claw, c.AMBER_LIGHT, 5 * size, 2 * size, c.AMBER_SHADE)
    for sign in (-1, 1):
        edge = side(bone_line, arm_widths, sign, 12)[3:]
        picture.stroke(curve(*[xy(p) for p in edge]), c.LINE, 2 * line)
    skin_fill = picture.linear(xy(shoulder), xy(wrist), (0, skin[2]), (0.3, skin[1]), (1, skin[0]))
    picture.form(arm, skin_fill, 9 * size, 0)
