#!/usr/bin/env python3
"""Tells which lines of src/ nothing has run, and whether each of them is accounted for.

uncovered.toml beside this file names, by their text, the lines that no test can reach, each group
with its reason; `by_chance` marks those that do run when threads happen to meet. Fails when fewer
lines run than the given share, when a line that did not run has no reason there, and when a reason
has outlived its line.
"""

import argparse
import collections
import json
import subprocess
import sys
import tomllib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
REASONS = Path(__file__).with_name("uncovered.toml")


def merge(profiles, merged):
    """One profile of many."""
    listing = merged.with_suffix(".list")
    listing.write_text("".join(f"{profile}\n" for profile in profiles))
    subprocess.run(
        ["llvm-profdata", "merge", "-sparse", f"--input-files={listing}", f"--output={merged}"],
        check=True,
    )


def export(merged, binaries):
    """What llvm-cov knows of the sources of the binaries, in its tracefile format."""
    objects = [argument for binary in binaries[1:] for argument in ("-object", str(binary))]
    result = subprocess.run(
        ["llvm-cov", "export", "-format=lcov", f"-instr-profile={merged}", str(binaries[0])]
        + objects,
        stdout=subprocess.PIPE,
        text=True,
        check=True,
    )
    return result.stdout


def line_counts(tracefile):
    """{file of src/: {line: how often it ran}}; a template's line counts once for all instances."""
    counts = collections.defaultdict(lambda: collections.defaultdict(int))
    for record in tracefile.splitlines():
        kind, _, value = record.partition(":")
        if kind == "SF":
            file = (ROOT / value).resolve()
            in_src = file.is_relative_to(ROOT / "src")
            lines = counts[str(file.relative_to(ROOT))] if in_src else collections.Counter()
        elif kind == "DA":
            line, count = value.split(",")[:2]
            lines[int(line)] += int(count)
    return counts


def uncovered_lines(counts):
    """[(file, line, text)] of what never ran."""
    found = []
    for file, lines in sorted(counts.items()):
        texts = (ROOT / file).read_text().splitlines()
        found += [(file, line, texts[line - 1].strip()) for line, count in sorted(lines.items()) if not count]
    return found


def reasons(path):
    """Counters of the (file, text) that are accounted for, and of those that run by chance."""
    explained = collections.Counter()
    by_chance = collections.Counter()
    for group in tomllib.loads(path.read_text())["unreachable"]:
        if not group["why"]:
            raise ValueError(f"{path.name}: no reason is given for {group['lines']}")
        lines = [(file, text) for file, texts in group["lines"].items() for text in texts]
        explained.update(lines)
        if group.get("by_chance", False):
            by_chance.update(lines)
    return explained, by_chance


def account(uncovered, explained, by_chance):
    """(lines without a reason, reasons without a line)."""
    left = collections.Counter(explained)
    unexplained = []
    for file, line, text in uncovered:
        if left[file, text] > 0:
            left[file, text] -= 1
        else:
            unexplained.append((file, line, text))
    return unexplained, sorted((left - by_chance).elements())


def measure(profiles, binaries):
    """(number of lines, those that did not run) according to all profiles in a folder."""
    merged = profiles / "merged.profdata"
    merge(sorted(profiles.glob("**/*.profraw")), merged)
    counts = line_counts(export(merged, binaries))
    return sum(len(lines) for lines in counts.values()), uncovered_lines(counts)


def percent_run(total, uncovered):
    return 100.0 * (total - len(uncovered)) / total


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--profiles", type=Path, required=True,
                        help="folder with a folder of *.profraw files for each kind of run")
    parser.add_argument("--least", type=float, default=97.0, help="percent of lines that have to run")
    parser.add_argument("binaries", type=Path, nargs="+", help="the programs that made the profiles")
    options = parser.parse_args(arguments)

    kinds = sorted({path.parent for path in options.profiles.glob("*/*.profraw")})
    if not kinds:
        parser.error(f"no profiles in the folders of {options.profiles}")
    for kind in kinds:
        print(f"{kind.name} alone: {percent_run(*measure(kind, options.binaries)):.2f} %")
    total, uncovered = measure(options.profiles, options.binaries)
    unexplained, outlived = account(uncovered, *reasons(REASONS))

    percent = percent_run(total, uncovered)
    for file, line, text in unexplained:
        print(f"{file}:{line}: never ran, and no reason is given: {text}")
    for file, text in outlived:
        print(f"{REASONS.name}: runs or is gone, so take it out: {file}: {text}")
    print(f"{percent:.2f} % of {total} lines of src/ ran; {len(uncovered)} did not")
    return 0 if percent >= options.least and not unexplained and not outlived else 1


if __name__ == "__main__":
    sys.exit(main())
