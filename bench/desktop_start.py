#!/usr/bin/env python3
"""How long kavrel takes from its start to a window that shows its menu, and the memory it holds then.

    bench/desktop_start.py PROGRAM

The window is looked for on a screen of its own (Xvfb) by xdotool, whose search is counted in.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

TITLE = "Kavrel - MAIN MENU"
RUNS = 7


def memory_of(pid):
    fields = {}
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as lines:
        for line in lines:
            words = line.split()
            if len(words) == 3 and words[2] == "kB":
                fields[words[0].rstrip(":")] = int(words[1]) / 1024
    return fields["Rss"], fields["Pss"]


def one_start(program, environment):
    started = time.monotonic()
    with subprocess.Popen([program], env=environment, cwd=environment["HOME"], stderr=subprocess.DEVNULL) as run:
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", TITLE], env=environment, check=True,
                       stdout=subprocess.DEVNULL)
        seconds = time.monotonic() - started
        time.sleep(0.3)
        memory = memory_of(run.pid)
        run.kill()
    return seconds, memory


def main():
    program = os.path.abspath(sys.argv[1])
    display = f":{400 + os.getpid() % 500}"
    with subprocess.Popen(["Xvfb", display, "-screen", "0", "1600x1200x24"], stderr=subprocess.DEVNULL) as screen:
        time.sleep(1)
        try:
            with tempfile.TemporaryDirectory() as home:
                environment = dict(os.environ, DISPLAY=display, HOME=home, XDG_RUNTIME_DIR=home, QT_QPA_PLATFORM="xcb")
                starts = [one_start(program, environment) for _ in range(RUNS)]
        finally:
            screen.kill()
    seconds = [start[0] for start in starts]
    resident, own = starts[-1][1]
    print(f"start to window: first {seconds[0]:.2f} s, median {statistics.median(seconds[1:]):.2f} s, "
          f"worst {max(seconds):.2f} s of {RUNS} (bound: 1 s)")
    print(f"memory: {resident:.0f} MB resident, {own:.0f} MB counting shared pages by share")


if __name__ == "__main__":
    main()
