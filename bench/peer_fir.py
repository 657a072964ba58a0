#!/usr/bin/python3
"""Times what scipy and numpy have beside bench/fir_*.cpp: remez on the designs, windows, freqz, roots.

    peer_fir.py                 prints a line for each: processor time, of a design at scipy's grid density of 16 and at 32
    peer_fir.py BENCHMARK.json  prints the tables of ratios to a run of fir_bench --benchmark_format=json
"""
import json
import statistics
import sys
import time

import numpy
from scipy.signal import freqz, remez, windows

LENGTHS = (32, 64, 101, 128, 256, 512)
DESIGNS = {  # edges (taps away from 0.2 after the first two), values, weights
    "design": ((3,), (1, 0), (1, 1)),
    "refined": ((3, 3.4, 5), (1, 0, 0), (1, 10, 1)),
}

WINDOWS = {  # by their numbers
    1: windows.boxcar, 2: windows.triang, 3: windows.hamming, 4: windows.hann, 5: windows.cosine, 8: windows.blackman,
    13: windows.blackmanharris, 16: windows.nuttall, 17: lambda n: windows.kaiser(n, 5.653),
    18: lambda n: windows.chebwin(n, 60.0087), 19: lambda n: windows.gaussian(n, 512 / 5),
    20: lambda n: windows.taylor(n, 12, 60),
}


def median_time(work):
    times, end = [], time.perf_counter() + 0.5
    while time.perf_counter() < end or len(times) < 5:
        start = time.process_time()
        work()
        times.append(time.process_time() - start)
    return 1e6 * statistics.median(times)


def microseconds(name, length, density):
    taps_away, values, weights = DESIGNS[name]
    edges = [0, 0.2, *(0.2 + taps / length for taps in taps_away), 0.5]
    try:
        return median_time(lambda: remez(length, edges, values, weight=weights, fs=1.0, maxiter=100, grid_density=density))
    except ValueError:  # no convergence
        return float("nan")


def response(length):
    taps, points = numpy.sin(0.3 * numpy.arange(length)), 2 * numpy.pi * 47.9 / 48e3 * numpy.arange(501)
    return lambda: freqz(taps, worN=points)


def roots(length):
    taps = remez(length, [0, 0.2, 0.2 + 3 / length, 0.5], [1, 0], fs=1.0, maxiter=100)
    return lambda: numpy.roots(taps)


PEERS = {("window", number): (lambda compute=compute: compute(512)) for number, compute in WINDOWS.items()}
PEERS |= {(name, length): response(length) for name in ("symmetric_response", "general_response") for length in (64, 512)}
PEERS |= {(name, length): roots(length) for name in ("factors", "maximum_phase") for length in (101, 256, 512)}


def print_peers(own):
    print("                   size" + ("  kavrel us" if own else "") + "    peer us" + ("  ratio" if own else ""))
    for (name, size), work in PEERS.items():
        peer = median_time(work)
        mine = own[name, size] if own else None
        print(f"{name:18} {size:4}" + (f" {mine:10.2f} {peer:10.1f} {mine / peer:6.2f}" if own else f" {peer:10.1f}"))


def own_times(path):
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    cases = [(name, length) for name in DESIGNS for length in LENGTHS] + list(PEERS)
    times = {(name, size): [run["cpu_time"] * unit[run["time_unit"]] for run in runs if run["name"] == f"{name}/{size}"]
             for name, size in cases}
    return {key: statistics.median(values) for key, values in times.items()}


def main():
    own = own_times(sys.argv[1]) if len(sys.argv) > 1 else None
    print("          length" + ("  kavrel us" if own else "") + "  scipy us  scipy us at density 32"
          + ("  ratio  ratio at density 32" if own else ""))
    for name, length in ((name, length) for name in DESIGNS for length in LENGTHS):
        default, equal = microseconds(name, length, 16), microseconds(name, length, 32)
        if own:
            mine = own[name, length]
            print(f"{name:9} {length:6} {mine:10.0f} {default:9.0f} {equal:23.0f} {mine / default:6.2f} {mine / equal:20.2f}")
        else:
            print(f"{name:9} {length:6} {default:9.0f} {equal:23.0f}")
    print_peers(own)


if __name__ == "__main__":
    main()
