#!/usr/bin/python3
"""Times scipy.signal.ellip on the digital low-passes of bench/iir_design.cpp, and frequency responses like those of
bench/iir_response.cpp: 24 sections by sosfreqz, degree 24 by freqz, 501 points; H alone, and with the delay by
group_delay. Kavrel's have loss, phase and delay. Last, impulse and step response of the sections by sosfilt, which
bench/iir_simulation.cpp has in one run.

    peer_iir.py                 prints a line for each degree: microseconds of output='zpk'
    peer_iir.py BENCHMARK.json  prints the table of ratios to a run of iir_bench --benchmark_format=json
"""
import sys
import warnings

import numpy as np
from scipy import signal

from timing import microseconds, own_times

DEGREES = (5, 12, 24, 50)


def main():
    own = own_times(sys.argv[1]) if len(sys.argv) > 1 else None
    print("function        degree" + ("  kavrel us" if own else "") + "  scipy us" + ("  ratio" if own else ""))
    for n in DEGREES:
        # scipy's filter is asked for by its stop band loss; 60 dB keeps it in reach at every degree.
        peer = microseconds(lambda: signal.ellip(n, 1, 60, 1000, fs=8000, output="zpk"))
        if own:
            for name in ("ellip", "ellip_all_forms"):  # the second with parallel form, direct form and lattice
                if (mine := own.get(f"{name}/{n}")) is not None:
                    print(f"{name:15} {n:6} {mine:10.0f} {peer:9.0f} {mine / peer:6.2f}")
        else:
            print(f"{'ellip':15} {n:6} {peer:9.0f}")
    responses(own)
    simulation(own)


def responses(own):
    warnings.simplefilter("ignore")
    points = np.arange(501) * np.pi / 501
    sos = signal.ellip(48, 0.1, 60, 0.4, output="sos")
    b, a = signal.ellip(24, 0.1, 60, 0.4)
    peers = {
        "sosfreqz": (microseconds(lambda: signal.sosfreqz(sos, points)),
                     microseconds(lambda: [signal.group_delay((s[:3], s[3:]), points) for s in sos])),
        "freqz": (microseconds(lambda: signal.freqz(b, a, points)), microseconds(lambda: signal.group_delay((b, a), points))),
    }
    for name, (response, delay) in peers.items():
        print(f"scipy {name:9} {response:8.0f} us, with the delay {response + delay:8.0f} us")
    for form, peer in (("cascade", "sosfreqz"), ("parallel", "sosfreqz"), ("modes", "sosfreqz"), ("allpass", "sosfreqz"),
                       ("lattice", "freqz"), ("direct", "freqz"), ("crowded", "freqz")):
        if own and (mine := own.get(f"response_of_{form}")) is not None:
            response, delay = peers[peer]
            print(f"{form:9} {mine:8.1f} us  {mine / response:6.2f} of {peer:8}  {mine / (response + delay):6.2f} with the delay")


def simulation(own):
    sos = signal.ellip(48, 0.1, 60, 0.4, output="sos")
    inputs = np.array([np.arange(501) == 0, np.ones(501)], dtype=float)
    peer = microseconds(lambda: signal.sosfilt(sos, inputs))
    print(f"scipy sosfilt {peer:8.0f} us, impulse and step")
    for name in ("simulate_cascade", "simulate_in_fixed_words", "simulate_in_floating_words"):
        if own and (mine := own.get(name)) is not None:
            print(f"{name:26} {mine:8.1f} us  {mine / peer:6.2f} of sosfilt")


if __name__ == "__main__":
    main()
