"""Runs each example against a simulator of its own.

usage: test_examples.py SIMULATOR ADDRESS EXAMPLE...
"""

import subprocess
import sys

SIMULATOR, ADDRESS, *EXAMPLES = sys.argv[1:]


def run(example):
    """The simulator starts afresh for each, so that none finds what another has left."""
    with subprocess.Popen(
        [SIMULATOR, "--address", ADDRESS], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True
    ) as simulator:
        try:
            if not simulator.stdout.readline().startswith("listening on"):
                return "the simulator did not start"
            result = subprocess.run(
                [*example.split(), ADDRESS],
                stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT,
                text=True,
                timeout=60,
            )
        finally:
            simulator.terminate()
    print(f"-- {example}\n{result.stdout}", end="")
    return None if result.returncode == 0 else f"ended with {result.returncode}"


failures = {example: failure for example in EXAMPLES if (failure := run(example))}
for example, failure in failures.items():
    print(f"{example}: {failure}")
print(f"{len(EXAMPLES) - len(failures)} passed, {len(failures)} failed")
sys.exit(bool(failures))
