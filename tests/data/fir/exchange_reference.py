#!/usr/bin/python3
"""Golden taps of equal ripple FIR designs: writes exchange_golden.txt beside this script.

An exchange of its own, in wider arithmetic, on the design grid:
  * search in 80-bit floats: every local extremum of the weighted error over the whole grid, thinned to alternating signs and
    to NFCNS + 1 points, all of them exchanged at once, until none is exchanged;
  * verdict in 80-bit floats: alternation, and no error on the grid above the deviation times 1 + 1e-12;
  * taps with 60 digits: divided differences, barycentric values and a discrete Fourier sum of the zero-phase response.
Beside the taps stand the largest weighted deviations, measured on a grid 20 times as dense as the design grid, that
scipy.signal.remez reaches: with 512 grid points or more for a coefficient, which is nearly the optimum of the continuous
task, and with the 32 of the design grid. Between the points of a grid of density 32 the error goes up to 1 % higher than on
them where extrema crowd at a band edge; only the second figure can be expected to be equal. (nan: not a task for scipy.)
"""
import math
import os
import sys

import mpmath as mp
import numpy as np
import scipy
from scipy.signal import remez

mp.mp.dps = 60
L = np.longdouble
PI = L("3.14159265358979323846264338327950288")
DENSITY = 32


class Request:
    def __init__(self, name, jtype, taps, edges, fx, wtx, shape=()):
        self.name, self.jtype, self.taps = name, jtype, taps
        self.edges, self.fx, self.wtx = [float(e) for e in edges], [float(v) for v in fx], [float(w) for w in wtx]
        self.shape = [(np.float32(f), np.float32(v)) for f, v in shape]
        self.neg, self.odd = int(jtype != 1), taps % 2
        self.n = taps // 2 + (1 if self.odd and not self.neg else 0)
        self.step = 0.5 / (DENSITY * self.n)

    def desired(self, f, b):
        if self.jtype == 2:
            return f * self.fx[b]
        if not self.shape or self.fx[b] == 0:
            return self.fx[b]
        below = [i for i, (p, _) in enumerate(self.shape) if float(p) <= f]
        if not below:
            return f * self.fx[b]
        i = below[-1]
        if i + 1 == len(self.shape):
            return float(self.shape[i][1])
        (f0, v0), (f1, v1) = [(float(p), float(v)) for p, v in self.shape[i:i + 2]]
        return self.fx[b] * (v0 + (v1 - v0) * (f - f0) / (f1 - f0))

    def weight(self, f, b):
        if self.jtype == 2:
            return self.wtx[b] / f if self.fx[b] >= 0.0001 else self.wtx[b]
        if self.shape and self.fx[b] != 0:
            d = self.desired(f, b)
            return self.wtx[b] / d if d >= 0.001 else self.wtx[b]
        return self.wtx[b]

    def grid(self, refine=1):
        """Frequencies with their bands, in doubles, step by step as the design takes them."""
        step, points = self.step / refine, []
        for b in range(len(self.fx)):
            f, upper = self.edges[2 * b], self.edges[2 * b + 1]
            if b == 0 and self.neg and f < self.step:
                f = self.step
            while f + step <= upper:
                points.append((f, b))
                f += step
            points.append((upper, b))
        if self.neg == self.odd:
            while points[-1][0] > 0.5 - self.step:
                points.pop()
        return points

    def factor(self, w, sin, cos):
        """Q(w) of the zero-phase response Q A."""
        if not self.neg:
            return 1 + 0 * w if self.odd else cos(w / 2)
        return sin(w) if self.odd else sin(w / 2)


