#!/usr/bin/python3
"""Golden windows and windowed designs: writes windows_golden.txt beside this script.

Windows by their closed forms in 40 digits: powers of the cosine, cosine sums, I0, the Chebyshev polynomial's samples summed,
Taylor's coefficients. Where scipy.signal.windows has the window, both must agree to 1e-12 before anything is written: Hann and
Blackman in its windows of N + 2 points without the ends, Chebyshev for a level of 20 log10(1 + 10^(p/20)) dB, Taylor by the
coefficients, since scipy's period is N where this one is N - 1. Constants that are kept in single precision are rounded to it.
Designs by scipy.signal.firwin, scale=False.
"""
import os
import warnings

import mpmath as mp
import numpy as np
import scipy
from scipy.signal import firwin, windows

mp.mp.dps = 40
warnings.simplefilter("ignore")
SUMS = {3: [.54, .46], 9: [.42659071, .49656062, .07684867], 10: [.42323, .49755, .07922], 11: [.40897, .5, .09103],
        12: [.4243801, .4973406, .0782793], 13: [.35875, .48829, .14128, .01168],
        14: [.338946, .481973, .161054, .018027], 15: [.355768, .487396, .144232, .012604],
        16: [.3635819, .4891775, .1365995, .0106411]}
POWERS = {4: 2, 5: 1, 6: 3, 7: 4}  # of the cosine that is 0 one sample beyond both ends


def single(x):
    return float(np.float32(x))


def beta_of(p):
    d = p - single(20.96)
    if p > 50:
        return single(.1102) * (p - single(8.7))
    return single(.58417) * d ** single(.4) + single(.07886) * d if d > 0 else 0.0


def cosine_sum(a, t, period):
    return mp.fsum(mp.mpf(c) * mp.cos(2 * mp.pi * k * t / period) for k, c in enumerate(a))


def chebyshev(n, p):
    """By n1 = n - 1: the polynomial of degree n1 at x0 cos(pi j/n), transformed back."""
    x0 = mp.cosh(mp.acosh(1 + mp.mpf(10) ** (mp.mpf(p) / 20)) / (n - 1))
    samples = [mp.chebyt(n - 1, x0 * mp.cos(mp.pi * j / n)) for j in range(n)]
    def w(t):
        return mp.fsum(s * mp.cos(2 * mp.pi * j * t / n) for j, s in enumerate(samples)).real
    return lambda t: w(t) / w(mp.mpf(1 - n % 2) / 2)


def taylor(p):
    a2 = (mp.acosh(mp.mpf(10) ** (mp.mpf(p) / 20)) / mp.pi) ** 2
    s = [mp.mpf(k * k) / ((k - mp.mpf(1) / 2) ** 2 + a2) for k in range(1, 400)]
    sigma2 = max(s)
    nbar = min(s.index(sigma2) + 1, 20)
    f = [mp.mpf(1)]
    for m in range(1, nbar):
        zeros = mp.fprod(1 - m * m / (sigma2 * ((k - mp.mpf(1) / 2) ** 2 + a2)) for k in range(1, nbar))
        f.append(zeros / mp.fprod(1 - mp.mpf(m * m) / (k * k) for k in range(1, nbar) if k != m) * (-1) ** (m + 1))
    return [v / mp.fsum(f) for v in f], nbar


def sampled_kaiser(p):
    beta = beta_of(p)
    m = min(int(beta), 3)
    c = [mp.sinh(mp.pi * mp.sqrt(beta * beta - i * i)) / (mp.pi * mp.sqrt(beta * beta - i * i)) for i in range(m)]
    d = c[0] + 2 * mp.fsum(c[1:])
    return [c[0] / d, beta] if m == 1 else [c[0] / d] + [2 * v / d for v in c[1:]]


