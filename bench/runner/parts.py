"""The parts of a run: what is done, how long it took, and what may run at the same time."""

from __future__ import annotations

import os
import queue
import resource
import subprocess
import sys
import threading
import time
from collections.abc import Callable, Sequence
from typing import NamedTuple

from . import table
from .figures import Figures

_BEGIN = time.monotonic()
LANES = min(2, len(os.sched_getaffinity(0)))


def note(text: str) -> None:
    """Says on standard error what is done, and when it began."""
    print(f"bench: {time.monotonic() - _BEGIN:4.0f} s  {text}", file=sys.stderr, flush=True)


class Step(NamedTuple):
    """Something that is measured."""

    name: str
    run: Callable[[], None]
    figures: Figures  # takes the fault when it fails


def attempt(step: Step) -> None:
    """Does a step. What it could not do is noted, and the other steps go on."""
    note(f"  {step.name}")
    began = time.monotonic()
    try:
        step.run()
    except (OSError, subprocess.SubprocessError) as error:
        step.figures.faults.append(f"{step.name}: {error}")
    note(f"  {step.name}: {time.monotonic() - began:.0f} s")


def side_by_side(steps: Sequence[Step]) -> None:
    """Does steps on two cores at once. Only for what other load does not change: instructions."""
    waiting: queue.SimpleQueue[Step] = queue.SimpleQueue()
    for step in steps:
        waiting.put(step)

    def work() -> None:
        try:
            while True:
                attempt(waiting.get_nowait())
        except queue.Empty:
            return

    threads = [threading.Thread(target=work) for _ in range(LANES)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def _processor_time() -> float:
    """Seconds of this process and of all programs that it has started and that have ended."""
    used = 0.0
    for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN):
        usage = resource.getrusage(who)
        used += usage.ru_utime + usage.ru_stime
    return used


class Parts:
    """Measures how long the parts of a run take, one after the other."""

    def __init__(self) -> None:
        self.found: list[str] = []  # what there was at the beginning, and need not be made
        self._lines: list[tuple[str, float, float]] = []
        self._name = ""
        self._began = (0.0, 0.0)

    def begin(self, name: str) -> None:
        """Ends the part before this one and begins this one."""
        self.end()
        note(name)
        self._name = name
        self._began = time.monotonic(), _processor_time()

    def end(self) -> None:
        """Ends the last part."""
        if self._name:
            self._lines.append((self._name, time.monotonic() - self._began[0],
                                _processor_time() - self._began[1]))
        self._name = ""

    def report(self, markdown: bool) -> str:
        """Returns a table of the parts that have ended."""
        lines = [(name, f"{seconds:.0f} s", f"{used:.0f} s") for name, seconds, used in self._lines]
        seconds = sum(line[1] for line in self._lines)
        used = sum(line[2] for line in self._lines)
        lines.append(("all", f"{seconds:.0f} s", f"{used:.0f} s"))
        return table.lay_out([("part of this run", "time", "processor time"), *lines], markdown)

    def summary(self) -> str:
        """Says in a sentence how long the run took and what it found made."""
        seconds = sum(line[1] for line in self._lines)
        found = "nothing" if not self.found else ", ".join(self.found)
        return f"This run took {seconds / 60:.1f} minutes; what was there before it: {found}."
