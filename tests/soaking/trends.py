"""What a run of the soak must not show: memory, files, timers or widgets that grow."""

from collections.abc import Sequence

from . import checks
from .programs import Failure

# A trend is only judged when it was watched for so long, in seconds.
_JUDGED_SECONDS = 240.0
# Resident memory, in kB a minute. Between the 3rd and the 10th minute it rose by 242 while all that the
# allocator had stayed the same: gaps between its pieces that were used for the first time. With large
# pieces in mappings of their own it was flat for the three minutes that were looked at.
_MAX_RESIDENT_SLOPE = 100.0
_MAX_HEAP_SLOPE = 100.0  # kB a minute; between two rests it differs by up to 3 MB
_MAX_COUNT_SLOPE = 0.05  # a minute
# What the last rest of a short run may have more than the first: displays that were opened for the
# first time and their pictures.
_MAX_SHORT_GROWTH = (("files", 1), ("timers", 4), ("widgets", 60), ("heap_kb", 20_000.0))


def judge(rests: Sequence[checks.Rest], sanitized: bool) -> None:
    """Raises a Failure when what the panel has at its rests grows.

    :param sanitized: whether a sanitizer keeps freed memory for a while
    """
    settled = checks.settled(list(rests))
    if len(settled) < 2 or settled[-1].seconds - settled[0].seconds < _JUDGED_SECONDS:
        print(f"soak: too short for trends, which need {_JUDGED_SECONDS:g} s of rests")
        _compare_ends(rests)
        return
    limits = [("heap_kb", _MAX_HEAP_SLOPE)]
    if not sanitized:
        limits += [("resident_kb", _MAX_RESIDENT_SLOPE), ("whole_kb", _MAX_HEAP_SLOPE)]
    for what, most in limits:
        found = checks.slope(settled, what)
        if found.per_minute > most:
            raise Failure(f"{what} grows by {found.per_minute:.1f} kB a minute, at most {most:g}")
    for what in ("files", "timers", "widgets"):
        found = checks.slope(settled, what)
        if found.per_minute > _MAX_COUNT_SLOPE:
            raise Failure(f"the number of {what} grows by {found.per_minute:.2f} a minute")


def _compare_ends(rests: Sequence[checks.Rest]) -> None:
    if not rests:
        raise Failure("there was no rest")
    for what, most in _MAX_SHORT_GROWTH:
        grown = getattr(rests[-1], what) - getattr(rests[0], what)
        if grown > most:
            raise Failure(f"{what} has grown by {grown:g} in a short run, at most {most:g}")
