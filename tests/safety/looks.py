"""Looks at a program that is told things meanwhile: what its status says has to be what it does."""

import contextlib
import threading

RESTING = ("Ready", "Completed", "Delayed Start")
# A command has been followed once the program has answered a few questions behind it, and its picture is there.
LOOKS_TO_FOLLOW = 3
# A click may be seen a picture before the word for it, and the last one of a run behind its end.
LOOKS_TO_SHOW = 3
LOOKS_TO_END = 1


class Looks:
    """One look after the other, at the status and at how many clicks there were. No status but `words` may be seen, and no click while
    the status says that none comes: as far as commands do not come between."""

    def __init__(self, program, clicks, words):
        self._program = program
        self._clicks = clicks
        self._words = words
        self._lock = threading.Lock()
        self._under_way = 0
        self._given = 0
        self._followed = 0
        self._seen = []

    @contextlib.contextmanager
    def command(self):
        """Something is told to the program; on any thread."""
        with self._lock:
            self._under_way += 1
            self._given += 1
        try:
            yield
        finally:
            with self._lock:
                self._under_way -= 1
                self._given += 1

    def look(self):
        """Returns what the status says."""
        with self._lock:
            given = self._given
        clicks = self._clicks()
        headline = self._program.headline
        assert headline in self._words, headline
        with self._lock:
            is_undisturbed = self._given == given == self._followed and self._under_way == 0
            self._followed = self._given
        self._seen = [*self._seen, (headline, clicks)] if is_undisturbed else []
        self._check()
        return headline

    def _check(self):
        later = self._seen[LOOKS_TO_FOLLOW:][-LOOKS_TO_END - LOOKS_TO_SHOW - 1:]
        if len(later) <= LOOKS_TO_END + LOOKS_TO_SHOW:
            return
        clicks = later[LOOKS_TO_END + 1][1] - later[LOOKS_TO_END][1]
        is_at_rest = all(headline in RESTING for headline, _ in later)
        assert not (is_at_rest and clicks), f"{clicks} clicks while the status says {[headline for headline, _ in later]}"
