"""Messages and keys, without a line."""

from __future__ import annotations

import unittest
from collections.abc import Callable

from qn740 import Key, Menu, MessageError, Splitter, frame
from qn740.message import from_printable, printable


class Messages(unittest.TestCase):
    def test_a_message_stands_between_stx_and_eot(self) -> None:
        self.assertEqual(frame("SB,0,ä"), b"\x02SB,0,\xe4\x04")

    def test_what_cannot_be_sent_is_refused(self) -> None:
        for body in ("a\x02", "a\x04", "€"):
            with self.subTest(body=body), self.assertRaises(MessageError):
                frame(body)

    def test_every_byte_is_printable_and_back(self) -> None:
        text = bytes(range(256)).decode("latin-1")
        line = printable(text)
        self.assertTrue(line.isascii() and line.isprintable())
        self.assertEqual(from_printable(line), text)
        self.assertEqual(from_printable("\\x4"), "\\x4")

    def test_messages_are_cut_at_any_piece(self) -> None:
        data = b"x\x02PONG\x04D1:SPEN:1\x02a\x02\xe4,\x04\x04"
        for size in range(1, len(data) + 1):
            splitter = Splitter()
            bodies: list[str] = []
            for start in range(0, len(data), size):
                bodies += splitter.take(data[start : start + size])
            self.assertEqual(bodies, ["PONG", "ä,"])
            self.assertEqual(splitter.unframed, "xD1:SPEN:1\x02a\x04")


class Keys(unittest.TestCase):
    def setUp(self) -> None:
        self.sent: list[str] = []
        self.added: list[Key] = []
        self.menu = Menu("Tuner", self.sent.append, self.added.append)

    def test_each_type_has_its_definition(self) -> None:
        menu = self.menu
        rows = [
            (menu.toggle("a", "A", "R1:A:", on=True), "AK,Tuner,a,A,0,R1:A:,,0,,0,1,1"),
            (menu.command("b", "B", "R1:B:"), "AK,Tuner,b,B,5,R1:B:,,0,,0,0,1"),
            (menu.opens("c", "C", "Demod 1"), "AK,Tuner,c,C,5,SK:Demod 1:,,0,,0,0,1"),
            (
                menu.number("d", "D", "R1:D:", [(2200.5, 2399.5), (0, 1)], kind=1, value=2250.5),
                "AK,Tuner,d,D,1,R1:D:,2200.5 2399.5:0 1,1,,2250.5,0,1",
            ),
            (
                menu.number("e", "E", "R1:E:", [(1, 500)], kind=6, special=(-1, "Auto")),
                "AK,Tuner,e,E,1,R1:E:,1 500,6,-1 Auto,0,0,1",
            ),
            (
                menu.selection("f", "F", "R1:F:", [(0, "PCM/FM"), ("x", "8 PSK")], columns=2),
                "AK,Tuner,f,F,2,R1:F:,,2,0 PCM/FM:x 8 PSK,0,0,1",
            ),
            (
                menu.slider("g", "G", "R1:G:", -5, 60, steps=[1, 5], value=24),
                "AK,Tuner,g,G,3,R1:G:,60 -5,10,1:5,24,0,1",
            ),
            (
                menu.file("h", "H", "SYS:H:", [(1, "DEFAULT")]),
                "AK,Tuner,h,H,4,SYS:H:,,0,1 DEFAULT,0,0,1",
            ),
            (
                menu.address("i", "I", "SYS:I:", chosen="10.0.0.7", state=0),
                "AK,Tuner,i,I: 10.0.0.7,6,SYS:I:,,0,,0,0,0",
            ),
        ]
        for key, definition in rows:
            with self.subTest(key=key.id):
                self.assertEqual(key.ak(), definition)
        self.assertEqual(self.added, [key for key, _ in rows])
        menu.show()
        self.assertEqual(
            self.sent, [*(definition for _, definition in rows), "CK,Tuner,i,0", "SK,Tuner"]
        )

    def test_a_with_statement_shows_the_menu_unless_it_fails(self) -> None:
        with self.menu:
            self.menu.toggle("a", "A", "R1:A:")
        self.assertEqual(self.sent[-1], "SK,Tuner")
        self.sent.clear()
        with self.assertRaises(MessageError), self.menu:
            self.menu.toggle("b", "A,B", "R1:B:")
        self.assertEqual(self.sent, [])

    def test_a_key_that_cannot_be_is_refused(self) -> None:
        menu = self.menu
        wrong: list[Callable[[], object]] = [
            lambda: menu.toggle("a", "A, B", "R1:A:"),
            lambda: menu.toggle("a", "€", "R1:A:"),
            lambda: menu.toggle("", "A", "R1:A:"),
            lambda: menu.toggle("a", "A", ""),
            lambda: menu.toggle("a", "A", "R1:A:", state=3),
            lambda: menu.number("a", "A", "R1:A:", []),
            lambda: menu.number("a", "A", "R1:A:", [(2, 1)]),
            lambda: menu.number("a", "A", "R1:A:", [(1, 2)], kind=9),
            lambda: menu.number("a", "A", "R1:A:", [(1, 2)], kind=6),
            lambda: menu.number("a", "A", "R1:A:", [(1, 2)], special=(1, "Auto")),
            lambda: menu.selection("a", "A", "R1:A:", [(0, "A:B")]),
            lambda: menu.selection("a", "A", "R1:A:", [("0 1", "A")]),
            lambda: menu.selection("a", "A", "R1:A:", [(0, "")]),
            lambda: menu.slider("a", "A", "R1:A:", 5, 5),
        ]
        for number, make in enumerate(wrong):
            with self.subTest(number=number), self.assertRaises(MessageError):
                make()
        self.assertEqual(menu.keys, [])
        with self.assertRaises(MessageError):
            Menu("", self.sent.append, self.added.append)

    def test_a_value_of_the_wrong_type_changes_nothing(self) -> None:
        number = self.menu.number("a", "A", "R1:A:", [(1, 2)], value=1)
        number.take("x")
        self.assertEqual(number.cv(), "CV,Tuner,a,1,0")
        toggle = self.menu.toggle("b", "B", "R1:B:", on=True)
        toggle.take("2")
        self.assertEqual(toggle.cv(), "CV,Tuner,b,0,1")
        address = self.menu.address("c", "C", "R1:C:")
        address.take("1,2")
        self.assertEqual(address.chosen, "")


if __name__ == "__main__":
    unittest.main()
