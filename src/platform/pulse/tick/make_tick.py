#!/usr/bin/python3
"""Makes tick.wav, the short dry click that goes with a mouse click. Needs the standard library only.

A small wooden knock: three damped tones that do not stand in a whole-number ratio, so that no pitch remains when the
tick repeats, and under a millisecond of softened noise for the touch. By 10 ms it has all but died away: at the fastest
click rate the next tick replaces it without a step. The same file comes out of every run.
"""

import math
import pathlib
import random
import struct
import wave

RATE = 48000
SECONDS = 0.012
PEAK = 0.45  # of full scale: beside other sounds it must not startle

# Frequency in Hz, strength, time constant of the decay in seconds, phase in turns.
TONES = [(1730.0, 1.0, 0.0021, 0.0), (2890.0, 0.55, 0.0013, 0.1), (4670.0, 0.28, 0.0007, 0.35)]
NOISE_STRENGTH = 0.5
NOISE_DECAY = 0.00035
NOISE_SOFTNESS = 0.45  # share of the former value that each new one keeps
RISE = 0.00025  # seconds, at the start
FALL = 0.007  # seconds, at the end


def slope(share):
    """A smooth way from 0 to 1."""
    return 0.5 - 0.5 * math.cos(math.pi * min(1.0, max(0.0, share)))


def samples():
    """The tick as whole numbers of 16 bits."""
    chance = random.Random(7)
    count = round(RATE * SECONDS)
    values, window, breath = [], [], 0.0
    for index in range(count):
        time = index / RATE
        breath = NOISE_SOFTNESS * breath + (1 - NOISE_SOFTNESS) * chance.uniform(-1, 1)
        value = NOISE_STRENGTH * math.exp(-time / NOISE_DECAY) * breath
        for frequency, strength, decay, phase in TONES:
            value += strength * math.exp(-time / decay) * math.sin(2 * math.pi * (frequency * time + phase))
        shape = slope(time / RISE) * slope((count - 1 - index) / RATE / FALL)
        values.append(value * shape)
        window.append(shape * math.exp(-time / 0.002))
    # What the mean is off is taken away in the shape of the sound, so that both ends stay at zero.
    offset = sum(values) / sum(window)
    values = [value - offset * share for value, share in zip(values, window)]
    loudest = max(abs(value) for value in values)
    return [round(value / loudest * PEAK * 32767) for value in values]


def main():
    """Writes the file beside this script."""
    values = samples()
    with wave.open(str(pathlib.Path(__file__).with_name("tick.wav")), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(struct.pack(f"<{len(values)}h", *values))


if __name__ == "__main__":
    main()
