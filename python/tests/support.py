"""Another end of a line, held by a test in place of a panel."""

from __future__ import annotations

import os
import pathlib
import select
import time

SECONDS = 20.0


class LineEnd:
    """The panel's end of a unit's line, in plain bytes."""

    def __init__(self, directory: pathlib.Path) -> None:
        self.fd = os.open(directory / "ttyO1", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        self.received = b""

    def close(self) -> None:
        if self.fd >= 0:
            os.close(self.fd)
            self.fd = -1

    def __enter__(self) -> LineEnd:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def write(self, data: bytes) -> None:
        assert os.write(self.fd, data) == len(data)

    def say(self, *bodies: str) -> None:
        self.write(b"".join(b"\x02" + body.encode("latin-1") + b"\x04" for body in bodies))

    def bodies(self, count: int) -> list[str]:
        """Returns the next messages, as soon as there are so many."""
        end = time.monotonic() + SECONDS
        while self.received.count(b"\x04") < count and time.monotonic() < end:
            if select.select([self.fd], [], [], 0.1)[0]:
                self.received += os.read(self.fd, 65536)
        messages = self.received.split(b"\x04")
        self.received = messages.pop()
        return [message.decode("latin-1").removeprefix("\x02") for message in messages]
