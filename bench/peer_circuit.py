#!/usr/bin/python3
"""Times ngspice's AC analysis of the ladders of bench/circuit_chain.cpp: 501 points, the whole run of the program.

    peer_circuit.py                 prints a line for each number of branches: ms of the best of 15 runs
    peer_circuit.py BENCHMARK.json  prints the ratios to a run of circuit_bench --benchmark_format=json
"""
import json
import math
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

BRANCHES = (30, 50)


def netlist(branches):
    w = 2 * math.pi * 1e6
    lines, node = ["ladder", "vin 1 0 dc 0 ac 2", "rs 1 2 50"], 2
    for i in range(branches):
        if i % 2 == 0:
            lines.append(f"c{i} {node} 0 {2 / (50 * w):.12g}")
        else:
            lines.append(f"l{i} {node} {node + 1} {2 * 50 / w:.12g}")
            node += 1
    lines += [f"rl {node} 0 50", ".ac lin 501 4e3 2.004e6", f".print ac vdb({node}) vp({node})", ".end"]
    return "\n".join(lines) + "\n"


def milliseconds(branches):
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "ladder.cir")
        with open(path, "w") as file:
            file.write(netlist(branches))
        times = []
        for _ in range(15):
            start = time.perf_counter()
            done = subprocess.run(["ngspice", "-b", path], capture_output=True, text=True, check=True)
            times.append(1e3 * (time.perf_counter() - start))
        if "vdb(" not in done.stdout:
            sys.exit("ngspice gave no table")
    return min(times)


def own_times(path):
    unit = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    return {n: statistics.median(run["real_time"] * unit[run["time_unit"]] for run in runs
                                 if run["name"] == f"analysis/ladder/{n}") for n in BRANCHES}


def main():
    if shutil.which("ngspice") is None:
        sys.exit("ngspice is missing")
    own = own_times(sys.argv[1]) if len(sys.argv) > 1 else None
    print("branches" + ("  kavrel ms" if own else "") + "  ngspice ms" + ("  ratio" if own else ""))
    for n in BRANCHES:
        peer = milliseconds(n)
        print(f"{n:8} {own[n]:10.2f} {peer:11.1f} {own[n] / peer:6.3f}" if own else f"{n:8} {peer:11.1f}")


if __name__ == "__main__":
    main()
