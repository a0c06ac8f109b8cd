"""A thread that never returns is noticed, and told of with the stacks of all threads."""

import subprocess
import sys
import unittest

program = sys.argv.pop(1)


class Watchdog(unittest.TestCase):
    def test_a_thread_that_is_stuck_fails_the_run_with_all_stacks(self):
        ended = subprocess.run([program, "--hang", "--seed", "7", "--seconds", "60", "--threads",
                                "3", "--fault-ms", "0", "--patience", "3"],
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               errors="replace", timeout=120)
        self.assertEqual(ended.returncode, 1, ended.stdout)
        self.assertIn("FINDING: thread 0 has not moved for 3 s, in a wait that never ends of 'hang'",
                      ended.stdout)
        stacks = ended.stdout.split("-- stack of thread ")[1:]
        # The three, the main one and that of the doors; of the library's workers, which take no
        # signals, as much as can be seen.
        with_frames = [stack for stack in stacks if "0x" in stack]
        self.assertGreaterEqual(len(with_frames), 5, ended.stdout)
        self.assertGreater(len(stacks), 6, ended.stdout)
        self.assertIn("velto_stress --seed 7 ", ended.stdout.splitlines()[-1])


unittest.main()
