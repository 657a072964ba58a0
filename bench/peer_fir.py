#!/usr/bin/python3
"""Times scipy.signal.remez on the designs of bench/fir_exchange.cpp.

    peer_fir.py                 prints a line for each design: processor time at scipy's grid density of 16 and at 32
    peer_fir.py BENCHMARK.json  prints the table of ratios to a run of fir_bench --benchmark_format=json
"""
import json
import statistics
import sys
import time

from scipy.signal import remez

LENGTHS = (32, 64, 101, 128, 256, 512)
DESIGNS = {  # edges (taps away from 0.2 after the first two), values, weights
    "design": ((3,), (1, 0), (1, 1)),
    "refined": ((3, 3.4, 5), (1, 0, 0), (1, 10, 1)),
}


def microseconds(name, length, density):
    taps_away, values, weights = DESIGNS[name]
    edges = [0, 0.2, *(0.2 + taps / length for taps in taps_away), 0.5]
    times, end = [], time.perf_counter() + 0.5
    while time.perf_counter() < end or len(times) < 5:
        start = time.process_time()
        try:
            remez(length, edges, values, weight=weights, fs=1.0, maxiter=100, grid_density=density)
        except ValueError:  # no convergence
            return float("nan")
        times.append(time.process_time() - start)
    return 1e6 * statistics.median(times)


def own_times(path):
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    times = {(name, length): [run["cpu_time"] * unit[run["time_unit"]] for run in runs if run["name"] == f"{name}/{length}"]
             for name in DESIGNS for length in LENGTHS}
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


if __name__ == "__main__":
    main()
