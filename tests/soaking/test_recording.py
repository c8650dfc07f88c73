"""What is recorded comes back in its order, and a replay knows what no window was told of."""

import os
import pathlib
import tempfile
import time
import tty
import unittest

from . import ports, recording, replay


class Recording(unittest.TestCase):
    def setUp(self) -> None:
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)

    def test_all_that_happened_comes_back_in_its_order(self) -> None:
        recorder = recording.Recorder(self.place)
        recorder.note("unplug", "ttyUSB1")
        now = time.monotonic()
        recorder.spy_file.write_text(
            f"{now + 1:.6f} ttyUSB11 17 5b00ff\n"
            f"{now + 4:.6f} finger 799 479 1 20\n"
            f"{now + 2:.6f} ttyO1 0 02\n"
        )
        trace = ["trace: 3.000 in \\x02PING\\x04", "trace: 3.500 out \\x02PONG\\x04"]
        recorder.save("storm-00001", trace, now)
        recorder.note("rest")
        recorder.save("storm-00002", [], now)
        events = recording.load(self.place, None)
        self.assertEqual(
            [
                (event.kind, event.port, event.data, event.answers, event.finger, event.unread)
                for event in events
            ],
            [
                ("unplug", "ttyUSB1", "", 0, (0, 0, 0), 0),
                ("data", "ttyUSB11", "[\x00\xff", 17, (0, 0, 0), 0),
                ("data", "ttyO1", "\x02", 0, (0, 0, 0), 0),
                ("said", "ttyO1", "\x02PING\x04", 0, (0, 0, 0), 0),
                ("finger", "", "", 0, (799, 479, 1), 20),
                ("rest", "", "", 0, (0, 0, 0), 0),
            ],
        )
        self.assertEqual([event.kind for event in recording.load(self.place, 1)], ["rest"])

    def test_what_was_not_handled_before_a_touch_comes_behind_it(self) -> None:
        def read(data: str, port: str = recording.MAIN_PORT) -> recording.Event:
            return recording.Event(0.0, "data", port, data)

        def touch(unread: int) -> recording.Event:
            return recording.Event(0.0, "finger", unread=unread)

        events = [read("abc"), read("X", "ttyUSB1"), read("de"), touch(3), read("fg"), touch(4)]
        events += [touch(0), read("h"), touch(0)]
        self.assertEqual(
            [event.data or str(event.unread) for event in recording.as_handled(events)],
            ["ab", "X", "3", "c", "4", "de", "fg", "0", "h", "0"],
        )

    def test_what_was_said_comes_before_it_is_read(self) -> None:
        events = [recording.Event(1.0, "data", recording.MAIN_PORT, "a")]
        events += [recording.Event(1.04, "said"), recording.Event(1.06, "said")]
        self.assertEqual(
            [event.at for event in recording.as_handled(events)], [1.04, 1.0, 1.06]
        )

    def test_what_was_said_stays_behind_the_plug_of_its_port(self) -> None:
        for kind, port, said_at in (
            ("plug", recording.MAIN_PORT, 2),
            ("unplug", recording.MAIN_PORT, 2),
            ("plug", "ttyUSB1", 0),
        ):
            with self.subTest(kind=kind, port=port):
                events = [recording.Event(1.0, "data", "ttyUSB2", "a")]
                events += [recording.Event(1.01, kind, port), recording.Event(1.02, "said")]
                order = [event.kind for event in recording.as_handled(events)]
                self.assertEqual(order.index("said"), said_at)
                self.assertEqual(order.index(kind) < order.index("said"), said_at == 2)

    def test_a_finger_that_no_window_saw_go_up_is_lifted(self) -> None:
        fingers = [(10, 10, 0), (10, 10, 1), (10, 10, 0), (20, 20, 1), (30, 30, 1), (40, 40, 0)]
        fingers += [(50, 50, 1), (50, 50, 1)]
        events = [recording.Event(0.0, "finger", finger=finger) for finger in fingers]
        events.insert(1, recording.Event(0.0, "data"))
        self.assertEqual(replay.lifted(events), {5, 7})

    def test_a_reply_waits_for_its_request(self) -> None:
        port = ports.Port(self.place, "ttyUSB11")
        port.plug()
        self.addCleanup(port.unplug)
        self.assertFalse(port.is_open())
        panel = os.open(self.place / "ttyUSB11", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        tty.setraw(panel)
        self.assertTrue(port.is_open())
        port.answer(3, time.monotonic() + 60, b"reply")
        port.answer(0, time.monotonic() + 60, b"more")
        os.write(panel, b"as")
        self.assertEqual(port.serve(), b"as")
        with self.assertRaises(BlockingIOError):
            os.read(panel, 100)
        os.write(panel, b"k")
        self.assertEqual(port.serve(), b"k")
        self.assertEqual(os.read(panel, 100), b"replymore")
        os.write(panel, b"!")
        port.answer(100, time.monotonic() - 1, b"late")
        self.assertEqual(os.read(panel, 100), b"late")
        self.assertEqual(port.serve(), b"!")
        os.close(panel)


if __name__ == "__main__":
    unittest.main()
