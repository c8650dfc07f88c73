"""Rows about the running panel get no value when what they measure did not happen."""

from __future__ import annotations

import contextlib
import io
import pathlib
import socket
import struct
import tempfile
import threading
import unittest
from collections.abc import Iterator
from unittest import mock

from runner import __main__ as command
from runner import live
from runner.figures import Figures
from runner.look import Look, Picture, Unmeasured
from runner.parts import Parts
from runner.rows import ROWS

_WIDTH, _HEIGHT = 6, 2
_EYES = next(row for row in ROWS if row.name == "cpu.eyes")


def message(kind: int, contents: bytes = b"") -> bytes:
    """A message as the panel sends it."""
    return struct.pack(">IB", len(contents) + 1, kind) + contents


def rectangle(x: int, colour: int) -> bytes:
    """A rectangle of one pixel in the first line."""
    return message(2, struct.pack(">4H", x, 0, 1, 1) + struct.pack("<I", colour))


@contextlib.contextmanager
def shown(pictures: list[list[bytes]]) -> Iterator[pathlib.Path]:
    """Something that shows pictures as a panel does, each by its rectangles."""
    with tempfile.TemporaryDirectory() as directory, \
            socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as listener:
        path = pathlib.Path(directory) / "look"
        listener.bind(str(path))
        listener.listen()

        def answer() -> None:
            peer, _ = listener.accept()
            with peer:
                peer.sendall(message(1, b"QN740" + struct.pack(">HHHBB", 1, _WIDTH, _HEIGHT, 1, 0)))
                for picture in pictures:
                    peer.recv(6)
                    peer.sendall(b"".join(picture) + message(3))

        thread = threading.Thread(target=answer)
        thread.start()
        yield path
        thread.join()


def desk(path: pathlib.Path | None) -> live.Desk:
    """A desk whose panel does nothing at all, and shows its pictures there."""
    made = live.Desk.__new__(live.Desk)
    made._look = path
    made.panel = live.Watched(["cat"], {})
    made.panel.type("started")
    made.panel.wait_for("started")
    return made


class Looking(unittest.TestCase):
    """What is shown."""

    def test_a_picture_consists_of_its_rectangles(self) -> None:
        with shown([[rectangle(1, 7), rectangle(5, 9)]]) as path, Look(path) as look:
            picture = look.picture()
        self.assertEqual(list(memoryview(picture.pixels).cast("I")), [0, 7, 0, 0, 0, 9] + 6 * [0])

    def test_what_moves_is_found_by_thirds(self) -> None:
        with mock.patch("runner.look._APART", 0), \
                shown([[rectangle(3, 1)], [rectangle(3, 2), rectangle(4, 2)]]) as path, \
                Look(path) as look:
            self.assertEqual(look.moving(), [False, True, True])

    def test_a_part_of_the_pixels_has_changed(self) -> None:
        one, other = Picture(_WIDTH, _HEIGHT), Picture(_WIDTH, _HEIGHT)
        self.assertEqual(one.changed(other), 0)
        other.put(struct.pack(">4H", 0, 0, 3, 1) + bytes(range(1, 13)))
        self.assertEqual(one.changed(other), 0.25)

    def test_a_panel_that_ends_is_noticed(self) -> None:
        with shown([]) as path, Look(path) as look:
            self.assertRaises((Unmeasured, OSError), look.picture)


class NothingHappens(unittest.TestCase):
    """Faults that are planted."""

    def setUp(self) -> None:
        for name, value in (("live.SHARE_S", 0.05), ("live.SAMPLES", 1), ("look._APART", 0)):
            patch = mock.patch(f"runner.{name}", value)
            patch.start()
            self.addCleanup(patch.stop)
        self.figures = Figures()

    def measure(self, pictures: list[list[bytes]], names: set[str]) -> None:
        """Measures rows of the scopes with a panel that reads nothing."""
        with shown(pictures) as path:
            made = desk(path)
            self.addCleanup(made.panel.end)
            with mock.patch.object(made, "next_view", lambda: None), \
                    mock.patch.object(live, "_set_modes", lambda *_: None):
                live._scopes(made, names, self.figures)

    def test_lines_that_bring_nothing_leave_no_value(self) -> None:
        self.measure([[], []], {"cpu.hidden", "switches.read"})
        self.assertEqual(self.figures.values, {})
        self.assertEqual(self.figures.faults, ["cpu.hidden: only 0 bytes a second were read",
                                               "switches.read: only 0 bytes a second were read"])

    def test_eyes_that_are_not_shown_leave_no_value(self) -> None:
        self.measure([[], []], {"cpu.eyes"})
        self.assertEqual(self.figures.values, {})
        self.assertEqual(self.figures.faults,
                         ["cpu.eyes: something moves in 0 of three parts of the window"])

    def test_scopes_that_are_not_hidden_leave_no_value(self) -> None:
        self.measure([[], [rectangle(0, 1)]], {"cpu.hidden"})
        self.assertEqual(self.figures.faults,
                         ["cpu.hidden: something moves in 1 of three parts of the window"])

    def test_a_chart_without_spectra_leaves_no_value(self) -> None:
        made = desk(None)
        self.addCleanup(made.panel.end)
        with mock.patch.object(made, "next_view", lambda: None), \
                mock.patch.object(live, "_show_charts", lambda *_: None):
            live._charts(made, [1], self.figures)
        self.assertEqual(self.figures.values, {})
        self.assertEqual(self.figures.faults, ["cpu.chart1: only 0.0 spectra a second"])

    def test_a_fault_is_printed_in_its_row_and_in_the_exit_status(self) -> None:
        self.figures.add("cpu.hidden", "ours", [0.2])
        self.figures.faults.append("cpu.eyes: planted")
        arguments = mock.Mock(markdown=False, update=False)
        with contextlib.redirect_stdout(io.StringIO()) as out, \
                contextlib.redirect_stderr(io.StringIO()) as errors:
            status = command.show(arguments, [_EYES], {"": self.figures}, None, Parts())
        self.assertEqual(status, 1)
        self.assertIn("not measured", out.getvalue())
        self.assertIn("cpu.eyes: planted", errors.getvalue())


if __name__ == "__main__":
    unittest.main()
