#!/usr/bin/env python3
"""Measures whole programs in a real window on $DISPLAY, from outside: time until painted and idle, processor time of
a key press, memory.

    program.py start  -- COMMAND…            start to idle, several runs
    program.py keys [--at end|start] [--count N] [--before "a b"] [--keys "a b"] -- COMMAND…
                                             processor time of the whole process per key press; keys before are
                                             pressed N times and not measured: --before "a Return" --keys ctrl+z

"Idle" is the last moment the process used the processor before using none for a third of a second. Times come from
the scheduler's own account (/proc/PID/schedstat, nanoseconds), so a slow display or a busy machine adds nothing.
"""

import argparse
import pathlib
import statistics
import subprocess
import time

QUIET = 0.35


def cpu_seconds(pid: int) -> float:
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        try:
            total += int((task / "schedstat").read_text().split()[0])
        except OSError:
            pass
    return total / 1e9


def memory(pid: int, field: str) -> float:
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith(field):
            return int(line.split()[1]) / 1024
    return 0


def wait_idle(process, needs_window=True) -> float:
    """The moment of the last processor use before a quiet while, seconds of the monotonic clock."""
    last_use, last_cpu, shown = time.monotonic(), 0.0, not needs_window
    while True:
        cpu, now = cpu_seconds(process.pid), time.monotonic()
        if cpu != last_cpu:
            last_use, last_cpu = now, cpu
        if now - last_use > QUIET:
            if shown or windows(process.pid):
                return last_use
            last_use = now
        if process.poll() is not None:
            raise SystemExit("the program ended by itself")
        time.sleep(0.002)


def windows(pid: int):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)],
                          capture_output=True, text=True).stdout.split()


def launch(command):
    return subprocess.Popen(command, stdout=subprocess.DEVNULL)


def stop(process):
    process.kill()
    process.wait()


def start(options):
    times, cpus = [], []
    for _ in range(options.runs):
        begin = time.monotonic()
        process = launch(options.command)
        times.append(wait_idle(process) - begin)
        cpus.append(cpu_seconds(process.pid))
        rss, peak = memory(process.pid, "VmRSS"), memory(process.pid, "VmHWM")
        stop(process)
    print(f"start to idle {statistics.median(times):.3f} s (best {min(times):.3f}), processor {min(cpus):.3f} s, "
          f"at rest {rss:.0f} MiB, peak {peak:.0f} MiB, runs {options.runs}")


PLACES = {"start": "ctrl+Home", "end": "ctrl+End"}


def keys(options):
    process = launch(options.command)
    wait_idle(process)
    window = windows(process.pid)[-1]
    subprocess.run(["xdotool", "windowactivate", "--sync", window], stderr=subprocess.DEVNULL)
    press = lambda *names, repeat=1: subprocess.run(
        ["xdotool", "key", "--delay", "25", "--repeat", str(repeat), *names], check=True)
    press(PLACES[options.at])
    press(*options.before.split(), repeat=options.count)
    wait_idle(process, needs_window=False)
    before = cpu_seconds(process.pid)
    names = options.keys.split()
    press(*names, repeat=options.count)
    wait_idle(process, needs_window=False)
    cost = (cpu_seconds(process.pid) - before) / (options.count * len(names))
    stop(process)
    print(f"keys {options.keys!r} at {options.at}: {cost * 1000:.3f} ms of processor time each, {options.count} times")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("what", choices=["start", "keys"])
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--at", choices=PLACES, default="end")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--before", default="a")
    parser.add_argument("--keys", default="a")
    parser.add_argument("command", nargs="+")
    options = parser.parse_args()
    {"start": start, "keys": keys}[options.what](options)


if __name__ == "__main__":
    main()
