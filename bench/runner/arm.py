"""Instructions of the armhf build, counted by qemu: the nearest thing to the board.

The programs are cross-built with Debian's compiler (packaging/armhf/build) and run by qemu-arm with a
plugin of our own that counts (bench/arm/count.c).
"""

from __future__ import annotations

import functools
import pathlib
import re
import struct
import subprocess
import time

from .figures import Figures, sections
from .live import COUNTED_QUIET, STARTED, Watched, add_starts
from .parts import Step
from .place import ROOT, Place
from .rows import ROWS

CACHE = pathlib.Path.home() / ".cache/qn740/armhf"
_BUILD = ROOT / "packaging/armhf/build"
TREE = ROOT / "build/armhf"
_START_S = 6.0  # seconds: the emulated panel is idle for a while before it has started
_PLUGIN = TREE / "count.so"
_GROUPS = {"bench_Panel": ("define", "changes", "fader", "press", "editors", "pages"),
           "bench_Parts": ("frames", "spectrum")}
_NOT_COUNTED = ("10000", "flat", "p99", "fader.")
# The rows of the second table, in the order of the first.
NAMES = {row.name: row.what for row in ROWS
         if row.group in ("start", *_GROUPS["bench_Panel"], *_GROUPS["bench_Parts"])
         and not row.name.startswith("rss") and not any(part in row.name for part in _NOT_COUNTED)}


def begin_root(cache: pathlib.Path) -> subprocess.Popen[bytes]:
    """Begins to download what is needed: that takes the network, and a build beside it the cores."""
    return subprocess.Popen([str(_BUILD), "--cache", str(cache), "--root-only"],
                            stdout=subprocess.DEVNULL)


def build(cache: pathlib.Path) -> None:
    """Builds the programs and the plugin that counts."""
    subprocess.run([str(_BUILD), "--cache", str(cache), "--tree", str(TREE)],
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-o", str(_PLUGIN), str(ROOT / "bench/arm/count.c")],
                   check=True)


def steps(cache: pathlib.Path, figures: Figures) -> list[Step]:
    """What counts, each for itself."""
    place = Place(TREE)
    return [Step("armhf: start", functools.partial(_count_starts, place, cache, figures), figures),
            *(Step(f"armhf: {group}",
                   functools.partial(_count, place, cache, program, group, figures), figures)
              for program, groups in _GROUPS.items() for group in groups)]


def _emulated(cache: pathlib.Path, counter: pathlib.Path) -> list[str]:
    return ["qemu-arm", "-L", str(cache / "root"), "-plugin", f"{_PLUGIN},out={counter}"]


def _count_starts(place: Place, cache: pathlib.Path, figures: Figures) -> None:
    totals: dict[str, float] = {}
    counter = place.work / "start.counter"
    for kind, (name, environment) in STARTED.items():
        watched = Watched([*_emulated(cache, counter), place.program(name)],
                          place.environment(**environment))
        try:
            time.sleep(_START_S)
            watched.settle(COUNTED_QUIET)
            totals[kind] = float(struct.unpack("<Q", counter.read_bytes()[:8])[0])
        finally:
            watched.end()
    add_starts(figures, totals)


def _count(place: Place, cache: pathlib.Path, program: str, group: str, figures: Figures) -> None:
    command = [*_emulated(cache, place.work / f"{group}.counter"), place.program(program), "--count",
               "--short", group]
    done = place.run(command)
    announced = sections(done.stdout)
    counted = [float(number) for number in re.findall(r"^section (\d+)$", done.stderr, re.MULTILINE)]
    if done.returncode != 0 or len(announced) != len(counted):
        figures.faults.append(f"armhf {' '.join(command[5:])}: exit status {done.returncode}, "
                              f"{len(counted)} of {len(announced)} sections; {done.stderr[-300:]}")
        return
    for (row, side, units), count in zip(announced, counted):
        figures.counts[row, side] = count / units
