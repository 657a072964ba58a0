#!/usr/bin/python3
"""Roots of sums of products and of even and odd parts, to 25 digits, by mpmath.

Writes sum_roots.txt and even_odd_roots.txt beside itself. The sums are expanded exactly as to the doubles given, with
enough digits that nothing is lost, and solved by mpmath.polyroots. The parts go by way of s: the factors are written as
quadratics of s, multiplied out, split into even and odd powers, and carried to x by s^2 = (x - a)/(1 - x).
"""
import os
import random

import mpmath
from mpmath import mpc, mpf

mpmath.mp.dps = 150
HERE = os.path.dirname(os.path.abspath(__file__))


def times(p, q):
    """Product of coefficient lists, highest power first."""
    r = [mpf(0)] * (len(p) + len(q) - 1)
    for i, a in enumerate(p):
        for j, b in enumerate(q):
            r[i + j] += a * b
    return r


def plus(p, q):
    n = max(len(p), len(q))
    p = [mpf(0)] * (n - len(p)) + list(p)
    q = [mpf(0)] * (n - len(q)) + list(q)
    return [a + b for a, b in zip(p, q)]


def expand(multiplier, roots):
    p = [mpf(multiplier)]
    for r in roots:
        p = times(p, [1, -mpc(*r)])
    return [c.real if isinstance(c, mpc) else c for c in p]


def trimmed(p):
    while len(p) > 1 and p[0] == 0:
        p = p[1:]
    return p


def zeros_of(p):
    if len(p) == 1:
        return []
    tail = 0
    while p[-1] == 0:
        p, tail = p[:-1], tail + 1
    found = mpmath.polyroots(p, maxsteps=2000, extraprec=400) if len(p) > 1 else []
    return [mpc(0)] * tail + sorted((mpc(z) for z in found), key=lambda z: (abs(z), -z.imag))


def text(v):
    return mpmath.nstr(v, 25, min_fixed=0, max_fixed=0) if v else "0"


# --- sums -------------------------------------------------------------------------------------------------------------

def paired(rng, count, decades, reals):
    roots = []
    while len(roots) < count:
        size = 10 ** rng.uniform(-decades, decades)
        if len(roots) + 1 == count or rng.random() < reals:
            roots.append((rng.choice((-1, 1)) * size, 0.0))
        else:
            z = mpmath.expjpi(rng.uniform(0.02, 0.98)) * size
            roots += [(float(z.real), float(z.imag)), (float(z.real), -float(z.imag))]
    return roots


