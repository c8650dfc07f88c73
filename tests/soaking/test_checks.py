"""The checks of the soak find what they are for."""

import unittest

from . import checks, trends
from .programs import Failure


def _rests(seconds: float, **growth: float) -> list[checks.Rest]:
    """Returns a rest every 15 s, in which what is named grows by so much a minute."""
    rests = []
    for at in range(0, int(seconds) + 1, 15):
        counts = dict(resident_kb=62_000, files=34, timers=2, widgets=363, objects=1053)
        for name, per_minute in growth.items():
            counts[name] += round(per_minute * at / 60)
        rests.append(
            checks.Rest(seconds=at, heap_kb=12_000, large_kb=8_000, gaps_kb=9_000, cpu=0.0005, **counts)
        )
    return rests


class Trends(unittest.TestCase):
    def test_a_steady_panel_passes(self) -> None:
        for seconds in (15, 165, 900):
            trends.judge(_rests(seconds), sanitized=False)

    def test_growth_is_found_in_long_and_in_short_runs(self) -> None:
        for seconds in (60, 900):
            for what in ("files", "timers", "widgets"):
                with self.assertRaises(Failure, msg=f"{what}, {seconds} s"):
                    trends.judge(_rests(seconds, **{what: 80}), sanitized=True)

    def test_resident_memory_that_grows_is_found_without_a_sanitizer(self) -> None:
        rests = _rests(900, resident_kb=150)
        with self.assertRaises(Failure):
            trends.judge(rests, sanitized=False)
        trends.judge(rests, sanitized=True)

    def test_a_run_without_a_rest_fails(self) -> None:
        with self.assertRaises(Failure):
            trends.judge([], sanitized=False)


class Messages(unittest.TestCase):
    DEFINITION = r"trace: 0.1 in \x02AK,Tuner,k1,Label,1,R1:FREQ:,,0,,5,0,1\x04"

    def faults(self, definition: str, body: str) -> list[str]:
        talk = checks.Conversation()
        talk.take(definition)
        talk.take(rf"trace: 1.0 out \x02{body}\x04")
        return talk.faults

    def test_what_a_definition_asks_for_is_good(self) -> None:
        for body in ("R1:FREQ:12", "R1:FREQ:0.500000", "Slave,1"):
            self.assertEqual(self.faults(self.DEFINITION, body), [], body)

    def test_anything_else_is_a_fault(self) -> None:
        for body in ("PON", "PONGPONG", "GARBAGE 17", "R9:BOGUS", "x17"):
            self.assertNotEqual(self.faults(self.DEFINITION, body), [], body)

    def test_a_key_without_a_command_sends_its_value_alone(self) -> None:
        self.assertEqual(self.faults(self.DEFINITION.replace("R1:FREQ:", ""), "17"), [])


if __name__ == "__main__":
    unittest.main()
