"""The messages and bytes of the unit."""

from __future__ import annotations

import functools
import pathlib
import random

STX = "\x02"
EOT = "\x04"
MENU_FILE = pathlib.Path(__file__).resolve().parents[2] / "sim" / "menus" / "qn740.menu"
BYTES_PER_SECOND = 11_520  # of a line of 115200 baud
_BURST_FACTOR = 10
_PLAIN = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 .:-&<>%/"


@functools.cache
def menu_bodies() -> list[str]:
    """Returns the messages of the simulator's own menus."""
    lines = MENU_FILE.read_text("utf-8").splitlines()
    return [line for line in lines if line and not line.startswith(("#", "wait"))]


@functools.cache
def _definitions() -> list[list[str]]:
    return [body.split(",") for body in menu_bodies() if body.startswith("AK,")]


@functools.cache
def _menus() -> list[str]:
    return sorted({fields[1] for fields in _definitions()})


def raw_line(data: str) -> str:
    """Returns the line that lets the simulator send these bytes as they are, past its faults."""
    printable = "".join(
        character if " " <= character <= "~" and character != "\\" else f"\\x{ord(character):02x}"
        for character in data
    )
    return "raw " + printable


def raw_message(body: str) -> str:
    """Returns the line that lets the simulator send this message unharmed, whatever came before it."""
    return raw_line(EOT + STX + body + EOT)


def lines(kind: str, chance: random.Random) -> list[str]:
    """Returns what is typed into the simulator for one step of a plan."""
    return _MAKERS[kind](chance)


def resent(chance: random.Random) -> list[bytes]:
    """Returns what comes on the re-send port: messages, halves of them, and noise."""
    pieces = []
    for _ in range(chance.randint(1, 5)):
        frame = (STX + chance.choice(_changes(chance)) + EOT).encode("latin-1", "replace")
        fate = chance.random()
        if fate < 0.2:
            frame = frame[: chance.randrange(len(frame))]
        elif fate < 0.4:
            frame = chance.randbytes(chance.randint(1, 300))
        pieces.append(frame)
    return pieces


def _text(chance: random.Random, longest: int) -> str:
    return "".join(chance.choices(_PLAIN, k=chance.randint(0, longest)))


def _value(chance: random.Random) -> str:
    return chance.choice(
        [str(chance.randint(0, 100)), f"{chance.uniform(-10, 3000):.3f}", "", "x", "-1", "1e9", "0"]
    )


def _changes(chance: random.Random) -> list[str]:
    bodies = []
    for _ in range(chance.randint(1, 8)):
        fields = chance.choice(_definitions())
        menu, key = fields[1], fields[2]
        bodies.append(
            chance.choice(
                [
                    f"CV,{menu},{key},{_value(chance)},{chance.randint(0, 1)}",
                    f"CK,{menu},{key},{chance.choice((0, 1, 1, 1, 2, 7))}",
                    f"EI,{menu},{key},{':'.join(str(chance.randint(0, 9)) for _ in range(3))}",
                    ",".join(fields),
                    ",".join([*fields[:3], _text(chance, 40), *fields[4:]]),
                    f"SK,{chance.choice(_menus())}",
                    f"SB,{chance.choice((0, 300, 2000))},{_text(chance, 90)}",
                    f"PM,{chance.uniform(-0.2, 1.2):.3f},{_value(chance)},{_value(chance)}",
                ]
            )
        )
    return bodies


def _displays(chance: random.Random) -> list[str]:
    def one() -> str:
        demodulator = chance.randint(0, 4)
        channel = chance.randint(-1, 3)
        return chance.choice(
            [
                f"SM,{demodulator},{chance.randint(0, 4)}",
                f"SQ,{demodulator},{chance.randint(0, 1)}",
                f"SF,{channel},{chance.uniform(0, 5000):.4f}",
                f"SP,{channel},{chance.randint(-1, 10)}",
                f"SH,{channel},{chance.choice((0, 1, 1))}",
                f"HM,{channel},{-chance.randint(0, 150)},{-chance.randint(0, 150)}",
                f"LC,{chance.randint(0, 8)},{chance.randint(0, 4)}",
                f"PM,{chance.random():.3f},{chance.randint(0, 120)},{chance.randint(0, 120)}",
            ]
        )

    return [one() for _ in range(chance.randint(1, 6))]


