"""Ports of the panel that the soak makes itself, and which of them the panel has open."""

from __future__ import annotations

import os
import pathlib
import pty
import select
import time
import tty

_READ_SIZE = 1 << 16


class Port:
    """A device of the panel: a pseudo-terminal whose other end the soak has."""

    def __init__(self, devices: pathlib.Path, name: str) -> None:
        self.name = name
        self._link = devices / name
        self._master = -1
        self._waiting = b""
        self._come = b""  # from the panel, for serve()
        self._held: list[tuple[int, float, bytes]] = []
        self.received = 0  # bytes from the panel, since the device was made

    def plug(self) -> None:
        """Makes the device; nothing happens to one that is there."""
        if self._master >= 0:
            return
        self._master, slave = pty.openpty()
        tty.setraw(self._master)
        os.set_blocking(self._master, False)
        self._link.symlink_to(os.ttyname(slave))
        os.close(slave)

    def unplug(self) -> None:
        """Hangs up and removes the device."""
        if self._master >= 0:
            self._link.unlink(missing_ok=True)
            os.close(self._master)
            self._master = -1
            self._waiting = b""
            self._held.clear()
            self.received = 0

    def is_open(self) -> bool:
        """Whether the panel has the device open."""
        if self._master < 0:
            return False
        poll = select.poll()
        poll.register(self._master, select.POLLIN)
        return not any(what & select.POLLHUP for _, what in poll.poll(0))

    def write(self, data: bytes) -> None:
        """Sends bytes, as far as somebody has the device open. What is not read yet waits for serve()."""
        if self._master >= 0:
            self._waiting += data
            self._exchange()

    def answer(self, received: int, until: float, data: bytes) -> None:
        """Sends bytes when so many have come from the panel, or when this time has come."""
        self._held.append((received, until, data))
        self._exchange()

    def serve(self) -> bytes:
        """Sends what waits. Returns what has come since the last call."""
        self._exchange()
        come, self._come = self._come, b""
        return come

    def _exchange(self) -> None:
        if self._master < 0:
            return
        data = b""
        try:
            data = os.read(self._master, _READ_SIZE)
        except OSError:
            pass
        self.received += len(data)
        self._come += data
        while self._held and (self.received >= self._held[0][0] or time.monotonic() > self._held[0][1]):
            self._waiting += self._held.pop(0)[2]
        try:
            while self._waiting:
                self._waiting = self._waiting[os.write(self._master, self._waiting) :]
        except OSError:
            pass


def targets(devices: pathlib.Path) -> dict[str, str]:
    """Returns what is behind the name of each device, such as "/dev/pts/7"."""
    found = {}
    for link in devices.iterdir():
        try:
            found[link.name] = os.readlink(link)
        except OSError:
            continue  # unplugged meanwhile
    return found
