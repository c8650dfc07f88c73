"""A finger on the panel's screen, through the remote screen of Qt's VNC platform."""

from __future__ import annotations

import socket
import struct
import time

from .errors import PanelError

_RETRY = 0.05  # seconds
_GRID_TOP = 23  # of a menu's first row of keys, in pixels
_CELL_WIDTH = 129.5
_CELL_HEIGHT = 68


def free_port() -> int:
    """Returns a port on this computer that nobody uses."""
    with socket.socket() as server:
        server.bind(("127.0.0.1", 0))
        port: int = server.getsockname()[1]
        return port


class Finger:
    """Touches the panel's screen at points of its 800 × 480 pixels.

    It only touches and sees nothing: what a touch has done is for `Unit.expect()` to say. Use it in a
    `with` statement.
    """

    def __init__(self, port: int, timeout: float = 20.0) -> None:
        end = time.monotonic() + timeout
        while True:
            try:
                self._socket = socket.create_connection(("127.0.0.1", port), timeout)
                break
            except OSError as error:
                if time.monotonic() > end:
                    raise PanelError(f"nobody listens on port {port}") from error
                time.sleep(_RETRY)
        try:
            self._shake_hands()
        except (OSError, PanelError):
            self._socket.close()
            raise

    def close(self) -> None:
        """Closes the connection; the panel goes on."""
        self._socket.close()

    def __enter__(self) -> Finger:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def press(self, x: int, y: int) -> None:
        """Puts the finger down."""
        self._point(x, y, 0)
        self._point(x, y, 1)

    def release(self, x: int, y: int) -> None:
        """Lifts the finger."""
        self._point(x, y, 0)

    def tap(self, x: int, y: int) -> None:
        """Touches a point and lifts the finger again."""
        self.press(x, y)
        self.release(x, y)

    def tap_key(self, row: int, column: int) -> None:
        """Touches a key of a menu page, in one of its six rows and six columns, each from 0."""
        if not (0 <= row < 6 and 0 <= column < 6):
            raise ValueError(f"a page has no cell {row}, {column}")
        self.tap(int((column + 0.5) * _CELL_WIDTH) + 12, _GRID_TOP + int((row + 0.5) * _CELL_HEIGHT))

    def _point(self, x: int, y: int, buttons: int) -> None:
        try:
            self._socket.sendall(struct.pack(">BBHH", 5, buttons, x, y))
        except OSError as error:
            raise PanelError("the panel's screen has gone") from error

    def _shake_hands(self) -> None:
        version = self._take(12)
        if not version.startswith(b"RFB 003."):
            raise PanelError("no panel's screen listens there")
        minor = int(version[8:11])
        old = minor < 7
        self._socket.sendall(b"RFB 003.003\n" if old else b"RFB 003.008\n" if minor >= 8 else version)
        if old:
            self._take(4)
        else:
            self._take(self._take(1)[0])
            self._socket.sendall(b"\x01")  # no password
            if minor >= 8:
                self._take(4)
        self._socket.sendall(b"\x01")  # shared
        header = self._take(24)
        self._take(int.from_bytes(header[20:], "big"))

    def _take(self, count: int) -> bytes:
        data = b""
        while len(data) < count:
            more = self._socket.recv(count - len(data))
            if not more:
                raise PanelError("the panel's screen has gone")
            data += more
        return data
