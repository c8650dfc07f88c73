"""The ports of the panel: which it has open, and the one that the simulator does not have."""

from __future__ import annotations

import os
import pathlib
import pty
import tty

_RESEND = "ttyUSB4"


class ResendPort:
    """The device on which finished messages come that the panel passes on to the main unit."""

    def __init__(self, devices: pathlib.Path) -> None:
        self._link = devices / _RESEND
        self._master = -1

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

    def write(self, data: bytes) -> None:
        """Sends bytes, as far as somebody has the device open and reads them."""
        if self._master >= 0:
            try:
                os.write(self._master, data)
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
