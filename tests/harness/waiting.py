"""Waiting for conditions, never for time alone."""

import select
import time

LONGEST_WAIT = 30.0
BETWEEN_LOOKS = 0.02


class TookTooLong(AssertionError):
    pass


def pause(seconds):
    """Lets other processes run between two looks at a condition."""
    select.select([], [], [], seconds)


def until(condition, what, seconds=LONGEST_WAIT):
    """Calls `condition` until it gives something true, and returns that. `what` names what was waited for; a function is asked
    at the end, so that it can tell what was there instead."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= end:
            raise TookTooLong(f"after {seconds:g} s: {what() if callable(what) else what}")
        pause(BETWEEN_LOOKS)


def stays(condition, what, seconds):
    """Fails as soon as `condition` is not true any more; `seconds` is how long it has to hold."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            raise AssertionError(f"did not last: {what() if callable(what) else what}")
        pause(BETWEEN_LOOKS)
