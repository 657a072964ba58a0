#!/usr/bin/python3
"""Digital filters from the closed forms of transfer_reference.py: writes z_transform_golden.txt.

The z step and the spectral transformations are done with 120 digits (impulse-invariant ones with 400). Levels come from
values of H, not from the products of roots that the program uses: the prototype has the edge loss at s = j, a spectral
image the value of its low-pass at one z. Zeros of impulse-invariant filters are those of the expanded numerator,
checked by multiplying them out again.
"""
import random

import mpmath as mp

import transfer_reference as analog
from transfer_reference import BAND, HIGH, LOW, LUMPED, SAMPLED

FS = 8000.0
TRANSFORMS = {"impulse": 1, "matched": 2, "bilinear": 3}
SPECTRAL = {"none": 0, "lowpass": 1, "highpass": 2, "bandpass": 3, "bandreject": 4}
TINY = mp.mpf(10) ** -50


def prototype(kind, filter_type, medium, n, lower, upper, lower_stop, upper_stop, loss):
    """Poles, zeros and level with s in units of the edge, the edge angle T'."""
    poles, zeros, at_zero, _ = analog.design(kind, filter_type, medium, -1, n, lower, upper, lower_stop, upper_stop,
                                             loss, FS)
    edge = lower if filter_type == HIGH else upper
    scale = 2 * mp.pi * mp.mpf(edge) if medium == LUMPED else mp.mpf(1)
    poles = [p / scale for p in poles]
    zeros = [mp.mpc(0, sign * z / scale) for z in zeros for sign in (1, -1)] + [mp.mpc(0)] * at_zero
    h = product(1j - z for z in zeros) / product(1j - p for p in poles)
    return zeros, poles, mp.mpf(10) ** (-mp.mpf(loss) / 20) / abs(h), 2 * mp.pi * mp.mpf(edge) / FS


def product(values):
    result = mp.mpf(1)
    for value in values:
        result *= value
    return result


def value(zeros, poles, z):
    return product(1 - r / z for r in zeros) / product(1 - r / z for r in poles)


def analog_value(zeros, poles, level, s):
    return level * product(s - r for r in zeros) / product(s - r for r in poles)


def bilinear(zeros, poles, level, angle):
    t = mp.tan(angle / 2)
    image = lambda s: (1 + s * t) / (1 - s * t)
    digital_zeros = [image(s) for s in zeros] + [mp.mpc(-1)] * (len(poles) - len(zeros))
    digital_poles = [image(s) for s in poles]
    z = mp.mpf(3)  # any real one
    multiplier = analog_value(zeros, poles, level, (z - 1) / (z + 1) / t) / value(digital_zeros, digital_poles, z)
    return digital_zeros, digital_poles, multiplier


def at_reference(filter_type, lower, upper, angle, analog_h, digital_h):
    w = {LOW: mp.mpf(0), HIGH: mp.pi / angle, BAND: mp.sqrt(mp.mpf(lower) / mp.mpf(upper or 1))}[filter_type]
    return abs(analog_h(1j * w)) / abs(digital_h(mp.exp(1j * w * angle)))


def matched(zeros, poles, level, angle, filter_type, lower, upper):
    dz, dp = [mp.exp(s * angle) for s in zeros], [mp.exp(s * angle) for s in poles]
    k = at_reference(filter_type, lower, upper, angle, lambda s: analog_value(zeros, poles, level, s),
                     lambda z: value(dz, dp, z))
    return dz, dp, k


def impulse(zeros, poles, level, angle, filter_type, lower, upper):
    constant = level if len(zeros) == len(poles) else mp.mpf(0)
    dp = [mp.exp(s * angle) for s in poles]
    residues = [analog_value(zeros, poles[:i] + poles[i + 1:], level, p) for i, p in enumerate(poles)]
    total = [constant * c for c in expanded(dp)]  # in descending powers of z, over prod(z - pole)
    for i, r in enumerate(residues):
        part = expanded(dp[:i] + dp[i + 1:]) + [mp.mpf(0)]
        total = [a + angle * r * b for a, b in zip(total, part)]
    total = [c.real for c in total]
    largest = max(abs(c) for c in total)
    while abs(total[0]) < largest * mp.mpf(10) ** -250:
        total.pop(0)
    while abs(total[-1]) < largest * mp.mpf(10) ** -250:
        total.pop()
    dz = roots_of(total)
    k = at_reference(filter_type, lower, upper, angle, lambda s: analog_value(zeros, poles, level, s),
                     lambda z: value(dz, dp, z))
    return dz, dp, k * mp.sign(total[0])


