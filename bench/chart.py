#!/usr/bin/env python3
"""Makes of a run of the benchmarks (scripts/bench --json FILE) the chart and the table of docs/performance.md.

usage: bench/chart.py FILE            writes docs/performance.svg and prints the table
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


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    figures = json.loads(pathlib.Path(sys.argv[1]).read_text())["figures"]
    docs = pathlib.Path(__file__).resolve().parent.parent / "docs"
    (docs / "performance.svg").write_text(chart(figures))
    print("\n".join(table(figures)))


if __name__ == "__main__":
    main()
