"""Measures the real panel program beside the real simulated unit, by what the kernel counts.

The panel runs unchanged on Qt's offscreen platform. The operator's touches come through a socket, by
Qt's plugin for remote touches.
"""

from __future__ import annotations

import contextlib
import functools
import glob
import pathlib
import re
import select
import socket
import struct
import subprocess
import tempfile
import time
from collections.abc import Callable, Iterator

from . import look
from .figures import OURS, PEER, Figures
from .look import Look, Unmeasured
from .place import Place

_LONG = 30.0  # seconds that something may take to happen
_QUIET = 0.3  # seconds without work: idle
_SCOPES_BUTTON = (675, 455)
_SIZE = (800, 480)
_LINE_BYTES = 11520  # a second at 115200 baud
_POINTS = 1024  # of a spectrum of the older card
_SCOPE_MODES = {"cpu.eyes": 2, "cpu.constellations": 1}
# What is started: the panel with the start-up picture and with the menus at once, and the bare window.
STARTED: dict[str, tuple[str, dict[str, str]]] = {
    "picture": ("qn740-panel", {}),
    "menus": ("qn740-panel", {"QN740_SPLASH_MS": "0"}),
    "bare": ("bench_BareWindow", {}),
}
STARTS = 7
SAMPLES = 3  # of everything that runs beside the unit
IDLE_S = 4.0
SHARE_S = 4.0
COUNTED_S = 4.0
_MIN_SPECTRA = 15  # a second, of 20
_MIN_CHANGED = 0.05  # of the window's pixels, when another view is shown
COUNTED_QUIET = 1.0  # idle, for a program that others may keep from running


class Watched:
    """A process and what it has used so far."""

    def __init__(self, command: list[str], environment: dict[str, str]) -> None:
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._output = b""

    def end(self) -> None:
        """Kills the process."""
        self.process.kill()
        self.process.communicate()

    def cpu(self) -> float:
        """Processor time in seconds, of all threads."""
        total = 0
        for path in glob.glob(f"/proc/{self.process.pid}/task/*/schedstat"):
            total += int(pathlib.Path(path).read_text().split()[0])
        return total / 1e9

    def resident(self) -> float:
        """Resident memory in MiB."""
        text = pathlib.Path(f"/proc/{self.process.pid}/smaps_rollup").read_text()
        found = re.search(r"^Rss:\s+(\d+) kB", text, re.MULTILINE)
        return int(found.group(1)) / 1024 if found else 0.0

    def switches(self) -> int:
        """How often the threads have slept. That others wanted the core is the machine's matter."""
        total = 0
        for path in glob.glob(f"/proc/{self.process.pid}/task/*/status"):
            found = re.search(r"^voluntary_ctxt_switches:\s+(\d+)", pathlib.Path(path).read_text(),
                              re.MULTILINE)
            total += int(found.group(1)) if found else 0
        return total

    def io(self, name: str) -> int:
        """Bytes that were read (rchar), or calls that read (syscr)."""
        text = pathlib.Path(f"/proc/{self.process.pid}/io").read_text()
        found = re.search(rf"^{name}: (\d+)", text, re.MULTILINE)
        return int(found.group(1)) if found else 0

    def settle(self, quiet: float = _QUIET) -> None:
        """Waits until the process has had nothing to do for a while."""
        end = time.monotonic() + _LONG
        before = -1.0
        while time.monotonic() < end and self.cpu() != before:
            before = self.cpu()
            time.sleep(quiet)

    def type(self, line: str) -> None:
        """Types a line."""
        assert self.process.stdin is not None
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def wait_for(self, text: str) -> None:
        """Waits until the output has this text."""
        assert self.process.stdout is not None
        end = time.monotonic() + _LONG
        while text.encode() not in self._output:
            ready, _, _ = select.select([self.process.stdout], [], [], 0.1)
            if ready:
                self._output += self.process.stdout.read1(65536)  # type: ignore[attr-defined]
            elif time.monotonic() > end:
                raise TimeoutError(f'"{text}" did not come')


