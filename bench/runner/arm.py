"""Instructions of the armhf build, counted by qemu: the nearest thing to the board.

The programs are cross-built with Debian's compiler (packaging/armhf/build) and run by qemu-arm with a
plugin of our own that counts (bench/arm/count.c).
"""

from __future__ import annotations

import pathlib
import re
import struct
import subprocess
import time
from collections.abc import Callable

from .figures import OURS, PEER, Figures, sections
from .live import Watched
from .place import ROOT, Place
from .rows import ROWS

CACHE = pathlib.Path.home() / ".cache/qn740/armhf"
_BUILD = ROOT / "packaging/armhf/build"
_GROUPS = {"bench_Panel": ("define", "changes", "fader", "press", "editors", "pages"),
           "bench_Parts": ("frames", "spectrum")}
_NOT_COUNTED = ("10000", "flat", "p99", "fader.")
# The rows of the second table, in the order of the first.
NAMES = {row.name: row.what for row in ROWS
         if row.group in ("start", *_GROUPS["bench_Panel"], *_GROUPS["bench_Parts"])
         and row.name != "rss" and not any(part in row.name for part in _NOT_COUNTED)}


def begin_root(cache: pathlib.Path) -> subprocess.Popen[bytes]:
    """Begins to download what is needed: that takes the network, and a build beside it the cores."""
    return subprocess.Popen([str(_BUILD), "--cache", str(cache), "--root-only"],
                            stdout=subprocess.DEVNULL)


def measure(cache: pathlib.Path, figures: Figures, note: Callable[[str], None]) -> None:
    """Builds for armhf and counts."""
    tree = ROOT / "build/armhf"
    note("armhf: build")
    subprocess.run([str(_BUILD), "--cache", str(cache), "--tree", str(tree)],
                   check=True, stdout=subprocess.DEVNULL)
    place = Place(tree)
    plugin = place.work / "count.so"
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-o", str(plugin), str(ROOT / "bench/arm/count.c")],
                   check=True)
    counter = place.work / "counter"
    emulated = ["qemu-arm", "-L", str(cache / "root"), "-plugin", f"{plugin},out={counter}"]
    note("armhf: start")
    for side, name in ((OURS, "qn740-panel"), (PEER, "bench_BareWindow")):
        figures.counts["start", side] = _started(place, [*emulated, place.program(name)], counter)
    for program, groups in _GROUPS.items():
        note(f"armhf: {', '.join(groups)}")
        _count(place, [*emulated, place.program(program), "--count", "--short", *groups], figures)


def _started(place: Place, command: list[str], counter: pathlib.Path) -> float:
    watched = Watched(command, place.environment())
    try:
        time.sleep(1.0)
        watched.settle()
        return float(struct.unpack("<Q", counter.read_bytes()[:8])[0])
    finally:
        watched.end()


def _count(place: Place, command: list[str], figures: Figures) -> None:
    done = place.run(command)
    announced = sections(done.stdout)
    counted = [float(number) for number in re.findall(r"^section (\d+)$", done.stderr, re.MULTILINE)]
    if done.returncode != 0 or len(announced) != len(counted):
        figures.faults.append(f"armhf {' '.join(command[5:])}: exit status {done.returncode}, "
                              f"{len(counted)} of {len(announced)} sections; {done.stderr[-300:]}")
        return
    for (row, side, units), count in zip(announced, counted):
        figures.counts[row, side] = count / units
