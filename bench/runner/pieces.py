"""Pieces of the scopes and of the spectrum beside simpler code, by instructions only: bench/run --pieces.

Each figure is counted by callgrind and repeats within a fraction of a percent on any machine.
"""

from __future__ import annotations

import re
import subprocess
from collections.abc import Callable

from . import table
from .place import Place

PROGRAMS = ["bench_Scopes", "bench_EnlargedScope", "bench_SpectrumChart", "bench_EnlargedChart",
            "bench_ReplyBuffer", "bench_FrameCutter"]
_RUNS = 200  # of a piece of the scopes
_ROUNDS_IN_3_S = 22.5  # blocks of a scope
_POINTS = (512, 1024, 4096)  # of a spectrum
_LIMIT = "at most 1.5"

Line = list[str]


class _Counter:
    """Counts the instructions of whole programs, each once."""

    def __init__(self, place: Place) -> None:
        self._place = place
        self._known: dict[tuple[str, ...], int] = {}

    def total(self, program: str, *arguments: str, toggle: str = "") -> int:
        """Instructions of a program, or of a function of it."""
        key = (program, *arguments)
        if key not in self._known:
            options = [f"--toggle-collect={toggle}"] if toggle else []
            done = self._place.run(["valgrind", "--tool=callgrind", *options,
                                    f"--callgrind-out-file={self._place.work}/pieces.out",
                                    self._place.program(program), *arguments])
            found = re.search(r"Collected : (\d+)", done.stderr)
            if done.returncode != 0 or not found:
                raise subprocess.SubprocessError(f"callgrind of {key}: {done.stderr[-300:]}")
            self._known[key] = int(found.group(1))
        return self._known[key]

    def each(self, program: str, who: list[str], few: int, many: int) -> float:
        """Instructions of one of several runs; the difference leaves the program's start out."""
        totals = [self.total(program, "--count", *who, str(times)) for times in (few, many)]
        return (totals[1] - totals[0]) / (many - few)

    def piece(self, program: str, name: str) -> float:
        """Instructions of a piece that a program of the scopes names."""
        return self.total(program, f"--callgrind={name}", toggle="*repeatForCallgrind*") / _RUNS


def _line(what: str, ours: float, peer: float, goal: str) -> Line:
    return [what, table.number(ours), table.number(peer), f"{ours / peer:.2f}", goal]


def _scopes(place: Place, counter: _Counter) -> list[Line]:
    lines = []
    for program in ("bench_Scopes", "bench_EnlargedScope"):
        for text in place.run([place.program(program), "--ratios"]).stdout.splitlines():
            title, over, under, goal = text.split("|")
            lines.append(_line(title, counter.piece(program, over), counter.piece(program, under), goal))
    return lines


def _spectrum(counter: _Counter) -> list[Line]:
    lines = []
    for points in _POINTS:
        chart, everything, bare, naive = (
            counter.each("bench_SpectrumChart", [who, str(points)], 20, 120)
            for who in ("chart", "all", "bare", "naive"))
        lines += [_line(f"chart / bare polyline, {points} points", chart, bare, _LIMIT),
                  _line(f"naive plot / chart, {points} points", naive, chart, "at least 2"),
                  _line(f"chart with all on / chart, {points} points", everything, chart, "")]
    for one, other in (("enlarged", "three"), ("alone-enlarged", "alone"), ("waterfall", "scroll")):
        lines.append(_line(f"{one} / {other}", counter.each("bench_EnlargedChart", [one], 2, 7),
                           counter.each("bench_EnlargedChart", [other], 2, 7), _LIMIT))
    start = counter.total("bench_ReplyBuffer", "--count", "0")
    long, short = ((counter.total("bench_ReplyBuffer", "--count", str(size)) - start) / size
                   for size in (160000, 10000))
    lines.append(_line("search for a header, a byte at 160 kB / at 10 kB", long, short, "about 1"))
    return lines


def _together(counter: _Counter) -> list[Line]:
    lines = []
    for kind in ("eyes", "constellations"):
        before, after = (_ROUNDS_IN_3_S * counter.piece("bench_EnlargedScope", f"{kind}/{name}")
                         for name in ("three side by side", "one enlarged, everything on"))
        for page, one, other in (("three charts", "enlarged", "three"),
                                 ("one chart", "alone-enlarged", "alone")):
            lines.append(_line(f"everything on / side by side, {kind} and {page}",
                               after + counter.each("bench_EnlargedChart", [one], 2, 7),
                               before + counter.each("bench_EnlargedChart", [other], 2, 7), _LIMIT))
    return lines


def report(place: Place, markdown: bool, note: Callable[[str], None]) -> str:
    """Counts all pieces. Returns a table."""
    counter = _Counter(place)
    lines = [["what", "instructions: ours", "peer", "ratio", "goal"]]
    note("pieces of the scopes")
    lines += _scopes(place, counter)
    note("pieces of the spectrum")
    lines += _spectrum(counter) + _together(counter)
    return table.lay_out(lines, markdown)
