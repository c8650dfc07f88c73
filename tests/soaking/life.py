"""One panel from its start to its end."""

from __future__ import annotations

import collections
import pathlib
import random
import shutil
import socket
import tempfile
import threading
import time
from typing import Any

from qn740.finger import free_port

from . import checks, finger, plan, ports, recording, traffic
from .programs import Failure, PanelProgram, Simulator

KEPT_CONVERSATIONS = 20
_TICK = 0.02
_PROBE_SECONDS = 0.1
_PORT_SECONDS = 6.0  # two until the panel tries again, and then as long as it is busy
_CLOSING = 0.4  # how often the operator looks for the key that closes an editor
_BOX = (400, 240)  # where message boxes stand
_RESEND = "ttyUSB4"  # the port that the simulator does not have
_STATUS_BAR = 430  # where it begins
_VIEW_SECONDS = 0.5  # until a display has shown data
_CLOSERS = ("CE/Cancel", "Cancel", "OK", "Close", "Back", "RETURN")


class Limits:
    """How long something may take, and how much the panel may have more than at first."""

    def __init__(self, sanitized: bool) -> None:
        slow = 4.0 if sanitized else 1.0
        self.sanitized = sanitized
        self.answer = 10.0 * slow  # seconds
        self.turn = 15.0 * slow  # of the event loop
        self.end = 10.0 * slow  # from SIGTERM to the exit
        self.cpu = 0.08 if sanitized else 0.03  # share of a core at rest


