"""The rows of the first table: what is measured, beside what, and the goal."""

from __future__ import annotations

import dataclasses

from .figures import OURS, PEER, Figures

# What a button that gets a style sheet of its own, and then its place, took on the machine on which
# "CV" and "CK" had a goal in microseconds.
_BUTTON_US = 131.0
_COUNTS = (100, 1000, 10000)
# What changes keys on a hidden page: the row, its goal in microseconds, what it is.
_CHANGES = (
    ("CV", 20.0, '"CV" that changes a toggle on a hidden page'),
    ("CV-told", 20.0, '"CV" that changes a hidden toggle that got a "CK" before'),
    ("CV-shown", 20.0, '"CV" that changes a toggle on a page that was shown before'),
    ("CK", 3.0, '"CK" on a hidden page'),
    ("CK-enable", 3.0, '"CK" that disables and enables keys on a hidden page'),
    ("CK-enable-told", 3.0, '"CK" that disables and enables hidden keys that got a "CK" before'),
    ("CK-enable-shown", 3.0, '"CK" that disables and enables keys on a page that was shown before'),
)


@dataclasses.dataclass(frozen=True)
class Row:
    """One row. Its ratio is that of ours to the limit, and the goal is the largest ratio."""

    name: str
    what: str
    limit: str  # the limit or the peer, in words
    goal: float
    group: str  # what measures it
    unit: str = "µs"
    percent: bool = False  # whether ratio and goal are written as per cent
    source: str = ""  # the row of the figures, where it has another name
    side: str = OURS  # which of the figures is ours
    limit_side: str = PEER
    limit_factor: float = 1.0  # the limit is so many times the figure of limit_side
    limit_value: float | None = None  # a limit that is not measured
    flat: tuple[str, ...] = ()  # the highest of these rows beside the lowest of them

    def sides(self, figures: Figures) -> tuple[float, float] | None:
        """Returns ours and the limit, or None when they were not measured."""
        values = figures.values
        if self.flat:
            found = [values[row, OURS] for row in self.flat if (row, OURS) in values]
            return (max(found), min(found)) if len(found) == len(self.flat) else None
        source = self.source or self.name
        ours = values.get((source, self.side))
        limit = self.limit_value
        if limit is None:
            measured = values.get((source, self.limit_side))
            limit = None if measured is None else measured * self.limit_factor
        return None if ours is None or limit is None or limit <= 0 else (ours, limit)

    def counts(self, figures: Figures) -> tuple[float | None, float | None]:
        """Returns the instructions of ours and of the peer, None where they were not counted."""
        if self.flat:
            found = [figures.counts[row, OURS] for row in self.flat if (row, OURS) in figures.counts]
            return (max(found), min(found)) if len(found) == len(self.flat) else (None, None)
        source = self.source or self.name
        if self.side != OURS:
            return None, None
        return figures.counts.get((source, OURS)), figures.counts.get((source, PEER))


def _keys() -> list[Row]:
    rows = []
    for count in _COUNTS:
        rows.append(Row(f"define.{count}", f'"AK", {count:,} keys: bytes to defined keys, per key',
                        "a hidden bare button with the same style sheet", 0.5, "define"))
    for word, goal, what in _CHANGES:
        for count in _COUNTS:
            rows.append(Row(f"{word}.{count}", f"{what}, {count:,} keys",
                            f"{goal:.0f} µs where a styled button takes {_BUTTON_US:.0f} µs", 1.0,
                            "changes", limit_factor=goal / _BUTTON_US))
        if word in ("CV", "CK"):
            names = tuple(f"{word}.{count}" for count in _COUNTS)
            rows.append(Row(f"{word}.flat", f'"{word}": the slowest of 100, 1,000 and 10,000 keys',
                            "the fastest of them", 1.2, "changes", flat=names))
    for count in _COUNTS[1:]:
        rows.append(Row(f"memory.{count}", f"resident memory per key, {count:,} keys",
                        "a hidden bare button with the same style sheet", 0.5, "memory", "kB"))
    return rows


def _share(name: str, what: str, goal: float) -> Row:
    return Row(name, what, "a core", goal, "live", "% of a core", percent=True, limit_value=100.0)


