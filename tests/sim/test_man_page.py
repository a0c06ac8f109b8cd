"""The simulator's manual page tells all that its help tells.

usage: test_man_page.py SIMULATOR PAGE
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

SIMULATOR, PAGE = sys.argv[1:3]
HELP = subprocess.check_output([SIMULATOR, "--help"], text=True)
MANUAL = Path(PAGE).read_text(encoding="utf-8").replace("\\-", "-")


def section(title):
    return re.search(rf"^{title}\n(.*?)(?=^\S|\Z)", HELP, flags=re.MULTILINE | re.DOTALL).group(1)


class ManPage(unittest.TestCase):
    def expect_all(self, found, fewest):
        self.assertGreaterEqual(len(found), fewest)
        for text in found:
            with self.subTest(text):
                self.assertIn(text, MANUAL)

    def test_every_option(self):
        self.expect_all(set(re.findall(r"--[a-z][a-z-]+", HELP)), 10)

    def test_every_line_of_control(self):
        words = re.findall(r"^  ([a-z]+(?: [a-z-]+)?)", section("Control"), flags=re.MULTILINE)
        self.expect_all({word.split()[0] for word in words} & set(HELP.split()), 6)

    def test_every_exit_code(self):
        codes = re.findall(r"\b(\d) [a-z]", section("Exit codes"))
        self.expect_all([f".B {code}\n" for code in codes], 6)

    def test_it_has_no_error(self):
        result = subprocess.run(
            ["groff", "-man", "-ww", "-z", PAGE], stderr=subprocess.PIPE, text=True
        )
        self.assertEqual((result.returncode, result.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
