"""Command line and report of the soak."""

from __future__ import annotations

import argparse
import dataclasses
import pathlib
import signal
import statistics
import sys
import time

from . import checks, replay, trends
from .life import Life, Limits
from .programs import Failure

ROOT = pathlib.Path(__file__).resolve().parents[2]
_STORM_SECONDS = 12.0
_RECORDINGS = 2
_LOSSES_SHARE = 0.1  # of the time, for panels that lose their main port
_LOSSES_SECONDS = 240.0


def _options() -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="tests/soak",
        description="Runs the real panel against the real simulator with every fault at once, with an "
        "operator who presses, drags and holds at random, and checks all along what the panel does. "
        "The seed decides what happens. Exit status 0 when all was well, else 1; then the "
        "directory of the run has a recording that --replay plays again.",
    )
    parser.add_argument("--minutes", type=float, default=1.0, help="for each build (default: 1)")
    parser.add_argument("--seed", type=int, default=1, help="of everything random (default: 1)")
    builds = parser.add_mutually_exclusive_group()
    builds.add_argument("--asan", action="store_true", help="the build with the sanitizers")
    builds.add_argument("--both", action="store_true", help="one build after the other")
    parser.add_argument("--bin", type=pathlib.Path, help="the directory of the programs")
    parser.add_argument("--out", type=pathlib.Path, help="where recordings go (default: build/soak/SEED)")
    parser.add_argument("--replay", type=pathlib.Path, metavar="DIR", help="plays a recording again")
    parser.add_argument("--storms", type=int, help="plays only the last ones (default: all)")
    parser.add_argument("--plant", default="", metavar="WINDOW:N", help="a fault: the panel aborts "
                        "when the N-th window is shown whose name begins so")
    parser.add_argument("--check-replay", default="", metavar="WINDOW:N", help="afterwards, plants this "
                        "fault in another run, and checks that the replay finds it too")
    return parser.parse_args()


def main() -> int:
    """Runs the soak. Returns the exit status."""
    options = _options()
    # So that the programs are ended, and their devices removed: a panel that goes on would open the
    # pseudo-terminals of others, when they get the numbers of those that its own devices had.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    status = 0
    for build in ("release", "asan") if options.both else ("asan" if options.asan else "release",):
        binaries = options.bin or ROOT / "build" / build / "bin"
        sanitized = _is_sanitized(binaries / "qn740-panel")
        if options.replay:
            status |= replay.replay(
                binaries, options.replay, options.storms, Limits(sanitized), options.plant
            )
        else:
            out = (options.out or ROOT / "build" / "soak" / str(options.seed)) / build
            status |= Soak(options, binaries, out, Limits(sanitized)).run()
            if options.check_replay and status == 0:
                status |= _check_replay(options, binaries, out / "planted", Limits(sanitized))
    return status


def _check_replay(
    options: argparse.Namespace, binaries: pathlib.Path, out: pathlib.Path, limits: Limits
) -> int:
    """Returns 0 when a run with a fault fails, and the replay of its recording does as well."""
    options.plant = options.check_replay
    for _ in range(_RECORDINGS):
        if Soak(options, binaries, out, limits).run() == 0:
            print("soak: the planted fault was not met")
            return 1
        status = replay.replay(binaries, out / "panel-1", None, limits, options.plant)
        if status == 1:
            return 0
        # Once more: on a busy machine, the course of a panel may not be repeatable.
    print("soak: FAILED: the replay did not find the planted fault")
    return 1


def _is_sanitized(program: pathlib.Path) -> bool:
    return b"AddressSanitizer" in program.read_bytes()


