#!/usr/bin/python3
"""Least ripple of a sloping pass band by linear programs -> least_slope_ripple_golden.txt

Of all polynomials E of the degree of Q that are of one sign with Q on the frequency axis, the one whose loss 10 log10 E/Q
keeps to the narrowest strip about the slope: E in Chebyshev polynomials of the pass band, 1 <= E/T <= 1 + d at 3001 of its
frequencies, E/Q >= 0 at 3000 of both stopbands, d to be the least. More frequencies could only raise it.
"""
import random

import numpy as np
import scipy
from numpy.polynomial.chebyshev import chebvander
from scipy.optimize import linprog

random.seed(71)


def least_ripple(n0, ni, octaves, slope):
    """In dB, for n0 zeros at zero and ni at infinity; slope in dB an octave."""
    n, a, units = n0 + ni, 4.0 ** -octaves, slope / (20 * np.log10(2))
    g = np.sqrt(a)  # x = -g (1 + z)/(1 - z): the pass band is -1 <= z <= 1
    z = -np.cos(np.linspace(0, np.pi, 3001))
    q = (((g - a) * z + g + a) ** n0 * ((g - 1) * z + g + 1) ** ni) / (2 * g) ** n
    squared = ((g - a) * z + a + g) / (1 + g - (1 - g) * z)  # of the frequency
    within = chebvander(z, n) / (q * squared ** units)[:, None]
    beyond = np.sin(np.linspace(0, np.pi / 2, 1500)) ** 2
    stop = chebvander(np.concatenate([-1 + ((a + g) / (a - g) + 1) * beyond, 1 + ((1 + g) / (1 - g) - 1) * beyond]), n)
    stop /= np.abs(stop).max(axis=1)[:, None]
    column = lambda rows, value: np.full((len(rows), 1), value)
    table = np.vstack([np.hstack([-within, column(within, 0)]), np.hstack([within, column(within, -1)]),
                       np.hstack([-stop, column(stop, 0)])])
    right = np.concatenate([-np.ones(len(z)), np.ones(len(z)), np.zeros(len(stop))])
    result = linprog([0] * (n + 1) + [1], A_ub=table, b_ub=right, bounds=[(None, None)] * (n + 2), method="highs")
    assert result.status == 0, result.message
    return 10 * np.log10(1 + result.x[-1])


def rows():
    for n in (4, 6, 8):
        for slope in (1, -4.5):
            yield n // 2, n // 2, 2, slope
    while True:
        n = random.randint(3, 9)
        n0 = random.randint(1, n - 1)
        yield n0, n - n0, round(random.uniform(1, 3), 2), round(random.choice([-1, 1]) * random.uniform(1, 15), 1)


with open("least_slope_ripple_golden.txt", "w", encoding="ascii") as out:
    print(f"# Made by least_slope_ripple_reference.py, scipy {scipy.__version__}, numpy {np.__version__}.", file=out)
    print("# Zeros at zero, at infinity, octaves of the pass band, slope in dB an octave, least ripple in dB.", file=out)
    print("# Good to 2e-3 of the ripple: the programs hold at the frequencies of their grid, to 1e-7 each.", file=out)
    count = 0
    for row in rows():
        least = least_ripple(*row)
        if 1e-3 < least < 5:
            print(*row, f"{least:.6g}", file=out)
            count += 1
        if count == 20:
            break
