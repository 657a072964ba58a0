#!/usr/bin/python3
"""Times scipy.signal on frequency responses like those of bench/iir_response.cpp: 24 sections by sosfreqz, degree 24 by
freqz, 501 points; H alone, and with the delay by group_delay. Kavrel's times are with loss, phase and delay.

    peer_iir_response.py                 prints scipy's times
    peer_iir_response.py BENCHMARK.json  prints the table of ratios to a run of iir_bench --benchmark_format=json
"""
import json
import statistics
import sys
import time
import warnings

import numpy as np
from scipy import signal

warnings.simplefilter("ignore")
FREQUENCIES = np.arange(501) * np.pi / 501


def microseconds(routine):
    times, end = [], time.perf_counter() + 0.5
    while time.perf_counter() < end or len(times) < 5:
        start = time.process_time()
        routine()
        times.append(time.process_time() - start)
    return 1e6 * statistics.median(times)


def own_times(path):
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    return {run["name"]: run["cpu_time"] * unit[run["time_unit"]] for run in runs}


def main():
    own = own_times(sys.argv[1]) if len(sys.argv) > 1 else None
    sos = signal.ellip(48, 0.1, 60, 0.4, output="sos")
    b, a = signal.ellip(24, 0.1, 60, 0.4)
    peers = {
        "sosfreqz": (microseconds(lambda: signal.sosfreqz(sos, FREQUENCIES)),
                     microseconds(lambda: [signal.group_delay((s[:3], s[3:]), FREQUENCIES) for s in sos])),
        "freqz": (microseconds(lambda: signal.freqz(b, a, FREQUENCIES)),
                  microseconds(lambda: signal.group_delay((b, a), FREQUENCIES))),
    }
    for name, (response, delay) in peers.items():
        print(f"scipy {name:9} {response:8.0f} us, with the delay {response + delay:8.0f} us")
    for form, peer in (("cascade", "sosfreqz"), ("parallel", "sosfreqz"), ("modes", "sosfreqz"), ("allpass", "sosfreqz"),
                       ("lattice", "freqz"), ("direct", "freqz"), ("crowded", "freqz")):
        if own and form in own:
            response, delay = peers[peer]
            print(f"{form:9} {own[form]:8.1f} us  {own[form] / response:6.2f} of {peer}"
                  f"  {own[form] / (response + delay):6.2f} with the delay")


if __name__ == "__main__":
    main()
