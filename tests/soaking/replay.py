"""The same again from a recording: every byte on every port, every plug, every touch."""

from __future__ import annotations

import collections
import pathlib
import re
import tempfile
import time

from qn740.finger import free_port

from . import checks, plan, recording
from .finger import SoakFinger
from .life import Limits, connect_readers
from .ports import Port
from .programs import Failure, PanelProgram

_FOLLOW_SECONDS = 2.0  # for the panel to take what has come
_ANSWER_SECONDS = 1.0  # a reply waits so long for its request
ANOTHER_COURSE = 2
_MAX_MISSED = 10
_TRIES = 3  # when the panel takes another course than then
_TURN = 0.002
_PIECE = re.compile("\x02[^\x02\x04]*\x04|[^\x02\x04]+|[\x02\x04]")


def replay(
    binaries: pathlib.Path,
    directory: pathlib.Path,
    storms: int | None,
    limits: Limits,
    planted: str = "",
) -> int:
    """Plays a recording, or its last storms, to a new panel.

    Returns 0 when nothing went wrong, 1 when something did, and ANOTHER_COURSE when the panel did not
    follow the recording.
    """
    events = recording.as_handled(recording.load(directory, storms))
    if not events:
        print(f"replay: {directory} has no recording")
        return 1
    for _ in range(_TRIES):
        with tempfile.TemporaryDirectory(prefix="qn740-soak-") as home:
            player = Player(binaries, pathlib.Path(home), limits, planted)
            try:
                player.play(events)
            except Failure as failure:
                print(f"replay: FAILED: {failure}")
                return 1
            except Astray:
                pass
            finally:
                print(f"replay: {player.report()}", flush=True)
                player.close()
        if player.has_followed():
            print("replay: nothing went wrong")
            return 0
    print("replay: nothing went wrong, but the panel took another course each time")
    return ANOTHER_COURSE


class Astray(Exception):
    """The panel has taken another course."""


