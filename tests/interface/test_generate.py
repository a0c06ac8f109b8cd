"""What is generated agrees with the description, and --check sees every change."""

import contextlib
import io
import re
import unittest

import support
import generate
from description import load
from layout import WIDTH


def run(*arguments):
    """Exit code and what was printed."""
    printed = io.StringIO()
    with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(printed):
        code = generate.main([str(argument) for argument in arguments])
    return code, printed.getvalue()


class GenerateTest(unittest.TestCase):
    def setUp(self):
        self.tree = support.Tree(self)
        self.assertEqual(run("--root", self.tree.root)[0], 0)

    def check(self):
        return run("--root", self.tree.root, "--check")

    def text(self, name):
        return self.tree.file(name).read_text(encoding="utf-8")

    def test_what_is_checked_in_is_up_to_date(self):
        code, printed = run("--check")
        self.assertEqual(code, 0, printed)

    def test_check_passes_behind_a_run(self):
        self.assertEqual(self.check(), (0, ""))

    def test_a_second_run_writes_nothing(self):
        self.assertEqual(run("--root", self.tree.root), (0, ""))

    def test_check_sees_a_changed_byte_in_each_file(self):
        for name in generate.OUTPUTS:
            with self.subTest(name):
                path = self.tree.file(name)
                before = path.read_bytes()
                path.write_bytes(before.replace(b"velto_jog1", b"velto_jog3", 1))
                code, printed = self.check()
                self.assertEqual(code, 1)
                self.assertIn(f"{name} is out of date", printed)
                self.assertRegex(printed, r"(?m)^-.*velto_jog3")
                self.assertRegex(printed, r"(?m)^\+.*velto_jog1")
                path.write_bytes(before)

    def test_check_sees_a_missing_last_line_end(self):
        path = self.tree.file("src/api/velto.def")
        path.write_bytes(path.read_bytes()[:-1])
        self.assertEqual(self.check()[0], 1)

    def test_check_sees_a_missing_file_and_does_not_write_it(self):
        path = self.tree.file("include/velto/velto.h")
        path.unlink()
        code, printed = self.check()
        self.assertEqual(code, 1)
        self.assertIn("include/velto/velto.h", printed)
        self.assertFalse(path.exists())

    def test_check_sees_a_changed_description(self):
        self.tree.replace("interface/35_seek.toml", "Moves a channel by", "Jogs a channel by")
        code, printed = self.check()
        self.assertEqual(code, 1)
        self.assertIn("include/velto/velto.h is out of date", printed)

    def test_a_wrong_description_is_told_and_nothing_is_written(self):
        before = self.text("include/velto/velto.h")
        self.tree.replace("interface/35_seek.toml", 'type = "u32"', 'type = "u23"')
        code, printed = run("--root", self.tree.root)
        self.assertEqual(code, 1)
        self.assertIn("interface/35_seek.toml", printed)
        self.assertIn("unknown type 'u23'", printed)
        self.assertEqual(self.text("include/velto/velto.h"), before)

    def test_every_output_holds_every_function_once(self):
        names = sorted(function.name for function in load(self.tree.root / "interface").functions)
        shapes = {
            "include/velto/velto.h": r"^VELTO_API \w+ (velto_\w+)\(",
            "src/api/velto.def": r"^    (velto_\w+)$",
            "src/api/velto.map": r"^    (velto_\w+);$",
            "interface/exports.txt": r"^(velto_\w+)$",
            "tests/api/prototypes.c": r"^PIN\((velto_\w+),",
            "tests/api/prototypes_cpp_test.cpp": r"^static_assert\(.*decltype\((velto_\w+)\),",
        }
        self.assertEqual(set(shapes), set(generate.OUTPUTS))
        for name, shape in shapes.items():
            with self.subTest(name):
                found = re.findall(shape, self.text(name), re.MULTILINE)
                self.assertEqual(sorted(found), names)

    def test_every_output_says_first_that_it_is_generated(self):
        for name in generate.OUTPUTS:
            with self.subTest(name):
                self.assertIn("Generated from interface/", self.text(name).splitlines()[0])

    def test_no_line_is_too_long(self):
        for name in generate.OUTPUTS:
            for line in self.text(name).splitlines():
                self.assertLessEqual(len(line), WIDTH, f"{name}: {line}")


if __name__ == "__main__":
    unittest.main()
