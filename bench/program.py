#!/usr/bin/env python3
"""Measures whole programs in a real window on $DISPLAY, from outside: time until painted and idle, processor time of
a key press, memory.

    program.py start  -- COMMAND…            start to idle, several runs
    program.py keys [--at end|start] [--count N] [--before "a b"] [--holding KEY] [--keys "a b"] -- COMMAND…
                                             processor time of the whole process per key press, mean and quartiles;
                                             keys before are pressed N times and not measured, a key may be held
                                             down meanwhile: --before "a Return" --holding ctrl --keys z
    program.py frames [--at end|start] [--count N] [--doing "wheel drag page key click"] -- COMMAND…
                                             processor time of a frame, median and worst of N: one notch of the
                                             wheel, one move of the vertical scroll bar's slider over the whole bar,
                                             PageDown, an "a", a click; each is waited for before the next one

"Idle" is the last moment the process used the processor before using none for a third of a second. Times come from
the scheduler's own account (/proc/PID/schedstat, nanoseconds), so a slow display or a busy machine adds nothing.
"""

import argparse
import os
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


class Keyboard:
    """Presses keys through one xdotool that stays: a new one for each key would empty the processor's caches, and the
    program would be measured with what that costs."""

    def __init__(self):
        self.script = subprocess.Popen(["xdotool", "-"], stdin=subprocess.PIPE, text=True, bufsize=1)

    def press(self, name: str, how: str = "key"):
        self.script.stdin.write(f"{how} --delay 0 {name}\n")
        time.sleep(0.025)

    def close(self):
        self.script.stdin.close()
        self.script.wait()


def keys(options):
    process = launch(options.command)
    wait_idle(process)
    window = windows(process.pid)[-1]
    subprocess.run(["xdotool", "windowactivate", "--sync", window], stderr=subprocess.DEVNULL)
    keyboard = Keyboard()
    keyboard.press(PLACES[options.at])
    for name in options.before.split() * options.count:
        keyboard.press(name)
    if options.holding:
        keyboard.press(options.holding, "keydown")
    wait_idle(process, needs_window=False)
    costs, before = [], cpu_seconds(process.pid)
    for name in options.keys.split() * options.count:
        keyboard.press(name)
        after = cpu_seconds(process.pid)
        costs.append((after - before) * 1000)
        before = after
    if options.holding:
        keyboard.press(options.holding, "keyup")
    keyboard.close()
    stop(process)
    low, middle, high = statistics.quantiles(costs, n=4)
    print(f"keys {options.keys!r} at {options.at}: mean {statistics.mean(costs):.3f} ms of processor time each, "
          f"quartiles {low:.3f} {middle:.3f} {high:.3f}, {options.count} times")


def xdotool(*arguments) -> str:
    return subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True, text=True).stdout


def settled_cost(pid: int, act) -> float:
    """Processor time from before `act` until the process has used none for a while, shorter than a cursor blinks."""
    before = last = cpu_seconds(pid)
    act()
    last_use = time.monotonic()
    while time.monotonic() - last_use < 0.025:
        now = cpu_seconds(pid)
        if now != last:
            last, last_use = now, time.monotonic()
        time.sleep(0.001)
    return last - before


class Window:
    """The program's window, and where things are in it."""

    def __init__(self, pid: int):
        self.id = windows(pid)[-1]
        subprocess.run(["xdotool", "windowactivate", "--sync", self.id], stderr=subprocess.DEVNULL)
        fields = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", self.id).split())
        self.width, self.height = int(fields["WIDTH"]), int(fields["HEIGHT"])

    def point(self, x: int, y: int):
        xdotool("mousemove", "--window", self.id, x, y)

    def key(self, name: str):
        xdotool("key", name)

    def wheel(self, index: int):
        xdotool("click", 5 if index % 60 < 50 else 4)

    def click(self, index: int):
        self.point(self.width // 8 + index * 37 % (self.width // 2), self.height // 4 + index * 53 % (self.height // 2))
        xdotool("click", 1)

    def slide(self, index: int, count: int):
        """The slider is pressed by the first step where it is at the text's start, and let go by the caller."""
        scale = float(os.environ.get("QT_SCALE_FACTOR", 4 / 3))
        x, top, length = self.width - round(6 * scale), round(48 * scale), self.height * 4 // 5
        if index == 0:
            self.point(x, top)
            xdotool("mousedown", 1)
        self.point(x, top + (index + 1) * length // count)


def frames(options):
    process = launch(options.command)
    wait_idle(process)
    window = Window(process.pid)
    steps = {
        "wheel": window.wheel,
        "drag": lambda index: window.slide(index, options.count),
        "page": lambda index: window.key("Next"),
        "key": lambda index: window.key("a"),
        "click": window.click,
    }
    for what in options.doing.split():
        window.point(window.width // 2, window.height // 2)
        window.key(PLACES["start" if what == "drag" else options.at])
        wait_idle(process, needs_window=False)
        costs = [settled_cost(process.pid, lambda: steps[what](index)) for index in range(options.count)]
        if what == "drag":
            xdotool("mouseup", 1)
        print(f"{what}: median {statistics.median(costs) * 1000:.2f} ms, worst {max(costs) * 1000:.2f} ms "
              f"of processor time, {options.count} times")
    stop(process)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("what", choices=["start", "keys", "frames"])
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--at", choices=PLACES, default="end")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--before", default="a")
    parser.add_argument("--holding")
    parser.add_argument("--keys", default="a")
    parser.add_argument("--doing", default="wheel drag page")
    parser.add_argument("command", nargs="+")
    options = parser.parse_args()
    {"start": start, "keys": keys, "frames": frames}[options.what](options)


if __name__ == "__main__":
    main()
