"""Every figure that was measured, kept as it came, and the table that is made of them."""

import json
import os
import platform
import statistics
import time
from dataclasses import dataclass

FLOOR = "floor"


@dataclass(frozen=True)
class Figure:
    """A row of the table. `floor` says who the least there can be is, where there is one. Ratios of what should be nothing say
    nothing."""
    title: str
    unit: str
    floor: str = ""
    has_ratios: bool = True


def percentile(values, percent):
    """The smallest of the values that at least that share does not exceed."""
    ordered = sorted(values)
    return ordered[max(0, -(-len(ordered) * percent // 100) - 1)]


def number(value):
    """Three digits that say something."""
    if value == 0:
        return "0"
    digits = 0 if abs(value) >= 100 else 1 if abs(value) >= 10 else 2 if abs(value) >= 0.1 else 3
    return f"{value:.{digits}f}"


class Record:
    def __init__(self, folder, others, builds):
        self._others = others
        self._builds = builds
        self._figures = {}  # figure: {subject: [value]}
        self._busy = []
        self._file = open(os.path.join(folder, "figures.jsonl"), "w", encoding="utf-8", buffering=1)

    def add(self, figure, subject, value, **details):
        self._figures.setdefault(figure, {}).setdefault(subject, []).append(value)
        self._file.write(json.dumps({"time": time.time(), "figure": figure.title, "unit": figure.unit, "subject": subject,
                                     "value": value, **details}) + "\n")

    def add_busy(self, cores):
        """How many cores others kept busy right before something was measured."""
        self._busy.append(cores)
        self._file.write(json.dumps({"time": time.time(), "busyCores": cores, "load": os.getloadavg()}) + "\n")

    def table(self):
        first, *later = self._builds
        columns = [FLOOR, *self._others, *self._builds]
        ratios = [(build, FLOOR) for build in self._builds] + [(build, first) for build in later]
        heads = ["figure", *columns, *(f"{above} ÷ {below}" for above, below in ratios)]
        lines = ["| " + " | ".join(heads) + " |", "|---" * len(heads) + "|"]
        for figure, values in self._figures.items():
            title = f"{figure.title}, {figure.unit}" + (f" ({figure.floor})" if figure.floor else "")
            cells = [self._cell(values.get(column)) for column in columns]
            cells += [self._ratio(values.get(above), values.get(below)) if figure.has_ratios else "" for above, below in ratios]
            lines.append("| " + " | ".join([title, *cells]) + " |")
        return "\n".join([*lines, "", self._conditions(), ""])

    @staticmethod
    def _cell(values):
        if not values:
            return ""
        middle = number(statistics.median(values))
        return f"{middle} ({number(min(values))} to {number(max(values))})" if len(values) > 1 else middle

    @staticmethod
    def _ratio(above, below):
        if not above or not below or statistics.median(below) <= 0:
            return ""
        return f"{statistics.median(above) / statistics.median(below):.2f}"

    def _conditions(self):
        text = f"Medians (lowest to highest). {os.cpu_count()} cores, Linux {platform.release()}, {time.strftime('%d %B %Y')}."
        if self._busy:
            text += (f" Others kept {statistics.median(self._busy):.2f} cores busy right before a figure was taken (median; most "
                     f"{max(self._busy):.2f}).")
        return text