class Finger:
    """Touches the panel, as TUIO 1.1 describes it: bundles of OSC messages in datagrams."""

    def __init__(self) -> None:
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as free:
            free.bind(("127.0.0.1", 0))
            self.port: int = free.getsockname()[1]
        self._touches = 0
        self._frames = 0

    def touch(self, point: tuple[int, int]) -> None:
        """Puts the finger down, lifts it, and waits a little."""
        self._touches += 1
        x, y = (place / size for place, size in zip(point, _SIZE))
        down = self._message(",sifffff", "set") + struct.pack(">i5f", self._touches, x, y, 0, 0, 0)
        alive = self._message(",si", "alive") + struct.pack(">i", self._touches)
        self._send([alive, down])
        time.sleep(0.1)
        self._send([self._message(",s", "alive")])
        time.sleep(0.5)

    def _send(self, messages: list[bytes]) -> None:
        self._frames += 1
        frame = self._message(",si", "fseq") + struct.pack(">i", self._frames)
        bundle = b"#bundle\0" + struct.pack(">q", 1)
        for message in [*messages, frame]:
            bundle += struct.pack(">i", len(message)) + message
        self._socket.sendto(bundle, ("127.0.0.1", self.port))

    @staticmethod
    def _message(types: str, command: str) -> bytes:
        texts = [text.encode() for text in ("/tuio/2Dcur", types, command)]
        return b"".join(text + bytes(4 - len(text) % 4) for text in texts)


class Desk:
    """A panel with the simulated unit at the other end of all its lines."""

    def __init__(self, place: Place, unit_options: list[str], panel_options: list[str],
                 wrapper: list[str] | None = None) -> None:
        directory = pathlib.Path(tempfile.mkdtemp(dir=place.work))
        devices = str(directory / "dev")
        # Other versions of the panel cannot be looked at.
        self._look = directory / "look" if look.VARIABLE in place.help() else None
        self.finger = Finger()
        self.unit = Watched([place.program("qn740-sim"), "--dir", devices, *unit_options],
                            place.environment())
        try:
            self.unit.wait_for("sim: ready")
            self.panel = Watched(
                [*(wrapper or []), place.program("qn740-panel"), *panel_options, "-plugin",
                 f"tuiotouch:udp={self.finger.port}"],
                place.environment(QN740_DEV=devices, QN740_SPLASH_MS="0",
                                  **({look.VARIABLE: str(self._look)} if self._look else {})))
        except BaseException:
            self.unit.end()
            raise
        try:
            self.unit.wait_for("sim: panel opened ttyO1")
            time.sleep(6.0 if wrapper else 2.0)
        except BaseException:
            self.__exit__()
            raise

    def __enter__(self) -> Desk:
        return self

    def __exit__(self, *_: object) -> None:
        self.panel.end()
        self.unit.end()

    def next_view(self, looking: bool = True) -> None:
        """Presses the button for the next view, and looks whether it comes."""
        if self._look is None or not looking:
            self.finger.touch(_SCOPES_BUTTON)
            time.sleep(1.0)
            return
        with Look(self._look) as seen:
            before = seen.picture()
            self.finger.touch(_SCOPES_BUTTON)
            time.sleep(1.0)
            if seen.picture().changed(before) < _MIN_CHANGED:
                raise Unmeasured("the next view is not shown")

    def check(self, moves: bool) -> None:
        """Raises Unmeasured unless something moves in all thirds of the window, or in none."""
        if self._look is None:
            return
        with Look(self._look) as seen:
            found = seen.moving()
        if found != [moves] * 3:
            raise Unmeasured(f"something moves in {sum(found)} of three parts of the window")


def start(place: Place, figures: Figures) -> None:
    """Processor time to the first idle page, and the memory then, beside a bare window."""
    cpu: dict[str, list[float]] = {kind: [] for kind in STARTED}
    resident: dict[str, list[float]] = {kind: [] for kind in STARTED}
    for _ in range(STARTS):
        for kind, (name, environment) in STARTED.items():
            watched = Watched([place.program(name)], place.environment(**environment))
            time.sleep(0.2)
            watched.settle()
            cpu[kind].append(1000 * watched.cpu())
            resident[kind].append(watched.resident())
            watched.end()
    for row, values in (("start", cpu), ("rss", resident)):
        figures.add(row, OURS, values["picture"])
        figures.add(f"{row}.menus", OURS, values["menus"])
        for name in (row, f"{row}.menus"):
            figures.add(name, PEER, values["bare"])


def full(place: Place, figures: Figures) -> None:
    """Memory with everything that the unit sends: menus, scopes, spectrum."""
    ours: list[float] = []
    bare: list[float] = []
    with _rows(figures, "rss.full"):
        for sample in range(SAMPLES):
            # Looking takes memory, so only the first panel is looked at.
            ours.append(_full(place, looking=sample == 0))
            window = Watched([place.program("bench_BareWindow")], place.environment())
            time.sleep(0.2)
            window.settle()
            bare.append(window.resident())
            window.end()
        figures.add("rss.full", OURS, ours)
        figures.add("rss.full", PEER, bare)


