#!/usr/bin/env python3
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(sys.argv.pop(1)) / "bench"))
import instruction_record  # noqa: E402
from instruction_record import Record  # noqa: E402

RECORDED = Record({"Qt": "5.15.8", "avx2": "yes"}, {"decode": 1000, "paint": 2000})


class InstructionRecord(unittest.TestCase):
    def test_comes_back_from_its_text(self):
        self.assertEqual(instruction_record.parse(instruction_record.text_of(RECORDED)), RECORDED)

    def test_five_per_cent_more_are_let_pass_and_no_more(self):
        for count, has_grown in ((900, False), (1050, False), (1051, True)):
            growth = instruction_record.growth(RECORDED, Record({}, {"decode": count}))
            self.assertEqual(instruction_record.has_grown(growth["decode"]), has_grown, count)

    def test_workload_that_nobody_recorded_does_not_pass(self):
        growth = instruction_record.growth(RECORDED, Record({}, {"zoom": 1}))
        self.assertTrue(instruction_record.has_grown(growth["zoom"]))

    def test_same_versions_are_none_to_tell(self):
        counted = Record(dict(RECORDED.versions), {"decode": 1})
        self.assertEqual(instruction_record.other_versions(RECORDED, counted), [])

    def test_other_and_missing_versions_are_told(self):
        counted = Record({"Qt": "5.15.9"}, {})
        self.assertEqual(instruction_record.other_versions(RECORDED, counted),
                         ["Qt 5.15.9 instead of 5.15.8", "avx2 None instead of yes"])


if __name__ == "__main__":
    unittest.main()
