#!/usr/bin/python3
"""Digital filters of scipy.signal, and the lattices of two of them at 60 digits -> lattice_golden.txt

Nothing is stepped down: the reflection coefficients come up from degree 0 by Levinson's recursion on the autocorrelation
of 1/A, and tap m is the projection of H's impulse response on that of the backward signal m, A_m reversed over A, which
are orthogonal. The sums run until the response has died out at 60 digits.

A case: name, zeros, poles (count, one member of a pair: re im), level, then count of multipliers and taps; 0 of those of
which only the roots are wanted.
"""
import mpmath as mp
import scipy.signal as signal

mp.mp.dps = 60


def expand(roots):
    c = [mp.mpc(1)]
    for r in roots:
        c = [(c[i] if i < len(c) else 0) - (r * c[i - 1] if i else 0) for i in range(len(c) + 1)]
    return [x.real for x in c]


def response(b, a, samples):
    h = []
    for n in range(samples):
        y = b[n] if n < len(b) else mp.mpf(0)
        for i in range(1, min(len(a) - 1, n) + 1):
            y -= a[i] * h[n - i]
        h.append(y)
    return h


def lattice(zeros, poles, level):
    a = expand([mp.mpc(complex(p)) for p in poles])
    b = [mp.mpf(float(level)) * c for c in expand([mp.mpc(complex(z)) for z in zeros])]
    samples = int(60 / -mp.log10(max(abs(complex(p)) for p in poles)))
    h = response([mp.mpf(1)], a, samples)
    r = [mp.fsum(h[n] * h[n + lag] for n in range(samples - lag)) for lag in range(len(a))]
    stages = [[mp.mpf(1)]]
    error, multipliers = r[0], []
    for m in range(1, len(a)):
        last = stages[-1]
        k = -mp.fsum(last[i] * r[m - i] for i in range(m)) / error
        stages.append([(last[i] if i < m else 0) + (k * last[m - i] if i else 0) for i in range(m + 1)])
        error *= 1 - k * k
        multipliers.append(k)
    assert max(abs(x - y) for x, y in zip(stages[-1], a)) < mp.mpf(10) ** -45
    H = response(b, a, samples)
    taps = []
    for stage in stages:
        g = response(stage[::-1], a, samples)
        taps.append(mp.fsum(x * y for x, y in zip(H, g)) / mp.fsum(x * x for x in g))
    return multipliers, taps


def half(roots):
    return [r for r in roots if r.imag >= 0]


with open("lattice_golden.txt", "w") as out:
    out.write("# lattice_reference.py, scipy %s, mpmath %s: digits beyond a double's are rounding of what is compared\n"
              % (__import__("scipy").__version__, mp.__version__))
    for name, (z, p, k), wanted in [
        ("elliptic_5", signal.ellip(5, 1, 40, 0.3, output="zpk"), True),
        ("chebyshev_band_pass_8", signal.cheby1(4, 0.5, [0.2, 0.5], "bandpass", output="zpk"), True),
        ("matched_6", (signal.ellip(6, 0.5, 50, 0.4, output="zpk")[0][:2],
                       signal.ellip(6, 0.5, 50, 0.4, output="zpk")[1], 0.01), True),
        ("elliptic_30", signal.ellip(30, 0.5, 60, 0.05, output="zpk"), False),
        ("elliptic_40", signal.ellip(20, 0.1, 60, [0.2, 0.21], "bandpass", output="zpk"), False),
        ("elliptic_50", signal.ellip(50, 0.5, 60, 0.02, output="zpk"), False),
        ("butterworth_50", signal.butter(25, [985 / 48000, 1015 / 48000], "bandpass", output="zpk"), False),
    ]:
        out.write(name + "\n")
        for roots in (half(z), half(p)):
            out.write("%d\n" % len(roots))
            for r in roots:
                out.write("%r %r\n" % (float(r.real), float(r.imag)))
        out.write("%r\n" % float(k))
        # the response is of the filter as it is written: conjugates are exact
        whole = lambda rs: [c for r in half(rs) for c in ([r] if r.imag == 0 else [r, r.conjugate()])]
        multipliers, taps = lattice(whole(z), whole(p), float(k)) if wanted else ([], [])
        for values in (multipliers, taps):
            out.write("%d\n" % len(values))
            for v in values:
                out.write(mp.nstr(v, 20) + "\n")
