#!/usr/bin/python3
"""Zeros of equal minima low-pass filters at 50 digits -> characteristic_zeros_golden.txt

The elliptic functions come from mpmath. Two zeros at infinity and equal terminations are Moebius maps of x that keep the
pass band edges; the edge of the function to start from is found by a root search on the stop edge that results. The plain
elliptic and inverse Chebyshev zeros are compared with scipy first.
"""
import mpmath as mp
import numpy
import scipy
from scipy import signal

mp.mp.dps = 50


def x_of(w2):
    return w2 / (w2 - 1)


def plain(flat, n, omega):
    """Zeros and roots of F (doubled ones) in x, discrimination."""
    if flat:
        zeros = [x_of((omega / mp.cos((2 * i - 1) * mp.pi / (2 * n))) ** 2) for i in range(1, n // 2 + 1)]
        return zeros, [], mp.cosh(n * mp.acosh(omega)) ** 2
    m = 1 / omega**2
    quarter = mp.ellipk(m)
    cd = [mp.ellipfun('cd', (2 * i - 1) * quarter / n, m=m) for i in range(1, n // 2 + 1)]
    zeros = [x_of(omega**2 / c**2) for c in cd]
    roots = [x_of(c**2) for c in cd]
    # |F/Q|/eps2 = prod((x - r)/(x - z))^2 (x/(x - 1) for odd n) at the stop edge; 1 at x = infinity.
    x = x_of(omega**2)
    value = x / (x - 1) if n % 2 else mp.mpf(1)
    for z, r in zip(zeros, roots):
        value *= ((x - r) / (x - z)) ** 2
    return zeros, roots, value


def mapped(flat, flag, n, edge):
    zeros, roots, reached = plain(flat, n, edge)
    x = x_of(edge**2)
    if n % 2 == 0 and flag >= 0:
        scale = 1 / min(zeros)
        zeros = sorted(z * scale for z in zeros)[1:]
        roots = [r * scale for r in roots]
        x *= scale
        if flag == 1 and not flat:
            p = -max(roots)
            move = lambda v: (v + p) / (1 + p)
            zeros, x = [move(z) for z in zeros], move(x)
    return sorted(zeros), mp.sqrt(x / (x - 1)), reached


def design(flat, flag, n, omega):
    omega = mp.mpf(omega)
    edge = omega
    if n % 2 == 0 and flag >= 0:
        low, high = 1 + (omega - 1) / 10**4, omega
        edge = mp.findroot(lambda e: mapped(flat, flag, n, e)[1] - omega, (low, high), solver='anderson', tol=1e-80,
                           maxsteps=400)
        assert abs(mapped(flat, flag, n, edge)[1] / omega - 1) < mp.mpf(10) ** -35
    return mapped(flat, flag, n, edge)


def check_with_scipy():
    z, _, _ = signal.cheb2ap(9, 40)
    w = sorted(float(mp.sqrt(x / (x - 1))) for x in plain(True, 9, 1 + mp.mpf(10) ** -30)[0])
    assert numpy.allclose(sorted(abs(z.imag))[::2], w, rtol=1e-12), (z, w)
    rp, rs = 0.1, 60
    for n in (5, 8):
        z, _, _ = signal.ellipap(n, rp, rs)
        wanted = (10 ** (mp.mpf(rs) / 10) - 1) / (10 ** (mp.mpf(rp) / 10) - 1)
        omega = mp.findroot(lambda o: mp.log(plain(False, n, o)[2] / wanted), (mp.mpf('1.01'), mp.mpf(5)),
                            solver='anderson', tol=1e-50)
        w = sorted(float(mp.sqrt(x / (x - 1))) for x in plain(False, n, omega)[0])
        assert numpy.allclose(sorted(abs(z.imag))[::2], w, rtol=1e-8), (z, w)


def main():
    check_with_scipy()
    lines = [f"# characteristic_zeros_reference.py, mpmath {mp.__version__}, checked with scipy {scipy.__version__}",
             "# relative tolerance of x - 1: 1e-15 + 1e-18/(x - 1), the second part being the rounding of x to 19 digits;",
             "# of the loss 1e-13, reported as a double",
             "# flat flag degree omega band_edge_loss loss count x - 1 ... ascending"]
    ripples = [0.0001, 0.1, 3.0]
    k = 0
    for flat in (0, 1):
        for flag in (-1, 0, 1):
            for n in (1, 2, 3, 4, 6, 9, 14, 31, 50):
                for omega in (1.001, 1.05, 1.5, 5.0):
                    if n % 2 and flag >= 0:
                        continue
                    ripple = ripples[k % 3]
                    k += 1
                    zeros, _, reached = design(bool(flat), flag, n, omega)
                    eps2 = mp.mpf(10) ** (mp.mpf(ripple) / 10) - 1
                    loss = 10 * mp.log10(1 + eps2 * reached)
                    values = " ".join(mp.nstr(z - 1, 22) for z in zeros)
                    lines.append(f"{flat} {flag} {n} {omega!r} {ripple!r} {mp.nstr(loss, 22)} {len(zeros)} {values}".rstrip())
    with open("characteristic_zeros_golden.txt", "w") as out:
        out.write("\n".join(lines) + "\n")


main()
