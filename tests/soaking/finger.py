"""The operator's finger: taps, holds and drags at random through the remote screen."""

from __future__ import annotations

import struct
import threading
import time
from typing import Any

from qn740 import Finger
from qn740.errors import PanelError

from .programs import Failure

WIDTH = 800
HEIGHT = 480
_PICTURE_SECONDS = 0.5


class SoakFinger(Finger):
    """A finger that also looks at the screen, so that the panel has to send pictures."""

    def __init__(self, port: int) -> None:
        super().__init__(port)
        self._ended = threading.Event()
        self.pictures = 0  # bytes that came
        for work in (self._ask, self._look):
            threading.Thread(target=work, daemon=True).start()

    def close(self) -> None:
        """Ends looking and closes the connection."""
        self._ended.set()
        super().close()

    def perform(self, touch: dict[str, Any]) -> None:
        """Touches the screen as a note says: kind, points, and for how long the first one is held."""
        try:
            self._touch(touch)
        except PanelError as error:
            raise Failure(f"the panel has ended under a touch: {error}") from error

    def _touch(self, touch: dict[str, Any]) -> None:
        points = [(min(WIDTH - 1, max(0, x)), min(HEIGHT - 1, max(0, y))) for x, y in touch["points"]]
        if touch["kind"] == "drag":
            self.drag(points)
        elif touch["hold"] > 0:
            self.hold(*points[0], touch["hold"])
        else:
            self.tap(*points[0])

    def move(self, x: int, y: int, down: int) -> None:
        """Moves the finger to a point, on the screen or above it."""
        try:
            self._point(x, y, down)
        except PanelError as error:
            raise Failure(f"the panel has ended under a touch: {error}") from error

    def hold(self, x: int, y: int, seconds: float) -> None:
        """Touches a point for so long."""
        self.press(x, y)
        time.sleep(seconds)
        self.release(x, y)

    def drag(self, points: list[tuple[int, int]]) -> None:
        """Moves the finger from one point to the next without lifting it."""
        self.press(*points[0])
        for point in points[1:]:
            time.sleep(0.015)
            self._point(*point, 1)
        self.release(*points[-1])

    def _ask(self) -> None:
        while not self._ended.wait(_PICTURE_SECONDS):
            try:
                self._socket.sendall(struct.pack(">BBHHHH", 3, 1, 0, 0, WIDTH, HEIGHT))
            except OSError:
                return

    def _look(self) -> None:
        self._socket.settimeout(None)
        while not self._ended.is_set():
            try:
                data = self._socket.recv(1 << 18)
            except OSError:
                return
            if not data:
                return
            self.pictures += len(data)


def point_of(part_x: float, part_y: float) -> tuple[int, int]:
    """Returns a point of the screen from two numbers from 0 to 1."""
    return min(WIDTH - 1, int(part_x * WIDTH)), min(HEIGHT - 1, int(part_y * HEIGHT))
