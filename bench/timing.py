"""What the comparisons with other programs share."""
import json
import statistics
import time


def microseconds(work):
    """The median of what `work` takes, for half a second."""
    times, end = [], time.perf_counter() + 0.5
    while time.perf_counter() < end or len(times) < 5:
        start = time.perf_counter()
        work()
        times.append(time.perf_counter() - start)
    return 1e6 * statistics.median(times)


def own_times(path):
    """Microseconds by name of a run with --benchmark_format=json."""
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    with open(path) as file:
        runs = [run for run in json.load(file)["benchmarks"] if run.get("run_type") != "aggregate"]
    times = {}
    for run in runs:
        times.setdefault(run["name"], []).append(run["real_time"] * unit[run["time_unit"]])
    return {name: statistics.median(values) for name, values in times.items()}
