#!/usr/bin/env python3
"""Compares the binary interface of a library built with debug information with the stored one.

usage: abi.py LIBRARY [--accept]

Fails, with what has changed, when they differ in anything: a name, a version, an argument, a type.
--accept stores the interface of LIBRARY in place of the old one: a change is made on purpose.
"""

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
STORED = ROOT / "interface" / "abi.xml"


def describe(library):
    """The interface as abidw tells it, without where it was built."""
    result = subprocess.run(
        [
            "abidw",
            "--exported-interfaces-only",
            "--no-show-locs",
            "--no-corpus-path",
            "--no-comp-dir-path",
            "--no-elf-needed",
            "--type-id-style",
            "hash",
            library,
        ],
        stdout=subprocess.PIPE,
        text=True,
        check=True,
    )
    return re.sub(r"(<abi-instr [^>]*path=')[^']*/src/", r"\1src/", result.stdout)


def compare(stored, current):
    """The report of abidiff; empty where nothing differs."""
    result = subprocess.run(
        ["abidiff", "--harmless", "--no-unreferenced-symbols", stored, current],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
    )
    if result.returncode == 0:
        return ""
    return result.stdout or f"abidiff ended with {result.returncode}\n"


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("library", type=Path)
    parser.add_argument("--accept", action="store_true", help="store the interface of the library")
    options = parser.parse_args(arguments)
    description = describe(options.library)
    if "<function-decl" not in description:
        print(f"{options.library} has no debug information: its types cannot be compared")
        return 1
    if options.accept:
        STORED.write_text(description, encoding="utf-8")
        print(f"wrote {STORED.relative_to(ROOT)}")
        return 0
    with tempfile.NamedTemporaryFile("w", suffix=".xml", encoding="utf-8") as current:
        current.write(description)
        current.flush()
        report = compare(STORED, current.name)
    if report:
        print(report, end="")
        print("The binary interface has changed. If it is meant to, run abi.py with --accept.")
        return 1
    print("The binary interface is the stored one.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
