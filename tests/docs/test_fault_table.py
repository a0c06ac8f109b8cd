"""Checks the table of what happens when the system fails, docs/faults.md.

It has each call that can be made to fail, no other, and tests that exist.
"""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "faults.md"
CALLS = ROOT / "src" / "platform" / "faults.h"


def rows():
    """The cells of each row of a table, but for its head and its rule."""
    for line in PAGE.read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("|") and cells[-1] != "test" and set(line) - set("|-"):
            yield cells


def tests_of(cells):
    return [name.strip() for name in cells[-1].split(",")]


def known_tests():
    names = set()
    for source in (ROOT / "tests").rglob("*_test.cpp"):
        text = source.read_text(encoding="utf-8")
        for suite, name in re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", text, re.MULTILINE):
            names.add(f"{suite}.{name}")
    for source in (ROOT / "tests").rglob("test_*.py"):
        suite = None
        for line in source.read_text(encoding="utf-8").splitlines():
            if found := re.match(r"class (\w+)\(unittest.TestCase\)", line):
                suite = found.group(1)
            elif found := re.match(r"    def (test_\w+)", line):
                names.add(f"{suite}.{found.group(1)}")
    return names


class FaultTable(unittest.TestCase):
    def test_every_call_and_no_other_is_in_it(self):
        calls = set(re.findall(r"\bCALL\((\w+)\)", CALLS.read_text(encoding="utf-8")))
        self.assertGreater(len(calls), 20)
        named = {cell for cells in rows() for cell in re.findall(r"^`(\w+)`$", cells[0])}
        self.assertEqual(calls | {"memory"}, named)

    def test_every_test_named_exists(self):
        known = known_tests()
        for cells in rows():
            for name in tests_of(cells):
                with self.subTest(row=cells[:3]):
                    self.assertIn(name, known)

    def test_every_row_is_complete(self):
        for cells in rows():
            with self.subTest(row=cells):
                self.assertEqual([len(cells), "" in cells], [5, False])


if __name__ == "__main__":
    unittest.main()
