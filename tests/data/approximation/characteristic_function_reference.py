#!/usr/bin/python3
"""Squared characteristic functions F/Q of random requests at 60 digits -> characteristic_function_golden.txt

Nothing is found by a root hunt on the angle: with P = prod (y + m)/(y - m) over the square roots m of the roots of Q, an
equal ripple function is eps2/4 (P + 1/P + 2), a maximally flat one eps2 (x + g)^m .../prod (x - x_i). The parametric point
takes its pair of roots (four for even degree) out of T = prod (y + m) + prod (y - m), whose roots mpmath's polyroots finds.
"""
import random

import mpmath as mp

mp.mp.dps = 60
random.seed(20)


class Case:
    pass


def warp(c, f):
    """Normalised S of the frequency f (Hz, complex allowed as sigma + j omega)."""
    s = mp.mpc(f)
    return s if c.medium == 0 else mp.tanh(mp.pi * s / c.fs)


def to_x(c, f):
    edge = c.lower if c.type == 2 else c.upper
    s = warp(c, f) / abs(warp(c, mp.mpc(0, edge)))
    s2 = s * s
    if c.type == 2:
        return 1 / (1 + s2)
    return (s2 + c.a) / (s2 + 1)


def prepare(c):
    c.a = mp.mpf(0)
    if c.type == 4:
        c.a = abs(warp(c, mp.mpc(0, c.lower)) / warp(c, mp.mpc(0, c.upper))) ** 2
    t = mp.tan(mp.pi * (c.lower if c.type == 2 else c.upper) / c.fs) if c.medium else None
    c.ue = None
    if c.nue:
        s2 = 1 / t**2  # S^2 = 1
        c.ue = 1 / (1 + s2) if c.type == 2 else (s2 + c.a) / (s2 + 1)
    zeros = []
    for re, im in c.zeros:
        x = to_x(c, mp.mpc(re, im))
        zeros += [x] if re == 0 or im == 0 else [x, mp.conj(x)]
    c.x_zeros = zeros
    nzi = c.nz0 if c.type == 2 else c.nzi
    nz0 = 0 if c.type == 2 else c.nz0
    c.roots = lambda ue, zeros: [c.a] * nz0 + [mp.mpf(1)] * nzi + [z for z in zeros for _ in (1, 2)] + [ue] * c.nue
    c.n = len(c.roots(c.ue, zeros))
    c.loose = 0
    c.xreal = None
    if c.type == 4:
        c.kind_used = 2 if c.n % 2 else c.kind
        c.loose = 0 if c.kind_used == 1 else 2 - c.n % 2
        if c.freal:
            r = abs(warp(c, mp.mpc(0, c.freal)) / warp(c, mp.mpc(0, c.upper))) ** 2
            c.xreal = (c.a + r) / (1 + r)
        else:
            c.xreal = mp.sqrt(c.a)
        if c.medium == 2 and c.nue % 2:
            moved = c.xreal
            if c.nzi % 2 == 0:
                moved *= mp.sqrt(c.ue)
            if c.nz0 % 2 == 0:
                moved = mp.sqrt(c.ue)
            if c.a < moved < 1:
                c.xreal = moved


def polynomial(roots):
    p = [mp.mpf(1)]
    for r in roots:
        p = [u - r * v for u, v in zip(p + [0], [0] + p)]
    return p


def ripple(c):
    eps2 = mp.mpf(10) ** (mp.mpf(c.loss) / 10) - 1
    ue, zeros, shift = c.ue, c.x_zeros, mp.mpf(0)
    first = lambda u: first_root(c, u, zeros)
    if c.n % 2 == 0 and c.type <= 2 and c.flag == 1:
        if c.nue:
            ue = mp.findroot(lambda u: u - (c.ue * (1 + first(u)) - first(u)), c.ue * mp.mpf('0.99'), tol=1e-80)
        shift = first(ue)
    ms = [mp.sqrt(r) for r in c.roots(ue, zeros)] + [-mp.sqrt(c.xreal or 0)] * c.loose
    d = rhos = None
    if c.loose:
        coefficients = [u + v for u, v in zip(polynomial([-m for m in ms]), polynomial(ms))]
        in_x = [mp.re(v) for v in coefficients[::2]]
        roots = mp.polyroots([v / in_x[0] for v in in_x], maxsteps=500, extraprec=400)
        rhos = [r for r in roots if not (abs(mp.im(r)) < 1e-25 * abs(r) and mp.re(r) < 0)]
        if len(rhos) != c.loose:
            return None
        d = rhos[0] ** 2 / c.xreal if c.loose == 1 else rhos[0] * rhos[1] / c.xreal
        d = mp.re(d)
        if not c.a < d < 1:
            return None
        etas = [-mp.re(r) for r in roots if r not in rhos]
        q = c.roots(ue, zeros)
        etas, d = equalised(etas, d, c.loose, q)
        if etas is not None:
            return lambda x: eps2 * squared(etas, d, c.loose, q, x)

    def value(x):
        x = x * (1 + shift) - shift
        y = mp.sqrt(x)
        p = mp.mpf(1)
        for m in ms:
            p *= (y + m) / (y - m)
        v = eps2 / 4 * (p + 1 / p + 2)
        if c.loose:
            v *= ((x - c.xreal) * (x - d)) ** c.loose
            for r in rhos:
                v /= (x - r) ** 2
        return mp.re(v)

    return value


