"""See bench/run."""

from __future__ import annotations

import argparse
import datetime
import fnmatch
import functools
import os
import pathlib
import subprocess
import sys
import time
from collections.abc import Callable

from . import arm, live, pieces, table
from .figures import Figures
from .place import ROOT, Place, count, measure, memory
from .rows import ROWS, Row

_PANEL = ("define", "changes", "fader", "press", "editors", "pages")
_PARTS = ("frames", "spectrum")
_DOCUMENT = ROOT / "docs/performance.md"
_TARGETS = ["bench_Panel", "bench_Parts", "bench_BareWindow", "qn740-panel", "qn740-sim"]


def wanted(patterns: list[str]) -> list[Row]:
    """The rows whose name or group fits a pattern, all without one."""
    return [row for row in ROWS if not patterns or any(
        fnmatch.fnmatchcase(name, pattern) for pattern in patterns for name in (row.name, row.group))]


def note(text: str) -> None:
    """Says on standard error what is done, and when it began."""
    print(f"bench: {time.monotonic() - _BEGIN:4.0f} s  {text}", file=sys.stderr, flush=True)


def build(source: pathlib.Path, tree: pathlib.Path, options: list[str], targets: list[str]) -> None:
    """Builds the programs. What cannot be built is missing afterwards."""
    configure = ["cmake", "-S", str(source), "-B", str(tree), "-G", "Ninja",
                 "-DCMAKE_BUILD_TYPE=Release", *options,
                 *os.environ.get("QN740_BENCH_CMAKE", "").split()]
    subprocess.run(configure, check=True, stdout=subprocess.DEVNULL)
    for target in targets:
        done = subprocess.run(["cmake", "--build", str(tree), "--target", target, "--", "--quiet"],
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            note(f"{target} cannot be built:\n{done.stdout[-3000:]}")


def run(place: Place, rows: list[Row], counted: bool) -> Figures:
    """Measures the groups of these rows."""
    figures = Figures()
    groups = {row.group for row in rows}
    for program, known in (("bench_Panel", _PANEL), ("bench_Parts", _PARTS)):
        wanted_groups = [group for group in known if group in groups]
        if wanted_groups and not (place.bin / program).exists():
            figures.faults.append(f"{', '.join(wanted_groups)}: {program} was not built")
            continue
        for group in wanted_groups:
            _try(group, functools.partial(measure, place, program, [group], figures), figures)
        if counted and wanted_groups:
            _try(f"instructions: {', '.join(wanted_groups)}",
                 functools.partial(count, place, program, wanted_groups, figures), figures)
    names = {row.name for row in rows}
    for group, step in (("memory", memory), ("start", live.start), ("full", live.full)):
        if group in groups:
            _try(group, functools.partial(step, place, figures), figures)
    if "live" in groups:
        _try("live", functools.partial(live.live, place, names, figures), figures)
    if counted and groups & {"start", "live"}:
        _try("instructions of the panel", functools.partial(live.count, place, names, figures), figures)
    return figures


def _try(name: str, step: Callable[[], None], figures: Figures) -> None:
    note(name)
    try:
        step()
    except (OSError, subprocess.SubprocessError) as error:
        figures.faults.append(f"{name}: {error}")


def update(name: str, text: str) -> None:
    """Puts a table between its marks in docs/performance.md."""
    begin, end = f"<!-- table: {name} -->\n", "\n<!-- end -->"
    document = _DOCUMENT.read_text()
    head, rest = document.split(begin, 1)
    _DOCUMENT.write_text(head + begin + text + end + rest.split(end, 1)[1])


def report(arguments: argparse.Namespace, rows: list[Row], figures: Figures,
           on_arm: Figures | None) -> None:
    """Prints both tables, and writes them into the document where that is wanted."""
    markdown = arguments.markdown or arguments.update
    first = table.first(rows, figures, markdown)
    print(first)
    missed = sum(table.misses(row, figures) for row in rows)
    open_rows = sum(row.sides(figures) is None for row in rows)
    print(f"\n{len(rows)} rows: {missed} miss their goal, {open_rows} were not measured")
    second = "" if on_arm is None else table.second(arm.NAMES, on_arm, markdown)
    if on_arm is not None:
        print(f"\nInstructions of the armhf build under qemu-arm\n\n{second}")
    if arguments.update:
        day = datetime.date.today().isoformat()
        cores = len(os.sched_getaffinity(0))
        update("first", f"Measured on {day} on {cores} cores.\n\n{first}")
        if second:
            update("second", second)
        note(f"wrote {_DOCUMENT}")


def main() -> int:
    """Runs what the command line asks for."""
    parser = argparse.ArgumentParser(
        prog="bench/run", description="Measures the panel against limits and peers.")
    parser.add_argument("--only", metavar="PATTERN", action="append", default=[],
                        help="only rows or groups of this name (define.*, live); may be given again")
    parser.add_argument("--list", action="store_true", help="print the rows and their groups")
    parser.add_argument("--markdown", action="store_true", help="print the tables as Markdown")
    parser.add_argument("--update", action="store_true",
                        help="write the tables into docs/performance.md")
    parser.add_argument("--compare", metavar="CHECKOUT", type=pathlib.Path,
                        help="measure another checkout, or the programs of a build tree, too, and "
                             "set both side by side")
    parser.add_argument("--no-counts", action="store_true", help="measure times only")
    parser.add_argument("--no-arm", action="store_true", help="without the table of armhf")
    parser.add_argument("--arm-only", action="store_true", help="only the table of armhf")
    parser.add_argument("--cache", metavar="DIRECTORY", type=pathlib.Path, default=arm.CACHE,
                        help="where what armhf needs is kept (default: %(default)s)")
    parser.add_argument("--pieces", action="store_true",
                        help="only pieces of scopes and spectrum beside simpler code, by instructions")
    parser.add_argument("--build", metavar="DIRECTORY", type=pathlib.Path,
                        help="measure the programs in this build tree, and build nothing")
    arguments = parser.parse_args()
    rows = [] if arguments.pieces else wanted(arguments.only)
    if arguments.list:
        for row in rows:
            print(f"{row.name:18} {row.group:9} {row.what}")
        return 0
    return carry_out(arguments, rows)


def carry_out(arguments: argparse.Namespace, rows: list[Row]) -> int:
    """Builds, measures and prints. Returns 1 when a row could not be measured."""
    tree = arguments.build or ROOT / "build/bench"
    with_arm = not (arguments.no_arm or arguments.only or arguments.compare)
    root = arm.begin_root(arguments.cache) if arguments.arm_only or with_arm else None
    if arguments.build is None and not arguments.arm_only:
        note("build")
        build(ROOT, tree, ["-DQN740_BUILD_TESTS=OFF", "-DQN740_BUILD_BENCH=ON"],
              pieces.PROGRAMS if arguments.pieces else _TARGETS)
    if arguments.pieces:
        print(pieces.report(Place(tree), arguments.markdown, note))
        return 0
    on_arm = None
    if arguments.arm_only or with_arm:
        on_arm = Figures()
        if root is not None:
            root.wait()
        _try("armhf", functools.partial(arm.measure, arguments.cache, on_arm, note), on_arm)
    if arguments.arm_only:
        rows = []
    figures = run(Place(tree), rows, not arguments.no_counts)
    faults = figures.faults + (on_arm.faults if on_arm is not None else [])
    if arguments.compare is not None:
        other = compare(arguments.compare.resolve(), rows, not arguments.no_counts)
        faults += [f"other checkout: {fault}" for fault in other.faults]
        print(table.beside(rows, figures, other, arguments.markdown))
    else:
        report(arguments, rows, figures, on_arm)
    for fault in faults:
        print(f"not measured: {fault}", file=sys.stderr)
    note("done")
    return 1 if faults or any(row.sides(figures) is None for row in rows) else 0


def compare(checkout: pathlib.Path, rows: list[Row], counted: bool) -> Figures:
    """Measures another checkout with the benches of this one, or a build tree with its own."""
    tree = checkout
    if not (checkout / "CMakeCache.txt").exists():
        tree = ROOT / "build/bench-other"
        note(f"build {checkout}")
        build(ROOT / "bench", tree, [f"-DQN740_OTHER={checkout}"], _TARGETS)
    note(f"measure {checkout}")
    return run(Place(tree), rows, counted)


_BEGIN = time.monotonic()
if __name__ == "__main__":
    sys.exit(main())
