"""Tests of tools/coverage_table.py."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
import coverage_table  # noqa: E402

ROWS = [
    {"filename": "src/cache/A.cpp", "line_total": "60", "line_covered": "60", "branch_total": "8",
     "branch_covered": "4"},
    {"filename": "src/cache/B.cpp", "line_total": "40", "line_covered": "20", "branch_total": "",
     "branch_covered": ""},
    {"filename": "src/platform/linux/index/C.cpp", "line_total": "10", "line_covered": "9",
     "branch_total": "2", "branch_covered": "2"},
    {"filename": "src/platform/D.h", "line_total": "1", "line_covered": "1", "branch_total": "0",
     "branch_covered": "0"},
]


class CoverageTable(unittest.TestCase):
    def setUp(self):
        self.files = list(coverage_table.read(ROWS))
        self.sums = coverage_table.by_subsystem(self.files)

    def test_sums_up_by_subsystem(self):
        self.assertEqual(self.sums, {"cache": (100, 80, 8, 4), "platform/linux": (10, 9, 2, 2),
                                     "platform": (1, 1, 0, 0)})

    def test_prints_shares(self):
        rows = list(coverage_table.table(self.sums))
        self.assertEqual(rows[1].split(), ["cache", "100", "80.0%", "8", "50.0%"])
        self.assertEqual(rows[2].split(), ["platform", "1", "100.0%", "0", "100.0%"])

    def test_wants_nine_tenths_of_what_makes_the_show(self):
        self.assertEqual(coverage_table.missed(self.sums), list(coverage_table.WANTED))
        enough = {name: coverage_table.Counts(10, 9, 0, 0) for name in coverage_table.WANTED}
        self.assertEqual(coverage_table.missed(enough), [])

    def test_lists_the_files_with_most_lines_that_are_not_reached(self):
        first = next(coverage_table.least_reached(self.files))
        self.assertEqual(first.split(), ["20", "of", "40", "lines", "src/cache/B.cpp"])


if __name__ == "__main__":
    unittest.main()
