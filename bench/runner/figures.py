"""What was measured: numbers by the name of the row and of the side."""

from __future__ import annotations

import dataclasses
import statistics

OURS = "ours"
PEER = "peer"


@dataclasses.dataclass
class Figures:
    """The figures of one checkout."""

    values: dict[tuple[str, str], float] = dataclasses.field(default_factory=dict)
    counts: dict[tuple[str, str], float] = dataclasses.field(default_factory=dict)  # instructions
    faults: list[str] = dataclasses.field(default_factory=list)  # what could not be measured, and why

    def read(self, output: str) -> None:
        """Takes the lines "figure ROW SIDE VALUE" of a program's output."""
        for line in output.splitlines():
            fields = line.split("\t")
            if len(fields) == 4 and fields[0] == "figure":
                self.values[fields[1], fields[2]] = float(fields[3])

    def add(self, row: str, side: str, values: list[float]) -> None:
        """Notes the median of several measurements."""
        self.values[row, side] = statistics.median(values)


def sections(output: str) -> list[tuple[str, str, float]]:
    """Returns row, side and units of work of each section that a program has announced."""
    found = []
    for line in output.splitlines():
        fields = line.split("\t")
        if len(fields) == 4 and fields[0] == "section":
            found.append((fields[1], fields[2], float(fields[3])))
    return found
