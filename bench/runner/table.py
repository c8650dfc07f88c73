"""The tables as text and as Markdown. A row that misses its goal is marked."""

from __future__ import annotations

from collections.abc import Sequence

from .figures import Figures
from .rows import COMMANDS, Row

HEADINGS = ["what", "limit or peer", "ours", "limit", "ratio", "goal", "", "instructions: ours", "peer",
            "command"]
MISSED = "MISSED"
NOT_COUNTED = "not counted"


def number(value: float) -> str:
    """Three significant digits, and all digits in front of the point."""
    if value >= 100:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def ratio(value: float, percent: bool) -> str:
    """A ratio as the row writes it."""
    return f"{100 * value:.2f} %" if percent else f"{value:.2f}"


def misses(row: Row, figures: Figures) -> bool:
    """Whether a row was measured and its ratio is above its goal."""
    sides = row.sides(figures)
    return sides is not None and sides[0] / sides[1] > row.goal


def cells(row: Row, figures: Figures) -> list[str]:
    """The texts of a row's cells."""
    goal = f"≤ {ratio(row.goal, row.percent)}"
    counts = ["" if count is None else number(count) for count in row.counts(figures)]
    sides = row.sides(figures)
    measured = ["?", "?", "?"]
    mark = "not measured"
    if sides is not None:
        unit = f" {row.unit}".rstrip()
        measured = [number(sides[0]) + unit, number(sides[1]) + unit,
                    ratio(sides[0] / sides[1], row.percent)]
        mark = MISSED if misses(row, figures) else ""
    return [row.what, row.limit, *measured, goal, mark, *counts, COMMANDS.get(row.group, row.group)]


def lay_out(rows: Sequence[Sequence[str]], markdown: bool) -> str:
    """A table whose first row has the headings."""
    if markdown:
        lines = ["| " + " | ".join(row) + " |" for row in rows]
        return "\n".join([lines[0], "|" + "---|" * len(rows[0]), *lines[1:]])
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join("  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip()
                     for row in rows)


def first(rows: Sequence[Row], figures: Figures, markdown: bool) -> str:
    """The first table."""
    return lay_out([HEADINGS] + [cells(row, figures) for row in rows], markdown)


def second(names: dict[str, str], figures: Figures, markdown: bool) -> str:
    """The table of instructions on the board's kind of processor. names: what each row is"""
    table = [["what", "instructions: ours", "peer", "ratio"]]
    for row, what in names.items():
        ours, peer = figures.counts.get((row, "ours")), figures.counts.get((row, "peer"))
        table.append([what, NOT_COUNTED if ours is None else number(ours),
                      "" if peer is None else number(peer),
                      "" if ours is None or not peer else f"{ours / peer:.2f}"])
    return lay_out(table, markdown)


def beside(rows: Sequence[Row], here: Figures, there: Figures, markdown: bool) -> str:
    """Two checkouts side by side."""
    table = [["what", "this: ours", "ratio", "", "other: ours", "ratio", "", "this / other",
              "instructions: this", "other"]]
    for row in rows:
        this, other = row.sides(here), row.sides(there)
        if this is None and other is None:
            continue
        line = [row.what]
        for sides, figures in ((this, here), (other, there)):
            line += ["?", "?", "not measured"] if sides is None else \
                [f"{number(sides[0])} {row.unit}".rstrip(), ratio(sides[0] / sides[1], row.percent),
                 MISSED if misses(row, figures) else ""]
        line.append("?" if this is None or other is None or not other[0]
                    else f"{this[0] / other[0]:.2f}")
        for figures in (here, there):
            count = row.counts(figures)[0]
            line.append("" if count is None else number(count))
        table.append(line)
    return lay_out(table, markdown)
