#!/usr/bin/python3
"""Cascades of scipy.signal, their sections shuffled, and the noise within them at 250 digits -> noise_golden.txt

F(k) is the rms value at the delays of section k, G(k) that of the output with the noise at the input of section k: roots
of the sums of squares of impulse responses, by the recursion of Astrom and Jury on multiplied-out polynomials. What
is left of that recursion in doubles is printed when this script runs: of the narrow and the high, no digit of half of F
and G, two digits of the others.

A case: name, CK, numerators (count, c1 c2 each), denominators (the same), F, G, and the noise gain in dB after L-two
scaling.
"""
import mpmath as mp
import numpy as np
import scipy
from scipy import signal

mp.mp.dps = 250


def product(p, q):
    r = [p[0] * 0] * (len(p) + len(q) - 1)
    for i, x in enumerate(p):
        for j, y in enumerate(q):
            r[i + j] += x * y
    return r


def sum_of_squares(a, b):
    """Of the impulse response of b/a; nan where the recursion meets an unstable a."""
    b = b + [a[0] * 0] * (len(a) - len(b))
    a0, s = a[0], a[0] * 0
    for m in range(len(a) - 1, 0, -1):
        al, be = a[m] / a[0], b[m] / a[0]
        s += b[m] * be
        b = [b[i] - be * a[m - i] for i in range(m)]
        a = [a[i] - al * a[m - i] for i in range(m)]
        if a[0] <= 0:
            return mp.nan
    return (b[0] ** 2 / a[0] + s) / a0


def noise(numerators, denominators, number):
    n = max(len(numerators), len(denominators))
    lists = [[[number(1)] + [number(x) for x in f] for f in factors] + [[number(1)]] * (n - len(factors))
             for factors in (numerators, denominators)]
    F, G, num, den = [], [], [number(1)], [number(1)]
    for b, a in zip(*lists):
        den = product(den, a)
        F.append(sum_of_squares(den, num + [number(0)] * (len(den) - len(num))) if len(num) <= len(den)
                 else sum_of_squares(den + [number(0)] * (len(num) - len(den)), num))
        num = product(num, b)
    num, den = [number(1)], [number(1)]
    for b, a in zip(lists[0][::-1], lists[1][::-1]):
        num, den = product(num, b), product(den, a)
        width = max(len(num), len(den))
        G.insert(0, sum_of_squares(den + [number(0)] * (width - len(den)), num))
    return F, G


def cascade(sos, shuffle):
    ck = float(np.prod(sos[:, 0]))
    num = [(float(s[1] / s[0]), float(s[2] / s[0])) for s in sos]
    den = [(float(s[4]), float(s[5])) for s in sos]
    if shuffle:
        rng = np.random.default_rng(shuffle)
        num, den = ([f[i] for i in rng.permutation(len(f))] for f in (num, den))
    return ck, num, den


CASES = {
    "bandpass_8_wide": cascade(signal.cheby1(4, 0.1, [0.1, 0.6], "bandpass", output="sos"), 1),
    "zeros_first": (0.5, [(0.5, 0.3), (-1.0, 0.0), (0.0, 1.0)], [(-0.9, 0.0)]),
    "bandpass_24": cascade(signal.ellip(12, 0.1, 60, [0.495, 0.505], "bandpass", output="sos"), 0),
    "bandpass_24_shuffled": cascade(signal.ellip(12, 0.1, 60, [0.495, 0.505], "bandpass", output="sos"), 2),
    "bandpass_50": cascade(signal.cheby1(25, 0.1, [0.199, 0.201], "bandpass", output="sos"), 3),
    "bandpass_12_hair": cascade(signal.ellip(6, 0.1, 60, [0.3, 0.30001], "bandpass", output="sos"), 4),
    "lowpass_24": cascade(signal.ellip(24, 0.1, 60, 0.4, output="sos"), 5),
    "lowpass_12_narrow": cascade(signal.ellip(12, 0.1, 60, 0.001, output="sos"), 6),
    "poles_alone": (1e-6, [], [(-1.9, 0.95)] * 3),
    "25_equal": (1e-20, [(0.0, -1.0)] * 25, [(-1.2, 0.99)] * 25),
}

with open("noise_golden.txt", "w") as out:
    print(f"# noise_reference.py, scipy {scipy.__version__}, mpmath {mp.__version__}: digits beyond a double's are "
          "rounding of what is compared", file=out)
    for name, (ck, num, den) in CASES.items():
        F, G = noise(num, den, mp.mpf)
        doubles = noise(num, den, float)
        worst = max(abs(x - y) / y for x, y in zip(sum(doubles, []), F + G)) if mp.nan not in sum(doubles, []) else mp.nan
        bad = sum(1 for x in sum(doubles, []) if mp.isnan(x))
        print(f"{name}: in doubles {bad} of {2 * len(F)} fail, error of the others "
              f"{max((float(abs(x - y) / y) for x, y in zip(sum(doubles, []), F + G) if not mp.isnan(x)), default=0):.1e}")
        terms = [x * y for x, y in zip(F, G)]
        power = mp.mpf(ck) ** 2 * (3 * terms[0] + 5 * sum(terms[1:])) + 2
        print(name, repr(ck), sep="\n", file=out)
        for factors in (num, den):
            print(len(factors), file=out)
            for c1, c2 in factors:
                print(repr(c1), repr(c2), file=out)
        for row in (F, G):
            print(*(mp.nstr(mp.sqrt(x), 17) for x in row), file=out)
        print(mp.nstr(10 * mp.log10(power), 17), file=out)
