"""See bench/run."""

from __future__ import annotations

import argparse
import datetime
import fnmatch
import functools
import os
import pathlib
import shutil
import subprocess
import sys
import threading

from . import arm, live, pieces, table
from .figures import Figures
from .place import ROOT, Place, count, measure, memory
from .parts import Parts, Step, attempt, note, side_by_side
from .rows import ROWS, Row

_GROUPS = {"bench_Panel": ("define", "changes", "editors", "pages", "press", "fader"),
           "bench_Parts": ("frames", "spectrum")}
_DOCUMENT = ROOT / "docs/performance.md"
_TARGETS = ["bench_Panel", "bench_Parts", "bench_BareWindow", "qn740-panel", "qn740-sim"]


def wanted(patterns: list[str]) -> list[Row]:
    """The rows whose name or group fits a pattern, all without one."""
    return [row for row in ROWS if not patterns or any(
        fnmatch.fnmatchcase(name, pattern) for pattern in patterns for name in (row.name, row.group))]


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


def time_steps(place: Place, rows: list[Row], figures: Figures) -> list[Step]:
    """What measures the times and the memory of these rows: nothing else may run meanwhile."""
    steps = []
    groups = {row.group for row in rows}
    for program, known in _GROUPS.items():
        wanted_groups = [group for group in known if group in groups]
        if wanted_groups and not (place.bin / program).exists():
            figures.faults.append(f"{', '.join(wanted_groups)}: {program} was not built")
            continue
        steps += [Step(group, functools.partial(measure, place, program, group, figures), figures)
                  for group in wanted_groups]
    names = {row.name for row in rows}
    for group, step in (("memory", memory), ("start", live.start), ("full", live.full)):
        if group in groups:
            steps.append(Step(group, functools.partial(step, place, figures), figures))
    if "live" in groups:
        steps.append(Step("live", functools.partial(live.live, place, names, figures), figures))
    return steps


def count_steps(place: Place, rows: list[Row], figures: Figures) -> list[Step]:
    """What counts the instructions of these rows."""
    groups = {row.group for row in rows}
    steps = [Step(f"instructions: {name}", functools.partial(step, place, figures), figures)
             for name, step in live.counts({row.name for row in rows}).items()]
    for program, known in _GROUPS.items():
        if (place.bin / program).exists():
            steps += [Step(f"instructions: {group}",
                           functools.partial(count, place, program, group, figures), figures)
                      for group in known if group in groups]
    return steps


def update(name: str, text: str) -> None:
    """Puts a text between its marks in docs/performance.md."""
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
    parts = Parts()
    tree = arguments.build or ROOT / "build/bench"
    parts.found = [what for what, path in (
        ("a build of the panel", tree / "CMakeCache.txt"),
        ("the packages for armhf", arguments.cache / "root"),
        ("a build for armhf", arm.TREE / "CMakeCache.txt")) if path.exists()]
    with_arm = arguments.arm_only or not (arguments.no_arm or arguments.only or arguments.compare)
    root = arm.begin_root(arguments.cache) if with_arm and not arguments.pieces else None
    if arguments.build is None and not arguments.arm_only:
        parts.begin("build")
        build(ROOT, tree, ["-DQN740_BUILD_TESTS=OFF", "-DQN740_BUILD_BENCH=ON"],
              pieces.PROGRAMS if arguments.pieces else _TARGETS)
    if arguments.pieces:
        print(pieces.report(Place(tree), arguments.markdown, note))
        return 0
    places = {"": (Place(tree), Figures())}
    if arguments.compare is not None:
        parts.begin(f"build {arguments.compare}")
        places["other checkout: "] = build_other(arguments.compare.resolve()), Figures()
    on_arm = Figures() if root is not None else None
    if root is not None:
        parts.begin("packages for armhf")
        root.wait()
    rows = [] if arguments.arm_only else rows
    for name, (place, figures) in places.items():
        parts.begin(f"{name}times and memory")
        for step in time_steps(place, rows, figures):
            attempt(step)
    counted = [] if arguments.no_counts else [
        step for place, figures in places.values() for step in count_steps(place, rows, figures)]
    count_all(arguments.cache, counted, on_arm, parts)
    return show(arguments, rows, {name: figures for name, (_, figures) in places.items()}, on_arm, parts)


def count_all(cache: pathlib.Path, steps: list[Step], on_arm: Figures | None, parts: Parts) -> None:
    """Counts instructions, those of this machine while the programs for armhf are built: other load
    does not change a count."""
    building = threading.Thread(target=build_for_arm, args=(cache, on_arm))
    building.start()
    parts.begin("instructions" if on_arm is None else "instructions, and the build for armhf")
    side_by_side(steps)
    building.join()
    if on_arm is not None and not on_arm.faults:
        parts.begin("instructions of armhf")
        side_by_side(arm.steps(cache, on_arm))
    parts.end()


def build_for_arm(cache: pathlib.Path, figures: Figures | None) -> None:
    """Builds for armhf, when that is wanted."""
    if figures is not None:
        attempt(Step("build for armhf", functools.partial(arm.build, cache), figures))


def show(arguments: argparse.Namespace, rows: list[Row], measured: dict[str, Figures],
         on_arm: Figures | None, parts: Parts) -> int:
    """Prints what was measured. Returns 1 when a row could not be measured."""
    here, *others = measured.values()
    faults = [f"{name}{fault}" for name, figures in measured.items() for fault in figures.faults]
    if others:
        print(table.beside(rows, here, others[0], arguments.markdown))
        for row in rows:
            if here.values and others[0].values and row.sides(others[0]) is None:
                print(f"not compared: {row.what}")
    else:
        report(arguments, rows, here, on_arm)
        faults += on_arm.faults if on_arm is not None else []
    print(f"\n{parts.report(markdown=False)}\n\n{parts.summary()}")
    if arguments.update and not others:
        update("run", f"{parts.summary()}\n\n{parts.report(markdown=True)}")
    for fault in faults:
        print(f"not measured: {fault}", file=sys.stderr)
    note("done")
    return 1 if faults or any(row.sides(here) is None for row in rows) else 0


def build_other(checkout: pathlib.Path) -> Place:
    """Builds another checkout with the benches of this one. A build tree is taken as it is."""
    if (checkout / "CMakeCache.txt").exists():
        return Place(checkout)
    tree = ROOT / "build/bench-other"
    source, name = tree / "source", tree / "checkout"
    if not name.exists() or name.read_text() != str(checkout):
        shutil.rmtree(tree, ignore_errors=True)  # of another one, whose files may be newer
    shutil.rmtree(source, ignore_errors=True)
    source.mkdir(parents=True)
    name.write_text(str(checkout))
    for entry in checkout.iterdir():
        # The benches use the pseudo-terminals of the tests.
        ours = entry.name in ("bench", "tests")
        (source / entry.name).symlink_to(ROOT / entry.name if ours else entry)
    build(source, tree, ["-DQN740_BUILD_TESTS=OFF", "-DQN740_BUILD_BENCH=ON", "-DQN740_WERROR=OFF"],
          _TARGETS)
    return Place(tree)


if __name__ == "__main__":
    sys.exit(main())
