"""The simulator and the panel as processes."""

from __future__ import annotations

import json
import os
import pathlib
import select
import signal
import subprocess
import threading
import time
from collections.abc import Callable
from typing import Any

_READ_SIZE = 1 << 16
_LEAKS = pathlib.Path(__file__).resolve().parent / "lsan.supp"


class Failure(Exception):
    """Something that must not happen has happened."""


def _follow(stream: Any, take: Callable[[str], None]) -> threading.Thread:
    def work() -> None:
        for line in stream:
            take(line.decode("latin-1").rstrip("\n"))

    thread = threading.Thread(target=work, daemon=True)
    thread.start()
    return thread


class Simulator:
    """qn740-sim. What it prints goes line by line to `take`, in a thread of its own."""

    def __init__(self, path: pathlib.Path, options: list[str], take: Callable[[str], None]) -> None:
        self._process = subprocess.Popen(
            [str(path), *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )
        self._lock = threading.Lock()
        self.errors: list[str] = []
        self._threads = [
            _follow(self._process.stdout, take),
            _follow(self._process.stderr, self.errors.append),
        ]

    def type(self, lines: list[str]) -> None:
        """Types lines; they wait in the simulator while the panel is busy."""
        assert self._process.stdin is not None
        data = "".join(line + "\n" for line in lines).encode("utf-8")
        with self._lock:
            try:
                self._process.stdin.write(data)
                self._process.stdin.flush()
            except BrokenPipeError as error:
                raise Failure("the simulator has ended: " + " ".join(self.errors[-5:])) from error

    def exit_status(self) -> int | None:
        """Returns the exit status; None as long as it runs."""
        return self._process.poll()

    def close(self) -> None:
        """Ends the simulator."""
        self._process.terminate()
        self._process.wait(20)
        for thread in self._threads:
            thread.join(20)


class PanelProgram:
    """qn740-panel with the spy in it. What it logs goes line by line to `take`."""

    def __init__(
        self,
        directory: pathlib.Path,
        devices: pathlib.Path,
        home: pathlib.Path,
        screen_port: int,
        take: Callable[[str], None],
        more: dict[str, str] | None = None,
    ) -> None:
        questions_in, self._questions = os.pipe()
        answers, answers_in = os.pipe()
        os.set_blocking(answers, False)
        environment = {
            **os.environ,
            "QN740_DEV": str(devices),
            "QN740_SPLASH_MS": "0",
            "QT_QPA_PLATFORM": f"vnc:size=800x480:port={screen_port}",
            "XDG_RUNTIME_DIR": str(home),
            "XDG_CONFIG_HOME": str(home),
            "HOME": str(home),
            "LSAN_OPTIONS": f"suppressions={_LEAKS}:print_suppressions=0",
            "QN740_SCOPE_SOCKET": str(home / "scopes"),
            "QN740_SPECTRUM_SOCKET": str(home / "spectra"),
        }
        environment["LD_PRELOAD"] = str(directory / "qn740-spy.so")
        environment["QN740_SPY"] = f"{questions_in},{answers_in}"
        environment.update(more or {})
        environment.pop("QT_LOGGING_RULES", None)
        self._process = subprocess.Popen(
            [str(directory / "qn740-panel")],
            env=environment,
            pass_fds=(questions_in, answers_in),
            stdin=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
        )
        os.close(questions_in)
        os.close(answers_in)
        self._answers = answers
        self._lock = threading.Lock()
        self.pid = self._process.pid
        self._log = _follow(self._process.stderr, take)

    def ask(self, question: str, timeout: float) -> dict[str, Any]:
        """Asks the spy "n", "c", "b" or "u". A panel that does not answer hangs."""
        with self._lock:
            try:
                os.write(self._questions, question.encode("ascii"))
            except BrokenPipeError as error:
                raise Failure("the panel has ended by itself") from error
            data = b""
            end = time.monotonic() + timeout
            while not data.endswith(b"\n"):
                ready, _, _ = select.select([self._answers], [], [], max(0.0, end - time.monotonic()))
                if not ready:
                    raise Failure(f"the panel's event loop has not turned for {timeout:.0f} s")
                more = os.read(self._answers, _READ_SIZE)
                if not more:
                    raise Failure("the panel has ended by itself")
                data += more
        answer: dict[str, Any] = json.loads(data)
        return answer

    def exit_status(self) -> int | None:
        """Returns the exit status; None as long as it runs."""
        return self._process.poll()

    def terminate(self, timeout: float) -> int | None:
        """Sends SIGTERM. Returns the exit status; None when it had to be killed."""
        self._process.send_signal(signal.SIGTERM)
        try:
            status: int | None = self._process.wait(timeout)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
            status = None
        self._log.join(20)
        for end in (self._questions, self._answers):
            os.close(end)
        return status

    def proc(self, name: str) -> str:
        """Returns the text of a file of the process in /proc."""
        try:
            return pathlib.Path(f"/proc/{self.pid}/{name}").read_text("ascii", "replace")
        except OSError as error:
            raise Failure("the panel has ended by itself") from error

    def cpu_seconds(self) -> float:
        """Returns the processor time that it has used so far."""
        return int(self.proc("schedstat").split()[0]) / 1e9

    def resident_kb(self) -> int:
        """Returns the resident memory in kB."""
        for line in self.proc("status").splitlines():
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
        return 0

    def files(self) -> list[str]:
        """Returns what the open file descriptors stand for."""
        names = []
        directory = f"/proc/{self.pid}/fd"
        for descriptor in os.listdir(directory):
            try:
                names.append(os.readlink(f"{directory}/{descriptor}"))
            except OSError:
                continue  # closed meanwhile
        return sorted(names)
