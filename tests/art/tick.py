"""The sound of a click."""

import runpy
import struct
import wave

import numpy as np

RATE = 48000


def check(tree, report):
    """All checks of this group."""
    folder = tree / "src/platform/pulse/tick"
    values = report.attempt("the tick can be read", lambda: _read(folder / "tick.wav"))
    if values is None:
        return
    made = runpy.run_path(str(folder / "make_tick.py"))["samples"]()
    report.expect(list(values) == list(made), "the tick is what its script makes")
    length = 1000 * len(values) / RATE
    report.expect(8 <= length <= 20, "the tick lasts 8 to 20 ms", f"{length:.1f} ms")
    wave_ = np.array(values, dtype=float) / 32768
    peak = float(np.abs(wave_).max())
    report.expect(0.2 < peak < 0.9, "the tick is neither faint nor clipped", f"{peak:.2f} of full scale")
    report.expect(abs(wave_.mean()) < 1e-4 * peak, "the tick has no direct current", f"{wave_.mean():.1e}")
    report.expect(values[0] == 0 and values[-1] == 0, "the tick begins and ends at zero", (values[0], values[-1]))
    energy = np.cumsum(wave_**2) / np.sum(wave_**2)
    half, most = (1000 * int(np.searchsorted(energy, share)) / RATE for share in (0.5, 0.99))
    report.expect(half < 2, "the tick is dry: half of it is over at once", f"{half:.1f} ms")
    report.expect(most < 8, "the tick has no tail", f"99 % within {most:.1f} ms")
    cut = float(np.abs(wave_[RATE // 100 - 24 : RATE // 100 + 24]).max()) / peak
    report.expect(cut < 0.01, "the next tick after 10 ms cuts in without a step", f"{cut:.4f} of the peak")
    repeated = np.tile(wave_[: RATE // 100], 50)
    power = np.abs(np.fft.rfft(repeated * np.hanning(len(repeated)))) ** 2
    pitch = np.fft.rfftfreq(len(repeated), 1 / RATE)
    low = float(power[pitch < 60].sum() / power.sum())
    high = float(power[pitch > 9000].sum() / power.sum())
    report.expect(low < 0.001, "fast ticks do not hum", f"{low:.5f} of the power below 60 Hz")
    report.expect(high < 0.03, "the tick is not sharp", f"{high:.4f} of the power above 9 kHz")


def _read(path):
    with wave.open(str(path)) as file:
        if (file.getnchannels(), file.getsampwidth(), file.getframerate()) != (1, 2, RATE):
            raise ValueError(f"{file.getparams()}")
        data = file.readframes(file.getnframes())
    return struct.unpack(f"<{len(data) // 2}h", data)