class Player:
    """A panel with ports on which everything comes again.

    All that the panel takes, it takes in the same order as before: a touch waits until what came
    before it has been handled, what comes behind it waits until a window was told of it, and a reply
    waits for its request. So the panel goes through the same states although it is not exactly as
    fast as before.
    """

    def __init__(
        self, binaries: pathlib.Path, home: pathlib.Path, limits: Limits, planted: str
    ) -> None:
        self._limits = limits
        self._log = checks.Log([])
        self._talk = checks.Conversation()
        self._unfinished = ""  # what the panel has sent after the last whole message
        self._touches = self._missed = self._played = 0
        self._spied = home / "spied"
        self._spied_up_to = 0
        self._sent: collections.Counter[str] = collections.Counter()  # bytes that the panel must read
        self._read: collections.Counter[str] = collections.Counter()
        self._told = 0  # touches
        self._at = (-1, -1, 0)  # the finger
        self._begin = time.monotonic()
        devices = home / "dev"
        devices.mkdir()
        names = (recording.MAIN_PORT, *plan.PORTS)
        self._ports = {name: Port(devices, name) for name in names}
        for port in self._ports.values():
            port.plug()
        screen = free_port()
        spy = {"QN740_SPY_FAIL": planted, "QN740_SPY_RECORD": str(self._spied)}
        self._panel = PanelProgram(binaries, devices, home, screen, self._log.take, spy)
        self._finger = SoakFinger(screen)
        self._readers = connect_readers(home)

    def close(self) -> None:
        """Ends the panel."""
        for reader in self._readers:
            reader.close()
        self._finger.close()
        if self._panel.exit_status() is None:
            self._panel.terminate(self._limits.end)
        for port in self._ports.values():
            port.unplug()

    def has_followed(self) -> bool:
        """Whether the panel has taken all in the same order as before."""
        return self._missed == 0

    def report(self) -> str:
        """Returns what was played, and how well the panel followed."""
        return (
            f"{self._played} events in {time.monotonic() - self._begin:.0f} s, {self._touches} touches;"
            f" {self._missed} times the panel did not follow"
        )

    def play(self, events: list[recording.Event]) -> None:
        """Raises Failure when something happens that must not."""
        while not self._ports[recording.MAIN_PORT].is_open():
            self._serve()
        self._begin = time.monotonic()
        lag = self._begin - events[0].at
        unseen = lifted(events)
        for number, event in enumerate(events):
            self._serve_until(event.at + lag)
            begin = time.monotonic()
            self._await_panel(event)
            lag += time.monotonic() - begin
            self._perform(event)
            if number in unseen:
                self._move((*event.finger[:2], 0), False)
            self._played += 1
        self._serve_until(time.monotonic() + 1.0)
        self._panel.ask("n", self._limits.turn)
        status = self._panel.terminate(self._limits.end)
        self._check_words()
        if status != 0:
            raise Failure(f"SIGTERM: exit status {status}")

    def _perform(self, event: recording.Event) -> None:
        if event.kind == "finger":
            self._move(event.finger, True)
        elif event.kind == "rest":
            self._check_rest()
        elif event.kind == "said":
            self._take_trace("in", event.data)
        elif event.kind == "data":
            data = event.data.encode("latin-1")
            self._sent[event.port] += len(data)
            self._ports[event.port].answer(event.answers, time.monotonic() + _ANSWER_SECONDS, data)
            if event.port == "ttyUSB4":
                self._talk.note_re_sent(data)
        elif event.kind == "plug":
            self._ports[event.port].plug()
        else:
            self._ports[event.port].unplug()
            self._sent[event.port] = self._read[event.port]
            if event.port == recording.MAIN_PORT:
                self._talk.forget_probes()

    # Qt tells no window of a finger that has not moved; then another one was told of it meanwhile.
    def _move(self, finger: tuple[int, int, int], is_told: bool) -> None:
        if finger != self._at:
            self._at = finger
            self._touches += is_told
            self._finger.move(*finger)

    # Lets the panel take what came before the event.
    def _await_panel(self, event: recording.Event) -> None:
        end = time.monotonic() + _FOLLOW_SECONDS
        while not self._has_followed(event):
            if time.monotonic() > end:
                self._missed += 1
                if self._missed == _MAX_MISSED:
                    raise Astray
                self._told = self._touches
                self._read = self._sent.copy()
            self._serve()
        if event.kind == "finger":
            self._let_handle()

    def _has_followed(self, event: recording.Event) -> bool:
        if event.kind == "finger":
            return self._told >= self._touches and all(
                self._read[port] >= count for port, count in self._sent.items()
            )
        return event.kind != "data" or self._told >= self._touches

    # Lets the panel handle what it has read. It answers once in a turn of its event loop, in which it also
    # handles some; behind an editor that holds the line, nothing more is handled.
    def _let_handle(self) -> None:
        before = -1
        unread = self._panel.ask("u", self._limits.turn)["unread"]
        while unread not in (0, before):
            before = unread
            unread = self._panel.ask("u", self._limits.turn)["unread"]

    # Counts what the panel has taken meanwhile.
    def _take_spied(self) -> None:
        if not self._spied.exists():
            return
        with self._spied.open("r", encoding="ascii") as file:
            file.seek(self._spied_up_to)
            for line in file:
                if not line.endswith("\n"):
                    break  # the rest of it is not written yet
                self._spied_up_to += len(line)
                event = recording.event_of(line.rstrip("\n"))
                self._told += event.kind == "finger"
                self._read[event.port] += len(event.data)

    def _serve_until(self, end: float) -> None:
        while time.monotonic() < end:
            self._serve()

    def _serve(self) -> None:
        for port in self._ports.values():
            data = port.serve()
            if port.name == recording.MAIN_PORT and data:
                self._take_from_panel(data.decode("latin-1"))
        self._take_spied()
        self._check()
        time.sleep(_TURN)

    def _take_from_panel(self, text: str) -> None:
        self._unfinished += text
        whole = self._unfinished.rfind("\x04") + 1
        for piece in _PIECE.findall(self._unfinished[:whole]):
            self._take_trace("out", piece)
        self._unfinished = self._unfinished[whole:]

    def _take_trace(self, direction: str, text: str) -> None:
        printable = checks.printable(text)
        self._talk.take(f"trace: {time.monotonic():.6f} {direction} {printable}")

    def _check(self) -> None:
        self._check_words()
        if self._panel.exit_status() is not None:
            raise Failure(f"the panel has ended with {self._panel.exit_status()}")
        # What holds the answer in a panel that took another course is not known.
        if self._missed == 0 and self._talk.oldest() > self._limits.answer:
            shown = self._panel.ask("b", self._limits.turn)
            if not self._talk.may_be_held() or not shown["modal"]:
                raise Failure(f"{self._talk.open_probes()} PINGs have had no answer")
            self._talk.forgive()

    def _check_words(self) -> None:
        for faults in (self._log.faults, self._talk.faults):
            if faults:
                raise Failure(faults[0])

    def _check_rest(self) -> None:
        cpu = self._panel.cpu_seconds()
        begin = time.monotonic()
        self._serve_until(begin + 1.0)
        share = (self._panel.cpu_seconds() - cpu) / (time.monotonic() - begin)
        if share > self._limits.cpu:
            raise Failure(f"at rest the panel takes {100 * share:.1f} % of a core")


def lifted(events: list[recording.Event]) -> set[int]:
    """Returns the numbers of those events behind which the finger was lifted without any window being
    told, because the touch has opened a modal one."""
    touches = [(number, event) for number, event in enumerate(events) if event.kind == "finger"]
    unseen = set()
    for (number, event), (_, after) in zip(touches, touches[1:]):
        moved = event.finger[:2] != after.finger[:2]
        if event.finger[2] == 1 and moved != bool(after.finger[2]):
            unseen.add(number)
    return unseen
