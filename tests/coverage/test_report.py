"""What the coverage report makes of a tracefile and of the reasons given."""

import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "coverage"))

import report  # noqa: E402


def tracefile(*files):
    lines = []
    for path, counts in files:
        lines += [f"SF:{path}", *(f"DA:{line},{count}" for line, count in counts), "end_of_record"]
    return "\n".join(lines)


class LineCounts(unittest.TestCase):
    def test_adds_up_what_several_records_say_of_a_line(self):
        path = ROOT / "src" / "a.h"
        counts = report.line_counts(tracefile((path, [(1, 0), (2, 0)]), (path, [(1, 3), (2, 0)])))
        self.assertEqual(counts, {"src/a.h": {1: 3, 2: 0}})

    def test_knows_a_file_by_any_path_that_leads_to_it(self):
        counts = report.line_counts(tracefile(("build/p/../../src/a.h", [(1, 1)])))
        self.assertEqual(counts, {"src/a.h": {1: 1}})

    def test_leaves_out_what_is_not_the_library(self):
        counts = report.line_counts(tracefile((ROOT / "tests" / "a.cpp", [(1, 0)])))
        self.assertEqual(counts, {})


class Account(unittest.TestCase):
    def test_a_reason_is_for_one_line_of_its_text(self):
        uncovered = [("a.h", 3, "return;"), ("a.h", 9, "return;")]
        unexplained, outlived = report.account(uncovered, {("a.h", "return;"): 1}, Counter())
        self.assertEqual(unexplained, [("a.h", 9, "return;")])
        self.assertEqual(outlived, [])

    def test_a_reason_whose_line_runs_has_outlived_it(self):
        unexplained, outlived = report.account([], {("a.h", "return;"): 1}, Counter())
        self.assertEqual(unexplained, [])
        self.assertEqual(outlived, [("a.h", "return;")])

    def test_a_line_that_runs_by_chance_may_do_either(self):
        lines = Counter({("a.h", "return;"): 1})
        for uncovered in ([], [("a.h", 3, "return;")]):
            self.assertEqual(report.account(uncovered, lines, lines), ([], []))


class Reasons(unittest.TestCase):
    def test_a_group_gives_its_reason_to_every_line_named(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "reasons.toml"
            path.write_text('[[unreachable]]\nwhy = "w"\n[unreachable.lines]\n"a.h" = ["x", "x"]\n')
            self.assertEqual(report.reasons(path), ({("a.h", "x"): 2}, {}))

    def test_a_group_can_be_of_lines_that_run_by_chance(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "reasons.toml"
            path.write_text(
                '[[unreachable]]\nwhy = "w"\nby_chance = true\n[unreachable.lines]\n"a.h" = ["x"]\n'
            )
            self.assertEqual(report.reasons(path), ({("a.h", "x"): 1}, {("a.h", "x"): 1}))

    def test_a_group_without_a_reason_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "reasons.toml"
            path.write_text('[[unreachable]]\nwhy = ""\n[unreachable.lines]\n"a.h" = ["x"]\n')
            with self.assertRaisesRegex(ValueError, "no reason"):
                report.reasons(path)


if __name__ == "__main__":
    unittest.main()
