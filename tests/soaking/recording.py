"""What a replay needs: all that went to the panel, on every port and through its screen."""

from __future__ import annotations

import dataclasses
import gzip
import json
import pathlib
import time
from typing import Any

from . import checks

MAIN_PORT = "ttyO1"
_SUFFIX = ".events.gz"
_SAID_LATE = 0.05  # seconds: by so much at most, the simulator's output comes late


@dataclasses.dataclass(frozen=True)
class Event:
    """Something that happened to the panel. Times are those of the monotonic clock, in seconds."""

    at: float
    kind: str  # "data", "said", "plug", "unplug", "finger" or "rest"
    port: str = ""
    data: str = ""  # a character for each byte
    answers: int = 0  # the bytes that the panel had written to the port by then, since it opened it
    finger: tuple[int, int, int] = (0, 0, 0)  # x, y, and 1 while it is down
    unread: int = 0  # bytes of the main port that the panel had read by then and not handled


class Recorder:
    """Takes notes of what happens to a panel, and writes a file of them after each storm.

    What the panel has read, and the touches that its windows were told of, come from the spy in it: in
    their order, and when the panel took them.
    """

    def __init__(self, directory: pathlib.Path) -> None:
        self._directory = directory
        self._events: list[Event] = []
        self.spy_file = directory / "spied"  # which the spy writes

    def note(self, kind: str, port: str = "") -> None:
        """Notes that something happens now."""
        self._events.append(Event(time.monotonic(), kind, port))

    def save(self, name: str, trace: list[str], offset: float) -> None:
        """Writes what has happened since the last time.

        The trace is what the simulator has printed of the main port, from which a replay knows the
        messages; the offset leads from its times to those of the monotonic clock.
        """
        events, self._events = self._events, []
        for line in trace:
            said = checks.TRACE.fullmatch(line)
            if said and said[2] == "in":
                data = checks.plain(said[3])
                events.append(Event(float(said[1]) + offset, "said", MAIN_PORT, data))
        events += self._spied()
        events.sort(key=lambda event: event.at)
        with gzip.open(self._directory / (name + _SUFFIX), "wt", 4, "ascii") as file:
            for event in events:
                file.write(json.dumps(_short(event)) + "\n")

    def _spied(self) -> list[Event]:
        if not self.spy_file.exists():
            return []
        taken = self.spy_file.rename(self.spy_file.with_suffix(".taken"))
        events = [event_of(line) for line in taken.read_text("ascii").splitlines()]
        taken.unlink()
        return events


def event_of(line: str) -> Event:
    """Returns what a line of the spy's says: what the panel has read, or where its finger is."""
    at, what, *numbers = line.split(" ")
    if what == "finger":
        x, y, down, unread = map(int, numbers)
        return Event(float(at), "finger", finger=(x, y, down), unread=unread)
    data = bytes.fromhex(numbers[1]).decode("latin-1")
    return Event(float(at), "data", what, data, int(numbers[0]))


def load(directory: pathlib.Path, storms: int | None) -> list[Event]:
    """Returns what happened in the last storms, or in all."""
    files = sorted(directory.glob("*" + _SUFFIX))
    events = []
    for path in files[-storms:] if storms else files:
        with gzip.open(path, "rt", encoding="ascii") as file:
            for line in file:
                fields = json.loads(line)
                fields["finger"] = tuple(fields.get("finger", (0, 0, 0)))
                events.append(Event(**fields))
    return events


def as_handled(events: list[Event]) -> list[Event]:
    """Returns the events in the order in which the panel handled them: behind a touch, what it had read of
    the main port by then and not handled yet; and what the simulator said before it was read."""
    ordered: list[Event] = []
    for event in _said_first(events):
        ordered.append(event)
        touch = place = len(ordered) - 1
        left = event.unread
        while left > 0 and place > 0:
            place -= 1
            read = ordered[place]
            if read.kind == "data" and read.port == MAIN_PORT:
                handled = max(0, len(read.data) - left)
                left -= len(read.data) - handled
                ordered.append(dataclasses.replace(read, data=read.data[handled:]))
                ordered[place] = dataclasses.replace(read, data=read.data[:handled])
        ordered[touch + 1 :] = reversed(ordered[touch + 1 :])
    return [event for event in ordered if event.kind != "data" or event.data]


def _said_first(events: list[Event]) -> list[Event]:
    """Returns the events with what was said by _SAID_LATE earlier, but not before its port was plugged in or
    out."""
    keyed: list[tuple[float, bool, Event]] = []
    plugged = float("-inf")
    for event in sorted(events, key=lambda event: event.at):
        if event.kind in ("plug", "unplug") and event.port == MAIN_PORT:
            plugged = event.at
        said = event.kind == "said"
        keyed.append((max(event.at - _SAID_LATE, plugged) if said else event.at, said, event))
    return [event for _, _, event in sorted(keyed, key=lambda entry: entry[:2])]


def _short(event: Event) -> dict[str, Any]:
    fields = {"at": round(event.at, 6), "kind": event.kind}
    for name in ("port", "data", "answers", "unread"):
        if getattr(event, name):
            fields[name] = getattr(event, name)
    if event.kind == "finger":
        fields["finger"] = event.finger
    return fields
