#!/usr/bin/env python3
"""A menu under test: the finger presses its keys on the real panel, and the unit expects commands.

    QN740_PANEL=build/release/bin/qn740-panel python3 -m unittest test_tuner_menu
"""

from __future__ import annotations

import unittest

from qn740 import Menu, Panel, Unit


def tuner_menu(unit: Unit) -> Menu:
    """The menu, as the firmware would define it."""
    menu = unit.menu("Tuner CH1")
    menu.number("freq", "Frequency", "R1:FREQ:", [(2200.5, 2399.5)], kind=1, value=2250.5)
    menu.toggle("agc", "AGC", "R1:AGC:", on=True)
    menu.selection("bw", "Filter", "R1:IFBW:", [(0, "1 MHz"), (1, "5 MHz")], chosen="5 MHz")
    return menu


class TunerMenu(unittest.TestCase):
    def setUp(self) -> None:
        self.unit = self.enterContext(Unit())
        self.panel = self.enterContext(Panel(self.unit, touch=True))
        self.unit.wait_for_panel()
        self.menu = tuner_menu(self.unit)
        self.menu.show()
        self.unit.send("PING")
        self.unit.expect("PONG")

    def test_the_panel_takes_the_whole_menu(self) -> None:
        self.assertEqual(self.panel.ignored(), [])

    def test_agc_is_switched_off_and_on(self) -> None:
        with self.panel.finger() as finger:
            finger.tap_key(0, 1)
            self.unit.expect("R1:AGC:0")
            finger.tap_key(0, 1)
            self.unit.expect("R1:AGC:1")

    def test_a_refused_press_leaves_the_key_as_it_was(self) -> None:
        self.unit.on("R1:AGC:", lambda value: value == "1")  # AGC must stay on
        with self.panel.finger() as finger:
            for _ in range(2):
                finger.tap_key(0, 1)
                self.unit.expect("R1:AGC:0")  # both times: the panel was told that it is on


if __name__ == "__main__":
    unittest.main()