class Life:
    """A unit and a panel, storms and rests, and at the end a main port that vanishes.

    Raises Failure when something happens that must not.
    """

    def __init__(
        self,
        binaries: pathlib.Path,
        out: pathlib.Path,
        seed: int,
        number: int,
        limits: Limits,
        planted: str = "",
    ) -> None:
        self.seed = seed
        self.number = number
        self.limits = limits
        self.talk = checks.Conversation()
        self.log_lines: list[str] = []
        self.log = checks.Log(self.log_lines)
        self.rests: list[checks.Rest] = []
        self.presses: collections.Counter[str] = collections.Counter()
        self.steps: collections.Counter[str] = collections.Counter()
        self.highest_kb = 0
        self.reopened: list[float] = []
        self.sim_faults: list[str] = []
        self._planted = {"QN740_SPY_FAIL": planted} if planted else {}
        self._binaries = binaries
        self._out = out / f"panel-{number}"
        self._home = pathlib.Path(tempfile.mkdtemp(prefix="qn740-soak-"))
        self._devices = self._home / "dev"
        self._recorder = recording.Recorder(self._out)
        self._storms = 0
        self._marker = 0
        self._plugs: dict[str, float] = {}  # the ports that must be open soon, and since when
        self._gone: set[str] = set()  # those of them that were unplugged

    def start(self) -> None:
        """Starts the unit and the panel, and waits for the menus."""
        shutil.rmtree(self._out, ignore_errors=True)
        self._out.mkdir(parents=True)
        options = ["--dir", str(self._devices), "--trace", "--seed", str(self.seed + self.number)]
        self._sim = Simulator(
            self._binaries / "qn740-sim", [*options, "--fault", plan.FAULT_RATES], self.talk.take
        )
        self._wait(lambda: any(event.startswith("ready") for event in self.talk.events), "simulator")
        self._resend = ports.Port(self._devices, _RESEND)
        self._resend.plug()
        screen = free_port()
        self._panel = PanelProgram(
            self._binaries,
            self._devices,
            self._home,
            screen,
            self.log.take,
            {"QN740_SPY_RECORD": str(self._recorder.spy_file), **self._planted},
        )
        self._started = time.monotonic()
        self._wait(lambda: self.talk.events["menus sent"] > 0, "panel")
        self._finger = finger.SoakFinger(screen)
        self._readers = connect_readers(self._home)

    def close(self) -> None:
        """Ends everything that still runs, and keeps what is needed for a replay."""
        for reader in self._readers:
            reader.close()
        self._finger.close()
        if self._panel.exit_status() is None:
            self._panel.terminate(self.limits.end)
        self._resend.unplug()
        self._sim.close()
        self._save(f"storm-{self._storms + 1:05d}")
        (self._out / "panel.log").write_text("\n".join(self.log_lines) + "\n", "latin-1")
        shutil.rmtree(self._home, ignore_errors=True)

    # Storms

    def storm(self, seconds: float) -> None:
        """Lets everything happen at once."""
        self._storms += 1
        what = plan.storm(self.seed, 1000 * self.number + self._storms, seconds)
        begin = time.monotonic()
        trouble: list[BaseException] = []
        operator = threading.Thread(target=self._operate, args=(what, begin, trouble), daemon=True)
        operator.start()
        steps = sorted([*what.unit, *what.ports], key=lambda step: step.at)
        probe_at = 0.0
        while time.monotonic() - begin < seconds or steps or operator.is_alive():
            elapsed = time.monotonic() - begin
            while steps and steps[0].at <= elapsed:
                self._carry_out(steps.pop(0))
            if elapsed >= probe_at:
                self._sim.type([checks.PROBE])
                probe_at = elapsed + _PROBE_SECONDS
                self.highest_kb = max(self.highest_kb, self._panel.resident_kb())
            self._check()
            if trouble:
                raise trouble[0]
            time.sleep(_TICK)

    def _carry_out(self, step: plan.Step) -> None:
        self.steps[step.kind] += 1
        if step.kind in ("plug", "unplug"):
            self._plug(step.port, step.kind == "plug")
        elif step.kind == "re-sent":
            for piece in step.raw:
                self.talk.note_re_sent(piece)
                self._resend.write(piece)
        else:
            self._sim.type(list(step.lines))

    def _plug(self, port: str, there: bool) -> None:
        if not there or port in self._gone:
            self._recorder.note("plug" if there else "unplug", port)
        if there:
            self._resend.plug() if port == _RESEND else self._sim.type([f"plug {port}"])
            self._plugs.setdefault(port, time.monotonic())
            return
        self._plugs.pop(port, None)
        self._gone.add(port)
        self._resend.unplug() if port == _RESEND else self._sim.type([f"unplug {port}"])

    def _operate(self, what: plan.Storm, begin: float, trouble: list[BaseException]) -> None:
        try:
            for step in what.operator:
                time.sleep(max(0.0, begin + step.at - time.monotonic()))
                if time.monotonic() - begin > what.seconds + 5.0:
                    return  # the panel was busy for long
                self._touch(step)
        except BaseException as error:  # it ends the storm, in the other thread
            trouble.append(error)

    def _touch(self, step: plan.Step) -> None:
        numbers = step.numbers
        points = [finger.point_of(*numbers[i : i + 2]) for i in range(0, len(numbers), 2)]
        if step.kind in ("button", "hold"):
            shown = self._panel.ask("b", self.limits.turn)
            found = shown["buttons"]
            if shown["modal"] and numbers[3] < _CLOSING:
                found = [button for button in found if button["text"] in _CLOSERS] or found
            if found:
                found.sort(key=lambda button: (button["y"], button["x"], button["text"]))
                button = found[int(numbers[0] * len(found))]
                points[0] = (button["x"], button["y"])
        if step.kind == "drag":
            points = _path(points, random.Random(numbers[-1]))
        seconds = 0.3 + 0.9 * numbers[2] if step.kind == "hold" else 0.0
        self._perform({"kind": step.kind, "points": points, "hold": seconds})

    def _perform(self, touch: dict[str, Any]) -> None:
        self.presses[touch["kind"]] += 1
        self._finger.perform(touch)

    # Checks

    def _check(self) -> None:
        if self._panel.exit_status() is not None:
            raise Failure(f"the panel has ended with {self._panel.exit_status()}")
        if self._sim.exit_status() is not None:
            raise Failure("the simulator has ended: " + " ".join(self._sim.errors[-5:]))
        for faults in (self.talk.faults, self.log.faults):
            if faults:
                raise Failure(faults[0])
        self._check_ports()
        if self.talk.oldest() > self.limits.answer:
            self._check_hold()

    # No probe is answered while an editor that the unit has opened is open. Then the operator has
    # to close it.
    def _check_hold(self) -> None:
        shown = self._panel.ask("b", self.limits.turn)
        if not self.talk.may_be_held() or not shown["modal"]:
            raise Failure(
                f"{self.talk.open_probes()} PINGs have had no answer for "
                f"{self.talk.oldest():.1f} s; on the screen: {shown['windows']}"
            )
        self._close_one(shown)
        self.talk.forgive()

    def _close_one(self, shown: dict[str, Any]) -> None:
        closers = [button for button in shown["buttons"] if button["text"] in _CLOSERS]
        point = _BOX  # a box without a key, which goes behind the editor at a touch
        if closers:
            button = closers[int(self.talk.now() * 997) % len(closers)]
            point = (button["x"], button["y"])
        self._perform({"kind": "closing", "points": [point], "hold": 0.0})

    def _check_ports(self) -> None:
        if not self._plugs:
            return
        files = None
        there = ports.targets(self._devices)
        for port, since in list(self._plugs.items()):
            waited = time.monotonic() - since
            if waited < 0.5:
                continue
            files = files or self._panel.files()
            if there.get(port) in files:
                if port in self._gone:
                    self.reopened.append(waited)
                self._gone.discard(port)
                del self._plugs[port]
            elif waited > _PORT_SECONDS + self.limits.answer:
                raise Failure(f"{port} has not come back for {waited:.1f} s")

    # Rests

    def rest(self) -> None:
        """Ends all traffic, shows the menus anew, and counts what the panel has."""
        for port in plan.PORTS:
            self._plug(port, True)
        time.sleep(1.0)  # until the last of the unit's delayed answers has come
        self._sim.type(["confirm", *(f"SM,{scope},0" for scope in (1, 2, 3))])
        self._close_all()
        before = self._storms
        self._save(f"storm-{before:05d}")  # what follows begins with CLEAR and all menus
        bodies = ["PAX,0", "Slave,0", "SB,0,", "CLEAR", *traffic.menu_bodies()]
        bodies += [f"SM,{scope},0" for scope in (1, 2, 3)]
        bodies += [f"SH,{chart},1" for chart in (0, 1, 2)] + ["SK,Start", "DB,KILLBOX"]
        self._sim.type([traffic.raw_message(body) for body in bodies])
        self._close_all()
        self._show_displays()
        self._press("Main Menu")
        self._wait(lambda: not self._plugs, "ports", self._check)
        time.sleep(1.2)
        self._measure()

    def _close_all(self) -> None:
        end = time.monotonic() + 4 * self.limits.answer
        self._marker += 1
        while True:
            # The marker comes after everything that still waits in the simulator.
            self._sim.type(
                [traffic.raw_message("DB,KILLBOX"), checks.marker(self._marker), checks.PROBE]
            )
            time.sleep(0.1)
            shown = self._panel.ask("b", self.limits.turn)
            others = [window for window in shown["windows"] if window != "MainWindow"]
            sent = self.talk.marker == self._marker
            if not others and sent and self.talk.open_probes() == 0:
                return
            if others:
                self._close_one(shown)
            self._check()
            if time.monotonic() > end:
                raise Failure(f"what is on the screen cannot be closed: {shown}")

    # A display that is hidden keeps its pictures in the size that it had when it was last shown: up
    # to 6 MB in all. So that the rests can be compared, each shows all displays in the same way.
    def _show_displays(self) -> None:
        bodies = ["ST,1", "SP,0,0", "SP,1,0", "SP,2,0"]
        bodies += [f"{word},{scope},1" for word in ("SQ", "SM") for scope in (1, 2, 3)]
        self._sim.type([traffic.raw_message(body) for body in bodies])
        for view in ("Main Menu", "Scopes", "Spectrum", "Menu"):
            self._press(view)
            time.sleep(_VIEW_SECONDS)
        self._sim.type([traffic.raw_message(f"SM,{scope},0") for scope in (1, 2, 3)])

    # Presses a button of the status bar.
    def _press(self, text: str) -> None:
        shown = self._panel.ask("b", self.limits.turn)
        for button in shown["buttons"]:
            if button["text"] == text and button["y"] > _STATUS_BAR:
                point = (button["x"], button["y"])
                self._perform({"kind": "button", "points": [point], "hold": 0.0})
                return
        raise Failure(f"there is no button {text}: {shown}")

    def _measure(self) -> None:
        self._recorder.note("rest")
        cpu = self._panel.cpu_seconds()
        begin = time.monotonic()
        time.sleep(1.0)
        share = (self._panel.cpu_seconds() - cpu) / (time.monotonic() - begin)
        counts = self._panel.ask("n", self.limits.turn)
        self.rests.append(
            checks.Rest(
                time.monotonic() - self._started,
                self._panel.resident_kb(),
                counts["heap"] / 1024,
                counts["large"] / 1024,
                counts["gaps"] / 1024,
                len(self._panel.files()),
                counts["timers"],
                counts["widgets"],
                counts["objects"],
                share,
            )
        )
        if share > self.limits.cpu:
            raise Failure(f"at rest the panel takes {100 * share:.1f} % of a core")

    # The end

    def lose_main_port(self) -> None:
        """Pulls the plug of the main unit's line in the middle of a storm, and ends the panel."""
        self.steps["main port lost"] += 1
        chance = random.Random(f"{self.seed}/{self.number}/end")
        self.storm(chance.uniform(0.5, 2.0))
        self._recorder.note("unplug", recording.MAIN_PORT)
        self._sim.type(["unplug ttyO1"])
        self._wait(lambda: self.log.lost["ttyO1"] == 1, "loss of ttyO1")
        self.talk.forget_probes()
        for _ in range(chance.randint(3, 10)):
            shown = self._panel.ask("b", self.limits.turn)
            if shown["buttons"]:
                button = chance.choice(shown["buttons"])
                point = (button["x"], button["y"])
                self._perform({"kind": "button", "points": [point], "hold": 0.0})
        self._sim.type(["plug ttyO1"])  # the panel does not open it again
        time.sleep(0.3)
        if self.log.lost["ttyO1"] != 1:
            raise Failure(f"the loss of ttyO1 was logged {self.log.lost['ttyO1']} times")
        status = self._panel.terminate(self.limits.end)
        if status != 0:
            raise Failure(f"SIGTERM: exit status {status}")
        for faults in (self.talk.faults, self.log.faults):
            if faults:
                raise Failure(faults[0])

    # Recordings

    def _save(self, name: str) -> None:
        lines = self.talk.take_record()
        self._recorder.save(name, lines, self.talk.offset())
        (self._out / f"{name}.line").write_text("\n".join(lines) + "\n", "latin-1")
        for old in sorted(self._out.glob("storm-*.line"))[:-KEPT_CONVERSATIONS]:
            old.unlink()

    def _wait(self, ready: Any, what: str, also: Any = None) -> None:
        end = time.monotonic() + 60.0
        while not ready():
            if time.monotonic() > end:
                raise Failure(f"waited in vain: {what}")
            if also is not None:
                also()
            time.sleep(_TICK)


def _path(points: list[tuple[int, int]], chance: random.Random) -> list[tuple[int, int]]:
    """Returns the points of a drag, between some of these points."""
    path = []
    for start, end in zip(points[:3], points[1:4]):
        for part in range(chance.randint(2, 8)):
            share = part / 8
            path.append(
                (
                    round(start[0] + share * (end[0] - start[0])),
                    round(start[1] + share * (end[1] - start[1])),
                )
            )
    return path


def connect_readers(home: pathlib.Path) -> list[socket.socket]:
    """Connects to the sockets that deliver spectra and scope data. These readers never read."""
    readers = []
    for name in ("scopes", "spectra"):
        reader = socket.socket(socket.AF_UNIX)
        end = time.monotonic() + 5.0
        while True:
            try:
                reader.connect(str(home / name))
                readers.append(reader)
                break
            except OSError:
                if time.monotonic() > end:
                    reader.close()
                    break
                time.sleep(0.1)
    return readers
