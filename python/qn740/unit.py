"""The main unit."""

from __future__ import annotations

import collections
import pathlib
import re
import shutil
import tempfile
import time
from collections.abc import Callable, Sequence
from typing import Optional, Union

from .errors import ExpectationFailed, MessageError, PanelError
from .keys import Key, Menu
from .line import Line, PseudoTerminal, SerialPort
from .message import Splitter, encode, frame, from_printable, printable

#: What a handler of `Unit.on()` returns: None or True confirms the key's new value, False refuses it,
#: that is answers with the value that holds; one body or several are sent in place of that, and an
#: empty list sends nothing.
Reply = Union[None, bool, str, Sequence[str]]
Handler = Callable[[str], Reply]
Pattern = Union[str, "re.Pattern[str]"]

_VERSION = re.compile(r"\d[\d.]*")
_PANEL_LINE = "ttyO1"
_KEPT = 20  # messages that a failure shows, each way
_POLL = 0.02  # seconds
_WIDE = {"D1 D2 D3:": ("D1:", "D2:", "D3:"), "R1 R2:": ("R1:", "R2:")}


def _addressed(body: str) -> list[str]:
    """Returns the commands to one demodulator or receiver each that a linked command stands for."""
    bodies = [body]
    for wide, single in _WIDE.items():
        bodies = [
            text.replace(wide, one) if wide in text else text
            for text in bodies
            for one in (single if wide in text else ("",))
        ]
    return bodies


def _fits(pattern: Pattern, body: str) -> bool:
    return body == pattern if isinstance(pattern, str) else bool(pattern.fullmatch(body))


def _shown(pattern: Pattern) -> str:
    return printable(pattern) if isinstance(pattern, str) else f"/{pattern.pattern}/"