def exchange(r, points):
    f = np.array([p[0] for p in points], dtype=L)
    q = r.factor(2 * PI * f, np.sin, np.cos)
    d = np.array([r.desired(*p) for p in points], dtype=L) / q
    w = np.array([r.weight(*p) for p in points], dtype=L) * q
    x = np.cos(2 * PI * f)
    band = np.array([p[1] for p in points])
    n = r.n
    assert len(points) > n
    # start: equal shares of each band's arc, as the extrema of a Chebyshev polynomial lie
    at = np.unique(np.round(np.linspace(0, len(points) - 1, n + 1)).astype(int))
    for passes in range(1, 200):
        lam, dev = solve(x[at], d[at], w[at])
        signs = np.where(np.arange(n + 1) % 2 == 0, L(1), L(-1))
        y = d[at] - signs * dev / w[at]
        e = np.empty(len(points), dtype=L)
        for lo in range(0, len(points), 1024):
            part = slice(lo, lo + 1024)
            diff = x[part, None] - x[None, at]
            hit = diff == 0
            diff[hit] = 1
            t = lam / diff
            a = (t @ y) / t.sum(axis=1)
            rows, cols = np.nonzero(hit)
            a[rows] = y[cols]
            e[part] = (d[part] - a) * w[part]
        e[at] = signs * dev
        new = pick(e, band, n + 1)
        if max(abs(e)) <= abs(dev) * (1 + L(1e-12)):
            assert np.all(e[at][:-1] * e[at][1:] < 0)
            return at, passes, abs(dev)
        assert not np.array_equal(new, at), r.name
        at = new
    raise SystemExit(f"{r.name}: no convergence")


def solve(x, d, w):
    """Barycentric weights, scaled to the range of x, and the deviation of alternating sign, + at the first point."""
    scale = 4 / (x[0] - x[-1])
    lam = np.empty(len(x), dtype=L)
    for k in range(len(x)):
        factors = (x[k] - np.delete(x, k)) * scale
        lam[k] = np.prod(np.sign(factors)) * np.exp(-np.sum(np.log(abs(factors))))
    signs = np.where(np.arange(len(x)) % 2 == 0, L(1), L(-1))
    return lam, np.sum(lam * d) / np.sum(signs * lam / w)


def pick(e, band, count):
    """Alternating local extrema of e: of neighbours with one sign the largest; then the ends or pairs of least error go."""
    m = abs(e)
    inner = np.r_[False, band[1:] == band[:-1]]
    outer = np.r_[band[1:] == band[:-1], False]
    left, right = np.r_[-1, m[:-1]], np.r_[m[1:], -1]
    same_left, same_right = np.r_[False, e[1:] * e[:-1] > 0] & inner, np.r_[e[1:] * e[:-1] > 0, False] & outer
    peaks = [k for k in range(len(e)) if m[k] > 0 and not (same_left[k] and left[k] > m[k])
             and not (same_right[k] and right[k] >= m[k])]
    out = []
    for k in peaks:
        if out and e[out[-1]] * e[k] > 0:
            if m[k] > m[out[-1]]:
                out[-1] = k
        else:
            out.append(k)
    while len(out) > count:
        if len(out) == count + 1:
            out.pop(0 if m[out[0]] < m[out[-1]] else -1)
        else:
            i = min(range(len(out) - 1), key=lambda i: max(m[out[i]], m[out[i + 1]]))
            ends = max(m[out[0]], 0), max(m[out[-1]], 0)
            if min(ends) < max(m[out[i]], m[out[i + 1]]):
                out.pop(0 if ends[0] < ends[1] else -1)
            else:
                del out[i:i + 2]
    assert len(out) == count, (len(out), count)
    return np.array(out)


