#!/usr/bin/env python3
"""A large widget drawn by a whole process, beside librsvg's own program on a picture like it.

rendering.py PROGRAM [RUNS]

PROGRAM is lanternfold-widgets, built with optimisation. The processes take turns, and every figure
is the median of their runs (31 each unless RUNS says otherwise): of the time from the start of a
process until it has ended, of the processor time that it took, the kernel's share included, and of
the most memory that it held. Both write a PNG of 728 by 764 pixels. The picture beside has as many
texts in the same typeface, the gradient, the circles and the labels, and neither logo nor symbols.
"""

import os
import statistics
import sys
import tempfile
import time
from pathlib import Path

RUNS = 31
WIDTH, HEIGHT = 364, 382
RSVG_CONVERT = "/usr/bin/rsvg-convert"
SOURCES = (
    (("ISP", "Your ISP Name"), ("IP - COUNTRY", "12.34.56.78 (IT)"), ("DNS", "8.8.8.8"),
     ("IPv6", "2001:db8:0:0:1:0:0:ef")),
    (("en0", "Home Network"), ("IP", "192.168.0.8"), ("Router", "192.168.0.1/24"),
     ("MAC", "ab:cd:ef:12:34:56"), ("BSSID", "12:34:56:ab:cd:ef"), ("PHY mode", "802.11ac"),
     ("Security", "WPA2 Personal"), ("Channel", "44 (5 GHz, 80 MHz)")),
    (("en2", "Ethernet Adapter"), ("IP", "192.168.0.9"), ("Router", "192.168.0.1/24"),
     ("MAC", "ab:cd:ef:12:34:57")),
)
METERS = (("↓", "17.12", "GB"), ("↑", "2.31", "GB"))


def in_table(*cells):
    print("|", " | ".join(str(each) for each in cells), "|")


def text(x, y, size, content, bold=False):
    weight = ' font-weight="bold"' if bold else ""
    return f'<text x="{x}" y="{y:.1f}" font-size="{size}"{weight}>{content}</text>'


def comparable_svg():
    """The rows of the widget's placeholder, about where they stand."""
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}"'
             ' font-family="Inter" fill="#fff"><linearGradient id="g" x2="0" y2="1">'
             '<stop stop-color="#1E66B6"/><stop offset="1" stop-color="#164C8C"/></linearGradient>'
             f'<rect width="{WIDTH}" height="{HEIGHT}" rx="22" fill="url(#g)"/>']
    y = 28.0
    for rows in SOURCES:
        for number, (label, value) in enumerate(rows):
            width = 5.5 * len(label) + 4
            parts.append(f'<rect x="40" y="{y - 11:.1f}" width="{width}" height="14" rx="3"'
                         ' fill-opacity="0.4"/>')
            parts.append(text(42, y, 8, label, bold=True))
            parts.append(text(44 + width, y, 13, value, bold=number == 0))
            y += 20.8
        for column, meter in enumerate(METERS):
            x, middle = 280 + 47 * column, y - 10.4 * len(rows) - 10
            parts.append(f'<circle cx="{x}" cy="{middle:.1f}" r="20" fill="none" stroke="#fff"'
                         ' stroke-width="2"/>')
            for line, (size, content) in enumerate(zip((10, 13, 10), meter)):
                parts.append(text(x - 12, middle - 8 + 11 * line, size, content, bold=line == 1))
        y += 5
    return "".join(parts) + "</svg>"


def run(command):
    """Elapsed and processor seconds of a process, and the kilobytes that it held at most."""
    quiet = [(os.POSIX_SPAWN_OPEN, number, os.devnull, os.O_RDWR, 0) for number in (0, 1)]
    began = time.monotonic()
    pid = os.posix_spawn(command[0], command, os.environ, file_actions=quiet)
    _, status, usage = os.wait4(pid, 0)
    elapsed = time.monotonic() - began
    if status != 0:
        raise SystemExit(f"{command[0]} ended with {os.waitstatus_to_exitcode(status)}")
    return elapsed, usage.ru_utime + usage.ru_stime, usage.ru_maxrss


def medians(commands, runs):
    for command in commands:
        run(command)  # the files come into memory
    turns = [[run(command) for command in commands] for _ in range(runs)]
    return [[statistics.median(figure) for figure in zip(*results)] for results in zip(*turns)]


def main(arguments):
    if not 1 <= len(arguments) <= 2:
        raise SystemExit(__doc__.strip())
    program = os.path.abspath(arguments[0])
    runs = int(arguments[1]) if len(arguments) == 2 else RUNS
    with tempfile.TemporaryDirectory(prefix="lanternfold-") as folder:
        svg, theirs, ours = (str(Path(folder, name)) for name in ("in.svg", "a.png", "b.png"))
        Path(svg).write_text(comparable_svg())
        render = [program, "render", "PanoramicNetworkStateWidget", "--family", "large", "--entry",
                  "placeholder", "--data-dir", str(Path(folder, "data")), "-o", ours]
        works = {"`render` of a large widget": render,
                 "`render`, a small tile": [program, "render", "BandwidthMonitorWidget", "--entry",
                                            "placeholder", "--data-dir", str(Path(folder, "data")),
                                            "-o", ours],
                 "`lanternfold-widgets --version`": [program, "--version"],
                 "`rsvg-convert --version`": [RSVG_CONVERT, "--version"]}
        beside = [RSVG_CONVERT, "--zoom", "2", "--output", theirs, svg]
        baseline, *figures = medians([beside, *works.values()], runs)
    in_table("process", "ms", "ratio", "CPU ms", "ratio", "peak MiB", "ratio")
    in_table("---", *["---:"] * 6)
    for title, product in (("`rsvg-convert` of a picture like it", baseline),
                           *zip(works, figures)):
        shown = [each * factor for each, factor in zip(product, (1000, 1000, 1 / 1024))]
        cells = [cell for each, own, other in zip(shown, product, baseline)
                 for cell in (f"{each:.1f}", f"{own / other:.2f}")]
        in_table(title, *cells)


if __name__ == "__main__":
    main(sys.argv[1:])