class Unit:
    """Plays the main unit on the panel's line.

    Without arguments it makes a directory for the panel's devices (`directory`, the panel's
    QN740_DEV), or uses the one that is given; with `port` it uses that serial port. Use it in a `with`
    statement: at the end everything is removed.

    What the panel sends is taken while one of `wait_for_panel()`, `expect()`, `expect_not()`, `run()`
    and `receive()` runs. A key that was made by `menu()` is then confirmed with its new value, unless
    a handler of `on()` says otherwise, or `confirms` is false.

    `last` is the body that came last, `unframed` the text outside frames, `link_mode` the mode of the
    panel's last "Slave,n", `version` the panel's version.
    """

    def __init__(
        self, directory: str | pathlib.Path | None = None, *, port: str | None = None
    ) -> None:
        self.confirms = True
        self.version = ""
        self.link_mode = 0
        self.last = ""
        self._keys: list[Key] = []
        self._handlers: list[tuple[str, Handler]] = []
        self._splitter = Splitter()
        self._inbox: collections.deque[str] = collections.deque()
        self._received: collections.deque[str] = collections.deque(maxlen=_KEPT)
        self._sent: collections.deque[str] = collections.deque(maxlen=_KEPT)
        self._made: Optional[str] = None
        self._line: Line
        self.directory: Optional[pathlib.Path] = None
        if port is not None:
            self._line = SerialPort(port)
            return
        if directory is None:
            self._made = tempfile.mkdtemp(prefix="qn740-")
            directory = self._made
        self.directory = pathlib.Path(directory).absolute()
        self.directory.mkdir(parents=True, exist_ok=True)
        self._line = PseudoTerminal(self.directory / _PANEL_LINE)

    def close(self) -> None:
        """Closes the line and removes the directory, if it was made here."""
        self._line.close()
        if self._made is not None:
            shutil.rmtree(self._made, ignore_errors=True)
            self._made = None

    def __enter__(self) -> Unit:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    @property
    def unframed(self) -> str:
        """Everything that the panel has sent outside frames."""
        return self._splitter.unframed

    # Sending

    def send(self, *bodies: str) -> None:
        """Sends messages. Each is the text between STX and EOT, as "SK,Tuner".

        Raises MessageError for what cannot be sent, PanelError when the panel has gone or does not
        read for ten seconds.
        """
        data = b"".join(frame(body) for body in bodies)
        self._sent.extend(bodies)
        self._write(data)

    def send_raw(self, text: str) -> None:
        """Sends the characters as they are, without a frame."""
        self._sent.append(text)
        self._write(encode(text))

    def send_file(self, path: str | pathlib.Path) -> int:
        """Sends the messages of a menu file, as the simulator does: one a line, "#" begins a comment,
        "wait 500" waits so many milliseconds. Returns the number of messages.

        Raises MessageError for a file in JSON: `qn740-sim --export menu` writes it as lines.
        """
        count = 0
        content = pathlib.Path(path).read_bytes()
        if content.removeprefix(b"\xef\xbb\xbf").lstrip().startswith(b"{"):
            raise MessageError(f"{path} is JSON: qn740-sim --export menu writes it as lines")
        for line in content.splitlines():
            try:
                text = line.decode("utf-8").lstrip("\ufeff \t")
            except UnicodeDecodeError:
                text = line.decode("latin-1").lstrip()
            if not text or text.startswith("#"):
                continue
            word, _, rest = text.partition(" ")
            if word == "wait":
                try:
                    self.run(int(rest) / 1000)
                except ValueError as error:
                    raise MessageError(f"{text!r} has no time in milliseconds") from error
                continue
            self.send(from_printable(text))
            count += 1
        return count

    def menu(self, name: str) -> Menu:
        """Returns a menu that takes keys and sends them. A key that has been there before is
        replaced."""
        return Menu(name, self.send, self._add)

    def clear(self) -> None:
        """Deletes all menus, here and in the panel."""
        self._keys.clear()
        self.send("CLEAR")

    # Receiving

    def on(self, command: str, handler: Handler) -> None:
        """Calls the handler with what follows the command, each time that the panel sends such a
        message: `unit.on("R1:FREQ:", fn)` calls `fn("2250.500000")`.

        What the handler returns is the answer, see `Reply`. In the linked modes the panel addresses
        several at once ("D1 D2 D3:RATE:5"); the handlers of each are called.
        """
        self._handlers.append((command, handler))

    def wait_for_panel(self, timeout: float = 20.0) -> str:
        """Waits until a panel has opened the line and says its version, which is returned. A unit that
        had another panel before begins anew.

        Raises PanelError when there is none in time, in seconds.
        """
        end = time.monotonic() + timeout
        while not self._line.is_open():
            if time.monotonic() > end:
                raise PanelError(f"no panel has opened the line within {timeout:g} s")
            time.sleep(_POLL)
        self._inbox.clear()
        self.send("VER")
        try:
            self.version = self.expect(_VERSION, timeout=max(1.0, end - time.monotonic()))
        except ExpectationFailed as error:
            raise PanelError(f"the panel does not say its version: {error}") from error
        return self.version

    def expect(self, pattern: Pattern, timeout: float = 5.0) -> str:
        """Waits until the panel sends a message, and returns its body. What came before it, since the
        last `expect()`, is then forgotten.

        `pattern` is the whole body, or a regular expression for the whole of it. Raises
        ExpectationFailed when the message does not come in time, in seconds; the text says what came.
        """
        end = time.monotonic() + timeout
        passed: list[str] = []
        try:
            while (body := self._next(end)) is not None:
                if _fits(pattern, body):
                    return body
                passed.append(body)
        except PanelError as error:
            self._inbox.extendleft(reversed(passed))
            raise ExpectationFailed(f"expected {_shown(pattern)}, but {error}{self._story(passed)}")
        self._inbox.extendleft(reversed(passed))
        raise ExpectationFailed(
            f"expected {_shown(pattern)} within {timeout:g} s{self._story(passed)}"
        )

    def expect_not(self, pattern: Pattern, during: float = 0.5) -> None:
        """Fails when the panel sends such a message within so many seconds, or has since the last
        `expect()`. Other messages stay for the next `expect()`."""
        end = time.monotonic() + during
        passed: list[str] = []
        while (body := self._next(end)) is not None:
            passed.append(body)
            if _fits(pattern, body):
                self._inbox.extendleft(reversed(passed))
                raise ExpectationFailed(f"did not expect {printable(body)}{self._story(passed)}")
        self._inbox.extendleft(reversed(passed))

    def receive(self, timeout: float = 5.0) -> str | None:
        """Returns the body of the next message, or None when none comes in time, in seconds."""
        return self._next(time.monotonic() + timeout)

    def forget(self) -> None:
        """Forgets the messages that came and that nobody has expected yet."""
        self.run(0)
        self._inbox.clear()

    def run(self, seconds: float) -> None:
        """Answers the panel for so many seconds. The messages stay for `expect()`."""
        end = time.monotonic() + seconds
        while self._take(end - time.monotonic()) or time.monotonic() < end:
            pass

    def serve(self) -> None:
        """Answers the panel until it has gone."""
        while True:
            try:
                self.run(1.0)
            except PanelError:
                return
            self._inbox.clear()

    # Inside

    def _add(self, key: Key) -> None:
        self._keys = [old for old in self._keys if (old.menu, old.id) != (key.menu, key.id)]
        self._keys.append(key)

    def _write(self, data: bytes, timeout: float = 10.0) -> None:
        end = time.monotonic() + timeout
        while data:
            data = self._line.write(data, _POLL)
            # Both could wait for each other if nobody read here.
            if data and not self._take(0) and time.monotonic() > end:
                raise PanelError(f"the panel has read nothing for {timeout:g} s")

    def _next(self, end: float) -> str | None:
        """Returns the next message that nobody has expected yet; None at the time `end`."""
        while not self._inbox:
            left = end - time.monotonic()
            if not self._take(left) and left <= 0:
                return None
        return self._inbox.popleft()

    def _take(self, timeout: float) -> bool:
        """Reads once, and answers what has come. Returns whether anything has."""
        data = self._line.read(timeout)
        for body in self._splitter.take(data):
            self.last = body
            self._inbox.append(body)
            self._received.append(body)
            self._answer(body)
        return bool(data)

    def _answer(self, body: str) -> None:
        word, _, mode = body.partition(",")
        if word == "Slave" and mode in ("0", "1", "2"):
            self.link_mode = int(mode)
            return
        for text in _addressed(body):
            replies = [
                handler(text[len(command) :])
                for command, handler in self._handlers
                if text.startswith(command)
            ]
            self._reply(text, replies)

    def _reply(self, text: str, replies: list[Reply]) -> None:
        for reply in replies:
            if isinstance(reply, str):
                self.send(reply)
            elif reply is not None and not isinstance(reply, bool):
                self.send(*reply)
        if any(reply is not None and not isinstance(reply, bool) for reply in replies):
            return
        if self.confirms or any(reply is not None for reply in replies):
            self._confirm(text, refused=False in replies)

    def _confirm(self, text: str, refused: bool) -> None:
        fitting = [key for key in self._keys if text.startswith(key.command)]
        longest = max((len(key.command) for key in fitting), default=0)
        value = text[longest:]
        if not value:
            return
        for key in fitting:
            if len(key.command) < longest:
                continue
            if key.command.startswith("SK:"):
                if not refused:
                    self.send(f"SK,{key.command[3:].removesuffix(':')}")
                continue
            if not refused:
                key.take(value)
            self.send(key.holds())

    def _story(self, passed: list[str]) -> str:
        """Returns what a failure says about what was received and sent."""
        lines = ["; received instead:" if passed else "; nothing was received"]
        lines += [f"    {printable(body)}" for body in passed[-_KEPT:]]
        lines += ["  sent before:", *(f"    {printable(body)}" for body in self._sent)]
        return "\n".join(lines)
