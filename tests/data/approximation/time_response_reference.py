#!/usr/bin/python3
"""Impulse and step responses at hundreds of digits -> time_response_golden.txt

The roots are doubles, taken as exact numbers. The response is the sum over the residues; coinciding poles are parted by
1e-60 each, with so many digits that the 60 (m - 1) digits which cancel at a multiplicity m do not matter. Before writing,
the sum is compared with the inverse Laplace transform of the closed forms of (s + 1)^-n and of one pair of poles.
"""
import math

import mpmath as mp
import numpy
import scipy
from scipy import signal


def evaluate(poles, zeros, level, times):
    multiplicity = max(poles.count(p) for p in poles)
    mp.mp.dps = 150 + 60 * (multiplicity - 1) + 2 * len(poles)
    seen = {}
    p = []
    for pole in poles:
        seen[pole] = seen.get(pole, 0) + 1
        p.append(mp.mpc(pole) + (seen[pole] - 1) * mp.mpf(10) ** -60 * abs(mp.mpc(pole)))
    z = [mp.mpc(zero) for zero in zeros]
    direct = level if len(z) == len(p) else mp.mpf(0)
    at_zero = level * mp.fprod(-x for x in z) / mp.fprod(-x for x in p)
    residues = [level * mp.fprod(a - x for x in z) / mp.fprod(a - b for b in p if b is not a) for a in p]
    rows = []
    for t in times:
        e = [r * mp.exp(a * mp.mpf(t)) for r, a in zip(residues, p)]
        impulse = mp.fsum(e)
        step = at_zero + mp.fsum(x / a for x, a in zip(e, p))
        rows.append((impulse.real, step.real))
    return direct, rows


def level_of(poles, zeros, sign):
    """1 over the largest |H(jw)|: the summits of a dense grid, each closed in on by the zero of the slope of log |H|."""
    mp.mp.dps = 60
    unit = max(abs(p) for p in poles)
    w = numpy.unique(numpy.concatenate([numpy.abs(p.imag + p.real * numpy.tan(numpy.linspace(-1.53, 1.53, 401)))
                                        for p in poles] + [[0.0, 1e6 * unit]]))
    gain = sum(numpy.log(numpy.abs(1j * w - z) / unit + 1e-300) for z in zeros)
    gain = gain - sum(numpy.log(numpy.abs(1j * w - p) / unit) for p in poles)

    def log_gain(x):
        s = mp.mpc(0, x)
        return mp.fsum(mp.log(abs(s - mp.mpc(z))) for z in zeros) - mp.fsum(mp.log(abs(s - mp.mpc(p))) for p in poles)

    def slope(x):
        term = lambda r: (x - mp.mpf(r.imag)) / (mp.mpf(r.real) ** 2 + (x - mp.mpf(r.imag)) ** 2)
        return mp.fsum(term(z) for z in zeros) - mp.fsum(term(p) for p in poles)

    best = [log_gain(mp.mpf(0))] if not any(z == 0 for z in zeros) else []
    if len(zeros) == len(poles):
        best.append(mp.mpf(0))
    for i in range(1, len(w) - 1):
        if gain[i] >= max(gain[i - 1], gain[i + 1]) and gain[i] > gain.max() - 0.01:
            a, b = mp.mpf(w[i - 1]), mp.mpf(w[i + 1])
            if slope(a) > 0 > slope(b):
                best.append(log_gain(mp.findroot(slope, (a, b), solver="anderson", tol=1e-40, verify=False)))
    return sign * mp.exp(-max(best))


def double(values):
    """Conjugate to the last bit."""
    out = []
    for v in values:
        v = complex(v)
        if abs(v.imag) < 1e-14 * abs(v):
            out.append(complex(v.real, 0.0))
        elif v.imag > 0:
            out += [v, v.conjugate()]
    return out


