"""What an SVG source holds."""

import re
import xml.etree.ElementTree as ElementTree

SPACE = "{http://www.w3.org/2000/svg}"
# What the icon loaders of the desktops draw alike.
PLAIN = {"svg", "title", "defs", "g", "path", "linearGradient", "radialGradient", "stop"}
# The mascot is rendered by one known renderer, which may clip as well; the anchor is a circle that draws nothing.
LAYERED = PLAIN | {"clipPath", "circle"}


def parse(path):
    """The root element."""
    return ElementTree.parse(path).getroot()


def elements(root):
    """Names of all elements."""
    return {element.tag.removeprefix(SPACE) for element in root.iter()}


def groups(root):
    """Names of the groups, without the number of their repetition."""
    return {re.sub(r"\d+$", "", group.get("id")) for group in root.iter(SPACE + "g") if group.get("id")}


def repeated(root):
    """Ids that occur more than once."""
    ids = [element.get("id") for element in root.iter() if element.get("id")]
    return sorted({name for name in ids if ids.count(name) > 1})


def missing(root):
    """Ids that are referred to and not there."""
    ids = {element.get("id") for element in root.iter()}
    used = set()
    for element in root.iter():
        for value in element.attrib.values():
            used |= set(re.findall(r"url\(#([^)]+)\)", value))
    return sorted(used - ids)


def anchor(root):
    """The place of the anchor."""
    for circle in root.iter(SPACE + "circle"):
        if circle.get("id") == "anchor":
            return float(circle.get("cx")), float(circle.get("cy"))
    raise ValueError("no anchor")


def inks(root):
    """Every colour that is painted with."""
    values = {element.get(key) for element in root.iter() for key in ("fill", "stroke", "stop-color")}
    return values - {None, "none"}