def _new_menu(chance: random.Random) -> list[str]:
    name = "Soak " + str(chance.randint(0, 9))
    bodies = []
    for key in range(chance.randint(1, 60)):
        kind = chance.randint(0, 7)
        units, options = "0 100:200 300.5", "0 one:1 two:2 three"
        if kind == 3:
            units, options = "100 0", "1:5"
        parameter = chance.choice((0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10))
        label = _text(chance, 30).replace(",", "")
        bodies.append(
            f"AK,{name},k{key},{label},{kind},S{key}:,{units},{parameter},{options},"
            f"{chance.randint(0, 99)},{chance.randint(0, 1)},1"
        )
    return [*bodies, f"SK,{name}"]


def _clear_storm(chance: random.Random) -> list[str]:
    bodies = []
    for _ in range(chance.randint(5, 40)):
        bodies.append("CLEAR")
        bodies += _new_menu(chance)[: chance.randint(0, 6)]
    some = chance.sample(menu_bodies(), 40)
    return [*bodies, *some, "SK," + chance.choice(_menus())]


def _boxes(chance: random.Random, count: int) -> list[str]:
    bodies = []
    for _ in range(count):
        text = _text(chance, 200).replace(",", "") + chance.choice(("", "<br>more", "<b>bold"))
        bodies.append(f"DB,{text}" + chance.choice(("", ",1", ",1", ",0")))
    if chance.random() < 0.7:
        bodies.append("DB,KILLBOX")
    return bodies


def _editor(chance: random.Random) -> list[str]:
    fields = chance.choice(_definitions())
    label, kind, command, units, parameter, options = fields[3:9]
    body = f"IK,{label},{kind},{command},{units},{parameter},{options}"
    if chance.random() < 0.5:
        body += f",{_text(chance, 12)},{_value(chance)}"
    return [body, *_changes(chance)]


def _burst(chance: random.Random) -> list[str]:
    wanted = int(chance.uniform(0.1, 0.6) * BYTES_PER_SECOND * _BURST_FACTOR)
    bodies: list[str] = []
    size = 0
    while size < wanted:
        more = _changes(chance)
        size += sum(len(body) + 2 for body in more)
        bodies += more
    return bodies


def _noise(chance: random.Random) -> list[str]:
    return [raw_line(chance.randbytes(chance.randint(1, 3000)).decode("latin-1"))]


def _unfinished(chance: random.Random) -> list[str]:
    start = STX + chance.choice(("AK,Tuner CH1,", "DB,", "SB,0,", ""))
    return [raw_line(start + _text(chance, 60_000))]


def _link_mode(chance: random.Random) -> list[str]:
    return [chance.choice(("Slave", "Slave,0", "Slave,1", "Slave,2", "Slave,3"))]


def _answers(chance: random.Random) -> list[str]:
    pattern = chance.choice(("*", "R1:*", "D?:*", "SYS:*", "C1:*", "OUT*"))
    return [
        chance.choice((f"silent {pattern}", f"refuse {pattern}", f"delay 900:{pattern}", "confirm"))
    ]


def _main_menus(chance: random.Random) -> list[str]:
    fields = chance.choice(_definitions())
    word, name = chance.choice((("CM", "Main"), ("MS", "PAX")))
    return [f"{word},{name},{fields[1]},{fields[2]}", chance.choice(("PAX,1", "PAX,0", "SK,Main"))]


def _start_spectrum(chance: random.Random) -> list[str]:
    return ["ST,1", *_displays(chance)]


_MAKERS = {
    "changes": _changes,
    "displays": _displays,
    "menus": _new_menu,
    "clear storm": _clear_storm,
    "boxes": lambda chance: _boxes(chance, chance.randint(1, 30)),
    "thousand boxes": lambda chance: _boxes(chance, chance.randint(1000, 1500)),
    "editor": _editor,
    "burst": _burst,
    "noise": _noise,
    "unfinished": _unfinished,
    "link mode": _link_mode,
    "answers": _answers,
    "main menus": _main_menus,
    "spectrum start": _start_spectrum,
}
