#!/usr/bin/env python3
"""Plays a small main unit for a panel, until the panel ends: with a real panel on a serial port,

    python3 play_unit.py --port /dev/ttyUSB0

or for a panel on this computer, whose devices are made in a directory:

    python3 play_unit.py --dir /tmp/dev        and in another shell: ./run --dev /tmp/dev

With --demo it starts the panel itself (QN740_PANEL names it), and ends at once.
"""

from __future__ import annotations

import argparse

from qn740 import Panel, Unit


def set_up(unit: Unit) -> None:
    """Defines the menus, and what the unit does when the operator uses a key."""
    with unit.menu("Start") as start:
        start.opens("tuner", "Tuner", "Tuner")
    tuner = unit.menu("Tuner")
    tuner.number("freq", "Frequency", "R1:FREQ:", [(2200.5, 2399.5)], kind=1, value=2250.5)
    tuner.slider("gain", "Gain dB", "R1:GAIN:", 0, 60, value=24)
    tuner.opens("start", "Start Menu", "Start")
    tuner.send()

    def tuned(value: str) -> None:
        unit.send(f"SB,3000,Tuned to {float(value):.3f} MHz")

    unit.on("R1:FREQ:", tuned)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    place = parser.add_mutually_exclusive_group(required=True)
    place.add_argument("--port", help="a serial port")
    place.add_argument("--dir", help="where the panel's devices are made")
    place.add_argument("--demo", action="store_true", help="start the panel, and end at once")
    options = parser.parse_args()
    with Unit(options.dir, port=options.port) as unit:
        if options.demo:
            with Panel(unit) as panel:
                print("panel", unit.wait_for_panel())
                set_up(unit)
                unit.send("PING")
                unit.expect("PONG")
                print("ignored:", panel.ignored())
            return
        print("panel", unit.wait_for_panel(timeout=3600))
        set_up(unit)
        unit.serve()


if __name__ == "__main__":
    main()
