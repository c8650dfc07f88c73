"""The soak: a panel, a unit, an operator, and faults of every kind, for as long as one likes.

    plan.py       what happens, from the seed alone
    traffic.py    the messages and bytes of the unit, damaged ones among them
    programs.py   the simulator and the panel as processes
    finger.py     the operator's finger, through the remote screen
    ports.py      the device that the simulator has not, and which ports the panel has open
    checks.py     what is watched all along: answers, form, log, memory, counts
    life.py       one panel from its start to its end
    replay.py     the same again from a recording
    main.py       command line and report
"""
