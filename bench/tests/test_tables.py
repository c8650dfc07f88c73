"""The tables of bench/run, without measuring anything."""

from __future__ import annotations

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

from runner import __main__ as command
from runner import arm, place, table
from runner.figures import Figures, sections
from runner.parts import Parts
from runner.rows import COMMANDS, ROWS, Row

ROW = Row("thing", "a thing", "a bare thing", 1.5, "things")
SHARE = Row("share", "a share", "a core", 0.01, "things", "% of a core", percent=True, limit_value=100.0)
FLAT = Row("flat", "the slowest", "the fastest", 1.2, "things", flat=("a", "b", "c"))


def figures(*lines: str) -> Figures:
    """Figures as a program prints them."""
    read = Figures()
    read.read("\n".join(line.replace(" ", "\t") for line in lines))
    return read


class Reading(unittest.TestCase):
    """What programs print."""

    def test_figures_are_read_and_other_lines_are_not(self) -> None:
        read = figures("figure thing ours 3", "figure thing peer 2e3", "figure thing", "thing ours 4")
        self.assertEqual(read.values, {("thing", "ours"): 3.0, ("thing", "peer"): 2000.0})

    def test_sections_keep_their_order(self) -> None:
        self.assertEqual(sections("section\ta\tours\t10\nnoise\nsection\ta\tpeer\t5\n"),
                         [("a", "ours", 10.0), ("a", "peer", 5.0)])

    def test_the_median_of_several_measurements_counts(self) -> None:
        read = Figures()
        read.add("thing", "ours", [9.0, 1.0, 2.0])
        self.assertEqual(read.values["thing", "ours"], 2.0)

    def test_dumps_of_callgrind_are_found_by_their_name(self) -> None:
        with tempfile.TemporaryDirectory() as directory:
            out = pathlib.Path(directory) / "x.out"
            (out.parent / "x.out.1").write_text(
                "desc: Trigger: Client Request: thing ours\n\ntotals: 1234\n")
            (out.parent / "x.out.2").write_text("desc: Trigger: Program termination\ntotals: 9\n")
            self.assertEqual(place._dumps(out), {"thing ours": 1234.0})


class Marking(unittest.TestCase):
    """Which rows miss their goal."""

    def test_a_ratio_above_the_goal_is_marked(self) -> None:
        read = figures("figure thing ours 3.1", "figure thing peer 2")
        self.assertTrue(table.misses(ROW, read))
        self.assertIn(table.MISSED, table.cells(ROW, read))

    def test_a_ratio_at_the_goal_is_not_marked(self) -> None:
        read = figures("figure thing ours 3", "figure thing peer 2")
        self.assertFalse(table.misses(ROW, read))
        self.assertNotIn(table.MISSED, table.cells(ROW, read))

    def test_a_row_without_a_peer_is_not_measured(self) -> None:
        read = figures("figure thing ours 3")
        self.assertFalse(table.misses(ROW, read))
        self.assertIn("not measured", table.cells(ROW, read))

    def test_a_peer_of_nothing_is_no_peer(self) -> None:
        self.assertIsNone(ROW.sides(figures("figure thing ours 3", "figure thing peer 0")))

    def test_a_share_is_written_as_per_cent(self) -> None:
        texts = table.cells(SHARE, figures("figure share ours 1.04"))
        self.assertEqual(texts[4:7], ["1.04 %", "≤ 1.00 %", table.MISSED])

    def test_a_flat_row_sets_the_slowest_beside_the_fastest(self) -> None:
        read = figures("figure a ours 20", "figure b ours 25", "figure c ours 22")
        self.assertEqual(FLAT.sides(read), (25.0, 20.0))
        self.assertTrue(table.misses(FLAT, read))
        self.assertIsNone(FLAT.sides(figures("figure a ours 20")))

    def test_a_limit_can_be_a_part_of_the_peer(self) -> None:
        row = next(row for row in ROWS if row.name == "CV.1000")
        read = figures("figure CV.1000 ours 19", "figure CV.1000 peer 131")
        self.assertFalse(table.misses(row, read))
        self.assertTrue(table.misses(row, figures("figure CV.1000 ours 21", "figure CV.1000 peer 131")))


