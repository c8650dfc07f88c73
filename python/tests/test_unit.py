"""The unit on a real pseudo-terminal whose other end a test holds."""

from __future__ import annotations

import os
import pathlib
import re
import tempfile
import time
import unittest

from support import LineEnd

from qn740 import ExpectationFailed, MessageError, Panel, PanelError, Unit


class UnitOnALine(unittest.TestCase):
    def setUp(self) -> None:
        self.unit = Unit()
        self.addCleanup(self.unit.close)
        assert self.unit.directory is not None
        self.directory = self.unit.directory
        self.panel = LineEnd(self.directory)
        self.addCleanup(self.panel.close)

    def test_the_directory_goes_with_the_unit(self) -> None:
        self.assertTrue((self.directory / "ttyO1").is_char_device())
        self.unit.close()
        self.unit.close()
        self.assertFalse(self.directory.exists())

    def test_a_directory_that_is_given_stays_without_the_link(self) -> None:
        with tempfile.TemporaryDirectory() as parent:
            path = pathlib.Path(parent) / "dev"
            with Unit(path) as unit:
                self.assertEqual(unit.directory, path)
                self.assertTrue((path / "ttyO1").exists())
            self.assertEqual(list(path.iterdir()), [])

    def test_the_version_is_asked_for(self) -> None:
        self.panel.say("1.1.6.4")
        # What came before the panel was waited for does not count.
        with self.assertRaisesRegex(PanelError, "does not say its version"):
            self.unit.forget()
            self.unit.wait_for_panel(timeout=0)
        self.panel.say("1.1.6.4")
        self.assertEqual(self.unit.wait_for_panel(), "1.1.6.4")
        self.assertEqual(self.panel.bodies(2), ["VER", "VER"])

    def test_a_panel_that_does_not_come_is_an_error(self) -> None:
        self.panel.close()
        with self.assertRaisesRegex(PanelError, "no panel has opened the line within 0.1 s"):
            self.unit.wait_for_panel(timeout=0.1)

    def test_a_message_is_expected_and_those_before_it_are_forgotten(self) -> None:
        self.panel.say("A", "R1:FREQ:2250.500000", "B")
        self.assertEqual(self.unit.expect(re.compile(r"R1:FREQ:[\d.]+")), "R1:FREQ:2250.500000")
        self.assertEqual(self.unit.expect("B"), "B")
        self.assertEqual(self.unit.last, "B")
        with self.assertRaises(ExpectationFailed):
            self.unit.expect("A", timeout=0)

    def test_a_failure_says_what_came_and_what_was_sent(self) -> None:
        self.unit.send("SK,Tuner")
        self.panel.say("R1:AGC:1", "a\\b\n")
        with self.assertRaises(ExpectationFailed) as raised:
            self.unit.expect("R1:AGC:0", timeout=0.2)
        self.assertEqual(
            str(raised.exception),
            "expected R1:AGC:0 within 0.2 s; received instead:\n"
            "    R1:AGC:1\n"
            "    a\\\\b\\x0a\n"
            "  sent before:\n"
            "    SK,Tuner",
        )
        self.unit.expect("R1:AGC:1", timeout=0)  # is still there

    def test_what_must_not_come_fails(self) -> None:
        self.panel.say("A")
        self.unit.expect_not("B", during=0.1)
        with self.assertRaisesRegex(ExpectationFailed, "did not expect A"):
            self.unit.expect_not(re.compile("[AB]"), during=5)
        self.unit.expect("A", timeout=0)

    def test_a_panel_that_goes_ends_the_wait_at_once(self) -> None:
        self.panel.say("last")
        self.panel.close()
        start = time.monotonic()
        with self.assertRaisesRegex(ExpectationFailed, "(?s)has closed its line.*last"):
            self.unit.expect("A", timeout=20)
        self.assertLess(time.monotonic() - start, 5)
        with self.assertRaises(PanelError):
            self.unit.send("PING")
            self.unit.run(0)
        self.unit.serve()  # ends

    def test_a_panel_that_does_not_read_holds_nothing_up_for_ever(self) -> None:
        data = b"x" * 300000
        with self.assertRaisesRegex(PanelError, "has read nothing for 0.2 s"):
            self.unit._write(data, timeout=0.2)

    def test_any_bytes_are_taken(self) -> None:
        self.panel.write(bytes(range(256)) * 8)
        self.unit.run(0.1)
        self.panel.say("PONG")
        self.unit.expect(re.compile(r"PONG"))
        self.assertIn("\xff\x00\x01", self.unit.unframed)

    def test_a_key_is_confirmed_with_its_value(self) -> None:
        menu = self.unit.menu("Menu")
        menu.toggle("a", "A", "R1:A:")
        menu.number("f", "F", "R1:FREQ:", [(2200, 2400)], kind=1)
        menu.selection("m", "M", "D1:MODE:", [(0, "BPSK"), (1, "8 PSK")])
        menu.file("l", "L", "SYS:L:", [(1, "DEFAULT")])
        menu.opens("o", "O", "Other")
        rows = [
            ("R1:A:1", ["CV,Menu,a,0,1"]),
            ("R1:FREQ:2250.500000", ["CV,Menu,f,2250.500000,0"]),
            ("D1:MODE:1", ["AK,Menu,m,M: 8 PSK,2,D1:MODE:,,0,0 BPSK:1 8 PSK,0,0,1"]),
            ("SYS:L:new", ["AK,Menu,l,L: new,4,SYS:L:,,0,1 DEFAULT,0,0,1"]),
            ("SK:Other:1", ["SK,Other"]),
        ]
        for body, answers in rows:
            with self.subTest(body=body):
                self.panel.say(body)
                self.unit.expect(body)
                self.assertEqual(self.panel.bodies(len(answers)), answers)
        self.panel.say("R1:A:", "R2:A:1", "")
        self.unit.run(0.1)
        self.unit.send("PING")
        self.assertEqual(self.panel.bodies(1), ["PING"])

    def test_linked_commands_reach_each_key_and_handler(self) -> None:
        heard: list[str] = []
        for number in (1, 2, 3):
            self.unit.menu(f"Demod {number}").toggle("a", "A", f"D{number}:A:")
            self.unit.on(f"D{number}:A:", heard.append)
        self.panel.say("D1 D2 D3:A:1")
        self.unit.expect("D1 D2 D3:A:1")
        self.assertEqual(heard, ["1", "1", "1"])
        self.assertEqual(
            self.panel.bodies(3), ["CV,Demod 1,a,0,1", "CV,Demod 2,a,0,1", "CV,Demod 3,a,0,1"]
        )

    def test_a_handler_answers_as_it_likes(self) -> None:
        self.unit.menu("Menu").toggle("a", "A", "R1:A:")
        replies: list[object] = [None, True, False, "DB,No,1", [], ["A", "B"]]
        heard: list[str] = []

        def handler(value: str) -> object:
            heard.append(value)
            return replies[len(heard) - 1]

        self.unit.on("R1:A:", handler)  # type: ignore[arg-type]
        for value in "101000":
            self.panel.say(f"R1:A:{value}")
            self.unit.expect(f"R1:A:{value}")
        self.unit.send("PING")
        self.assertEqual(heard, list("101000"))
        self.assertEqual(
            self.panel.bodies(7),
            ["CV,Menu,a,0,1", "CV,Menu,a,0,0", "CV,Menu,a,0,0", "DB,No,1", "A", "B", "PING"],
        )

    def test_nothing_is_confirmed_when_it_is_not_wanted(self) -> None:
        self.unit.confirms = False
        self.unit.menu("Menu").toggle("a", "A", "R1:A:")
        self.panel.say("R1:A:1")
        self.unit.expect("R1:A:1")
        self.unit.clear()
        self.assertEqual(self.panel.bodies(1), ["CLEAR"])

    def test_the_link_mode_is_kept(self) -> None:
        self.panel.say("Slave,2", "Slave,7", "Slave,x")
        self.unit.expect("Slave,x")
        self.assertEqual(self.unit.link_mode, 2)

    def test_a_menu_file_is_sent(self) -> None:
        path = self.directory / "my.menu"
        path.write_bytes(b"# comment\n\n  PING\nwait 10\r\nSB,0,\xe4\\x41\n")
        self.assertEqual(self.unit.send_file(path), 2)
        self.assertEqual(self.panel.bodies(2), ["PING", "SB,0,äA"])
        path.write_text("wait soon\n")
        with self.assertRaises(MessageError):
            self.unit.send_file(path)
        path.unlink()
        with self.assertRaises(OSError):
            self.unit.send_file(path)

    def test_a_menu_file_in_json_is_refused(self) -> None:
        path = self.directory / "my.json"
        path.write_bytes(b'\xef\xbb\xbf\n {"version": 1, "content": []}')
        with self.assertRaisesRegex(MessageError, "--export menu"):
            self.unit.send_file(path)

    def test_raw_characters_are_sent_as_they_are(self) -> None:
        self.unit.send_raw("\x04x\xff")
        self.unit.send("PING")
        self.assertEqual(self.panel.bodies(2), ["", "x\xff\x02PING"])

    def test_a_terminal_serves_as_a_real_port(self) -> None:
        master, slave = os.openpty()
        self.addCleanup(os.close, master)
        self.addCleanup(os.close, slave)
        with Unit(port=os.ttyname(slave)) as unit:
            unit.send("PING")
            self.assertEqual(os.read(master, 100), b"\x02PING\x04")
            os.write(master, b"\x02PONG\x04")
            unit.expect("PONG")
            with self.assertRaises(PanelError):
                Panel(unit)
        for path in ("/dev/null", "/none"):
            with self.subTest(path=path), self.assertRaisesRegex(PanelError, path):
                Unit(port=path)


if __name__ == "__main__":
    unittest.main()