def squared(etas, d, w, q, x):
    """(x - d)^w prod (x + eta)^2/Q, by the squares of the etas and the roots q of Q."""
    v = mp.fprod([x - d] * w) * mp.fprod((x + e) ** 2 for e in etas)
    return mp.re(v / mp.fprod(x - r for r in q))


def maxima(etas, d, w, q):
    """Places of the maxima on x < 0 but for the edges: zeros of the logarithmic derivative, of which all else is off the band."""
    weights = {}
    for root, weight in [(d, w)] + [(-e, 2) for e in etas] + [(r, -1) for r in q]:
        weights[root] = weights.get(root, 0) + weight
    total = [mp.mpf(0)] * len(weights)
    for root, weight in weights.items():
        part = polynomial([r for r in weights if r != root])
        total = [u + weight * v for u, v in zip(total, part)]
    while abs(total[0]) < mp.mpf(10) ** -40 * max(map(abs, total)):
        total = total[1:]
    places = [mp.re(r) for r in mp.polyroots(total, maxsteps=500, extraprec=400) if abs(mp.im(r)) < 1e-25 * abs(r)]
    return [x for x in places if x < 0]


def equalised(etas, d, w, q):
    """The function of least maximum for this d by Remez's exchange, (None, d) if the one at hand is as good to 1e-6.

    prod (x + eta) is a polynomial of leading coefficient 1, alternating at the reference with sqrt|Q|/|x - d|^(w/2): linear
    in its coefficients. Infinity is a point of the reference, and x = 0 as a rule; if it is no maximum, d goes where it
    becomes one with a horizontal tangent, or where infinity does.
    """
    if not etas or max(squared(etas, d, w, q, x) for x in maxima(etas, d, w, q) + [mp.mpf(0)]) <= 1 + mp.mpf(10) ** -6:
        return None, d

    def exchange(etas, d):
        k = len(etas)
        for _ in range(40):
            places = sorted(maxima(etas, d, w, q), reverse=True)
            inner = [max((x for x in places if -low > x > -high), key=lambda x: squared(etas, d, w, q, x))
                     for low, high in zip(sorted(etas), sorted(etas)[1:])]
            rows, right = [], []
            for j, x in enumerate([mp.mpf(0)] + inner):
                height = mp.sqrt(abs(mp.fprod(x - r for r in q))) / abs(x - d) ** (mp.mpf(w) / 2)
                rows.append([x**i for i in range(k)])
                right.append((-1) ** j * height - x**k)
            solution = mp.lu_solve(mp.matrix(rows), mp.matrix(right))
            found = mp.polyroots([mp.mpf(1)] + [solution[i] for i in reversed(range(k))], maxsteps=500, extraprec=400)
            found = sorted(-mp.re(r) for r in found)
            moved = max(abs(u / v - 1) for u, v in zip(found, sorted(etas)))
            etas = found
            if moved < mp.mpf(10) ** -40:
                break
        return etas

    def off(d, low):
        etas_of_d = exchange(etas, d)
        if low:
            return d * mp.re(2 * sum(1 / e for e in etas_of_d) + sum(1 / r for r in q)) - w
        return mp.re(2 * sum(etas_of_d) + sum(q)) - d * w

    for low in (True, False):
        if off(d, low) < 0:
            d = mp.findroot(lambda d: off(d, low), (d, d * mp.mpf("1.01") if low else d * mp.mpf("0.99")), tol=1e-60)
    return exchange(etas, d), d


def first_root(c, u, zeros):
    """p: minus the root of F next to zero, for even n."""
    ms = [mp.sqrt(r) for r in c.roots(u, zeros)]
    angle = lambda eta: sum(mp.arg(m + mp.mpc(0, eta)) for m in ms) - mp.pi / 2
    high = mp.mpf(1)
    while angle(high) < 0:
        high *= 2
    low = mp.mpf(0)
    for _ in range(40):
        mid = (low + high) / 2
        low, high = (mid, high) if angle(mid) < 0 else (low, mid)
    return mp.findroot(angle, (low, high), solver='anderson', tol=1e-90) ** 2


