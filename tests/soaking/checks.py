"""What is watched all along: the panel's answers, the form of what it says, its log, its memory."""

from __future__ import annotations

import collections
import dataclasses
import re
import statistics
import threading
import time

from . import traffic

PROBE = traffic.raw_line(traffic.EOT + traffic.STX + "PING" + traffic.EOT)
_PROBE_FRAME = "\\x04\\x02PING\\x04"
TRACE = re.compile(r"trace: (\d+\.\d+) (in|out) (.*)")
_MARKER = re.compile("\x04\x02SB,0,Soak (\\d+)\x04")
_HEX = re.compile(r"\\(?:x([0-9a-f]{2})|\\)")
_RECENT = 1 << 20  # characters of the unit's that damaged definitions are looked up in
_CARD_TEXTS = re.compile(r"(?:D1:SPEN:1D2:SPEN:1D2:SPEN:1)+")
_FIXED = re.compile(r"PONG|1\.1\.6\.4|Slave,[0-2]|Main|D[123]:(?:DSDM|NFFT):\d+")
# A number with six decimals or one, a whole number, an address as typed, a name as typed.
_VALUE = re.compile(r"-?\d+(?:\.\d+)?|\d*(?:\.\d*){0,3}|[A-Za-z0-9_ -]*")
# A damaged definition may have lost or doubled a field before its type.
_NO_COMMAND = re.compile(r"(?:AK|IK),(?:[^,]*,){1,3}\d+,,")
_LINKED = (("D1 D2 D3:", ("D1:", "D2:", "D3:")), ("R1 R2:", ("R1:", "R2:")))
WARM_UP_SECONDS = 60.0
_BAD_LOG = re.compile(
    r"Sanitizer|runtime error:|terminate called|ASSERT|Assertion|QObject::|Timers cannot|QPainter::"
    r"|QWidget::|QBackingStore|double free|corrupt|stack smashing",
)
_LOST = re.compile(r"(tty\w+) was lost: (.*)")


def marker(number: int) -> str:
    """Returns the line that lets the simulator send a text by which one sees how far it has come."""
    return traffic.raw_message(f"SB,0,Soak {number}")


def plain(printable: str) -> str:
    """Returns the text of a frame that the simulator has printed."""
    return _HEX.sub(lambda hit: chr(int(hit[1], 16)) if hit[1] else "\\", printable)


def printable(text: str) -> str:
    """Returns a text as the simulator prints it."""
    return "".join(
        one if " " <= one <= "~" and one != "\\" else "\\\\" if one == "\\" else f"\\x{ord(one):02x}"
        for one in text
    )


@dataclasses.dataclass
class Probe:
    """A PING that has no answer yet. Times are the simulator's, in seconds."""

    sent: float
    patience: float  # since when it is waited for
    behind_editor: bool  # what may open an editor went out before it, after the last probe


