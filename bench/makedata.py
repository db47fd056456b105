#!/usr/bin/env python3
"""Makes the large files that the benchmarks open: makedata.py FOLDER [NAME…]."""

import codecs
import pathlib
import sys

MEGABYTE = 1 << 20
JAPANESE = "吾輩は文書である。名前はまだ無い。The quick brown fox jumps over 13 lazy dogs。どこで生れたか見当がつかぬ。\n"
LOG = "2026-11-21 03:14:15.926 INFO  [worker-{:02d}] request {:08d} served in {:4d} us, status 200, {:6d} bytes\n"


def repeated(block: bytes, size: int):
    """Whole copies of `block`, `size` bytes or a little less."""
    copies = max(1, MEGABYTE // len(block))
    whole = block * copies
    for _ in range(size // len(whole)):
        yield whole


def marked(blocks):
    yield codecs.BOM_UTF16_LE
    yield from blocks


def log_block() -> bytes:
    return "".join(LOG.format(i % 16, i, i * 37 % 5000, i * 7919 % 900000) for i in range(9000)).encode()


FILES = {
    "small.txt": lambda: [(JAPANESE * 8).encode()],
    "ja-100m-utf8.txt": lambda: repeated(JAPANESE.encode(), 100 * MEGABYTE),
    "ja-100m-sjis.txt": lambda: repeated(JAPANESE.encode("cp932"), 100 * MEGABYTE),
    "ja-100m-utf16.txt": lambda: marked(repeated(JAPANESE.encode("utf-16-le"), 100 * MEGABYTE)),
    "log-100m.txt": lambda: repeated(log_block(), 100 * MEGABYTE),
    "log-1g.txt": lambda: repeated(log_block(), 1024 * MEGABYTE),
    "line-100m-ascii.txt": lambda: repeated(log_block().replace(b"\n", b" "), 100 * MEGABYTE),
    "line-100m-ja.txt": lambda: repeated(JAPANESE.replace("\n", " ").encode(), 100 * MEGABYTE),
}


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name in sys.argv[2:] or FILES:
        target = folder / name
        if target.exists():
            continue
        with open(target, "wb") as out:
            for block in FILES[name]():
                out.write(block)
        print(target, target.stat().st_size)


if __name__ == "__main__":
    main()
