#!/usr/bin/python3
"""Times scipy.signal on the low-pass filters of bench/approximation_design.cpp.

    peer_approximation.py                 prints a line for each function and degree: microseconds of output='zpk'
    peer_approximation.py BENCHMARK.json  prints the table of ratios to a run of approximation_bench --benchmark_format=json
"""
import sys

from scipy import signal

from timing import microseconds, own_times

DEGREES = (5, 10, 20, 50)
EDGE = 6283.185307179586
FUNCTIONS = {
    # scipy's elliptic filter is asked for by its stop band loss; 60 dB keeps it in reach at every degree.
    "ellip": lambda n: signal.ellip(n, 1, 60, EDGE, analog=True, output="zpk"),
    "cheby1": lambda n: signal.cheby1(n, 1, EDGE, analog=True, output="zpk"),
    "butter": lambda n: signal.butter(n, EDGE, analog=True, output="zpk"),
}


def main():
    own = own_times(sys.argv[1]) if len(sys.argv) > 1 else None
    print("function degree" + ("  kavrel us" if own else "") + "  scipy us" + ("  ratio" if own else ""))
    for name, function in FUNCTIONS.items():
        for n in DEGREES:
            peer = microseconds(lambda: function(n))
            if own:
                mine = own[f"{name}/{n}"]
                print(f"{name:8} {n:6} {mine:10.0f} {peer:9.0f} {mine / peer:6.2f}")
            else:
                print(f"{name:8} {n:6} {peer:9.0f}")


if __name__ == "__main__":
    main()
