"""The unit with the real panel. QN740_PANEL names the program."""

from __future__ import annotations

import unittest

from qn740 import Panel, PanelError, Unit


class RealPanel(unittest.TestCase):
    def test_the_panel_answers_and_says_what_it_ignores(self) -> None:
        with Unit() as unit, Panel(unit) as panel:
            self.assertRegex(unit.wait_for_panel(), r"^\d+(\.\d+){3}$")
            with unit.menu("Tuner") as tuner:
                tuner.number("f", "Frequency", "R1:FREQ:", [(2200, 2400)], kind=1, value=2250)
                tuner.toggle("a", "AGC", "R1:AGC:")
            unit.send("Slave", "PING")
            unit.expect("Slave,0")
            unit.expect("PONG")
            self.assertEqual(panel.ignored(), [])
            unit.send("SK,Nowhere", "Foo", "PING")
            unit.expect("PONG")
            self.assertEqual(panel.ignored(), ["SK: no menu Nowhere", "unknown word Foo"])
            with self.assertRaises(PanelError):
                panel.finger()
            self.assertTrue(panel.is_running)
            panel.close()
            with self.assertRaises(PanelError):
                unit.run(5)
            self.assertFalse(panel.is_running)
            # Another panel on the same line begins anew.
            with Panel(unit):
                unit.wait_for_panel()
                unit.send("PING")
                unit.expect("PONG")

    def test_a_finger_presses_keys(self) -> None:
        with Unit() as unit, Panel(unit, touch=True) as panel, panel.finger() as finger:
            unit.wait_for_panel()
            with unit.menu("Keys") as menu:
                for number in range(35):
                    menu.toggle(f"k{number}", f"Key {number}", f"K{number}:")
            unit.send("PING")
            unit.expect("PONG")
            for number in (0, 5, 14, 21, 30, 34):
                finger.tap_key(*divmod(number, 6))
                unit.expect(f"K{number}:1")
                self.assertTrue(menu.keys[number].toggle)
            with self.assertRaises(ValueError):
                finger.tap_key(6, 0)

    def test_a_program_that_does_not_exist_is_an_error(self) -> None:
        with Unit() as unit, self.assertRaisesRegex(PanelError, "/none: No such file"):
            Panel(unit, "/none")


if __name__ == "__main__":
    unittest.main()
