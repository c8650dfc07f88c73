"""What happens in a soak, from the seed alone."""

from __future__ import annotations

import dataclasses
import random

from . import traffic

PORTS = ("ttyUSB1", "ttyUSB2", "ttyUSB3", "ttyUSB4", "ttyUSB11", "ttyUSB12", "ttyUSB13")

# Of what goes through the simulator's line, blocks of its scopes and replies of its cards.
FAULT_RATES = (
    "drop=0.01,double=0.01,noise=0.015,cut=0.01,junk=0.02,split=0.02,burst=0.01,"
    "scope-index=0.01,scope-loss=0.01,scope-noise=0.01,scope-silence=0.001,"
    "card-no-reply=0.02,card-late=0.01,card-cut=0.02,card-noise=0.02,card-address=0.01,"
    "card-length=0.01"
)

_UNIT_KINDS = (  # and how often each is chosen
    ("changes", 30),
    ("displays", 12),
    ("menus", 10),
    ("clear storm", 4),
    ("boxes", 4),
    ("thousand boxes", 1),
    ("editor", 6),
    ("burst", 3),
    ("noise", 6),
    ("unfinished", 2),
    ("link mode", 3),
    ("answers", 6),
    ("main menus", 5),
    ("spectrum start", 2),
)
_OPERATOR_KINDS = (("button", 55), ("point", 20), ("hold", 10), ("drag", 15))


@dataclasses.dataclass(frozen=True)
class Step:
    """What the unit, the operator or a port does, in seconds since the storm began."""

    at: float
    kind: str
    lines: tuple[str, ...] = ()  # what is typed into the simulator
    raw: tuple[bytes, ...] = ()  # what goes to the re-send port, which the simulator has not
    port: str = ""
    numbers: tuple[float, ...] = ()  # of the operator, each from 0 to 1


@dataclasses.dataclass(frozen=True)
class Storm:
    """What happens between two rests."""

    seconds: float
    unit: list[Step]
    operator: list[Step]
    ports: list[Step]


def storm(seed: int, number: int, seconds: float) -> Storm:
    """Returns the storm of this number. The same numbers give the same storm."""

    def chance(who: str) -> random.Random:
        return random.Random(f"{seed}/{number}/{who}")

    return Storm(
        seconds,
        _unit(chance("unit"), seconds),
        _operator(chance("operator"), seconds),
        _ports(chance("ports"), seconds),
    )


def _choose(chance: random.Random, kinds: tuple[tuple[str, int], ...]) -> str:
    return chance.choices([kind for kind, _ in kinds], [weight for _, weight in kinds])[0]


def _unit(chance: random.Random, seconds: float) -> list[Step]:
    steps = []
    at = 0.1
    while at < seconds:
        kind = _choose(chance, _UNIT_KINDS)
        steps.append(Step(at, kind, tuple(traffic.lines(kind, chance))))
        at += chance.expovariate(1 / 0.15)
    return steps


def _operator(chance: random.Random, seconds: float) -> list[Step]:
    steps = []
    at = 0.2
    while at < seconds:
        kind = _choose(chance, _OPERATOR_KINDS)
        numbers = tuple(round(chance.random(), 6) for _ in range(12))
        steps.append(Step(at, kind, numbers=numbers))
        at += 0.05 + chance.expovariate(1 / 0.15) + (1.2 * numbers[2] if kind == "hold" else 0.0)
    return steps


def _ports(chance: random.Random, seconds: float) -> list[Step]:
    steps = []
    at = chance.uniform(0.3, 1.5)
    while at < seconds - 0.5:
        port = chance.choice(PORTS)
        steps.append(Step(at, "unplug", port=port))
        steps.append(Step(min(seconds, at + chance.uniform(0.05, 3.0)), "plug", port=port))
        at += chance.uniform(0.5, 3.0)
    at = 0.5
    while at < seconds:
        raw = tuple(traffic.resent(chance))
        steps.append(Step(at, "re-sent", raw=raw, port="ttyUSB4"))
        at += chance.uniform(0.3, 1.5)
    return sorted(steps, key=lambda step: step.at)
