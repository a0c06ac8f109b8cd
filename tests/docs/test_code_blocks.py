"""Compiles every block of C in the documentation.

usage: test_code_blocks.py C-COMPILER

A block without a main function stands for the body of one that has a connection, `server`.
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
FEWEST_BLOCKS = 15  # the pages have more: fewer means that they are not found
COMPILER = sys.argv.pop(1)


def blocks():
    for page in PAGES:
        text = page.read_text(encoding="utf-8")
        for block in re.finditer(r"^```c\n(.*?)^```", text, flags=re.MULTILINE | re.DOTALL):
            line = text.count("\n", 0, block.start()) + 2
            yield page, line, block.group(1)


def program(page, line, code):
    where = f'#line {line} "{page.relative_to(ROOT)}"\n'
    if "int main(" in code:
        return where + code
    begin = "#include <velto/velto.h>\nvoid block(VeltoHandle server);\n"
    return f"{begin}void block(VeltoHandle server)\n{{\n(void)server;\n{where}{code}}}\n"


class CodeBlocks(unittest.TestCase):
    def test_every_block_compiles(self):
        count = 0
        for page, line, code in blocks():
            count += 1
            with self.subTest(page=page.name, line=line):
                result = subprocess.run(
                    [COMPILER, "-std=c11", "-Wall", "-Wextra", "-Werror", "-fsyntax-only"]
                    + [f"-I{ROOT}/include", "-x", "c", "-"],
                    input=program(page, line, code),
                    stderr=subprocess.PIPE,
                    text=True,
                )
                self.assertEqual(result.returncode, 0, result.stderr)
        self.assertGreater(count, FEWEST_BLOCKS)


if __name__ == "__main__":
    unittest.main()
