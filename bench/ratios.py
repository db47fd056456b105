#!/usr/bin/env python3
"""Compares work on large files with the system's own programs: ratios.py BIGFILE FOLDER [ROUNDS].

BIGFILE is build/bench/bigfile, FOLDER is what makedata.py has filled, with a GiB more of room. Each is run in
turn with its other; the figures are medians of the time that passed.
"""

import pathlib
import statistics
import subprocess
import sys
import time


def passed(command: str) -> float:
    begin = time.monotonic()
    subprocess.run(command, shell=True, check=True, stdout=subprocess.DEVNULL)
    return time.monotonic() - begin


def ours(command: str) -> tuple[float, float]:
    """Seconds of the work alone, and MiB."""
    told = subprocess.run(command, shell=True, check=True, stdout=subprocess.PIPE, text=True).stdout.split()
    return float(told[0]), float(told[1])


def main():
    bigfile, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    log, utf8, sjis, utf16 = (
        folder / name for name in ("log-1g.txt", "ja-100m-utf8.txt", "ja-100m-sjis.txt", "ja-100m-utf16.txt"))
    last, copy = folder / "last-word.txt", folder / "copy.txt"
    if not last.exists():
        passed(f"cp {log} {last} && echo at the very end: nightingale >> {last}")
    units = "-t UTF-16LE"
    rows = [
        ("1 GiB log", f"load {log}", f"iconv -f UTF-8 {units} {log}"),
        ("100 MB of Japanese, UTF-8", f"load {utf8}", f"iconv -f UTF-8 {units} {utf8}"),
        ("100 MB of Japanese, Shift-JIS", f"load {sjis}", f"iconv -f CP932 {units} {sjis}"),
        ("100 MB of Japanese, UTF-16, by its bytes", f"load {utf16}", f"iconv -f UTF-16 -t UTF-8 {utf16}"),
        ("100 MB of Japanese, UTF-16, as text", f"load16 {utf16}", f"iconv -f UTF-16 -t UTF-8 {utf16}"),
        ("the last word of 1 GiB", f"find {last} nightingale", f"grep -cF nightingale {last}"),
        ("1 GiB saved", f"save {log} {copy}", f"cp {log} {copy} && sync {copy}"),
    ]
    print("| ratio | | ours | the other's | memory at most, to the file |")
    print("|---|---|---|---|---|")
    for name, work, other in rows:
        for cores, prefix in (("", ""), (", one core", "taskset -c 0 ")):
            pairs = [(ours(f"{prefix}{bigfile} {work}"), passed(f"{prefix}sh -c '{other}'")) for _ in range(rounds)]
            time_of_ours = statistics.median(pair[0][0] for pair in pairs)
            time_of_other = statistics.median(pair[1] for pair in pairs)
            memory = max(pair[0][1] for pair in pairs) * (1 << 20) / pathlib.Path(work.split()[1]).stat().st_size
            print(f"| {time_of_ours / time_of_other:.2f} | {name}{cores} | {time_of_ours:.2f} s "
                  f"| {time_of_other:.2f} s, `{other.split()[0]}` | {memory:.2f} |", flush=True)
    for file in (last, copy):
        file.unlink()


if __name__ == "__main__":
    main()
