"""The runner of the fuzz targets, on programs that print what libFuzzer prints."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

RUN = Path(__file__).resolve().parents[2] / "tools" / "fuzz" / "run.py"

SEEDS = "#!/bin/sh\nmkdir -p \"$1/seeds/quiet\"\n"

QUIET = """#!/bin/sh
echo "#77\tDONE   cov: 12 ft: 30 corp: 5/40b"
echo "stat::number_of_executed_units: 77"
"""

CRASHING = """#!/bin/sh
for word; do case $word in -artifact_prefix=*) at=${word#*=}crash-1;; esac; done
echo hello >"$at"
echo "artifact_prefix='x'; Test unit written to $at"
exit 77
"""


class RunTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)
        self.add("seeds", SEEDS)

    def add(self, name, text):
        program = self.root / "bin" / f"fuzz_{name}"
        program.parent.mkdir(exist_ok=True)
        program.write_text(text, encoding="utf-8")
        program.chmod(0o755)

    def run_tool(self, *arguments):
        return subprocess.run([sys.executable, "-B", RUN, "--programs", self.root / "bin",
                               "--folder", self.root / "made", *arguments],
                              capture_output=True, text=True)

    def test_table_tells_what_a_target_has_done(self):
        self.add("quiet", QUIET)
        done = self.run_tool("0.01")
        self.assertEqual(done.returncode, 0, done.stderr)
        row = done.stdout.splitlines()[-1].split()
        self.assertEqual([row[0], row[1], *row[3:]], ["quiet", "77", "12", "5", "0"])

    def test_finding_fails_and_is_named_with_the_way_to_rerun_it(self):
        self.add("quiet", QUIET)
        self.add("crashing", CRASHING)
        done = self.run_tool("0.01")
        self.assertEqual(done.returncode, 1, done.stderr)
        finding = self.root / "made" / "findings" / "crashing" / "crash-1"
        self.assertIn(f"rerun: {self.root / 'bin' / 'fuzz_crashing'} {finding}", done.stdout)

    def test_program_that_fails_without_an_input_is_a_finding(self):
        self.add("broken", "#!/bin/sh\necho no such file\nexit 1\n")
        done = self.run_tool("0.01")
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn(str(self.root / "made" / "broken.log"), done.stdout)

    def test_target_is_chosen_by_name(self):
        self.add("quiet", QUIET)
        self.add("crashing", CRASHING)
        self.assertEqual(self.run_tool("--target", "quiet", "--replay").returncode, 0)

    def test_unknown_target_is_refused(self):
        self.add("quiet", QUIET)
        done = self.run_tool("--target", "loud")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no such target: loud", done.stderr)


if __name__ == "__main__":
    unittest.main()