def taps(r, points, at):
    """Half impulse response, outer end first, and the deviation, with 60 digits."""
    f = [mp.mpf(points[k][0]) for k in at]
    q = [r.factor(2 * mp.pi * v, mp.sin, mp.cos) for v in f]
    d = [mp.mpf(r.desired(*points[k])) / q[i] for i, k in enumerate(at)]
    w = [mp.mpf(r.weight(*points[k])) * q[i] for i, k in enumerate(at)]
    x = [mp.cos(2 * mp.pi * v) for v in f]
    lam = [1 / mp.fprod(2 * (x[k] - x[j]) for j in range(len(x)) if j != k) for k in range(len(x))]
    dev = mp.fdot(lam, d) / mp.fsum((-1) ** k * lam[k] / w[k] for k in range(len(x)))
    y = [d[k] - (-1) ** k * dev / w[k] for k in range(len(x))]

    def a(z):
        terms = [lam[k] / (z - x[k]) for k in range(len(x))]
        return mp.fdot(terms, y) / mp.fsum(terms)

    # h(j) = 1/M sum over w = 2 pi i / M of R(w) cos or sin (w (centre - j)), M = 2 taps; the summand is even about pi
    big, centre2 = 2 * r.taps, r.taps - 1
    table = [mp.cos(mp.pi * i / big) for i in range(2 * big)]  # angles pi i / M
    z = [table[2 * i] for i in range(r.taps + 1)]
    response = [(y[x.index(v)] if v in x else a(v)) * r.factor(2 * mp.pi * i / big, mp.sin, mp.cos) for i, v in enumerate(z)]
    h = []
    for j in range((r.taps + 1) // 2):
        twice = centre2 - 2 * j  # 2 (centre - j): the angle is pi i twice / M, its sine the cosine a quarter turn back
        shift = big // 2 if r.neg else 0
        s = mp.fsum((1 if i in (0, r.taps) else 2) * response[i] * table[(i * twice - shift) % (2 * big)]
                    for i in range(r.taps + 1))
        h.append(s / big)
    return h, abs(dev)


def dense_deviation(r, half):
    """Largest weighted deviation 20 times as dense as the design grid, of the half response outer end first."""
    points = r.grid(20)
    f = np.array([p[0] for p in points])
    d = np.array([r.desired(*p) for p in points])
    w = np.array([r.weight(*p) for p in points])
    wave = np.sin if r.neg else np.cos
    response = np.zeros(len(f))
    for j, h in enumerate(half):
        arm = (r.taps - 1) / 2 - j
        response += (1 if arm == 0 else 2) * h * wave(2 * np.pi * f * arm)
    return float(np.max(w * abs(d - response)))


def scipy_deviation(r, densities):
    if r.shape or r.taps < 3:
        return math.nan
    kind = {1: "bandpass", 2: "differentiator", 3: "hilbert"}[r.jtype]
    for density in densities:
        try:
            h = remez(r.taps, r.edges, r.fx, weight=r.wtx, fs=1.0, type=kind, maxiter=200, grid_density=density)
        except ValueError as failure:
            print(r.name, failure, file=sys.stderr)
            continue
        half = h[:(r.taps + 1) // 2]
        if r.neg:
            return min(dense_deviation(r, half), dense_deviation(r, -half))  # scipy's sign is its own
        return dense_deviation(r, half)
    return math.nan


def requests():
    low = lambda n, width: [0, 0.2, 0.2 + width, 0.5]
    yield Request("three-taps", 1, 3, [0, 0.1, 0.3, 0.5], [1, 0], [1, 1])
    yield Request("four-taps", 1, 4, [0, 0.1, 0.3, 0.5], [1, 0], [1, 2])
    yield Request("two-taps", 1, 2, [0, 0.1, 0.4, 0.5], [1, 0], [1, 1])
    yield Request("low-pass-7", 1, 7, [0, 0.15, 0.3, 0.5], [1, 0], [1, 3])
    yield Request("low-pass-24", 1, 24, [0, 0.08, 0.16, 0.5], [1, 0], [1, 1])
    yield Request("low-pass-31", 1, 31, [0, 0.2, 0.27, 0.5], [1, 0], [1, 10])
    yield Request("low-pass-101", 1, 101, low(101, 0.03), [1, 0], [1, 1])
    yield Request("low-pass-128", 1, 128, low(128, 0.03), [1, 0], [0.1, 25])
    yield Request("low-pass-256", 1, 256, low(256, 3 / 256), [1, 0], [1, 100])
    yield Request("low-pass-511", 1, 511, low(511, 3 / 511), [1, 0], [1, 1])
    yield Request("low-pass-512", 1, 512, low(512, 3 / 512), [1, 0], [1, 4])
    yield Request("high-pass-45", 1, 45, [0, 0.31, 0.36, 0.5], [0, 1], [5, 1])
    yield Request("band-pass-32", 1, 32, [0, 0.1, 0.2, 0.35, 0.425, 0.5], [0, 1, 0], [10, 1, 10])
    yield Request("band-stop-63", 1, 63, [0, 0.12, 0.16, 0.26, 0.31, 0.5], [1, 0, 1], [1, 20, 2])
    yield Request("five-bands-55", 1, 55, [0, 0.05, 0.1, 0.15, 0.18, 0.25, 0.3, 0.36, 0.41, 0.5], [0, 1, 0, 1, 0],
                  [10, 1, 3, 1, 20])
    yield Request("five-levels-200", 1, 200, [0, 0.07, 0.09, 0.16, 0.18, 0.28, 0.3, 0.38, 0.4, 0.5], [1, 0.25, 2, 0.5, 0],
                  [1, 4, 0.5, 2, 7])
    yield Request("ten-bands-151", 1, 151, [0, .03, .05, .08, .1, .13, .15, .18, .2, .23, .25, .28, .3, .33, .35, .38, .4,
                                            .43, .45, .5], [1, 0, 1, 0, 0.5, 0, 1, 0, 1, 0],
                  [1, 2, 1, 3, 1, 4, 1, 5, 1, 6])
    yield Request("shaped-band-19", 1, 19, [0.1, 0.4], [1], [1], [(0.05, 0.5), (0.2, 1.5), (0.3, 0.25), (0.45, 1)])
    yield Request("narrow-grid-33", 1, 33, [0.05, 0.15, 0.22, 0.42], [1, 0], [1, 2])
    yield Request("shaped-48", 1, 48, [0, 0.22, 0.29, 0.5], [1, 0], [1, 5],
                  [(0, 1), (0.05, 1.1), (0.1, 1.3), (0.18, 0.8), (0.25, 0.6)])
    yield Request("shaped-factor-81", 1, 81, [0, 0.15, 0.19, 0.3, 0.34, 0.5], [2, 0, 0.5], [1, 10, 1],
                  [(0.02, 1), (0.12, 1.4), (0.2, 0.7), (0.4, 1.2), (0.45, 1)])
    yield Request("shaped-one-point-27", 1, 27, [0, 0.2, 0.28, 0.5], [3, 0], [1, 1], [(0, 0.7)])
    yield Request("differentiator-32", 2, 32, [0, 0.5], [1], [1])
    yield Request("differentiator-5", 2, 5, [0, 0.3], [2], [1])
    yield Request("differentiator-65", 2, 65, [0, 0.45], [6.283185307179586], [1])
    yield Request("differentiator-128", 2, 128, [0, 0.48], [-1.5], [1])
    yield Request("differentiator-510", 2, 510, [0, 0.5], [1], [1])
    yield Request("hilbert-4", 3, 4, [0.1, 0.5], [1], [1])
    yield Request("hilbert-5", 3, 5, [0.1, 0.4], [1], [1])
    yield Request("hilbert-7", 3, 7, [0.1, 0.4], [1], [1])
    yield Request("hilbert-20", 3, 20, [0.05, 0.5], [1], [1])
    yield Request("hilbert-51", 3, 51, [0.03, 0.46], [1], [1])
    yield Request("hilbert-100", 3, 100, [0.02, 0.5], [1], [1])
    yield Request("hilbert-255", 3, 255, [0.01, 0.49], [1], [1])
    yield Request("hilbert-512", 3, 512, [0.003, 0.5], [1], [1])


def main():
    number = lambda v: mp.nstr(v, 17) if isinstance(v, mp.mpf) else "%.17g" % v
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "exchange_golden.txt"), "w") as out:
        print(f"# exchange_reference.py; mpmath {mp.__version__} (60 digits), numpy {np.__version__} (80-bit search), "
              f"scipy {scipy.__version__} (its deviation)", file=out)
        print("# tolerance of the taps 1e-9 of the largest one: the design works in doubles, whose rounding its "
              "condition magnifies", file=out)
        print("# request, type, taps, bands / edges / values / weights / shape points, frequency and value / deviation on the "
              "grid, scipy's finest, scipy's / half response", file=out)
        for r in requests():
            points = r.grid()
            at, passes, _ = exchange(r, points)
            half, dev = taps(r, points, at)
            finest, peer = scipy_deviation(r, (1024, 512)), scipy_deviation(r, (DENSITY,))
            ours = dense_deviation(r, [float(h) for h in half])
            print(f"{r.name:22} {passes:3} passes, deviation {mp.nstr(dev, 8):>14}, dense / scipy - 1: {ours / peer - 1:.1e}, "
                  f"/ scipy's finest - 1: {ours / finest - 1:.1e}")
            print(r.name, r.jtype, r.taps, len(r.fx), file=out)
            for row in (r.edges, r.fx, r.wtx):
                print(*map(number, row), file=out)
            print(len(r.shape), *("%.9g %.9g" % point for point in r.shape), file=out)
            print(number(dev), number(finest), number(peer), file=out)
            print(len(half), *map(number, half), file=out)


if __name__ == "__main__":
    main()