def sums():
    rng = random.Random(20)
    yield "Wilkinson's product and his perturbation", 1.0, [(float(i), 0.0) for i in range(1, 21)], -2.0 ** -23, [(0.0, 0.0)] * 19
    yield "double root, lifted", 1.0, [(0.3, 0.0)] * 2, 0.001, []
    yield "cluster of eight", 1.0, [(1.0, 0.0)] * 8, 1e-9, [(-2.0, 0.0)] * 3
    yield "1e6 beside 1e-6", 1.0, [(-1e6, 0.0)] * 2 + [(-1e-6, 0.0)] * 2 + paired(rng, 26, 0.5, 0.3), 0.5, paired(rng, 30, 0.5, 0.3)
    yield "roots about 1e9", 1.0, [(1e9 * r, 1e9 * i) for r, i in paired(rng, 20, 0.3, 0.3)], 3.0, [(1e9 * r, 1e9 * i) for r, i in paired(rng, 18, 0.3, 0.3)]
    for n in (5, 10, 20, 30, 40, 50):
        yield "maximally flat, degree %d" % n, 0.2589, [(0.0, 0.0)] * n, (-1.0) ** n, [(1.0, 0.0)] * n
        ripples = []
        for i in range(1, n // 2 + 1):
            t = mpmath.cot(mpmath.pi * (2 * i - 1) / (2 * n)) ** 2
            ripples += [(-float(t), 0.0)] * 2
        yield "equal ripple, degree %d" % n, 0.0233 * 4.0 ** (n - 1), ripples + [(0.0, 0.0)] * (n % 2), (-1.0) ** n, [(1.0, 0.0)] * n
        a = paired(rng, n, 0.5, 0.3)
        yield "mirrored, degree %d" % n, 1.0, [(-abs(r), i) for r, i in a], 1.0, [(abs(r), i) for r, i in a]
        yield "general, degree %d" % n, rng.uniform(-2, 2), paired(rng, n, 0.5, 0.3), rng.uniform(-2, 2), paired(rng, rng.randint(0, n), 0.5, 0.3)
        yield "wide, degree %d" % n, rng.uniform(0.1, 2), paired(rng, n, 3, 0.4), rng.uniform(-20, 20), paired(rng, rng.randint(n // 2, n), 3, 0.4)


def write_sums():
    with open(os.path.join(HERE, "sum_roots.txt"), "w", encoding="ascii") as out:
        out.write("# Made by roots.py with mpmath %s at %d digits.\n" % (mpmath.__version__, mpmath.mp.dps))
        out.write("# Tolerance: half a unit of the last place for storing a root as double, and the rounding of the\n")
        out.write("# work, magnified by the condition of the root, which stands beside it: larger term/|x S'(x)|.\n")
        out.write("# sum <name> / A <multiplier> <count> / its roots / B ... / R <leading coefficient> <count> / re im condition\n")
        for name, ka, a, kb, b in sums():
            pa, pb = expand(ka, a), expand(kb, b)
            p = trimmed(plus(pa, pb))
            slope = [c * (len(p) - 1 - i) for i, c in enumerate(p[:-1])]
            out.write("sum %s\n" % name)
            for letter, k, roots in (("A", ka, a), ("B", kb, b)):
                out.write("%s %r %d\n" % (letter, k, len(roots)))
                for r, i in roots:
                    out.write("%r %r\n" % (r, i))
            zeros = zeros_of(p)
            out.write("R %s %d\n" % (text(p[0]), len(zeros)))
            for z in zeros:
                im = mpf(0) if abs(z.imag) < abs(z) * mpf(10) ** -60 else z.imag
                size = max(abs(mpmath.polyval(pa, z)), abs(mpmath.polyval(pb, z)))
                lever = abs(z * mpmath.polyval(slope, z))
                condition = size / lever if lever else mpf(0)
                out.write("%s %s %s\n" % (text(z.real), text(im), mpmath.nstr(condition, 3)))


# --- even and odd parts -----------------------------------------------------------------------------------------------

def factors_of(n, a, quadratics, real):
    """c and d as doubles from (b, c0) pairs and the real factor s + p."""
    c = [float((c0 - a) / b) for b, c0 in quadratics]
    d = [float((1 - c0) / b) for b, c0 in quadratics]
    if n % 2:
        c.append(float(real))
        d.append(0.0)
    return c, d


def circle(n, radius, flat=mpf(1)):
    """Pairs (b, c0) and real pole of modes on an ellipse, flat = ratio of its half axes."""
    pairs = []
    for i in range(1, n // 2 + 1):
        angle = mpmath.pi * (2 * i - 1) / (2 * n)
        sigma, omega = radius * flat * mpmath.sin(angle), radius * mpmath.cos(angle)
        pairs.append((2 * sigma, sigma ** 2 + omega ** 2))
    return pairs, radius * flat


def parts():
    rng = random.Random(7)
    for n in (2, 3, 8, 15, 31, 50):
        for loss in ("exact", "3.0103", "0.5"):
            if loss == "0.5" and n < 8:
                continue
            eps2 = mpf(1) if loss == "exact" else mpf(10) ** (mpf(loss) / 10) - 1
            pairs, real = circle(n, eps2 ** (-mpf(1) / (2 * n)))
            yield "maximally flat, degree %d, %s dB" % (n, loss), n, 0.0, 1.0, factors_of(n, 0, pairs, real)
        v = mpmath.asinh(1 / mpmath.sqrt(mpf(10) ** mpf("0.01") - 1)) / n
        pairs, real = circle(n, mpmath.cosh(v), mpmath.tanh(v))
        yield "equal ripple, degree %d" % n, n, 0.0, 2.0, factors_of(n, 0, pairs, real)
    for n in (4, 9, 20, 35, 50):
        for kind in ("band-pass", "mixed signs"):
            a = rng.uniform(0.1, 0.8)
            pairs = []
            for _ in range(n // 2):
                omega, sigma = rng.uniform(a ** 0.5 * 0.97, 1.03), 10 ** rng.uniform(-2.5, -0.3)
                pairs.append((mpf(2 * sigma), mpf(omega) ** 2 + mpf(sigma) ** 2))
            c, d = factors_of(n, a, pairs, rng.uniform(0.3, 3))
            if kind == "mixed signs":
                for i in range(len(c)):
                    if rng.random() < 0.5:
                        c[i], d[i] = -c[i], -d[i]
            yield "%s, degree %d" % (kind, n), n, a, rng.uniform(0.5, 2), (c, d)


def write_parts():
    with open(os.path.join(HERE, "even_odd_roots.txt"), "w", encoding="ascii") as out:
        out.write("# Made by roots.py with mpmath %s at %d digits.\n" % (mpmath.__version__, mpmath.mp.dps))
        out.write("# Tolerance as in sum_roots.txt; the larger term of a part is that of P+ and P-. A leading coefficient\n")
        out.write("# below 1e-13 of its terms, the rounding of c and d to doubles, counts as 0.\n")
        out.write("# parts <name> / P <multiplier> <degree> <a> / c d / E <multiplier> <count> / re im condition / O ...\n")
        for name, n, a, k, (c, d) in parts():
            out.write("parts %s\nP %r %d %r\n" % (name, k, n, a))
            for ci, di in zip(c, d):
                out.write("%r %r\n" % (ci, di))
            exact_a = mpf(a)
            number = [mpf(k)]
            scale = abs(mpf(k))
            for ci, di in list(zip(c, d))[: n // 2]:
                number = times(number, [mpf(ci) + mpf(di), 1 - exact_a, mpf(ci) + mpf(di) * exact_a])
                scale *= mpmath.hypot(di, 1)
            if n % 2:
                number = times(number, [1, mpf(c[-1])])
                scale *= mpmath.hypot(c[-1], 1)
            m = n // 2
            low_first = number[::-1]
            from_a, to_one = [mpf(1), -exact_a], [mpf(-1), mpf(1)]

            def power(base, count):
                p = [mpf(1)]
                for _ in range(count):
                    p = times(p, base)
                return p

            for letter, values, top in (("E", low_first[0::2], m), ("O", low_first[1::2], m if n % 2 else m - 1)):
                p = [mpf(0)]
                for j, v in enumerate(values):
                    if j <= top:
                        p = plus(p, [v * t / (1 - exact_a) ** m for t in times(power(from_a, j), power(to_one, top - j))])
                while len(p) > 1 and abs(p[0]) <= scale * mpf(10) ** -13:
                    p = p[1:]
                slope = [t * (len(p) - 1 - i) for i, t in enumerate(p[:-1])]
                zeros = zeros_of(p)
                out.write("%s %s %d\n" % (letter, text(p[0]), len(zeros)))
                for z in zeros:
                    im = mpf(0) if abs(z.imag) < abs(z) * mpf(10) ** -60 else z.imag
                    w = mpmath.sqrt((z - exact_a) * (1 - z))
                    plus_value = minus_value = mpf(k)
                    for ci, di in list(zip(c, d))[:m]:
                        plus_value *= ci + di * z + w
                        minus_value *= ci + di * z - w
                    if n % 2:
                        plus_value *= c[-1] + w / (1 - z)
                        minus_value *= c[-1] - w / (1 - z)
                    root = mpf(1) if letter == "E" else (w / (1 - z) if n % 2 else w)
                    size = max(abs(plus_value), abs(minus_value)) / abs(root)
                    lever = abs(z * mpmath.polyval(slope, z))
                    out.write("%s %s %s\n" % (text(z.real), text(im), mpmath.nstr(size / lever, 3)))


if __name__ == "__main__":
    write_sums()
    write_parts()
