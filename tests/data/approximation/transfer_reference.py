#!/usr/bin/python3
"""Poles and zeros of classical filters from closed forms in s, with 60 digits: writes transfer_golden.txt.

Nothing here uses the variable x: the low-pass functions come from trigonometric and Jacobian elliptic functions
(mpmath), high-pass and band-pass from the reactance transformations, sampled and microwave media from their tangents.

A low-pass of even degree with two zeros of transmission at infinity, or with no loss at zero frequency, is a function
of y^2 = M(w^2), M the fractional linear map that takes 1 to 1 and the special points where they have to be.
"""
import itertools
import random

import mpmath as mp

mp.mp.dps = 60
KINDS = ("butterworth", "chebyshev", "inverse_chebyshev", "elliptic")
LOW, HIGH, BAND = 1, 2, 4
LUMPED, SAMPLED, MICROWAVE = 0, 1, 2



def into_left(square):
    """The root of s^2 = square with Re s < 0."""
    s = mp.sqrt(mp.mpc(square))
    return -s if s.real > 0 else s


class Moebius:
    """w^2 -> y^2 with 1 -> 1, w = inf -> y^2 = top (inf: fixed), w = 0 -> y^2 = bottom."""

    def __init__(self, top, bottom):
        self.top, self.bottom = top, bottom

    def w2(self, y2):
        numerator = (y2 - self.bottom) / (1 - self.bottom)
        if mp.isinf(self.top):
            return numerator
        return mp.inf if y2 == self.top else numerator * (1 - self.top) / (y2 - self.top)


def butterworth(n, eps2, omega, flag):
    radius = mp.power(eps2, mp.mpf(-1) / (2 * n))
    poles = [radius * mp.exp(mp.j * mp.pi * (2 * i + n - 1) / (2 * n)) for i in range(1, n + 1)]
    return poles, [], n


def chebyshev(n, eps2, omega, flag):
    v = mp.asinh(1 / mp.sqrt(eps2)) / n
    squares = []
    for i in range(1, n + 1):
        t = mp.pi * (2 * i - 1) / (2 * n)
        squares.append(-(mp.cos(t + mp.j * v)) ** 2)  # s^2 = -y^2
    shift = n % 2 == 0 and flag == 1
    m = Moebius(mp.inf, mp.sin(mp.pi / (2 * n)) ** 2 if shift else mp.mpf(0))
    return one_each([-m.w2(-square) for square in squares], n), [], n


def one_each(squares, n):
    """s in the left half plane of each of n values s^2, where conjugate values come in pairs."""
    return [into_left(square) for square in squares]


