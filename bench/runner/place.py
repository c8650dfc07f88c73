"""A build of the panel with its benches, and how its programs are started."""

from __future__ import annotations

import os
import pathlib
import re
import subprocess
import tempfile

from .figures import Figures, sections

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SCREEN = ROOT / "tests/support/screen.json"
_SLOW = 400.0  # seconds that a program may take


class Place:
    """The programs of one build, and a directory of their own for what they leave behind."""

    def __init__(self, build: pathlib.Path) -> None:
        self.bin = build / "bin"
        self._directory = tempfile.TemporaryDirectory(prefix="bench-")
        self.work = pathlib.Path(self._directory.name)

    def environment(self, **more: str) -> dict[str, str]:
        """The environment of a program: an offscreen screen of the panel's size, no settings."""
        home = tempfile.mkdtemp(dir=self.work)
        kept = {name: value for name, value in os.environ.items() if not name.startswith("QN740_")}
        return {**kept, "QT_QPA_PLATFORM": f"offscreen:configfile={SCREEN}", "XDG_RUNTIME_DIR": home,
                "XDG_CONFIG_HOME": home, "HOME": home, "QN740_DEV": home,
                "QT_LOGGING_RULES": "*.warning=false", **more}

    def program(self, name: str) -> str:
        """The path of a program."""
        return str(self.bin / name)

    def help(self) -> str:
        """What the panel says about its options and its environment."""
        return self.run([self.program("qn740-panel"), "--help"]).stdout

    def run(self, command: list[str], **more: str) -> subprocess.CompletedProcess[str]:
        """Runs a program to its end."""
        return subprocess.run(command, env=self.environment(**more), capture_output=True, text=True,
                              errors="replace", timeout=_SLOW, check=False)


def measure(place: Place, program: str, group: str, figures: Figures) -> None:
    """Measures a group of rows by time."""
    done = place.run([place.program(program), group])
    figures.read(done.stdout)
    if done.returncode != 0:
        figures.faults.append(f"{program} {group}: exit status {done.returncode} {done.stderr}")


def count(place: Place, program: str, group: str, figures: Figures) -> None:
    """Counts the instructions of a group of rows by callgrind."""
    out = place.work / f"{program}-{group}.out"
    done = place.run(["valgrind", "--tool=callgrind", "--instr-atstart=no",
                      f"--callgrind-out-file={out}", place.program(program), "--count", group])
    if done.returncode != 0:
        figures.faults.append(
            f"callgrind of {program} {group}: exit status {done.returncode} {done.stderr[-500:]}")
    totals = _dumps(out)
    for row, side, units in sections(done.stdout):
        name = f"{row} {side}"
        if name in totals and units > 0:
            figures.counts[row, side] = totals[name] / units


def _dumps(out: pathlib.Path) -> dict[str, float]:
    """The instructions of each dump that a program has asked for, by its name."""
    found = {}
    for part in out.parent.glob(f"{out.name}.*"):
        text = part.read_text(errors="replace")
        name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
        total = re.search(r"^totals: (\d+)", text, re.MULTILINE)
        if name and total:
            found[name.group(1)] = float(total.group(1))
    return found


def memory(place: Place, figures: Figures) -> None:
    """Measures the memory of keys, each time in a new process."""
    for count_of_keys in (1000, 10000):
        values: dict[str, list[float]] = {"ours": [], "peer": []}
        for _ in range(3):
            for side, list_of_values in values.items():
                done = place.run([place.program("bench_Panel"), "--memory", side, str(count_of_keys)])
                one = Figures()
                one.read(done.stdout)
                value = one.values.get((f"memory.{count_of_keys}", side))
                if value is None:
                    figures.faults.append(f"bench_Panel --memory {side}: {done.stderr}")
                    return
                list_of_values.append(value / 1000)
        for side, list_of_values in values.items():
            figures.add(f"memory.{count_of_keys}", side, list_of_values)
