"""The main unit's end of the panel's line: a pseudo-terminal, or a real serial port."""

from __future__ import annotations

import os
import pathlib
import select
import termios
import time
import tty

from .errors import PanelError

_READ_SIZE = 4096


class Line:
    """Bytes to and from the panel. Nothing here blocks for longer than it is told to."""

    def __init__(self, fd: int) -> None:
        self._fd = fd
        os.set_blocking(fd, False)

    def close(self) -> None:
        """Closes the line; more than once does no harm."""
        if self._fd >= 0:
            os.close(self._fd)
            self._fd = -1

    def is_open(self) -> bool:
        """Whether somebody is at the other end, as far as can be seen."""
        poll = select.poll()
        poll.register(self._fd, select.POLLIN)
        return not any(event & select.POLLHUP for _, event in poll.poll(0))

    def read(self, timeout: float) -> bytes:
        """Returns what has come, or b"" when nothing comes within the timeout, in seconds.

        Raises PanelError when nobody is at the other end and everything has been read.
        """
        if not select.select([self._fd], [], [], max(0.0, timeout))[0]:
            return b""
        try:
            data = os.read(self._fd, _READ_SIZE)
        except BlockingIOError:
            return b""
        except OSError as error:
            raise PanelError("the panel has closed its line") from error
        if not data:
            raise PanelError("the panel has closed its line")
        return data

    def write(self, data: bytes, timeout: float) -> bytes:
        """Writes the bytes. Returns what is left of them when the other end does not read for so
        many seconds.

        Raises PanelError when nobody is at the other end.
        """
        end = time.monotonic() + timeout
        while data:
            left = max(0.0, end - time.monotonic())
            if not select.select([], [self._fd], [], left)[1]:
                break
            try:
                data = data[os.write(self._fd, data) :]
            except BlockingIOError:
                pass
            except OSError as error:
                raise PanelError("the panel has closed its line") from error
        return data


class PseudoTerminal(Line):
    """A pseudo-terminal with a link to it, which the panel opens as its port."""

    def __init__(self, link: pathlib.Path) -> None:
        master, slave = os.openpty()
        tty.setraw(master)
        path = os.ttyname(slave)
        # A terminal that nobody has opened yet looks as if it were open; one that was closed does not.
        os.close(slave)
        super().__init__(master)
        self.link = link
        link.symlink_to(path)

    def close(self) -> None:
        super().close()
        self.link.unlink(missing_ok=True)


class SerialPort(Line):
    """A real serial port, with 115200 baud, 8 data bits, no parity and 1 stop bit."""

    def __init__(self, path: str) -> None:
        try:
            fd = os.open(path, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        except OSError as error:
            raise PanelError(f"{path}: {error.strerror}") from error
        try:
            tty.setraw(fd)
            settings = termios.tcgetattr(fd)
            settings[2] &= ~(termios.CSTOPB | termios.PARENB | termios.CRTSCTS)
            settings[2] |= termios.CLOCAL | termios.CREAD
            settings[4] = settings[5] = termios.B115200
            termios.tcsetattr(fd, termios.TCSANOW, settings)
        except termios.error as error:
            os.close(fd)
            raise PanelError(f"{path}: is no serial port") from error
        super().__init__(fd)