def inverse_chebyshev(n, eps2, omega, flag):
    theta = mp.pi / (2 * n)
    two_at_infinity = n % 2 == 0 and flag != -1
    least = mp.sin(theta) ** 2 if two_at_infinity else mp.mpf(0)
    alpha = omega ** 2 * (1 - least)  # y^2 = alpha/w^2 + least, y = 1 at the stop edge
    y1 = mp.sqrt(alpha + least)
    level = mp.sqrt(eps2) * mp.cosh(n * mp.acosh(y1))
    # K^2 = level^2/T_n(y)^2 = -1
    squares = []
    for i in range(1, n + 1):
        y = mp.cos(mp.pi * (2 * i - 1) / (2 * n) + mp.j * mp.asinh(level) / n)
        squares.append(-alpha / (y ** 2 - least))
    zeros = []
    for i in range(1, n // 2 + (0 if two_at_infinity else 1)):
        zeros.append(mp.sqrt(alpha / (mp.cos((2 * i - 1) * theta) ** 2 - least)))
    return one_each(squares, n), zeros, n - 2 * len(zeros)


class Elliptic:
    def __init__(self, n, omega):
        self.n, self.k = n, 1 / omega
        self.m = self.k ** 2
        self.quarter = mp.ellipk(self.m)
        q1 = mp.qfrom(m=self.m) ** n
        self.m1 = mp.mfrom(q=q1)
        if self.m1 == 0:
            self.m1 = 16 * q1
        self.quarter1 = mp.ellipk(self.m1)

    def cd2(self, u):
        return mp.ellipfun("cd", u * self.quarter, m=self.m) ** 2

    def reflections(self):
        return [self.cd2(mp.mpf(2 * i - 1) / self.n) for i in range(1, self.n // 2 + 1)]

    def transmissions(self):
        return [1 / (self.m * z) for z in self.reflections()]

    def poles2(self, eps2):
        # sn(j v, k1) = j/eps: v = F(atan(1/eps), k1')
        v = mp.ellipf(mp.atan(1 / mp.sqrt(eps2)), 1 - self.m1) / (self.n * self.quarter1)
        return [self.cd2(mp.mpf(2 * i - 1) / self.n - mp.j * v) for i in range(1, self.n + 1)]


def elliptic(n, eps2, omega, flag):
    if n == 1 or (n == 2 and flag != -1):
        return chebyshev(n, eps2, omega, flag)
    move_top = n % 2 == 0 and flag != -1
    move_bottom = n % 2 == 0 and flag == 1

    def setup(inner):
        e = Elliptic(n, inner)
        top = max(e.transmissions()) if move_top else mp.inf
        bottom = min(e.reflections()) if move_bottom else mp.mpf(0)
        return e, top, Moebius(top, bottom)

    inner = omega
    if move_top:
        # The stop edge of the inner function has to come to omega.
        def miss(logarithm):
            value = 1 + mp.exp(logarithm)
            _, _, m = setup(value)
            return mp.log(m.w2(value ** 2)) - 2 * mp.log(omega)

        guess = omega
        for _ in range(60):  # fixed point first
            _, _, m = setup(guess)
            ratio = (omega ** 2 - 1) / (m.w2(guess ** 2) - 1)
            guess = 1 + (guess - 1) * mp.sqrt(ratio) if ratio > 0 else guess
            if abs(ratio - 1) < mp.mpf(10) ** -6:
                break
        inner = 1 + mp.exp(mp.findroot(miss, (mp.log(guess - 1), mp.log(guess - 1) + mp.mpf(10) ** -8),
                                       solver="secant", tol=mp.mpf(10) ** -90))
    e, top, m = setup(inner)
    squares = [-m.w2(y2) for y2 in e.poles2(eps2)]
    transmissions = [z for z in e.transmissions() if not (move_top and z == top)]
    return one_each(squares, n), [mp.sqrt(m.w2(z)) for z in transmissions], n - 2 * len(transmissions)


PROTOTYPES = dict(zip(KINDS, (butterworth, chebyshev, inverse_chebyshev, elliptic)))


def design(kind, filter_type, medium, flag, n, lower, upper, lower_stop, upper_stop, loss, fs):
    """Poles and zeros as the program states them: rad/s for lumped media, else in units of the edge."""
    warp = (lambda f: mp.tan(mp.pi * mp.mpf(f) / fs)) if medium != LUMPED else mp.mpf
    eps2 = mp.expm1(mp.mpf(loss) * mp.log(10) / 10)
    function = PROTOTYPES[kind]
    if filter_type == BAND:
        r, low, up = warp(lower) / warp(upper), warp(lower), warp(upper)
        omega = mp.mpf(2)
        if lower_stop > 0:
            ls, us = warp(lower_stop), warp(upper_stop)
            w = (up - low) / up
            omega = min((us / up - low / us) / w, (low / ls - ls / up) / w)
        poles, zeros, at_infinity = function(n // 2, eps2, omega, flag)
        w = 1 - r
        both = []
        for p in poles:
            root = mp.sqrt((w * p) ** 2 - 4 * r)
            both += [(w * p + root) / 2, (w * p - root) / 2]
        moved = []
        for z in zeros:
            t = w * z / 2
            moved += [mp.sqrt(t * t + r) - t, mp.sqrt(t * t + r) + t]
        poles, zeros, at_zero, unit = both, moved, at_infinity, upper
    elif filter_type == HIGH:
        omega = warp(lower) / warp(lower_stop) if lower_stop > 0 else mp.mpf(2)
        poles, zeros, at_zero = function(n, eps2, omega, flag)
        poles, zeros, at_infinity, unit = [1 / p for p in poles], [1 / z for z in zeros], 0, lower
    else:
        omega = warp(upper_stop) / warp(upper) if upper_stop > 0 else mp.mpf(2)
        poles, zeros, at_infinity = function(n, eps2, omega, flag)
        at_zero, unit = 0, upper
    scale = 2 * mp.pi * mp.mpf(unit) if medium == LUMPED else mp.mpf(1)
    return [p * scale for p in poles], sorted(z * scale for z in zeros), at_zero, at_infinity


def requests():
    """All kinds, types, media and flags; degrees, ratios and ripples drawn so that each value meets each kind."""
    draw = random.Random(20)
    degrees = (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 15, 17, 20, 21, 25, 28, 31, 36, 40, 45, 49, 50)
    ratios = (1.001, 1.01, 1.05, 1.2, 1.5, 2.0, 3.5, 5.0)
    losses = (1e-4, 1e-3, 0.01, 0.1, 0.5, 1.0, 3.0)
    for kind, filter_type, medium in itertools.product(KINDS, (LOW, HIGH, BAND), (LUMPED, SAMPLED, MICROWAVE)):
        chosen = [(n, draw.choice(ratios), draw.choice(losses)) for n in draw.sample(degrees, 7)]
        chosen += [(50, 1.001, 1e-4), (49, 1.01, 3.0)] if medium == LUMPED else [(50, 1.2, 0.1)]
        for n, ratio, loss in chosen:
            if filter_type == BAND:
                n += n % 2
            flag = -1 if filter_type == BAND or medium == SAMPLED else draw.choice((-1, 0, 1))
            yield kind, filter_type, medium, flag, n, ratio, loss


def case(kind, filter_type, medium, flag, n, ratio, loss):
    fs = 40e3 if medium != LUMPED else 0.0
    has_stop = kind in ("inverse_chebyshev", "elliptic")
    lower = upper = lower_stop = upper_stop = 0.0
    if filter_type == LOW:
        upper = 3000.0
        upper_stop = upper * ratio if has_stop else 0.0
    elif filter_type == HIGH:
        lower = 3000.0
        lower_stop = lower / ratio if has_stop else 0.0
    else:
        lower, upper = 2000.0, 3000.0
        if has_stop:
            lower_stop, upper_stop = lower - 1000 * (ratio - 1) / 4, upper + 1000 * (ratio - 1) / 2
    r1, r2 = (1.0, 0.0) if flag == -1 else (50.0, 50.0) if flag == 1 else (50.0, 75.0)
    poles, zeros, at_zero, at_infinity = design(kind, filter_type, medium, flag, n, lower, upper, lower_stop,
                                                upper_stop, loss, fs)
    tiny = mp.mpf(10) ** -40
    upper_half = sorted((p for p in poles if p.imag > -tiny * abs(p)), key=lambda p: (p.imag, p.real))
    kept = [p if abs(p.imag) > tiny * abs(p) else mp.mpc(p.real, 0) for p in upper_half]
    count = sum(1 if p.imag == 0 else 2 for p in kept)
    assert count == n == len(poles), (kind, filter_type, medium, flag, n, count)
    text = lambda value: mp.nstr(value, 20, strip_zeros=True)
    head = [kind, filter_type, medium, flag, n] + [repr(v) for v in
                                                 (lower, upper, lower_stop, upper_stop, loss, fs, r1, r2)]
    tail = [at_zero, at_infinity, len(kept)] + [f"{text(p.real)} {text(p.imag)}" for p in kept]
    tail += [len(zeros)] + [text(z) for z in zeros]
    return " ".join(str(item) for item in head + tail)


def main():
    with open("transfer_golden.txt", "w") as out:
        print(f"# transfer_reference.py with mpmath {mp.__version__}, {mp.mp.dps} digits, closed forms.", file=out)
        print("# Tolerance 1e-12 of the magnitude of each pole and zero: the program keeps its sets in 64 bits of mantissa and "
              "prints doubles.", file=out)
        print("# kind type medium flag degree lower upper lower_stop upper_stop loss fs R1 R2, zeros at zero and at "
              "infinity,", file=out)
        print("# count of poles in the upper half plane, re im each, count of finite zeros, im each; lumped rad/s, else "
              "units of the edge.", file=out)
        for request in requests():
            print(case(*request), file=out)


if __name__ == "__main__":
    main()