class Conversation:
    """Follows what the simulator prints. All times are the simulator's, in seconds."""

    def __init__(self) -> None:
        self.lock = threading.Lock()
        self.sent = 0  # pieces that went to the panel
        self.sent_bytes = 0
        self.received = 0  # messages of the panel
        self.pings = 0
        self.answer_times: list[float] = []
        self.held_times: list[float] = []  # of answers that waited for an editor of the unit
        self.faults: list[str] = []
        self.events: collections.Counter[str] = collections.Counter()
        self._begun = ""  # of a message with an STX in it, up to that
        self._re_sent = ""  # what came on the re-send port
        self.marker = 0  # the last one that went to the panel
        self.record: list[str] = []
        self._open: collections.deque[Probe] = collections.deque()
        self._editor_sent = False  # since the last probe, bytes went out that may open an editor
        self._released = 0.0  # when the probe behind such an editor was answered
        self._recent: collections.deque[str] = collections.deque()
        self._recent_size = 0
        self._offset: float | None = None  # from the simulator's time to this process's
        self._commands = {body.split(",")[5] for body in traffic.menu_bodies() if body[:3] == "AK,"}

    def take(self, line: str) -> None:
        """Takes a line of the simulator's output."""
        trace = TRACE.fullmatch(line)
        with self.lock:
            if trace:
                self._note_time(float(trace[1]))
                self.record.append(line)
                if trace[2] == "in":
                    self._take_in(float(trace[1]), trace[3])
                else:
                    self._take_out(float(trace[1]), trace[3])
            elif line.startswith("panel (unframed): "):
                self._take_unframed(plain(line.removeprefix("panel (unframed): ")))
            elif line.startswith("sim: "):
                self.events[line.removeprefix("sim: ")] += 1

    def now(self) -> float:
        """Returns the simulator's time."""
        return time.monotonic() - self.offset()

    def offset(self) -> float:
        """Returns what the simulator's time is behind that of the monotonic clock."""
        return self._offset or 0.0

    def oldest(self) -> float:
        """Returns for how long the oldest probe has had no answer; 0 when none is open."""
        with self.lock:
            return self.now() - self._open[0].patience if self._open else 0.0

    def note_re_sent(self, data: bytes) -> None:
        """Takes note of bytes that go to the re-send port."""
        with self.lock:
            self._re_sent = (self._re_sent + data.decode("latin-1"))[-_RECENT:]

    def open_probes(self) -> int:
        """Returns how many probes have no answer yet."""
        return len(self._open)

    def may_be_held(self) -> bool:
        """Whether an editor of the unit's may keep the panel from answering.

        The panel handles one message after the other, so a probe that was sent after an "IK" is only
        answered when its editor is closed.
        """
        with self.lock:
            return any(probe.behind_editor for probe in self._open)

    def forgive(self) -> None:
        """Starts the time of the open probes anew: an editor of the unit's holds them."""
        with self.lock:
            for probe in self._open:
                probe.patience = self.now()

    def forget_probes(self) -> None:
        """Drops the open probes, because the line is gone."""
        with self.lock:
            self._open.clear()

    def take_record(self) -> list[str]:
        """Returns the conversation since the last call, as lines that the simulator can replay."""
        with self.lock:
            record, self.record = self.record, []
            return record

    def _note_time(self, seconds: float) -> None:
        offset = time.monotonic() - seconds
        self._offset = offset if self._offset is None else min(self._offset, offset)

    def _take_in(self, seconds: float, frame: str) -> None:
        self.sent += 1
        self.sent_bytes += len(frame)
        if frame == _PROBE_FRAME:
            self.pings += 1
            self._open.append(Probe(seconds, seconds, self._editor_sent))
            self._editor_sent = False
            return
        text = plain(frame)
        marker = _MARKER.search(text)
        if marker:
            self.marker = int(marker[1])
        # Noise makes "IK" of other words, and a piece may end between the two letters.
        self._editor_sent = self._editor_sent or "IK" in text or text.endswith("I")
        self._recent.append(text)
        self._recent_size += len(text)
        while self._recent_size > _RECENT:
            self._recent_size -= len(self._recent.popleft())

    def _take_out(self, seconds: float, frame: str) -> None:
        if not (frame.startswith("\\x02") and frame.endswith("\\x04")):
            return  # printed as unframed as well
        self.received += 1
        body = self._begun + plain(frame)[1:-1]
        self._begun = ""
        if body == "PONG":
            self._take_answer(seconds)
        elif not self._is_good(body):
            self.faults.append(f"the panel has sent what no definition asks for: {body!r}")

    def _take_answer(self, seconds: float) -> None:
        if not self._open:
            self.faults.append("the panel has answered a PING that was not sent")
            return
        probe = self._open.popleft()
        if probe.behind_editor:
            self._released = seconds
        held = probe.sent <= self._released
        (self.held_times if held else self.answer_times).append(seconds - probe.sent)

    def _take_unframed(self, text: str) -> None:
        if _CARD_TEXTS.fullmatch(text):
            return
        # A definition that was cut off is one with the message behind it, and its command may have
        # that message's STX in it. The simulator begins a new frame there.
        if text.startswith(traffic.STX) and self._was_sent("," + text[1:] + traffic.STX):
            self._begun += text[1:] + traffic.STX
            return
        self.faults.append(f"the panel has sent this outside a frame: {text!r}")

    def _was_sent(self, text: str) -> bool:
        return any(text in piece for piece in self._recent) or text in "".join(self._recent)

    def _is_good(self, body: str) -> bool:
        if _FIXED.fullmatch(body):
            return True
        bodies = _unlinked(body)
        return any(self._was_re_sent(text) for text in bodies) or any(
            self._is_command(text) for text in bodies
        )

    def _is_command(self, body: str) -> bool:
        for end in range(len(body), -1, -1):
            if not _VALUE.fullmatch(body[end:]):
                continue
            command = body[:end]
            if not command and not self._has_empty_command():
                continue
            if command in self._commands:
                return True
            # A command of a damaged definition, or of one that the soak has made
            if self._was_sent("," + command + ","):
                self._commands.add(command)
                return True
        return self._was_sent("," + body + ",") or self._is_choice(body)

    def _has_empty_command(self) -> bool:
        """Whether a key without a command was defined: it sends its value alone."""
        return any(_NO_COMMAND.search(text) for text in self._recent)

    def _is_choice(self, body: str) -> bool:
        """Whether it is a known command with the damaged value of a choice behind it."""
        known = [command for command in self._commands if command and body.startswith(command)]
        return any(
            any(body[len(command) :] + " " in text for text in self._recent) for command in known
        )

    def _was_re_sent(self, body: str) -> bool:
        return body in self._re_sent