def _full(place: Place, looking: bool) -> float:
    with Desk(place, ["--scope-mode", "2"], []) as desk:
        desk.unit.wait_for("sim: menus sent")
        desk.unit.type("ST,1")
        for number in (1, 2, 3):
            desk.unit.type(f"SM,{number},2")
        time.sleep(2.0)
        for _ in range(3):  # the scopes, the spectrum, the menus
            desk.next_view(looking)
        return desk.panel.resident()


@contextlib.contextmanager
def _rows(figures: Figures, *rows: str) -> Iterator[None]:
    """What is measured for these rows. When it could not be measured, the other rows go on."""
    try:
        yield
    except (Unmeasured, OSError) as error:
        figures.faults += [f"{row}: {error}" for row in rows]


def add_starts(figures: Figures, totals: dict[str, float]) -> None:
    """Notes the instructions of the programs that were started."""
    figures.counts["start", OURS] = totals["picture"]
    figures.counts["start.menus", OURS] = totals["menus"]
    for row in ("start", "start.menus"):
        figures.counts[row, PEER] = totals["bare"]


class _Share:
    """Measures the panel for some seconds."""

    def __init__(self, panel: Watched, seconds: float) -> None:
        before = panel.cpu(), panel.switches(), panel.io("syscr"), panel.io("rchar")
        began = time.monotonic()
        time.sleep(seconds)
        after = panel.cpu(), panel.switches(), panel.io("syscr"), panel.io("rchar")
        self.seconds = time.monotonic() - began
        self.cpu, self.switches, self.reads, self.bytes = (
            (late - early) / self.seconds for late, early in zip(after, before))


    def check_lines(self) -> None:
        """Raises Unmeasured when less was read than three lines bring."""
        if self.bytes < 0.9 * 3 * _LINE_BYTES or not self.reads:
            raise Unmeasured(f"only {self.bytes:.0f} bytes a second were read")

    def check_spectra(self) -> None:
        """Raises Unmeasured when there were too few spectra."""
        if self.bytes < _MIN_SPECTRA * _POINTS:
            raise Unmeasured(f"only {self.bytes / _POINTS:.1f} spectra a second")


def live(place: Place, names: set[str], figures: Figures) -> None:
    """Shares of a core and context switches with nothing, with the scopes and with the card.

    names: the rows that are wanted."""
    if "switches.idle" in names:
        with _rows(figures, "switches.idle"), \
                Desk(place, ["--no-menus", "--quiet", "PM,SF"], []) as desk:
            time.sleep(1.0)
            figures.add("switches.idle", OURS,
                        [_Share(desk.panel, IDLE_S).switches for _ in range(SAMPLES)])
    scopes = [row for row in ("cpu.hidden", "switches.read", *_SCOPE_MODES) if row in names]
    if scopes:
        with _rows(figures, *scopes), Desk(place, ["--no-menus", "--scope-mode", "2"], []) as desk:
            _scopes(desk, names, figures)
    charts = [number for number in (3, 1) if f"cpu.chart{number}" in names]
    if charts:
        with _rows(figures, *(f"cpu.chart{number}" for number in charts)), \
                Desk(place, ["--no-menus", "--card", "older"], ["-noK7150"]) as desk:
            _charts(desk, charts, figures)


def line_shares(desk: Desk, shown: bool) -> list[_Share]:
    """Measures a panel whose three lines run at full rate, with their plots shown or hidden."""
    desk.check(moves=shown)
    shares = [_Share(desk.panel, SHARE_S) for _ in range(SAMPLES)]
    for share in shares:
        share.check_lines()
    return shares


def _scopes(desk: Desk, names: set[str], figures: Figures) -> None:
    if names & {"cpu.hidden", "switches.read"}:
        with _rows(figures, *sorted(names & {"cpu.hidden", "switches.read"})):
            hidden = line_shares(desk, shown=False)
            figures.add("cpu.hidden", OURS, [100 * share.cpu for share in hidden])
            figures.add("switches.read", OURS, [share.switches / share.reads for share in hidden])
    shown_rows = [row for row in _SCOPE_MODES if row in names]
    if shown_rows:
        desk.next_view()
    for row in shown_rows:
        with _rows(figures, row):
            _set_modes(desk, _SCOPE_MODES[row])
            figures.add(row, OURS, [100 * share.cpu for share in line_shares(desk, shown=True)])


def _charts(desk: Desk, charts: list[int], figures: Figures) -> None:
    desk.next_view()  # the scopes
    desk.next_view()
    for number in charts:
        with _rows(figures, f"cpu.chart{number}"):
            _show_charts(desk, number)
            shares = [_Share(desk.panel, SHARE_S) for _ in range(SAMPLES)]
            for share in shares:
                share.check_spectra()  # a chart that is not shown gets none
            figures.add(f"cpu.chart{number}", OURS, [100 * share.cpu for share in shares])