def window(index, n, p):
    """The window as a function of t, and scipy's whole one or None."""
    if index == 1:
        return lambda t: mp.mpf(p), windows.boxcar(n) * p
    if index == 2:
        return lambda t: 1 - t / ((n + 1) // 2), windows.triang(n)
    if index in POWERS:
        return lambda t: mp.cos(mp.pi * t / (n + 1)) ** POWERS[index], windows.hann(n + 2)[1:-1] if index == 4 else None
    if index == 8:
        return lambda t: cosine_sum([.42, .5, .08], t, n + 1), windows.blackman(n + 2)[1:-1]
    if index in SUMS:
        named = {3: windows.hamming, 13: windows.blackmanharris, 16: windows.nuttall}
        peer = named[index](n) if index in named else windows.general_cosine(n, SUMS[index])
        return lambda t: cosine_sum(SUMS[index], t, n - 1), peer
    if index == 17:
        b = mp.mpf(beta_of(p))
        return lambda t: mp.besseli(0, b * mp.sqrt(1 - 4 * t * t / (n - 1) ** 2)) / mp.besseli(0, b), windows.kaiser(n, float(b))
    if index == 18:
        return chebyshev(n, p), windows.chebwin(n, 20 * np.log10(1 + 10 ** (p / 20))) if n < 100 else None
    if index == 19:
        g = single(single(2 * p / n) ** 2 / 2)
        return lambda t: mp.exp(-g * t * t), windows.gaussian(n, 1 / np.sqrt(2 * g))
    if index == 20:
        f, nbar = taylor(p)
        if n % 2 and nbar < 20:
            peer = windows.taylor(n, nbar, p)
            agree(lambda t: cosine_sum(f, t, n), peer, n)
        return lambda t: cosine_sum(f, t, n - 1), None
    return lambda t: cosine_sum(sampled_kaiser(p), t, n - 1), None


def places(n):
    """t, from the centre outward."""
    return [mp.mpf(i) + mp.mpf(1 - n % 2) / 2 for i in range((n + 1) // 2)]


def agree(w, peer, n):
    half = peer[n // 2:]
    worst = max(abs(w(t) - v / half[0] * w(places(n)[0])) for t, v in zip(places(n), half))
    assert worst < 1e-12, (n, worst)


def spread(half):
    return sorted({1, 2, (half + 1) // 2, half - 1, half} - {0})


def main():
    parameters = {1: (1, .5), 17: (20, 40, 60, 170), 18: (30, 60, 100), 19: (2.5, 3.5), 20: (30, 60, 100), 21: (25, 30, 45, 90)}
    lines = [f"# windows.py; mpmath {mp.__version__} (40 digits), scipy {scipy.__version__} (agrees to 1e-12; firwin)",
             "# w: window, length, parameter, then element (centre outward) and value; tolerance 1e-12",
             "# d: filter type, length, window, parameter, edges and sampling frequency, then tap (outer end first) and value"]
    for index in range(1, 22):
        for p in parameters.get(index, (0,)):
            for n in (3, 20, 33, 512):
                w, peer = window(index, n, p)
                if peer is not None:
                    agree(w, peer, n)
                picked = spread((n + 1) // 2)
                values = [f"{i} {mp.nstr(w(places(n)[i - 1]), 17)}" for i in picked]
                lines.append(f"w {index} {n} {p} " + " ".join(values))
    kinds = {3: ("hamming", 0), 16: ("nuttall", 0), 17: (("kaiser", beta_of(60)), 60)}
    for kind, edges in ((1, (0, 1.1)), (2, (1.6, 0)), (3, (0.9, 1.7)), (4, (0.9, 1.7))):
        for index, (name, p) in kinds.items():
            for n in (20, 21, 512):
                taps = n if n % 2 or kind in (1, 3) else n + 1
                cutoff = [e for e in edges if e > 0]
                h = firwin(taps, cutoff, window=name, pass_zero=kind in (1, 4), scale=False, fs=5.0)
                picked = " ".join(f"{i} {h[i - 1]:.17g}" for i in spread((taps + 1) // 2))
                lines.append(f"d {kind} {n} {index} {p} {edges[0]} {edges[1]} 5.0 {picked}")
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "windows_golden.txt"), "w") as file:
        file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