def _unlinked(body: str) -> list[str]:
    """Returns the body as it may have been before the link mode has widened it."""
    bodies = [body]
    for wide, narrow in _LINKED:
        bodies += [text.replace(wide, one) for text in bodies if wide in text for one in narrow]
    return bodies


class Log:
    """Follows what the panel writes on standard error."""

    def __init__(self, copy: list[str]) -> None:
        self._copy = copy
        self.lines = 0
        self.lost: collections.Counter[str] = collections.Counter()
        self.kinds: collections.Counter[str] = collections.Counter()
        self.faults: list[str] = []

    def take(self, line: str) -> None:
        """Takes a line of the log."""
        self.lines += 1
        self._copy.append(line)
        lost = _LOST.search(line)
        if lost:
            self.lost[lost[1]] += 1
        elif _BAD_LOG.search(line):
            self.faults.append(f"the panel has logged: {line}")
        self.kinds[re.sub(r"\d+|\"[^\"]*\"", "#", line)[:70]] += 1


@dataclasses.dataclass(frozen=True)
class Rest:
    """What the panel has while nothing happens."""

    seconds: float  # since it was started
    resident_kb: int
    heap_kb: float  # in use, without large pieces; with a sanitizer all of it
    large_kb: float  # pieces with a mapping of their own, as most pictures have
    gaps_kb: float  # that the allocator keeps between what is in use; 0 with a sanitizer
    files: int
    timers: int
    widgets: int
    objects: int
    cpu: float  # share of one core

    @property
    def whole_kb(self) -> float:
        """All that the allocator has: resident memory cannot grow for long when this does not."""
        return self.heap_kb + self.large_kb + self.gaps_kb


@dataclasses.dataclass(frozen=True)
class Slope:
    """A trend that single outliers do not move: the median of the slopes between all pairs."""

    per_minute: float
    first: float
    last: float


def settled(rests: list[Rest]) -> list[Rest]:
    """Returns the rests after the first minute, or after the first third, which may be later.

    A panel that was touched at random needs minutes until it has shown everything once, and has
    loaded what it needs for that.
    """
    if not rests:
        return []
    begin = max(WARM_UP_SECONDS, rests[-1].seconds / 3)
    return [rest for rest in rests if rest.seconds >= begin]


def slope(rests: list[Rest], what: str) -> Slope:
    """Returns the trend of a member of the rests, after Theil and Sen."""
    points = [(rest.seconds / 60, float(getattr(rest, what))) for rest in rests]
    pairs = [
        (later[1] - earlier[1]) / (later[0] - earlier[0])
        for index, earlier in enumerate(points)
        for later in points[index + 1 :]
        if later[0] - earlier[0] > 0.05
    ]
    return Slope(statistics.median(pairs) if pairs else 0.0, points[0][1], points[-1][1])
