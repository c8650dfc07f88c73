"""The same again from a recording: what the unit has sent, and what the operator has touched."""

from __future__ import annotations

import json
import pathlib
import tempfile
import time
from typing import Any

from qn740.finger import free_port

from . import checks
from .finger import SoakFinger
from .life import Limits
from .ports import ResendPort
from .programs import Failure, PanelProgram, Simulator


def replay(binaries: pathlib.Path, directory: pathlib.Path, storms: int, limits: Limits) -> int:
    """Plays the last storms of a recording to a new panel. Returns 0 when nothing went wrong."""
    recordings = sorted(directory.glob("storm-*.line"))[-storms:]
    if not recordings:
        print(f"replay: {directory} has no recording")
        return 1
    touches: list[dict[str, Any]] = []
    text = ""
    for recording in recordings:
        text += recording.read_text("latin-1")
        lines = recording.with_suffix(".operator").read_text("ascii").splitlines()
        touches += [json.loads(line) for line in lines]
    begin = _first_time(text)
    with tempfile.TemporaryDirectory(prefix="qn740-soak-") as home:
        joined = pathlib.Path(home) / "recording"
        joined.write_text(text, "latin-1")
        try:
            _play(binaries, pathlib.Path(home), joined, touches, begin, limits)
        except Failure as failure:
            print(f"replay: FAILED: {failure}")
            return 1
    print(f"replay: nothing went wrong in {', '.join(path.stem for path in recordings)}")
    return 0


def _first_time(text: str) -> float:
    for line in text.splitlines():
        trace = checks.TRACE.fullmatch(line)
        if trace:
            return float(trace[1])
    return 0.0


def _play(
    binaries: pathlib.Path,
    home: pathlib.Path,
    recording: pathlib.Path,
    touches: list[dict[str, Any]],
    begin: float,
    limits: Limits,
) -> None:
    log = checks.Log([])
    opened: list[float] = []
    ended: list[str] = []

    def take(line: str) -> None:
        if line.startswith("sim: panel opened"):
            opened.append(time.monotonic())
        elif "frames came back" in line:
            ended.append(line)

    sim = Simulator(
        binaries / "qn740-sim", ["--dir", str(home / "dev"), "--replay", str(recording)], take
    )
    time.sleep(0.5)
    resend = ResendPort(home / "dev")
    resend.plug()
    port = free_port()
    panel = PanelProgram(binaries, home / "dev", home, port, log.take)
    try:
        screen = SoakFinger(port)
        while not opened:
            _check(panel, log)
        for touch in sorted(touches, key=lambda note: float(note["at"])):
            while time.monotonic() - opened[0] < touch["at"] - begin:
                _check(panel, log)
            _perform(touch, screen, resend)
        while not ended and sim.exit_status() is None:
            _check(panel, log)
        panel.ask("n", limits.turn)
        screen.close()
        status = panel.terminate(limits.end)
        _check_log(log)
        if status != 0:
            raise Failure(f"SIGTERM: exit status {status}")
    finally:
        if panel.exit_status() is None:
            panel.terminate(limits.end)
        resend.unplug()
        sim.close()


def _perform(note: dict[str, Any], screen: SoakFinger, resend: ResendPort) -> None:
    if note["kind"] == "re-sent":
        resend.write(note["data"].encode("latin-1"))
    elif note["kind"] == "plug":
        resend.plug()
    elif note["kind"] == "unplug":
        resend.unplug()
    else:
        screen.perform(note)


def _check(panel: PanelProgram, log: checks.Log) -> None:
    time.sleep(0.005)
    _check_log(log)
    if panel.exit_status() is not None:
        raise Failure(f"the panel has ended with {panel.exit_status()}")


def _check_log(log: checks.Log) -> None:
    if log.faults:
        raise Failure(log.faults[0])
