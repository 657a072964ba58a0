"""Runs random requests with poisoned numbers: see script/attack."""

import collections
import concurrent.futures
import json
import pathlib
import random
import re
import shutil
import subprocess
import sys

from random_requests import request

jobs = 2
seconds = 10
poisons = ("0", "-0", "-1", "1e-308", "1e308", "-1e308", "inf", "nan", "4e-324", "1e-150", "1e150", "-1e150", "1e-100", "1e100",
           "1e-30", "1e30", "-1e30", "1e-8", "1e8", "1e15", "1e-18", "50000", "2147483647", "-2147483648", "4294967297", "1e20")
is_number = re.compile(r"^[-+]?[0-9.]+(e[-+]?\d+)?$")
# What is not known is null there; so is what a check does not ask for, a word is not found for, or has no bound.
may_be_null = {"asked", "band", "level", "error", "margin", "reached", "passband_loss", "stopband_loss",
               "amplitude_bound", "rms", "output_rms"}
not_finite = re.compile(r"\b(nan|inf)\b|[= ]-?infinity\b", re.IGNORECASE)
spoken = re.compile(r"at infinity|infinity\s*=|by infinity|through infinity|Deviation in db|Inductors:|Capacitors:|inf dB reached|^ *[0-9.E+-]+ +(\S+ +){0,5}Infinity\b", re.IGNORECASE)


def poisoned(seed, number):
    """The request, one to three of its numbers replaced."""
    draw = random.Random(seed * 1_000_003 + number)
    lines = request(seed, number).split("\n")
    places = [(k, w) for k, line in enumerate(lines) if line.split(" ")[0] not in ("choose",)
              for w, word in enumerate(line.split(" ")) if is_number.match(word)]
    for k, w in draw.sample(places, min(len(places), draw.choice((1, 1, 1, 2, 3)))):
        words = lines[k].split(" ")
        words[w] = draw.choice(poisons)
        lines[k] = " ".join(words)
    return "\n".join(lines)


def nulls(value, key=""):
    """The keys of nulls that ought to be numbers."""
    if isinstance(value, dict):
        return {name for k, v in value.items() for name in nulls(v, k)}
    if isinstance(value, list):
        return {name for v in value for name in nulls(v, key)}
    return {key} if value is None and key not in may_be_null else set()


def judge(program, script, folder):
    """What is wrong with a run of the script, or blank."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    (folder / "request.kav").write_text(script, encoding="utf-8")
    line = [program, "-C", str(folder), "--keep-going", "-o", "report.txt", "--json", "state.json",
            str(folder / "request.kav")]
    try:
        ended = subprocess.run(line, cwd=folder, capture_output=True, timeout=seconds, stdin=subprocess.DEVNULL)
    except subprocess.TimeoutExpired:
        return "endless"
    said = ended.stderr.decode(errors="replace")
    if ended.returncode < 0 or "runtime error" in said or "Sanitizer" in said:
        found = re.search(r"\S+:\d+:\d+: runtime error.*|SUMMARY.*", said)
        return f"crash {ended.returncode} {found.group(0) if found else said[-200:]}"
    for path in sorted(folder.rglob("*")):
        if path.suffix == ".json":
            if missing := nulls(json.loads(path.read_text(errors="replace"))):
                return f"null {sorted(missing)[0]}"
        elif path.is_file() and path.suffix not in (".kav", ".qfp", ".qfd", ".qfi", ".qai", ".qff", ".tmp"):
            for text in path.read_text(errors="replace").split("\n"):
                if not_finite.search(text) and not spoken.search(text):
                    return f"not finite in {path.suffix}: {text.strip()[:100]}"
    return ""


def main():
    if len(sys.argv) not in (2, 3, 4):
        sys.exit("usage: script/attack PROGRAM [N] [SEED]")
    program = str(pathlib.Path(sys.argv[1]).resolve(strict=True))
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 2000
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 14
    scratch = pathlib.Path(__file__).resolve().parents[2] / "build" / "attack"
    shutil.rmtree(scratch, ignore_errors=True)

    def attack(number):
        folder = scratch / str(number)
        wrong = judge(program, poisoned(seed, number), folder)
        if not wrong:
            shutil.rmtree(folder)
        return wrong

    found = collections.defaultdict(list)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for number, wrong in enumerate(pool.map(attack, range(count))):
            if wrong:
                found[wrong].append(number)
    for wrong, numbers in sorted(found.items()):
        print(f"{len(numbers):4} {wrong} (request {numbers[0]})")
    print(f"{count} requests of seed {seed}, {sum(map(len, found.values()))} fell; their folders are in {scratch}")
    sys.exit(1 if found else 0)


main()
