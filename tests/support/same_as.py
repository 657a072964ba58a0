"""Runs random requests with two builds of kavrel-cli and compares all that they leave, byte for byte: see script/same_as."""

import collections
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys

from random_requests import request

jobs = 2
seconds = 60


def run(program, folder, script):
    """Runs the script in an empty folder of its own; returns what is left: name to bytes, streams and status among it."""
    work = folder / "work"
    shutil.rmtree(folder, ignore_errors=True)
    work.mkdir(parents=True)
    (work / "request.kav").write_text(script, encoding="utf-8")
    line = ["nice", program, "-C", "work", "--date", "2026-01-02 03:04", "--keep-going", "-o", "report.txt", "--json",
            "state.json", "work/request.kav"]
    try:
        ended = subprocess.run(line, cwd=folder, capture_output=True, timeout=seconds, stdin=subprocess.DEVNULL)
        left = {"status": b"%d\n" % ended.returncode, "standard output": ended.stdout, "standard error": ended.stderr}
    except subprocess.TimeoutExpired:
        left = {"status": b"too slow\n"}
    left |= {str(path.relative_to(folder)): path.read_bytes() for path in sorted(folder.rglob("*")) if path.is_file()}
    return left


def first_difference(one, other):
    if one is None or other is None:
        return "only before" if other is None else "only after"
    place = next((k for k, (a, b) in enumerate(zip(one, other)) if a != b), min(len(one), len(other)))
    if b"\0" in one:
        return f"byte {place}: {one[place:place + 8].hex()} > {other[place:place + 8].hex()}"
    start = max(one.rfind(b"\n", 0, place) + 1, place - 60)
    before, after = (side[start:place + 60].decode(errors="replace").split("\n")[0] for side in (one, other))
    return f"line {one.count(10, 0, place) + 1}\n    < {before}\n    > {after}"


def compare(before, after, seed, number, scratch):
    """Returns the names that differ, each with its first difference, and what the former build left."""
    script = request(seed, number)
    folder = scratch / str(number)
    one, other = (run(program, folder / side, script) for side, program in (("before", before), ("after", after)))
    differing = {name: first_difference(one.get(name), other.get(name)) for name in sorted(one.keys() | other.keys())
                 if one.get(name) != other.get(name)}
    if not differing:
        shutil.rmtree(folder)
    return differing, one


def main():
    if len(sys.argv) not in (3, 4, 5):
        sys.exit("usage: script/same_as BEFORE AFTER [N] [SEED]")
    before, after = (str(pathlib.Path(program).resolve(strict=True)) for program in sys.argv[1:3])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 2000
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else 11
    scratch = pathlib.Path(__file__).resolve().parents[2] / "build" / "same_as"
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)

    wrong = 0
    tally = collections.Counter()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for number, (differing, left) in enumerate(pool.map(
                lambda n: compare(before, after, seed, n, scratch), range(count))):
            tally["status " + left["status"].decode().strip()] += 1
            for name in left:
                tally[re.sub(r"^file\d+|\d", "", os.path.basename(name))] += 1
            if differing:
                wrong += 1
                print(f"request {number} differs; its folder is {scratch / str(number)}")
                for name, what in list(differing.items())[:3]:
                    print(f"  {name}: {what}")
                if len(differing) > 3:
                    print("  and " + ", ".join(list(differing)[3:]))
                sys.stdout.flush()
    print(f"{count} requests of seed {seed}, {wrong} differ")
    print("  " + ", ".join(f"{name} {times}" for name, times in sorted(tally.items()) if times < count))
    sys.exit(1 if wrong else 0)


main()