def expanded(roots):
    coefficients = [mp.mpc(1)]
    for r in roots:
        coefficients = [a - r * b for a, b in zip(coefficients + [mp.mpf(0)], [mp.mpf(0)] + coefficients)]
    return coefficients


def roots_of(coefficients):
    """Weierstrass's iteration, from points on circles whose radii are the ratios of neighbouring coefficients."""
    n = len(coefficients) - 1
    monic = [c / coefficients[0] for c in coefficients]
    roots = [abs(monic[i + 1] / monic[i]) * mp.expj(2.4 * i + 0.3) if monic[i] else mp.expj(2.4 * i + 0.3)
             for i in range(n)]
    for _ in range(2000):
        worst = mp.mpf(0)
        for i in range(n):
            step = mp.polyval(monic, roots[i]) / product(roots[i] - roots[j] for j in range(n) if j != i)
            roots[i] -= step
            worst = max(worst, abs(step / roots[i]))
        if worst < mp.mpf(10) ** -100:
            break
    back = expanded(roots)
    assert all(abs(a - b) < mp.mpf(10) ** -60 * max(abs(a), 1) for a, b in zip(back, monic)), "zeros not found"
    return [r if abs(r.imag) > TINY * abs(r) else mp.mpc(r.real) for r in roots]


def spectral(kind, zeros, poles, multiplier, edge, lower, upper):
    """z of Z = G(z), G an allpass whose numbers follow from where it has to take the edges, by a linear equation."""
    th, w1, w2 = (mp.pi * mp.mpf(f) / FS for f in (edge, lower, upper))
    unit = lambda half: mp.expj(2 * half)
    if kind in ("lowpass", "highpass"):
        sign, w = (1, w2) if kind == "lowpass" else (-1, w1)
        # sign (z - a)/(1 - a z) is e^(j th2) at the edge (the conjugate for high-pass)
        target = unit(th) if sign == 1 else mp.conj(unit(th))
        z = unit(w)
        a = ((sign * z - target) / (sign - target * z)).real
        numerator, denominator = [sign, -sign * a], [-a, 1]
    else:
        # sign (z^2 - b z + c)/(c z^2 - b z + 1) is the conjugate edge at w1 and the edge at w2, or the other way
        sign = -1 if kind == "bandpass" else 1
        first, second = (mp.conj(unit(th)), unit(th)) if sign == -1 else (unit(th), mp.conj(unit(th)))
        rows, right = [], []
        for target, z in ((first, unit(w1)), (second, unit(w2))):
            rows.append([-sign * z + target * z, sign - target * z * z])
            right.append(target - sign * z * z)
        b, c = mp.lu_solve(mp.matrix(rows), mp.matrix(right))
        b, c = b.real, c.real
        numerator, denominator = [sign, -sign * b, sign * c], [c, -b, 1]
    zeros = zeros + [mp.mpc(0)] * (len(poles) - len(zeros))

    def images(root):
        polynomial = [n - root * d for n, d in zip(numerator, denominator)]
        if len(polynomial) == 2:
            return [-polynomial[1] / polynomial[0]]
        h, q = -polynomial[1] / polynomial[0] / 2, polynomial[2] / polynomial[0]
        r = mp.sqrt(h * h - q)
        return [h + r, h - r]

    new_zeros = [z for root in zeros for z in images(root)]
    new_poles = [z for root in poles for z in images(root)]
    at = mp.mpf(3)
    below = mp.polyval(numerator, at) / mp.polyval(denominator, at)
    h = multiplier * value(zeros, poles, below)
    return new_zeros, new_poles, h / value(new_zeros, new_poles, at)


