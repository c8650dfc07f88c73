"""What a running panel shows, by its socket for a look from afar: whether what is measured is there.

src/wire/RemoteProtocol.h describes what goes over the socket.
"""

from __future__ import annotations

import pathlib
import socket
import struct
import time

_LONG = 30.0  # seconds that an answer may take
_HELLO, _RECTANGLE, _END = 1, 2, 3
_WANT_WHOLE = struct.pack(">IBB", 2, 16, 1)
_PIXEL = 4  # bytes
_APART = 0.5  # seconds between two pictures of what moves
VARIABLE = "QN740_REMOTE_SOCKET"


class Unmeasured(Exception):
    """What a row measures did not happen."""


class Picture:
    """A picture of the panel's window."""

    def __init__(self, width: int, height: int) -> None:
        self.width, self.height = width, height
        self.pixels = bytearray(width * height * _PIXEL)

    def put(self, contents: bytes) -> None:
        """Takes a rectangle as it comes from the panel."""
        x, y, width, height = struct.unpack(">4H", contents[:8])
        for row in range(height):
            at = ((y + row) * self.width + x) * _PIXEL
            begin = 8 + row * width * _PIXEL
            self.pixels[at:at + width * _PIXEL] = contents[begin:begin + width * _PIXEL]

    def differs(self, other: Picture) -> list[bool]:
        """Whether the left, the middle and the right third differ from those of another picture."""
        third = self.width // 3 * _PIXEL
        line = self.width * _PIXEL
        return [any(self.pixels[at + part * third:at + (part + 1) * third]
                    != other.pixels[at + part * third:at + (part + 1) * third]
                    for at in range(0, self.height * line, line)) for part in range(3)]

    def changed(self, other: Picture) -> float:
        """The share of the pixels that another picture has otherwise."""
        ours, theirs = memoryview(self.pixels).cast("I"), memoryview(other.pixels).cast("I")
        return sum(map(int.__ne__, ours, theirs)) / len(ours)


class Look:
    """Looks at a panel as long as it is open. A panel at which nobody looks does no work for it."""

    def __init__(self, path: pathlib.Path) -> None:
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._socket.settimeout(_LONG)
        self._socket.connect(str(path))
        kind, contents = self._message()
        if kind != _HELLO:
            raise Unmeasured("the panel gives no picture")
        self._size = struct.unpack(">2H", contents[7:11])

    def __enter__(self) -> Look:
        return self

    def __exit__(self, *_: object) -> None:
        self._socket.close()

    def picture(self) -> Picture:
        """Returns what is shown now."""
        picture = Picture(*self._size)
        self._socket.sendall(_WANT_WHOLE)
        while True:
            kind, contents = self._message()
            if kind == _RECTANGLE:
                picture.put(contents)
            elif kind == _END:
                return picture

    def moving(self) -> list[bool]:
        """In which thirds of the window something moves."""
        before = self.picture()
        time.sleep(_APART)
        return self.picture().differs(before)

    def _message(self) -> tuple[int, bytes]:
        length, kind = struct.unpack(">IB", self._bytes(5))
        return kind, self._bytes(length - 1)

    def _bytes(self, count: int) -> bytes:
        found = bytearray()
        while len(found) < count:
            piece = self._socket.recv(count - len(found))
            if not piece:
                raise Unmeasured("the panel has ended")
            found += piece
        return bytes(found)