def cases():
    def of(z, p, k):
        return double(z), double(p)

    half = [complex(math.cos(a), math.sin(a)) for a in (math.pi * (2 * k + 51) / 100 for k in range(25))]
    yield "butterworth50", [], double(p * 2 * math.pi * 1e3 for p in half), 2e-2, 1
    yield "chebyshev50", *of(*signal.cheb1ap(50, 0.1)), 500.0, 1
    yield "elliptic30", *of(*signal.ellipap(30, 0.05, 80)), 400.0, 1
    yield "elliptic7", *of(*signal.ellipap(7, 0.1, 60)), 80.0, 1
    yield "inverse_chebyshev20", *of(*signal.cheb2ap(20, 50)), 60.0, 1
    yield "bessel12", *of(*signal.besselap(12)), 25.0, 1
    yield "high_pass9", *of(*signal.butter(9, 1e6, "high", analog=True, output="zpk")), 4e-5, 1
    yield "band_pass20", *of(*signal.cheby1(10, 0.1, [2 * math.pi * 10.65e6, 2 * math.pi * 10.75e6], "band", analog=True,
                                            output="zpk")), 3e-4, 1
    yield "band_stop12", *of(*signal.ellip(6, 0.5, 50, [900.0, 1100.0], "stop", analog=True, output="zpk")), 0.5, 1
    yield "one_pole", [], [complex(-3.0, 0)], 3.0, 1
    yield "lead", [complex(-1.0, 0)], [complex(-10.0, 0)], 1.0, 1
    yield "critical50", [], [complex(-1.0, 0)] * 50, 150.0, 1
    yield "six_pairs", [], [complex(-0.1, 1.0), complex(-0.1, -1.0)] * 6, 250.0, 1
    near = [complex(-0.3, 1 + 1e-9 * k) for k in range(5)]
    yield "near_pairs", double([0.5j, 2j]) + double([-0.5j, -2j]), double(near) + [complex(-1, 0), complex(-1 - 1e-12, 0)], \
        40.0, 1
    yield "nearly_real", [], double([complex(-1, 1e-7), complex(-1, 3e-9)]) + [complex(-1, 0)], 30.0, 1
    yield "stiff", [], [complex(-1.0, 0), complex(-1e3, 0), complex(-1e6, 0)] + double([complex(-1e4, 3e4)]), 8.0, 1
    quad = [complex(a, b) for a in (0.9, -0.9) for b in (1.3, -1.3)]
    yield "quadruple", double(quad), *of(*signal.besselap(8))[1:], 25.0, 1
    yield "real_zeros", [complex(1.5, 0), complex(-1.5, 0)], *of(*signal.buttap(5))[1:], 30.0, -1
    allpass = double(signal.besselap(5)[1])
    yield "allpass5", [complex(-x.real, x.imag) for x in allpass], allpass, 20.0, -1


def times_of(end):
    """0, closely after it, then unequal steps, and a stretch of equal ones."""
    times = [0.0, end * 1e-6, end * 1e-3, end * 7e-3]
    times += [float(end * 0.01 * k) for k in range(2, 20)]
    times += [float(end * (0.2 + 0.8 * (k / 22) ** 1.5)) for k in range(23)]
    return times


def check():
    _, rows = evaluate([complex(-1, 0)] * 20, [], mp.mpf(1), [3.0, 20.0])
    for t, (impulse, step) in zip([3, 20], rows):
        assert abs(impulse - mp.mpf(t) ** 19 * mp.exp(-t) / mp.factorial(19)) < mp.mpf(10) ** -40
        assert abs(step - mp.gammainc(20, 0, t, regularized=True)) < mp.mpf(10) ** -40
    _, rows = evaluate([complex(-1, 3), complex(-1, -3)], [], mp.mpf(3), [0.7])
    assert abs(rows[0][0] - mp.exp(-0.7) * mp.sin(mp.mpf(0.7) * 3)) < 1e-15


check()
with open("time_response_golden.txt", "w") as out:
    print(f"# time_response_reference.py, mpmath {mp.__version__}, scipy {scipy.__version__} (roots)", file=out)
    print("# tolerance 1e-13 of the largest value: rounding of the long double, 5e-20, times the gains within the chain", file=out)
    print("# of sections and the number of doublings and steps; the doubles of the output are good to 1e-16", file=out)
    print("# name, direct term; zeros: re im ...; poles: re im ...; rows: time impulse step", file=out)
    for name, zeros, poles, end, sign in cases():
        level = level_of(poles, zeros, sign)
        times = times_of(end)
        direct, rows = evaluate(poles, zeros, level, times)
        flat = lambda roots: " ".join(f"{r.real!r} {r.imag!r}" for r in roots)
        print(f"case {name} {mp.nstr(direct, 17)} {len(zeros)} {len(poles)} {len(times)}", file=out)
        print(flat(zeros), file=out)
        print(flat(poles), file=out)
        for t, (impulse, step) in zip(times, rows):
            print(f"{t!r} {mp.nstr(impulse, 17)} {mp.nstr(step, 17)}", file=out)
