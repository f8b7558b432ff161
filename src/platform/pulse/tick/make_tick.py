#!/usr/bin/python3
"""Makes tick.wav, the short dry click that goes with a mouse click. Needs the standard library only.

Two damped tones and a breath of noise at the front, like a small switch. The same file comes out of every run.
"""

import math
import pathlib
import random
import struct
import wave

RATE = 48000
SECONDS = 0.012
PEAK = 0.5  # of full scale: beside other sounds it must not startle

# frequency in Hz, strength, time constant of the decay in seconds
TONES = [(2600.0, 1.0, 0.0016), (4300.0, 0.6, 0.0009)]
NOISE_STRENGTH = 0.35
NOISE_DECAY = 0.0005
RISE = 0.0002  # seconds
FALL = 0.003  # seconds, at the end


def samples():
    noise = random.Random(1)
    count = round(RATE * SECONDS)
    result = []
    for index in range(count):
        time = index / RATE
        value = sum(
            strength * math.exp(-time / decay) * math.sin(2 * math.pi * frequency * time)
            for frequency, strength, decay in TONES
        )
        value += NOISE_STRENGTH * math.exp(-time / NOISE_DECAY) * noise.uniform(-1, 1)
        left = (count - 1 - index) / RATE
        value *= min(1.0, time / RISE) * min(1.0, left / FALL)
        result.append(value)
    # No direct current: what the mean is off is taken away in the shape of the sound, so that both ends stay at zero.
    weight = [abs(value) for value in result]
    offset = sum(result) / sum(weight)
    result = [value - offset * share for value, share in zip(result, weight)]
    loudest = max(abs(value) for value in result)
    return [round(value / loudest * PEAK * 32767) for value in result]


def main():
    values = samples()
    with wave.open(str(pathlib.Path(__file__).with_name("tick.wav")), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(struct.pack(f"<{len(values)}h", *values))


if __name__ == "__main__":
    main()
