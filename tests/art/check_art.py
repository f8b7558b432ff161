#!/usr/bin/python3
"""Checks the artwork: names, sizes, clean edges, registration, weights, icon theme and tick.

Prints one line per check and exits with 1 if any failed. Needs python3-numpy, python3-pil and librsvg2-bin."""

import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import icons  # noqa: E402  (found by the path set above)
import images  # noqa: E402
import tick  # noqa: E402
from report import Report  # noqa: E402

TREE = pathlib.Path(__file__).resolve().parents[2]


def main():
    """Runs every group of checks on the tree given, or on the one that this file belongs to."""
    tree = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else TREE
    report = Report()
    for group in (images, icons, tick):
        group.check(tree, report)
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