def _live() -> list[Row]:
    bare = "a bare window with a status bar"
    return [
        Row("start", "CPU time to the first idle page", bare, 1.6, "start", "ms"),
        Row("start.menus", "the same without the start-up picture", bare, 1.6, "start", "ms"),
        Row("rss", "resident memory, no unit connected", bare, 1.25, "start", "MiB"),
        Row("rss.menus", "the same without the start-up picture", bare, 1.25, "start", "MiB"),
        Row("rss.full", "resident memory with the unit's menus, three scopes, spectrum", bare, 1.5,
            "full", "MiB"),
        _share("cpu.hidden", "hidden scopes page, three lines at full rate", 0.0025),
        _share("cpu.eyes", "three eyes shown at full rate", 0.01),
        _share("cpu.constellations", "three constellations shown at full rate", 0.05),
        _share("cpu.chart1", "20 spectra a second, one chart", 0.012),
        _share("cpu.chart3", "20 spectra a second, three charts", 0.014),
        Row("switches.idle", "context switches, menus page, everything idle, no traffic",
            "2 a second", 1.0, "live", "1/s", limit_value=2.0),
        Row("switches.read", "context switches for each read, hidden scopes page at full rate",
            "2 a read", 1.0, "live", "1/read", limit_value=2.0),
    ]


def _others() -> list[Row]:
    same = "memchr and as many QStrings"
    rows = [
        Row("frames.20", "cutting frames of 20 bytes, reads of 1 KB, per frame", same, 1.5, "frames"),
        Row("frames.200", "cutting frames of 200 bytes, reads of 1 KB, per frame", same, 1.5, "frames"),
        Row("press", "key press to bytes on the line, median of 1,000",
            "a bare button whose slot writes to it", 1.2, "press"),
        Row("press.p99", "key press to bytes on the line, 99th percentile",
            "a bare button whose slot writes to it", 1.2, "press"),
    ]
    for name, what in (("number", "number pad"), ("list", "selection list"), ("slider", "slider"),
                       ("file", "file board"), ("name", "file name keyboard"),
                       ("address", "IPv4 pad")):
        rows.append(Row(f"editor.{name}", f"opening the {what} to its first painted frame",
                        "a bare dialog with as many styled buttons", 1.3, "editors"))
    for name, what in (("SK", '"SK"'), ("More", '"More..."'), ("view", "view button")):
        rows.append(Row(f"page.{name}", f"{what} to the painted page",
                        "a bare stack with as many styled buttons", 1.2, "pages"))
    rows += [
        Row("fader", '"CV" for 36 shown keys, which all change their colour',
            "the time those bytes take", 0.02, "fader", percent=True, limit_side="line"),
        Row("fader.pieces", '"CV" for 36 shown keys, 64 bytes at a time as the line brings them',
            "the time those bytes take", 0.02, "fader", percent=True, limit_side="line"),
        Row("fader.value", '"CV" for 36 shown keys, new values and no new colours',
            "the time those bytes take", 0.02, "fader", percent=True, limit_side="line"),
        Row("fader.paints", "repaints of the window for these 36 keys that change",
            "one", 1.0, "fader", "", source="fader", side="paints", limit_value=1.0),
        Row("fader.turns", "repaints of the window for these keys, 64 bytes at a time", "one a piece",
            1.0, "fader", "", source="fader.pieces", side="paints", limit_side="pieces"),
        Row("fader.widgets", "widgets painted for them", "36 keys and the four they stand in",
            1.0, "fader", "", source="fader", side="widgets", limit_value=40.0),
        Row("waterfall", "one line of the waterfall", "bare scroll of a picture of its size", 1.5,
            "spectrum"),
    ]
    for name, what in (("trace", "levels of a spectrum, not averaged"),
                       ("average", "levels of a spectrum, averaged over 16"),
                       ("peak", "highest peak"), ("power", "channel power"),
                       ("obw", "occupied bandwidth"), ("xdb", "3 dB width"),
                       ("floor", "noise floor"), ("cn", "C/N"),
                       ("error", "frequency error")):
        rows.append(Row(f"measure.{name}", f"{what}, 550 bins", "bare sum over the bins", 1.5,
                        "spectrum"))
    return rows


ROWS: list[Row] = _keys() + _live() + _others()

# What each group is measured by, in words, for the last column.
COMMANDS = {
    "define": "bench_Panel define",
    "changes": "bench_Panel changes",
    "memory": "bench_Panel --memory ours 1000",
    "start": "qn740-panel, bench_BareWindow",
    "full": "qn740-panel, qn740-sim",
    "live": "qn740-panel, qn740-sim",
    "frames": "bench_Parts frames",
    "press": "bench_Panel press",
    "editors": "bench_Panel editors",
    "pages": "bench_Panel pages",
    "fader": "bench_Panel fader",
    "spectrum": "bench_Parts spectrum",
}