def _set_modes(desk: Desk, mode: int) -> None:
    for number in (1, 2, 3):
        desk.unit.type(f"SM,{number},{mode}")
    time.sleep(2.0)


def _show_eyes(desk: Desk) -> None:
    desk.next_view()
    _set_modes(desk, 2)
    desk.check(moves=True)


def _show_charts(desk: Desk, charts: int) -> None:
    for hidden in range(charts, 3):
        desk.unit.type(f"SH,{hidden},0")
    time.sleep(2.0)


def _show_spectrum(desk: Desk, charts: int) -> None:
    desk.next_view()  # the scopes
    desk.next_view()
    _show_charts(desk, charts)


def counts(names: set[str]) -> dict[str, Callable[[Place, Figures], None]]:
    """What counts the instructions of the running panel, by its name. names: the rows that are wanted"""
    steps: dict[str, Callable[[Place, Figures], None]] = {}
    if names & {"start", "start.menus"}:
        steps["start"] = _count_starts
    if names & {"cpu.hidden", "cpu.eyes"}:
        steps["scopes"] = functools.partial(_count_scopes, names)
    if names & {"cpu.chart1", "cpu.chart3"}:
        steps["charts"] = functools.partial(_count_charts, names)
    return steps


def _count_starts(place: Place, figures: Figures) -> None:
    totals: dict[str, float] = {}
    for kind, (name, environment) in STARTED.items():
        valgrind = _Callgrind(place, f"start-{kind}")
        watched = Watched([*valgrind.command, place.program(name)], place.environment(**environment))
        time.sleep(2.0)
        watched.settle(COUNTED_QUIET)
        totals[kind] = valgrind.dump(watched)
        watched.end()
    add_starts(figures, totals)


def _count_scopes(names: set[str], place: Place, figures: Figures) -> None:
    scopes: dict[str, Callable[[Desk], None]] = {
        "cpu.hidden": lambda desk: desk.check(moves=False), "cpu.eyes": _show_eyes}
    _count_steps(place, figures, ["--scope-mode", "2"], [],
                 {row: step for row, step in scopes.items() if row in names})


def _count_charts(names: set[str], place: Place, figures: Figures) -> None:
    charts: dict[str, Callable[[Desk], None]] = {
        "cpu.chart3": lambda desk: _show_spectrum(desk, 3), "cpu.chart1": lambda desk: _show_charts(desk, 1)}
    if "cpu.chart3" not in names:
        charts["cpu.chart1"] = lambda desk: _show_spectrum(desk, 1)
    _count_steps(place, figures, ["--card", "older"], ["-noK7150"],
                 {row: step for row, step in charts.items() if row in names})


def _count_steps(place: Place, figures: Figures, unit: list[str], panel: list[str],
                 steps: dict[str, Callable[[Desk], None]]) -> None:
    if not steps:
        return
    valgrind = _Callgrind(place, next(iter(steps)))
    with _rows(figures, *(f"instructions of {row}" for row in steps)), \
            Desk(place, ["--no-menus", *unit], panel, valgrind.command) as desk:
        for row, step in steps.items():
            step(desk)
            valgrind.zero(desk.panel)
            began = time.monotonic()
            share = _Share(desk.panel, COUNTED_S)
            total = valgrind.dump(desk.panel)
            seconds = time.monotonic() - began
            (share.check_spectra if row.startswith("cpu.chart") else share.check_lines)()
            figures.counts[row, OURS] = total / seconds


class _Callgrind:
    """Counts the instructions of a program while it runs."""

    def __init__(self, place: Place, name: str) -> None:
        self._out = place.work / f"{name}.out"
        self._pipe = f"--vgdb-prefix={place.work / name}.vgdb"
        self.command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={self._out}", self._pipe]
        self._dumps = 0

    def _tell(self, watched: Watched, word: str) -> None:
        subprocess.run(["vgdb", self._pipe, f"--pid={watched.process.pid}", word], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=_LONG)

    def zero(self, watched: Watched) -> None:
        """Begins to count."""
        self._tell(watched, "zero")

    def dump(self, watched: Watched) -> float:
        """Returns how many instructions there were since the beginning or the last time."""
        self._tell(watched, "dump")
        self._dumps += 1
        part = pathlib.Path(f"{self._out}.{self._dumps}")
        end = time.monotonic() + _LONG
        while time.monotonic() < end:
            found = re.search(r"^totals: (\d+)", part.read_text() if part.exists() else "",
                              re.MULTILINE)
            if found:
                return float(found.group(1))
            time.sleep(0.1)
        raise TimeoutError(f"callgrind has left no {part}")


