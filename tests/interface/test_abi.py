"""The comparison of the binary interface with the stored one, on copies that differ from it."""

import re
import tempfile
import unittest
from pathlib import Path

import support  # puts the tools on the path
import abi

STORED = abi.STORED.read_text(encoding="utf-8")


def report_on(description):
    with tempfile.TemporaryDirectory() as directory:
        path = Path(directory) / "changed.xml"
        path.write_text(description, encoding="utf-8")
        return abi.compare(abi.STORED, path)


class AbiTest(unittest.TestCase):
    def changed(self, pattern, replacement):
        description = re.sub(pattern, replacement, STORED, count=1)
        self.assertNotEqual(description, STORED)
        return report_on(description)

    def test_the_same_interface_gives_no_report(self):
        self.assertEqual(report_on(STORED), "")

    def test_a_lost_function_is_reported(self):
        without_symbol = re.sub(r"\s*<elf-symbol name='velto_sync' [^>]*/>", "", STORED)
        without = re.sub(
            r"\s*<function-decl name='velto_sync'.*?</function-decl>",
            "",
            without_symbol,
            flags=re.DOTALL,
        )
        self.assertIn("velto_sync", report_on(without))

    def test_another_type_of_an_argument_is_reported(self):
        double = re.search(r"<type-decl name='double' [^>]*id='(\w+)'", STORED).group(1)
        report = self.changed(
            r"<parameter type-id='\w+' name='min_latency'/>",
            f"<parameter type-id='{double}' name='min_latency'/>",
        )
        self.assertIn("double", report)

    def test_another_soname_is_reported(self):
        self.assertIn("SONAME", self.changed(r"soname='[^']*'", "soname='libVeltoAPI64.so.2'"))


if __name__ == "__main__":
    unittest.main()