def digital(transform, kind, filter_type, n, edges, loss, target):
    mp.mp.dps = 400 if transform == "impulse" else 120
    lower, upper, lower_stop, upper_stop = edges
    medium = SAMPLED if transform == "bilinear" else LUMPED
    zeros, poles, level, angle = prototype(kind, filter_type, medium, n, *edges, loss)
    if transform == "bilinear":
        zeros, poles, multiplier = bilinear(zeros, poles, level, angle)
    else:
        step = matched if transform == "matched" else impulse
        zeros, poles, multiplier = step(zeros, poles, level, angle, filter_type, lower, upper)
    name, fp, fq = target
    if name != "none":
        zeros, poles, multiplier = spectral(name, zeros, poles, multiplier, upper, fp, fq)
    return [z for z in zeros if abs(z) > TINY], poles, mp.mpc(multiplier).real


def requests():
    draw = random.Random(17)
    edges = {LOW: (0.0, 1000.0, 0.0, 2000.0), HIGH: (2500.0, 0.0, 1700.0, 0.0), BAND: (900.0, 1400.0, 600.0, 2100.0)}
    for transform in TRANSFORMS:
        for filter_type in (LOW, HIGH, BAND):
            for kind in analog.KINDS:
                for n in draw.sample((1, 2, 3, 4, 5, 6, 7, 9, 12, 16, 23), 3) + [30]:
                    if filter_type == BAND:
                        n += n % 2
                    if kind in ("elliptic", "inverse_chebyshev") and n == 1:
                        n = 3
                    loss = draw.choice((0.01, 0.1, 0.5, 3.0))
                    yield transform, kind, filter_type, n, edges[filter_type], loss, ("none", 0.0, 0.0)
    targets = {"lowpass": (0.0, 2600.0), "highpass": (300.0, 0.0), "bandpass": (1500.0, 1620.0),
               "bandreject": (700.0, 1900.0)}
    wide = {"lowpass": (0.0, 150.0), "highpass": (3100.0, 0.0), "bandpass": (200.0, 3000.0),
            "bandreject": (995.0, 1005.0)}
    for transform in TRANSFORMS:
        for name in targets:
            for where in (targets, wide):
                for n in draw.sample((1, 2, 3, 4, 5, 6, 7, 9, 12, 16), 3) + [25 if name.startswith("band") else 30]:
                    kind = draw.choice(analog.KINDS) if n > 1 else "butterworth"
                    yield transform, kind, LOW, n, edges[LOW], draw.choice((0.01, 0.1, 0.5, 3.0)), (name, *where[name])


def half(roots):
    kept = [r if abs(r.imag) > TINY * abs(r) else mp.mpc(r.real) for r in map(mp.mpc, roots)]
    kept = sorted((r for r in kept if r.imag >= 0), key=lambda r: (r.real, r.imag))
    assert sum(2 if r.imag else 1 for r in kept) == len(roots)
    text = lambda v: mp.nstr(v, 20)
    return [len(kept)] + [f"{text(r.real)} {text(r.imag)}" for r in kept]


def main():
    with open("z_transform_golden.txt", "w") as out:
        print(f"# z_transform_reference.py with mpmath {mp.__version__}, closed forms of transfer_reference.py.",
              file=out)
        print("# Tolerance 1e-12 of the magnitude of each zero, of each pole's distance from the circle, and of the "
              "multiplier.", file=out)
        print("# transform kind type degree lower upper lower_stop upper_stop loss spectral fp fq multiplier, fs 8000,",
              file=out)
        print("# count of zeros with imaginary part >= 0, re im each, the same for poles.", file=out)
        for transform, kind, filter_type, n, edges, loss, target in requests():
            stops = kind in ("elliptic", "inverse_chebyshev")
            used = edges if stops else (edges[0], edges[1], 0.0, 0.0)
            zeros, poles, multiplier = digital(transform, kind, filter_type, n, used, loss, target)
            head = [TRANSFORMS[transform], kind, filter_type, n, *map(repr, used), loss, SPECTRAL[target[0]],
                    *target[1:]]
            print(" ".join(map(str, head + [mp.nstr(multiplier, 20)] + half(zeros) + half(poles))), file=out)


if __name__ == "__main__":
    main()
