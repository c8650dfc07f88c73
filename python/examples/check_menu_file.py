#!/usr/bin/env python3
"""Sends menu files to the real panel and says what it ignored of them.

    QN740_PANEL=build/release/bin/qn740-panel python3 check_menu_file.py my.menu ...

The exit status is 1 when the panel has ignored anything, so that this can be a step of a build.
"""

from __future__ import annotations

import sys

from qn740 import MessageError, Panel, Unit


def check(path: str) -> bool:
    """Returns whether the panel takes every message of the file."""
    with Unit() as unit, Panel(unit) as panel:
        unit.wait_for_panel()
        try:
            count = unit.send_file(path)
        except (MessageError, OSError) as error:
            print(f"{path}: {error}")
            return False
        # The panel answers when it has handled everything before.
        unit.send("PING")
        unit.expect("PONG", timeout=20)
        ignored = panel.ignored()
    for reason in ignored:
        print(f"{path}: {reason}")
    print(f"{path}: {count} message{'' if count == 1 else 's'}, {len(ignored)} ignored")
    return not ignored


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sys.exit(0 if all([check(path) for path in sys.argv[1:]]) else 1)
