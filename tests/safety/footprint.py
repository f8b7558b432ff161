"""What a process holds, over the time, and whether that grows."""

import os
import statistics
import time

# As long as this, a soak is held to the bounds of the long form.
LONG = 600.0  # seconds

# From the middle third of the time to the last. In the soak on X11 a third is 80,000 clicks and more, and 1,600 deeds of the user: the
# smallest piece of memory that there is (32 bytes), lost with each click, comes to five times as much, and a third of a kilobyte for each
# deed to as much. Half an hour without any loss grew by 120 to 184 KiB: what is allocated lies less densely with time.
MOST_MEMORY = 512  # KiB
# The last tenth lies further behind the middle third than the last third does, by 0.45 of the time and not 0.33.
FURTHER = 0.45 / 0.33
# A short soak is the beginning of a long one, in which the toolkit's waste, and what it keeps, still grow: by 0.3 to 0.7 MiB where nothing
# was lost.
MOST_MEMORY_IN_SHORT = 2 * 1024  # KiB
# Pictures of the window are as large as it is, and a third of a short soak may have seen one size only. This is the largest.
LARGEST_PICTURE = 980 * 960 * 4 // 1024  # KiB

MEMORY, SHARED, THREADS, DESCRIPTORS = "KiB of its own", "KiB shared", "threads", "descriptors"
THINGS, PICTURES = "things in the server", "KiB of pictures there"


class Footprint:
    """Takes samples of the process. `server` tells what an X server holds for it, where there is one."""

    def __init__(self, pid, server=None):
        self._pid = pid
        self._server = server
        self._begin = time.monotonic()
        self._moments = []
        self._samples = []

    def take(self):
        with open(f"/proc/{self._pid}/status", encoding="ascii", errors="replace") as file:
            status = dict(line.split(":", 1) for line in file)
        sample = {MEMORY: int(status["RssAnon"].split()[0]), SHARED: int(status["RssShmem"].split()[0]),
                  THREADS: int(status["Threads"]), DESCRIPTORS: len(os.listdir(f"/proc/{self._pid}/fd"))}
        if self._server:
            sample[THINGS], sample[PICTURES] = self._server.count(self._pid)
        self._moments.append(time.monotonic() - self._begin)
        self._samples.append(sample)

    def _between(self, what, begin, end):
        """All samples from one share of the time to another."""
        whole = self._moments[-1]
        return [sample[what] for moment, sample in zip(self._moments, self._samples) if begin * whole <= moment <= end * whole]

    def _growth(self, what):
        """From the middle third to the last, and to the last tenth, of what is usual in each."""
        middle, third, tenth = (statistics.median_low(self._between(what, *part)) for part in ((1 / 3, 2 / 3), (2 / 3, 1.0), (0.9, 1.0)))
        return third - middle, tenth - middle

    def _slope(self, what):
        """In a second, over the last two thirds."""
        late = [(moment, sample[what]) for moment, sample in zip(self._moments, self._samples) if 3 * moment >= self._moments[-1]]
        return statistics.linear_regression(*zip(*late)).slope

    def tell(self):
        for number in range(0, len(self._samples), max(1, len(self._samples) // 20)):
            what = ", ".join(f"{value} {name}" for name, value in self._samples[number].items())
            print(f"after {self._moments[number]:.0f} s: {what}")
        for name in self._samples[0]:
            to_third, to_tenth = self._growth(name)
            print(f"growth from the middle third to the last: {to_third} {name}, to the last tenth: {to_tenth}, "
                  f"slope: {3600 * self._slope(name):.0f} an hour")
        print(f"of its own for each second: {1024 * self._slope(MEMORY):.0f} bytes", flush=True)

    def _check_least(self, name, most, share=0.0):
        """Of what comes and goes: a sound that is played takes some, and so does a larger window. So what counts is how little there
        is at times; less than that is left out in as large a share of the samples."""
        last, before = (sorted(values)[int(share * len(values))] for values in (self._between(name, 2 / 3, 1.0),
                                                                               self._between(name, 1 / 3, 2 / 3)))
        assert last <= before + most, f"at the least {last} {name} in the last third, and {before} in the middle one"

    def check(self):
        is_long = self._moments[-1] >= LONG
        most = MOST_MEMORY if is_long else MOST_MEMORY_IN_SHORT
        to_third, to_tenth = self._growth(MEMORY)
        assert to_third <= most and to_tenth <= FURTHER * most, f"grown by {to_third} and {to_tenth} {MEMORY}"
        for name in self._samples[0]:
            if name == THINGS:
                # Nearly always as many; one less for moments that not every third has a sample of, as between a picture and the next.
                assert max(self._growth(name)) <= 0, f"grown by {self._growth(name)} {name}"
            elif name in (THREADS, DESCRIPTORS):
                self._check_least(name, 0)
            elif name == PICTURES:
                # Here as well one of them may be missing for a moment.
                self._check_least(name, most if is_long else LARGEST_PICTURE, share=0.05)
            elif name == SHARED:
                self._check_least(name, most if is_long else LARGEST_PICTURE)
