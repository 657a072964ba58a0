#!/usr/bin/python3
"""Times scipy.signal.ellip on the digital low-passes of bench/iir_design.cpp.

    peer_iir.py                 prints a line for each degree: microseconds of output='zpk'
    peer_iir.py BENCHMARK.json  prints the table of ratios to a run of iir_bench --benchmark_format=json
"""
import json
import statistics
import sys
import time

from scipy import signal

DEGREES = (5, 12, 24, 50)


def microseconds(design):
    times, end = [], time.perf_counter() + 0.5
    while time.perf_counter() < end or len(times) < 5:
        start = time.perf_counter()
        design()
        times.append(time.perf_counter() - start)
    return 1e6 * statistics.median(times)


def own_times(path):
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    times = {}
    for run in runs:
        times.setdefault(run["name"], []).append(run["real_time"] * unit[run["time_unit"]])
    return {name: statistics.median(values) for name, values in times.items()}


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


if __name__ == "__main__":
    main()