class Tables(unittest.TestCase):
    """What is printed."""

    def test_every_row_has_a_name_of_its_own_and_a_command(self) -> None:
        names = [row.name for row in ROWS]
        self.assertEqual(len(names), len(set(names)))
        for row in ROWS:
            self.assertIn(row.group, COMMANDS, row.name)
        self.assertLessEqual(set(arm.NAMES), set(names))

    def test_every_line_of_markdown_has_all_cells(self) -> None:
        read = figures("figure thing ours 3", "figure thing peer 2")
        read.counts["thing", "ours"] = 12345.0
        text = table.first([ROW, SHARE], read, markdown=True)
        lines = text.splitlines()
        self.assertEqual(len(lines), 4)
        self.assertEqual({line.count("|") for line in lines}, {len(table.HEADINGS) + 1})
        self.assertIn("| 12,345 |", lines[2])

    def test_the_second_table_marks_what_was_not_counted(self) -> None:
        read = Figures(counts={("start", "ours"): 30.0, ("start", "peer"): 20.0})
        text = table.second({"start": "the start", "page.SK": "a page"}, read, markdown=False)
        self.assertIn("1.50", text)
        self.assertRegex(text, "a page +not counted")

    def test_two_checkouts_stand_side_by_side(self) -> None:
        here = figures("figure thing ours 2", "figure thing peer 2")
        there = figures("figure thing ours 4", "figure thing peer 2")
        last = table.beside([ROW], here, there, markdown=True).splitlines()[-1]
        self.assertIn("| 0.50 |", last)
        self.assertEqual(last.count(table.MISSED), 1)
        self.assertIn("not measured", table.beside([ROW], here, Figures(), markdown=True))

    def test_rows_are_chosen_by_their_name_or_group(self) -> None:
        self.assertEqual([row.name for row in command.wanted(["define.1*"])],
                         ["define.100", "define.1000", "define.10000"])
        self.assertIn("CK.flat", [row.name for row in command.wanted(["changes"])])
        self.assertEqual(command.wanted([]), ROWS)

    def test_a_table_is_written_between_its_marks(self) -> None:
        with tempfile.TemporaryDirectory() as directory:
            document = pathlib.Path(directory) / "performance.md"
            document.write_text("before\n<!-- table: first -->\nold\n<!-- end -->\nafter\n"
                                "<!-- table: second -->\nkept\n<!-- end -->\n")
            with mock.patch.object(command, "_DOCUMENT", document):
                command.update("first", "new")
            self.assertEqual(document.read_text(),
                             "before\n<!-- table: first -->\nnew\n<!-- end -->\nafter\n"
                             "<!-- table: second -->\nkept\n<!-- end -->\n")

    def test_the_document_has_a_place_for_both_tables(self) -> None:
        document = (place.ROOT / "docs/performance.md").read_text()
        for name in ("first", "second", "run"):
            self.assertEqual(document.count(f"<!-- table: {name} -->\n"), 1)

    def test_a_run_says_how_long_it_took_and_what_it_found(self) -> None:
        parts = Parts()
        parts.begin("build")
        parts.end()
        self.assertEqual(parts.summary(),
                         "This run took 0.0 minutes; what was there before it: nothing.")
        parts.found = ["a build", "packages"]
        self.assertIn("before it: a build, packages.", parts.summary())
        self.assertIn("| build |", parts.report(markdown=True))

    def test_a_list_of_the_rows_measures_nothing(self) -> None:
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed), mock.patch.object(sys, "argv", ["run", "--list"]):
            self.assertEqual(command.main(), 0)
        self.assertEqual(len(printed.getvalue().splitlines()), len(ROWS))


if __name__ == "__main__":
    unittest.main()
