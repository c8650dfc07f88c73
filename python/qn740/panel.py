"""The panel program, started for a unit."""

from __future__ import annotations

import os
import pathlib
import shutil
import subprocess
import tempfile
from collections.abc import Mapping, Sequence

from .errors import PanelError
from .finger import Finger, free_port
from .unit import Unit

_IGNORED = "qn740-ignored: "
_END_SECONDS = 5.0


class Panel:
    """Runs the panel until the end of a `with` statement.

    `program` is the panel's path; without one it is what the environment variable QN740_PANEL names,
    or "qn740-panel" of the PATH. The panel needs no screen; with `touch` its screen can be reached
    by `finger()`. Settings, log and everything else that it leaves go to a directory of its own, which
    is removed. The start-up picture is left out.

    `arguments` are the program's own, as "-noK7150"; `environment` is added to that of this process.
    """

    def __init__(
        self,
        unit: Unit,
        program: str | pathlib.Path | None = None,
        *,
        touch: bool = False,
        arguments: Sequence[str] = (),
        environment: Mapping[str, str] | None = None,
    ) -> None:
        if unit.directory is None:
            raise PanelError("a unit on a real port has a panel of its own")
        path = str(program or os.environ.get("QN740_PANEL") or "qn740-panel")
        self._port = free_port() if touch else 0
        self._home = tempfile.mkdtemp(prefix="qn740-panel-")
        self._log = pathlib.Path(self._home) / "log"
        platform = f"vnc:size=800x480:port={self._port}" if touch else "offscreen"
        all_variables = {
            **os.environ,
            "QN740_DEV": str(unit.directory),
            "QN740_SPLASH_MS": "0",
            "QT_QPA_PLATFORM": platform,
            "QT_LOGGING_RULES": "qn740-ignored.debug=true",
            "XDG_RUNTIME_DIR": self._home,
            "XDG_CONFIG_HOME": self._home,
            **(environment or {}),
        }
        all_variables.pop("QT_MESSAGE_PATTERN", None)
        try:
            with self._log.open("wb") as log:
                self._process = subprocess.Popen(
                    [path, *arguments],
                    env=all_variables,
                    stdin=subprocess.DEVNULL,
                    stderr=log,
                )
        except OSError as error:
            shutil.rmtree(self._home, ignore_errors=True)
            raise PanelError(f"{path}: {error.strerror}") from error

    def close(self) -> None:
        """Ends the panel; more than once does no harm."""
        if self._process.poll() is None:
            self._process.terminate()
            try:
                self._process.wait(_END_SECONDS)
            except subprocess.TimeoutExpired:
                self._process.kill()
                self._process.wait()
        shutil.rmtree(self._home, ignore_errors=True)

    def __enter__(self) -> Panel:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    @property
    def is_running(self) -> bool:
        """Whether the program runs."""
        return self._process.poll() is None

    def log(self) -> str:
        """Returns what the panel has written on its standard error so far."""
        return self._log.read_text("utf-8", "replace")

    def ignored(self) -> list[str]:
        """Returns why the panel has ignored messages so far, as "SK: no menu Nowhere".

        The panel writes this when it handles a message. Ask it something with an answer first, as
        `unit.send("PING")` and `unit.expect("PONG")`, to be sure that it has come so far.
        """
        lines = self.log().splitlines()
        return [line[len(_IGNORED) :] for line in lines if line.startswith(_IGNORED)]

    def finger(self) -> Finger:
        """Returns a finger on the panel's screen. The panel must have been started with `touch`."""
        if not self._port:
            raise PanelError("the panel was started without touch")
        return Finger(self._port)
