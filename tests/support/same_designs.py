"""Compares the designs of two builds of kavrel-cli, as filters: see script/same_designs."""

import collections
import concurrent.futures
import pathlib
import sys

import numpy as np

from judge_check import circuit_loss, function_loss, jobs, run
from random_requests import design

high = 150  # dB: beyond, losses are not compared
close = 1e-6  # dB, or of the largest tap


def outcome(state):
    if state["design"] != "done" or state["segment"] == "ladder":
        return "refused"
    rows = state.get("check", [])
    return "met" if all(row["met"] for row in rows) else "missed"


def difference(one, other):
    """Of two filters: largest difference of their losses in dB between a hundredth and a hundred times the edges, or of taps."""
    if "impulse" in one.get("fir", {}):
        taps = [np.array(state["fir"]["impulse"]) for state in (one, other)]
        return np.inf if taps[0].shape != taps[1].shape else np.abs(taps[0] - taps[1]).max() / np.abs(taps[0]).max()
    if one.get("circuit") == other.get("circuit") and one.get("transfer") == other.get("transfer"):
        return 0.0
    losses = []
    for state in (one, other):
        circuit = state["circuit"] if state["segment"] == "passive" else None
        losses.append(circuit_loss(circuit, 0, 0) if circuit else function_loss(state["spec"], state["transfer"], 0))
    places = np.array(function_loss(one["spec"], one["transfer"], 0).places, float)
    places = places[(places > 0) & np.isfinite(places)]
    limit = one["spec"]["sampleFrequency"] / 2 or np.inf
    grid = np.geomspace(places.min() / 100, min(places.max() * 100, 0.999 * limit), 400)
    a, b = (np.array(loss(np.concatenate([grid, places])), float) for loss in losses)
    there = np.isfinite(a) & np.isfinite(b) & (a < high)
    return np.abs(a - b)[there].max() if there.any() else np.inf


def judge(before, after, seed, number):
    script = design(seed, number)
    one, other = (run(program, script) for program in (before, after))
    kind = "FIR" if one["segment"] == "fir" or other["segment"] == "fir" else "filter"
    ends = outcome(one), outcome(other)
    with np.errstate(all="ignore"):
        off = difference(one, other) if ends[0] == "met" and ends[1] != "refused" else 0.0
    return number, kind, ends, off


def main():
    if len(sys.argv) not in (3, 4, 5):
        sys.exit("usage: script/same_designs BEFORE AFTER [N] [SEED]")
    before, after = (str(pathlib.Path(program).resolve(strict=True)) for program in sys.argv[1:3])
    count, seed = (int(word) for word in (sys.argv[3:] + ["800", "13"][len(sys.argv) - 3:]))
    tally, changed, largest = collections.Counter(), 0, 0.0
    with concurrent.futures.ProcessPoolExecutor(jobs) as pool:
        for number, kind, ends, off in pool.map(judge, *([x] * count for x in (before, after, seed)), range(count)):
            tally[f"{kind} {ends[0]} > {ends[1]}"] += 1
            lost = ends[0] == "met" != ends[1]
            changed += lost or off > close
            if lost or off > close:
                print(f"design {number}: {kind}, {ends[0]} > {ends[1]}, difference {off:.2g}", flush=True)
            else:
                largest = max(largest, off)
    print(f"{count} designs of seed {seed}: {changed} that met their request are changed or lost; the others within {largest:.1e}")
    print("  " + ", ".join(f"{what} {times}" for what, times in sorted(tally.items())))
    sys.exit(1 if changed else 0)


if __name__ == "__main__":
    main()
