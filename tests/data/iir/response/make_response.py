#!/usr/bin/python3
"""Writes responses.txt: digital filters of scipy.signal by zeros, poles and gain, and what they do over frequency.

The roots are those of scipy, rounded to doubles, as a ratio in 1/z; loss, phase of 1/H and delay are computed from them
by mpmath with 60 digits, the delay as the sum over roots of Re(w N'/N), w = e^(-j theta).

    filter NAME FS GAIN ZEROS POLES ROWS
    re im                               of each zero, of each pole
    f  loss(dB)  phase(deg)  delay(samples)
"""
import os

import mpmath as mp
import numpy as np
from scipy import signal

mp.mp.dps = 60
FILTERS = [
    ("elliptic_low_pass_8", 48000, signal.ellip(8, 0.1, 60, 6000, fs=48000, output="zpk"),
     (0, 1000, 5999, 6000, 7000, 12000, 20000, 23999)),
    ("chebyshev_high_pass_5", 8000, signal.cheby2(5, 40, 1500, "high", fs=8000, output="zpk"),
     (1, 700, 1499, 1600, 2500, 3999, 4000)),
    ("elliptic_band_pass_6", 16, signal.ellip(6, 0.5, 50, [2, 3], "band", fs=16, output="zpk"),
     (0.25, 1.5, 2, 2.5, 2.999, 4.5, 7.5, 9, 20)),
    ("narrow_band_pass_3", 96000, signal.butter(3, [985, 1015], "band", fs=96000, output="zpk"),
     (900, 985, 999.8874828110827, 1000, 1014, 1100, 20000)),
    ("narrow_band_pass_4", 96000, signal.butter(4, [985, 1015], "band", fs=96000, output="zpk"),
     (900, 985, 999.8874828110827, 1000, 1014, 1100, 20000)),
]


def in_pairs(roots):
    rows = []
    for r in sorted(np.asarray(roots, complex), key=lambda r: (abs(r.imag) < 1e-9, r.real, r.imag)):
        if abs(r.imag) < 1e-9:
            rows.append((r.real, 0.0))
        elif r.imag > 0:
            rows += [(r.real, r.imag), (r.real, -r.imag)]
    assert len(rows) == len(roots)
    return rows


def response(zeros, poles, gain, f, fs):
    w = mp.expjpi(-2 * mp.mpf(f) / fs)
    h, delay = mp.mpc(gain), mp.mpf(0)
    for roots, sign in ((zeros, 1), (poles, -1)):
        for re, im in roots:
            u = 1 - mp.mpc(re, im) * w
            h *= u**sign
            delay += sign * mp.re((u - 1) / u)
    return -20 * mp.log10(abs(h)), -mp.degrees(mp.arg(h)), delay


with open(os.path.join(os.path.dirname(__file__), "responses.txt"), "w") as file:
    file.write("# By make_response.py: scipy's filters, mpmath's responses. Roots as read are exact; rows to 17 digits.\n")
    for name, fs, (z, p, k), frequencies in FILTERS:
        zeros, poles = in_pairs(z), in_pairs(p)
        file.write(f"filter {name} {fs} {float(k)!r} {len(zeros)} {len(poles)} {len(frequencies)}\n")
        for re, im in zeros + poles:
            file.write(f"{float(re)!r} {float(im)!r}\n")
        for f in frequencies:
            loss, phase, delay = response(zeros, poles, float(k), f, fs)
            file.write(f"{float(f)!r} {mp.nstr(loss, 17)} {mp.nstr(phase, 17)} {mp.nstr(delay, 17)}\n")
