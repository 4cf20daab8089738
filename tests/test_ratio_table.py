#!/usr/bin/env python3
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(sys.argv.pop(1)) / "bench"))
import ratio_table  # noqa: E402

ROW = "painting | bench_plot | paint/800/iterations:5 | byHand | 1.5"


def result(line, figures):
    return ratio_table.result(ratio_table.row(line), figures)


class RatioTable(unittest.TestCase):
    def test_comments_and_empty_lines_are_no_rows(self):
        rows = ratio_table.parse(f"# what | program\n\n{ROW}\n")
        self.assertEqual([row.program for row in rows], ["bench_plot"])

    def test_row_with_a_column_too_few_is_refused(self):
        with self.assertRaises(ValueError):
            ratio_table.row("painting | bench_plot | paint | 1.5")

    def test_sixth_column_that_is_no_reason_is_refused(self):
        with self.assertRaises(ValueError):
            ratio_table.row(f"{ROW} | slow")

    def test_goal_holds_up_to_its_limit(self):
        for paint, is_met in ((300, True), (301, False)):
            each = result(ROW, {"paint/800/iterations:5": paint, "byHand": 200})
            self.assertEqual((each.is_met, each.fails), (is_met, not is_met), paint)

    def test_plain_figure_is_held_against_the_limit_itself(self):
        line = "allocations | bench_plot | paint:allocations | - | 0"
        self.assertTrue(result(line, {"paint:allocations": 0}).is_met)
        self.assertTrue(result(line, {"paint:allocations": 1}).fails)

    def test_row_whose_reference_could_not_run_is_left_out_with_the_reason(self):
        row = ratio_table.row("decoding | bench_decode | ours | theirs | 0.2")
        self.assertEqual(ratio_table.why_left_out(row, {"ours": 1, "theirs": "left out: no npm"}),
                         "left out: no npm")
        self.assertEqual(ratio_table.why_left_out(row, {"ours": 1, "theirs": 2}), "")

    def test_miss_known_to_be_out_of_reach_is_told_and_fails_nothing(self):
        each = result(f"{ROW} | known: slow memory", {"paint/800/iterations:5": 9, "byHand": 1})
        self.assertEqual((each.is_met, each.fails), (False, False))
        self.assertIn("missed**, known: slow memory", ratio_table.table([each]))

    def test_better_of_two_attempts_counts_row_by_row(self):
        rows = [ROW, "drawing | bench_plot | draw | byHand | 1.5"]
        figures = ({"paint/800/iterations:5": 100, "draw": 300, "byHand": 200},
                   {"paint/800/iterations:5": 400, "draw": 200, "byHand": 200})
        former, later = ([result(row, each) for row in rows] for each in figures)
        self.assertEqual([each.ratio for each in ratio_table.better_of(former, later)], [0.5, 1.0])

    def test_miss_on_a_machine_that_was_taken_away_is_told_and_fails_nothing(self):
        figures = {"paint/800/iterations:5": 400, "byHand": 200}
        disturbed = ratio_table.result(ratio_table.row(ROW), figures, stolen=0.05)
        self.assertFalse(disturbed.fails)
        self.assertIn("5% of the machine was taken away", disturbed.verdict)
        self.assertTrue(ratio_table.result(ratio_table.row(ROW), figures, stolen=0.01).fails)

    def test_stolen_share_is_the_eighth_column(self):
        self.assertEqual(ratio_table.stolen_share("cpu  10 0 10 70 0 0 0 10 0 0\n",
                                                  "cpu  20 0 20 140 0 0 0 20 0 0\ncpu0"), 0.1)
        self.assertEqual(ratio_table.stolen_share("cpu  1 1 1 1 1 1 1 1\n", "cpu  1 1 1 1 1 1 1 1\n"),
                         0.0)

    def test_reference_of_nothing_is_never_met(self):
        each = result(ROW, {"paint/800/iterations:5": 0, "byHand": 0})
        self.assertTrue(each.fails)

    def test_table_shows_both_times_their_ratio_and_the_goal(self):
        each = result(ROW, {"paint/800/iterations:5": 2_500_000, "byHand": 2000})
        line = [cell.strip() for cell in ratio_table.table([each]).splitlines()[2].split("|")]
        self.assertEqual(line[1:-1], ["painting", "paint/800/iterations:5 2.5 ms", "byHand 2 µs",
                                      "1250.00", "1.5", "**MISSED**"])

    def test_counter_has_no_unit_of_time(self):
        each = result("rate | bench_link | take:rate | - | 9", {"take:rate": 4})
        self.assertIn("| take:rate 4 ", ratio_table.table([each]))

    def test_unknown_benchmark_is_a_fault(self):
        with self.assertRaises(KeyError):
            result(ROW, {"byHand": 1})


if __name__ == "__main__":
    unittest.main()