class Soak:
    """A run with one build: one long life, and at the end short ones that lose their main port."""

    def __init__(
        self, options: argparse.Namespace, binaries: pathlib.Path, out: pathlib.Path, limits: Limits
    ) -> None:
        self._options = options
        self._binaries = binaries
        self._out = out
        self._limits = limits
        self._lives: list[Life] = []

    def run(self) -> int:
        """Returns the exit status."""
        print(f"soak: {self._binaries}, seed {self._options.seed}, {self._options.minutes:g} min")
        begin = time.monotonic()
        seconds = 60 * self._options.minutes
        losses = min(_LOSSES_SECONDS, _LOSSES_SHARE * seconds)
        try:
            self._live(begin + seconds - losses, losses < 30.0)
            while time.monotonic() - begin < seconds - 15.0:
                self._live(0.0, True)
            self._judge()
        except Failure as failure:
            life = self._lives[-1]
            self._report()
            print(f"soak: FAILED: {failure}")
            print(f"soak: seed {self._options.seed}; recordings in {self._out}/panel-{life.number}")
            print(f"soak: again: tests/soak --replay {self._out}/panel-{life.number}")
            return 1
        self._report()
        print(f"soak: passed in {time.monotonic() - begin:.0f} s")
        return 0

    def _live(self, until: float, loses: bool) -> None:
        life = Life(
            self._binaries,
            self._out,
            self._options.seed,
            len(self._lives) + 1,
            self._limits,
            self._options.plant,
        )
        self._lives.append(life)
        life.start()
        try:
            first = True
            while first or time.monotonic() < until:
                left = until - time.monotonic()
                life.storm(max(2.0, min(_STORM_SECONDS, left / 2)))
                life.rest()
                first = False
                if len(life.rests) % 10 == 0:
                    self._print_rest(life.rests[-1])
            if loses:
                life.lose_main_port()
        finally:
            life.close()

    def _judge(self) -> None:
        trends.judge(self._lives[0].rests, self._limits.sanitized)

    def _settled(self) -> list[checks.Rest]:
        return checks.settled(self._lives[0].rests)

    def _print_rest(self, rest: checks.Rest) -> None:
        numbers = dataclasses.asdict(rest)
        text = ", ".join(f"{name} {value:.6g}" for name, value in numbers.items())
        print(f"soak: at rest: {text}", flush=True)

    def _report(self) -> None:
        lives = self._lives
        times = sorted(took for life in lives for took in life.talk.answer_times)
        held = [took for life in lives for took in life.talk.held_times]
        print(f"panels {len(lives)}, messages to the panel {sum(life.talk.sent for life in lives)}"
              f" ({sum(life.talk.sent_bytes for life in lives)} bytes),"
              f" from it {sum(life.talk.received for life in lives)}")
        if times:
            print(f"PINGs {sum(life.talk.pings for life in lives)}: answered {len(times)}, median"
                  f" {1000 * statistics.median(times):.1f} ms, 99 %"
                  f" {1000 * times[int(0.99 * (len(times) - 1))]:.0f} ms,"
                  f" longest {1000 * times[-1]:.0f} ms;"
                  f" held by an editor of the unit {len(held)}")
        for name, counters in (
            ("presses", [life.presses for life in lives]),
            ("steps", [life.steps for life in lives]),
            ("ports lost", [life.log.lost for life in lives]),
            ("log", [life.log.kinds for life in lives]),
        ):
            total = sum(counters[1:], counters[0])
            print(f"{name} {total.total()}: " + "; ".join(f"{key} {n}" for key, n in total.most_common(20)))
        reopened = [took for life in lives for took in life.reopened]
        if reopened:
            print(f"ports that came back {len(reopened)}, the last to do so after {max(reopened):.1f} s")
        self._report_memory()

    def _report_memory(self) -> None:
        rests = self._settled() or self._lives[0].rests
        if not rests:
            return
        print(f"memory: highest {max(life.highest_kb for life in self._lives)} kB resident")
        memory = ("resident_kb", "heap_kb", "large_kb", "gaps_kb", "whole_kb")
        for what in (*memory, "files", "timers", "widgets", "objects"):
            found = checks.slope(rests, what)
            print(f"{what} at rest: {found.first:.0f} to {found.last:.0f},"
                  f" {found.per_minute:+.2f} a minute over {(rests[-1].seconds - rests[0].seconds) / 60:.1f} min")
        print(f"processor at rest: {100 * max(rest.cpu for rest in rests):.2f} % of a core at most")


if __name__ == "__main__":
    sys.exit(main())
