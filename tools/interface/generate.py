#!/usr/bin/env python3
"""Makes the header, the export lists and the prototype tests from interface/*.toml.

Without options it writes what has changed. With --check it writes nothing, shows what is out of
date as a diff, and exits with 1 if anything is.
"""

import argparse
import difflib
import sys
from pathlib import Path

import render_header
import render_lists
import render_tests
from description import load
from schema import DescriptionError

SOURCE_TREE = Path(__file__).resolve().parents[2]

OUTPUTS = {
    "include/velto/velto.h": render_header.header,
    "src/api/velto.def": render_lists.definition,
    "src/api/velto.map": render_lists.version_script,
    "interface/exports.txt": render_lists.names,
    "tests/api/prototypes.c": render_tests.c_test,
    "tests/api/prototypes_cpp_test.cpp": render_tests.cpp_test,
}


def present(path):
    return path.read_bytes().decode("utf-8", errors="replace") if path.is_file() else ""


def difference(name, old, new):
    lines = difflib.unified_diff(
        old.splitlines(keepends=True), new.splitlines(keepends=True), name, f"{name} (generated)"
    )
    return "".join(line if line.endswith("\n") else line + "\n" for line in lines)


def out_of_date(root):
    """Name -> (text in the tree, text that it should be)."""
    description = load(root / "interface")
    texts = {name: render(description) for name, render in OUTPUTS.items()}
    return {
        name: (present(root / name), text)
        for name, text in texts.items()
        if present(root / name) != text
    }


def check(root):
    stale = out_of_date(root)
    for name, (old, new) in stale.items():
        print(f"{name} is out of date; run tools/interface/generate.py", file=sys.stderr)
        print(difference(name, old, new), end="")
    return 1 if stale else 0


def write(root):
    for name, (_, text) in out_of_date(root).items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text.encode("utf-8"))
        print(f"wrote {name}")
    return 0


def main(arguments=None):
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--check", action="store_true", help="write nothing; fail if out of date")
    parser.add_argument("--root", type=Path, default=SOURCE_TREE, help="source tree")
    options = parser.parse_args(arguments)
    try:
        return check(options.root) if options.check else write(options.root)
    except DescriptionError as error:
        print(f"interface/{error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
