#!/usr/bin/env python3
"""Closed forms of all-pole low-pass ladders: prints all_pole_ladders.txt. Needs mpmath.

Doubly terminated: H. Takahasi, "On the ladder-type filter network with Tchebysheff response" (1951), in the notation of
L. Weinberg and P. Slepian (1960). Singly terminated: H. J. Orchard, "Formulae for ladder filters" (1953). Before a row is
printed its loss is checked against the attenuation function by a chain of elements.
"""
import mpmath as mp

mp.mp.dps = 60
RIPPLE = mp.mpf("0.1")                      # dB at s = j
EPS = mp.sqrt(10 ** (RIPPLE / 10) - 1)


def doubly(kind, n, r):
    """g of a ladder that begins with a series L at R1 = 1 and ends at R2 = r; r None: no loss at the best frequency."""
    gamma = lambda m: m * mp.pi / (2 * n)
    if r is not None and r < 1 and n % 2 == 0:
        return None                         # an even ladder ends in a shunt C at the larger resistor
    if r is None:
        rest = mp.mpf(0)
    else:
        h0 = 4 * r / (1 + r) ** 2
        if kind == "ripple" and n % 2 == 0:
            h0 *= 1 + EPS ** 2
        if h0 > 1:
            return None
        rest = mp.sqrt(1 - h0) * (1 if r > 1 else -1)
    if kind == "flat":
        # with s scaled so that the loss at s = j is the ripple
        alpha = mp.sign(rest) * abs(rest) ** (mp.mpf(1) / n)
        p, q, scale = mp.mpf(1), alpha, EPS ** (mp.mpf(1) / n)
        f = lambda m: p * p + q * q - 2 * p * q * mp.cos(gamma(2 * m))
    else:
        p, q, scale = mp.sinh(mp.asinh(1 / EPS) / n), mp.sinh(mp.asinh(rest / EPS) / n), mp.mpf(1)
        f = lambda m: p * p + q * q + mp.sin(gamma(2 * m)) ** 2 - 2 * p * q * mp.cos(gamma(2 * m))
    g = [2 * mp.sin(gamma(1)) / (p - q)]
    for k in range(1, n):
        g.append(4 * mp.sin(gamma(2 * k - 1)) * mp.sin(gamma(2 * k + 1)) / f(k) / g[-1])
    return [v * scale for v in g]


def singly(kind, n):
    """g from the resistor on; the other end is driven without resistance."""
    a = lambda k: mp.sin((2 * k - 1) * mp.pi / (2 * n))
    c = lambda k: mp.cos(k * mp.pi / (2 * n)) ** 2
    if kind == "flat":
        first, d, scale = a(1), c, EPS ** (mp.mpf(1) / n)
    else:
        y = mp.sinh(mp.asinh(1 / EPS) / n)
        first, d, scale = a(1) / y, lambda k: (y * y + mp.sin(k * mp.pi / (2 * n)) ** 2) * c(k), mp.mpf(1)
    g = [first]
    for k in range(2, n + 1):
        g.append(a(k) * a(k - 1) / (d(k - 1) * g[-1]))
    return [v * scale for v in g]


def power_ratio(g, r, w):
    """|E/V|^2 over its value for a transformer, r None: of the voltage at the far end of a single termination."""
    v, i = mp.mpc(1), mp.mpc(1)             # at R1 = 1
    for k, value in enumerate(g):
        if k % 2 == 0:
            v += i * 1j * w * value
        else:
            i += v * 1j * w * value
    if r is None:
        return abs(v if len(g) % 2 == 1 else i) ** 2
    return abs(v + i * r) ** 2 / (4 * r)


def attenuation(kind, n, w):
    t = w ** n if kind == "flat" else mp.chebyt(n, w)
    return 1 + EPS ** 2 * t * t


def check(kind, n, g, r):
    if g is None:
        return
    ratios = [power_ratio(g, r, w) / attenuation(kind, n, w) for w in (mp.mpf("0.3"), mp.mpf("0.8"), mp.mpf("1.4"))]
    assert max(abs(q / ratios[0] - 1) for q in ratios) < mp.mpf(10) ** -35, (kind, n, r, ratios)


print("# all_pole_ladders.py, mpmath", mp.__version__, "with 60 digits; ripple or band-edge loss 0.1 dB at s = j.")
print("# Tolerance 1e-9 up to degree 30, 1e-7 above: what is asked of the synthesis. Values are rounded to 20 digits.")
print("# kind degree ratio g1 ... gn: first g a series L at R1 = 1 with R2 = ratio, or its dual with R2 = 1/ratio;")
print("# ratio 0: singly terminated, g1 at the resistor; -1: the ratio that leaves no loss, 1 or that of even ripple.")
for kind in ("flat", "ripple"):
    for n in range(1, 51):
        rows = [(-1, doubly(kind, n, None)), (2, doubly(kind, n, mp.mpf(2))), (0.5, doubly(kind, n, mp.mpf("0.5"))),
                (0, singly(kind, n))]
        for ratio, g in rows:
            if ratio == -1:
                even = kind == "ripple" and n % 2 == 0
                far = (EPS + mp.sqrt(1 + EPS ** 2)) ** 2 if even else mp.mpf(1)
                # of an even ripple ladder one of the two ratios belongs to the series L
                if even and abs(power_ratio(g, far, mp.mpf(0)) - attenuation(kind, n, 0)) > mp.mpf(10) ** -30:
                    far = 1 / far
                check(kind, n, g, far)
            else:
                check(kind, n, g, None if ratio == 0 else mp.mpf(ratio))
            if g is not None:
                print(kind, n, ratio, *[mp.nstr(v, 20) for v in g])
