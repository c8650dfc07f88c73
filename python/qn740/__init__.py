"""Plays the main unit for a QN740 front panel.

A `Unit` is the main unit's end of the panel's line: a pseudo-terminal that the panel opens in place
of its serial port, or a real port. It sends menus, answers the panel's keys, and says what it expects
from the panel. A `Panel` is the panel program, started for a unit; a `Finger` touches its screen.

    from qn740 import Panel, Unit

    with Unit() as unit, Panel(unit) as panel:
        unit.wait_for_panel()
        tuner = unit.menu("Tuner")
        tuner.number("freq", "Frequency", "R1:FREQ:", [(2200.5, 2399.5)], kind=1, value=2250.5)
        tuner.show()
        unit.send("Slave")
        unit.expect("Slave,0")
        assert panel.ignored() == []

Everything happens in the calls of a unit: while a script does something else, no message is read and
none is answered. The standard library is all that is needed.
"""

from .errors import Error, ExpectationFailed, MessageError, PanelError
from .finger import Finger
from .keys import Key, KeyType, Menu
from .message import EOT, STX, Splitter, frame
from .panel import Panel
from .unit import Reply, Unit

__all__ = [
    "EOT",
    "STX",
    "Error",
    "ExpectationFailed",
    "Finger",
    "Key",
    "KeyType",
    "Menu",
    "MessageError",
    "Panel",
    "PanelError",
    "Reply",
    "Splitter",
    "Unit",
    "frame",
]
