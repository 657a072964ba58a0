#!/usr/bin/python3
"""Times ngspice's AC analysis of the ladders of bench/circuit_chain.cpp: 501 points, the whole run of the program; and
beside it the analysis in process and the whole run of kavrel-cli, which opens the stored circuit and writes the CSV.

    peer_circuit.py                          prints a line for each number of branches: ms of the best of 15 runs
    peer_circuit.py BENCHMARK.json           the ratios to a run of circuit_bench --benchmark_format=json, and to the
                                             kavrel-cli that stands in the same folder
    peer_circuit.py BENCHMARK.json PROGRAM   the same with this kavrel-cli
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
RUNS = 15
W = 2 * math.pi * 1e6

STORE = """choose Analysis > Filter > New
set upper_passband 1M
ok
"""
INSERT = """do ins
set element {}
set branch {}
set value1 {!r}
ok
"""
ANALYSE = """choose File > Recall
file ladder.qfp
do freq
set start 4000
set end 2004000
set increment 4000
ok
answer no
table ladder.csv
"""


def ladder(branches):
    """Keyword and value of each branch between the terminations, the shunt at the load first."""
    return [("c", 2 / (50 * W)) if i % 2 == 0 else ("l", 2 * 50 / W) for i in range(branches)]


def netlist(branches):
    lines, node = ["ladder", "vin 1 0 dc 0 ac 2", "rs 1 2 50"], 2
    for i, (kind, value) in enumerate(ladder(branches)):
        if kind == "c":
            lines.append(f"c{i} {node} 0 {value:.12g}")
        else:
            lines.append(f"l{i} {node} {node + 1} {value:.12g}")
            node += 1
    lines += [f"rl {node} 0 50", ".ac lin 501 4e3 2.004e6", f".print ac vdb({node}) vp({node})", ".end"]
    return "\n".join(lines) + "\n"


def store_script(branches):
    parts = [("r", 1, 50.0)] + [(kind, i + 3, value) for i, (kind, value) in enumerate(ladder(branches))]
    parts.append(("r", branches + 3, 50.0))
    return STORE + "".join(INSERT.format(*part) for part in parts) + "choose File > Save\nfile ladder.qfp\n"


def best_time(command, folder):
    times = []
    for _ in range(RUNS):
        start = time.perf_counter()
        done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
        times.append(1e3 * (time.perf_counter() - start))
    return min(times), done


def ngspice_milliseconds(branches):
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, "ladder.cir"), "w") as file:
            file.write(netlist(branches))
        best, done = best_time(["ngspice", "-b", "ladder.cir"], folder)
    if done.returncode or "vdb(" not in done.stdout:
        sys.exit("ngspice gave no table")
    return best, [float(line.split()[2]) for line in done.stdout.splitlines() if line[:1].isdigit() and "\t" in line]


def program_milliseconds(program, branches, spice_db):
    """The whole process from the stored circuit to the CSV, whose loss is compared with ngspice's first."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in (("store.kav", store_script(branches)), ("analyse.kav", ANALYSE)):
            with open(os.path.join(folder, name), "w") as file:
                file.write(text)
        stored = subprocess.run([program, "store.kav"], cwd=folder, capture_output=True, text=True, check=False)
        if stored.returncode:
            sys.exit("kavrel-cli did not store the circuit\n" + stored.stdout[-2000:] + stored.stderr)
        best, done = best_time([program, "analyse.kav"], folder)
        if done.returncode:
            sys.exit("kavrel-cli did not analyse the circuit\n" + done.stdout[-2000:] + done.stderr)
        with open(os.path.join(folder, "ladder.csv")) as file:
            rows = [line.split(",") for line in file][1:]
    # Points beyond 500 dB have no row; losses above 200 dB are stored as 200.
    off = max(abs(min(200, -spice_db[round(float(row[0]) / 4e3) - 1]) - float(row[1])) for row in rows)
    if len(rows) < 400 or len(spice_db) != 501 or off > 1e-3:
        sys.exit(f"kavrel-cli and ngspice differ by {off} dB at {len(rows)} and {len(spice_db)} points")
    return best


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
    program = None
    if len(sys.argv) > 1:
        program = sys.argv[2] if len(sys.argv) > 2 else os.path.join(os.path.dirname(sys.argv[1]), "kavrel-cli")
        program = os.path.abspath(program) if os.path.exists(program) else None
    print("branches  ngspice ms" + ("  in process ms  ratio" if own else "") + ("  kavrel-cli ms  ratio" if program else ""))
    for n in BRANCHES:
        peer, db = ngspice_milliseconds(n)
        line = f"{n:8} {peer:11.1f}"
        if own:
            line += f" {own[n]:14.2f} {own[n] / peer:6.3f}"
        if program:
            whole = program_milliseconds(program, n, db)
            line += f" {whole:14.1f} {whole / peer:6.3f}"
        print(line)


if __name__ == "__main__":
    main()
