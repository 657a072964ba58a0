#!/usr/bin/env python3
"""Losses of filters of stubs and lines: prints microwave_losses.txt. Needs mpmath.

Low-pass and high-pass: the angle sums of M. C. Horton and R. J. Wenzel, "General theory and design of optimum
quarter-wave TEM filters" (1965), for m stubs and n unit elements. Band-pass: the same sum over stubs of both kinds and
unit elements, each with the angle of its own transmission zero (H. J. Carlin and W. Kohler, 1965). Maximally flat: the
products instead of the sums.
"""
import mpmath as mp

mp.mp.dps = 40
RIPPLE = mp.mpf("0.1")                        # dB at the band edges
EPS2 = 10 ** (RIPPLE / 10) - 1
FS, LOWER, UPPER = mp.mpf(20000), mp.mpf(2000), mp.mpf(3000)


def theta(f):
    return mp.pi * f / FS


def one_sided(kind, flat, m, n, f):
    """|K|^2 of a low-pass (edge UPPER) or high-pass (edge LOWER)."""
    t = theta(f)
    if kind == "lp":
        stub, line = mp.tan(t) / mp.tan(theta(UPPER)), mp.sin(t) / mp.sin(theta(UPPER))
    else:
        stub, line = mp.tan(theta(LOWER)) / mp.tan(t), mp.cos(t) / mp.cos(theta(LOWER))
    if flat:
        return EPS2 * stub ** (2 * m) * line ** (2 * n)
    return EPS2 * mp.re(mp.cos(m * mp.acos(stub) + n * mp.acos(line))) ** 2


def band(m, n, f):
    """m stubs of either kind, n lines, n even; y = (t^2 - t1^2)/(t^2 - t2^2) is negative in the band."""
    t2, low, high = mp.tan(theta(f)) ** 2, mp.tan(theta(LOWER)) ** 2, mp.tan(theta(UPPER)) ** 2
    y = mp.mpc((t2 - low) / (t2 - high))
    at_zero, at_infinity, at_line = low / high, mp.mpf(1), (1 + low) / (1 + high)
    angle = mp.mpc(0)
    for place, count in ((at_zero, m), (at_infinity, m), (at_line, n)):
        root = mp.sqrt(place)
        angle += count * mp.log((mp.sqrt(y) + root) / (mp.sqrt(y) - root)) / 2
    return EPS2 * mp.re(mp.cosh(angle)) ** 2 if y.real < 0 else EPS2 * mp.re(mp.cosh(mp.re(angle))) ** 2


print("# microwave_losses.py, mpmath", mp.__version__, "with 40 digits; 0.1 dB at the edges, quarter wave at 10 kHz.")
print("# Tolerance 1e-9 of the loss, 1e-9 dB below 1 dB: rounding of the element values (1e-16) by up to 28 elements.")
print("# kind (lp hp bp), 1 for maximally flat, stubs (of either kind for bp), lines, then pairs of Hz and dB")
for kind in ("lp", "hp", "bp"):
    for flat in (1, 0):
        for m in (0, 1, 2, 3):
            for n in (0, 1, 2, 5, 8, 25):
                if m + n == 0 or (kind == "bp" and (flat or m == 0 or n % 2)):
                    continue
                cells = []
                for f in (700, 1500, 2100, 2400, 2950, 3600, 5500, 8000):
                    k2 = band(m, n, mp.mpf(f)) if kind == "bp" else one_sided(kind, flat, m, n, mp.mpf(f))
                    loss = 10 * mp.log10(1 + k2)
                    if loss < 120:
                        cells.append(f"{f} {mp.nstr(loss, 18)}")
                print(kind, flat, m, n, *cells)
