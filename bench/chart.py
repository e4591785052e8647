#!/usr/bin/env python3
"""Makes of runs of the benchmarks (scripts/bench --json FILE) the tables of docs/performance.md and its chart.

usage: bench/chart.py FILE [WINDOWS_FILE]

FILE is a run on Linux: of it come docs/performance.svg and the first table. WINDOWS_FILE is a run with --windows, of
which the second table comes. Without it that one stays as it is.
"""
import json
import math
import pathlib
import sys
from xml.sax.saxutils import escape

ROW, LEFT, WIDTH, TOP = 22, 330, 520, 44
COLOURS = {"ours": "#1f5fa8", "peer": "#9aa4ae"}


def number(value):
    if value is None:
        return "-"
    return f"{value:.3g}" if value < 100 else f"{value:.0f}"


def table(figures):
    yield "| Figure | Ours | Limit | Ratio | Goal | Met | Peers |"
    yield "|---|---|---|---|---|---|---|"
    for figure in figures:
        limit = figure["limit"]
        limit = f"{limit} {number(figure['limit_value'])}" if limit else "-"
        peers = ", ".join(f"{name} {number(value)}" for name, value in figure["peers"].items()) or "-"
        met = {True: "yes", False: "no", None: "-"}[figure["met"]]
        yield (f"| {figure['figure']} | {number(figure['ours'])} {figure['unit']} | {limit} | {number(figure['ratio'])} "
               f"| {number(figure['goal'])} | {met} | {peers} |")


def bars(figure):
    """What is shown of a figure: each side's cost as a multiple of the limit's."""
    unit = figure["limit_value"]
    yield "ours", "ours", figure["ours"] / unit
    for name, value in figure["peers"].items():
        yield "peer", name, value / unit


def chart(figures):
    shown = [figure for figure in figures if figure["limit_value"]]
    ratios = [ratio for figure in shown for _, _, ratio in bars(figure) if ratio > 0]
    low, high = math.floor(math.log10(min(ratios))), math.ceil(math.log10(max(ratios)))
    place = lambda ratio: LEFT + (math.log10(max(ratio, 10 ** low)) - low) / (high - low) * WIDTH
    lines, y = [], TOP
    for figure in shown:
        lines.append(f'<text x="8" y="{y + 15}" font-weight="bold">{escape(figure["figure"])}</text>')
        for kind, name, ratio in bars(figure):
            lines.append(f'<rect x="{LEFT}" y="{y + 4}" width="{max(place(ratio) - LEFT, 1):.0f}" height="14" '
                         f'fill="{COLOURS[kind]}"/>')
            lines.append(f'<text x="{place(ratio) + 4:.0f}" y="{y + 15}">{escape(name)} {number(ratio)}</text>')
            y += ROW
        y += 6
    for power in range(low, high + 1):
        x = place(10 ** power)
        lines.append(f'<line x1="{x:.0f}" x2="{x:.0f}" y1="{TOP - 6}" y2="{y}" stroke="{"#c00" if power == 0 else "#ddd"}"/>')
        lines.append(f'<text x="{x:.0f}" y="{TOP - 10}" text-anchor="middle">{10.0 ** power:g}</text>')
    size = f'width="{LEFT + WIDTH + 200}" height="{y + 12}"'
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" {size} font-family="sans-serif" font-size="12">',
                      f'<rect {size} fill="white"/>',
                      '<text x="8" y="18" font-size="14">Cost as a multiple of the limit (red line), logarithmic</text>',
                      *lines, "</svg>", ""])


def write_table(document, name, run):
    """Puts the run's table between the two comments that name its place."""
    begin, end = f"<!-- {name} -->", f"<!-- end of {name} -->"
    before, rest = document.split(begin)
    after = rest.split(end)[1]
    load = run["load"]
    others = "" if load is None else f" In the minute before, {number(load)} programs wanted a processor at a time."
    head = f"{run['processors']} processors, the median of {run['rounds']} rounds.{others}"
    return "\n".join([before + begin, head, "", *table(run["figures"]), end]) + after


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    runs = [json.loads(pathlib.Path(name).read_text()) for name in sys.argv[1:]]
    docs = pathlib.Path(__file__).resolve().parent.parent / "docs"
    document = (docs / "performance.md").read_text()
    for name, run in zip(("run", "Windows run"), runs):
        document = write_table(document, name, run)
    (docs / "performance.md").write_text(document)
    (docs / "performance.svg").write_text(chart(runs[0]["figures"]))


if __name__ == "__main__":
    main()