def flat(c):
    eps2 = mp.mpf(10) ** (mp.mpf(c.loss) / 10) - 1
    roots = c.roots(c.ue, c.x_zeros)
    m = c.n - c.loose
    if m < 1:
        return None
    g = mp.mpf(0)
    if c.type == 4:
        product = mp.re(mp.fprod(roots))
        g = (product / (c.xreal**c.loose if c.loose else 1)) ** (mp.mpf(1) / m)

    def value(x):
        v = eps2 * (x + g) ** m
        if c.loose:
            v *= (x - c.xreal) ** c.loose
        for r in roots:
            v /= x - r
        return mp.re(v)

    return value


def number(x):
    return float(f"{x:.6g}")


def random_case():
    c = Case()
    c.type = random.choice([1, 2, 4, 4])
    c.passband = random.randint(0, 1)
    c.kind = random.choice([1, 2]) if c.type == 4 else 1
    c.medium = random.randint(0, 2)
    c.flag = random.choice([-1, 0, 1, 1]) if c.type != 4 else 0
    c.upper = number(random.uniform(900, 1100))
    c.lower = number(c.upper * random.choice([0.2, 0.6, 0.9, 0.97])) if c.type == 4 else 0.0
    if c.type == 2:
        c.lower, c.upper = c.upper, 0.0
    c.loss = random.choice([0.0001, 0.1, 0.5, 3.0])
    c.fs = number(random.uniform(2500, 9000)) if c.medium else 0.0
    c.nue = random.randint(0, 4) if c.medium == 2 else 0
    c.nz0 = random.randint(0, 6) if c.type != 1 else 0
    c.nzi = random.randint(0, 6) if c.type != 2 else 0
    c.zeros = []
    top = c.fs / 2 if c.medium else 1e4
    for _ in range(random.randint(0, 4)):
        what = random.random()
        if what < 0.15:
            c.zeros.append((number(random.uniform(50, 3000)), 0.0))
        elif what < 0.4:
            c.zeros.append((number(random.uniform(50, 1000)), number(random.uniform(0.05, 0.95) * top)))
        elif c.type == 1 or (c.type == 4 and random.random() < 0.5):
            c.zeros.append((0.0, number(c.upper + (top - c.upper) * random.uniform(0.01, 0.9) ** 2)))
        else:
            c.zeros.append((0.0, number(c.lower * random.uniform(0.3, 0.98))))
    # Freal has to lie on the real axis between the band's images.
    c.freal = number(random.uniform(0.3, 1.5) * 1000) if c.kind == 2 and random.random() < 0.3 else 0.0
    if c.medium and c.freal >= 0.45 * c.fs:
        c.freal = 0.0
    return c


def main():
    lines = [f"# characteristic_function_reference.py, mpmath {mp.__version__}",
             "# tolerance, relative to |F/Q| + eps2: 1e-16 in the pass band, the sets carry 19 digits; 1e-14 in the stopbands,",
             "# where x of a frequency far off a narrow band is rounded close to the roots a and 1",
             "# type passband bandpass medium flag lower upper loss fs freal nz0 nzi nue zeros (re im)... points (Hz F/Q)..."]
    count = 0
    while count < 240:
        c = random_case()
        prepare(c)
        if not 1 <= c.n <= 24 or (c.type == 4 and c.n < 2):
            continue
        value = ripple(c) if c.passband else flat(c)
        if value is None:
            continue
        low, high = (c.lower or c.upper) * 0.1, (c.upper or c.lower) * 4
        if c.medium:
            high = min(high, 0.49 * c.fs)
        points = []
        inside = (c.lower or 1.0, c.upper or (0.49 * c.fs if c.medium else 5e3))
        for k in range(10):
            f = number(random.uniform(*inside) if k < 6 else random.uniform(low, high))
            x = mp.re(to_x(c, mp.mpc(0, f)))
            points.append((f, value(x)))
        zeros = " ".join(f"{re!r} {im!r}" for re, im in c.zeros)
        values = " ".join(f"{f!r} {mp.nstr(v, 22)}" for f, v in points)
        lines.append(f"{c.type} {c.passband} {c.kind} {c.medium} {c.flag} {c.lower!r} {c.upper!r} {c.loss!r} {c.fs!r} "
                     f"{c.freal!r} {c.nz0} {c.nzi} {c.nue} {len(c.zeros)} {zeros} {len(points)} {values}")
        count += 1
    with open("characteristic_function_golden.txt", "w") as out:
        out.write("\n".join(lines) + "\n")


main()
