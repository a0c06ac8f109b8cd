#!/usr/bin/env python3
"""Runs the fuzz targets and tells what they have found.

New inputs go to a working corpus in the build tree; --merge takes what is worth keeping of it over
into fuzz/corpus. Exits with 1 when there is a finding, having named its input.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

SOURCE_TREE = Path(__file__).resolve().parents[2]
KEPT = SOURCE_TREE / "fuzz" / "corpus"
WORKERS = 2
HANG_SECONDS = 60  # of a clock that runs on while a busy machine does other work

# What a target takes besides the options of all: its dictionary, and the longest input.
SPECIAL = {
    "byte_stream": ("messages", 40000),
    "messages": ("messages", 8192),
    "scenario": ("scenario", 6000),
    "simulator": ("commands", 8192),
    "string_format": (None, 1024),
    "tree_write": (None, 4096),
    "xml_tree": ("messages", 4096),
}
ORDINARY = (None, 512)

# An input is over in a millisecond, so little freed memory need be kept from being used again.
ENVIRONMENT = {
    "ASAN_OPTIONS": "detect_stack_use_after_return=1:strict_string_checks=1:"
                    "quarantine_size_mb=16:malloc_context_size=8",
    "UBSAN_OPTIONS": "print_stacktrace=1",
}


@dataclass
class Target:
    name: str
    program: Path
    folder: Path  # for all that running it makes

    @property
    def corpus(self):
        return self.folder / "corpus" / self.name

    @property
    def seeds(self):
        return self.folder / "seeds" / self.name

    @property
    def log(self):
        return self.folder / f"{self.name}.log"

    @property
    def artifacts(self):
        return self.folder / "findings" / self.name

    def inputs(self):
        return [folder for folder in (KEPT / self.name, self.seeds) if folder.is_dir()]

    def command(self, *options):
        dictionary, longest = SPECIAL.get(self.name, ORDINARY)
        words = [f"-dict={self.folder / dictionary}.dict"] if dictionary else []
        return [str(self.program), f"-timeout={HANG_SECONDS}", "-rss_limit_mb=2048",
                f"-max_len={longest}", "-print_final_stats=1",
                f"-artifact_prefix={self.artifacts}/", *words, *options]

    def run(self, *options):
        for folder in (self.corpus, self.artifacts):
            folder.mkdir(parents=True, exist_ok=True)
        started = time.monotonic()
        with open(self.log, "wb") as log:
            status = subprocess.run(self.command(*map(str, options)), stdout=log, stderr=log,
                                    env={**os.environ, **ENVIRONMENT}).returncode
        return Result(self, status, time.monotonic() - started)


@dataclass
class Result:
    target: Target
    status: int
    seconds: float
    executions: int = 0
    edges: int = 0
    corpus: int = 0
    findings: list = field(default_factory=list)

    def __post_init__(self):
        text = self.target.log.read_text(encoding="utf-8", errors="replace")

        def last(pattern):
            found = re.findall(pattern, text)
            return int(found[-1]) if found else 0

        self.executions = last(r"stat::number_of_executed_units: (\d+)") or last(r"#(\d+)\t")
        self.edges = last(r" cov: (\d+)")
        self.corpus = last(r" corp: (\d+)")
        self.findings = re.findall(r"Test unit written to (\S+)", text)
        if self.status != 0 and not self.findings:
            self.findings = [str(self.target.log)]

    def row(self):
        rate = self.executions / self.seconds if self.seconds > 0 else 0
        return (self.target.name, self.executions, f"{rate:.0f}", self.edges, self.corpus,
                len(self.findings))

    def explain(self):
        for finding in self.findings:
            print(f"\n{self.target.name}: {finding}\n  log:   {self.target.log}")
            if finding != str(self.target.log):
                print(f"  rerun: {self.target.program} {finding}")


def fuzz(target, minutes):
    return target.run(f"-max_total_time={max(1, round(minutes * 60))}", target.corpus,
                      *target.inputs())


def replay(target, _):
    return target.run("-runs=0", *target.inputs())


def merge(target, _):
    """Few inputs that reach all code that was ever reached become the corpus that is kept."""
    merged = target.folder / "merged" / target.name
    shutil.rmtree(merged, ignore_errors=True)
    merged.mkdir(parents=True)
    result = target.run("-set_cover_merge=1", "-use_counters=0", merged, *target.inputs(), target.corpus)
    if result.status == 0:
        kept = KEPT / target.name
        shutil.rmtree(kept, ignore_errors=True)
        shutil.copytree(merged, kept)
        result.corpus = len(list(kept.iterdir()))
    return result


def print_table(results):
    print(f"\n{'target':<14} {'executions':>12} {'exec/s':>8} {'edges':>7} {'corpus':>7} "
          f"{'findings':>8}")
    for result in results:
        name, executions, *rest = result.row()
        print(f"{name:<14} {executions:>12} {rest[0]:>8} {rest[1]:>7} {rest[2]:>7} {rest[3]:>8}")


def run_all(targets, task, minutes):
    def one(target):
        result = task(target, minutes)
        state = "FINDING" if result.findings else "ok"
        print(f"{target.name}: {result.executions} executions in {result.seconds:.0f} s, {state}",
              flush=True)
        return result

    with ThreadPoolExecutor(WORKERS) as pool:
        return list(pool.map(one, targets))


def find_targets(programs, folder, chosen):
    targets = [Target(path.name.removeprefix("fuzz_"), path, folder)
               for path in sorted(programs.glob("fuzz_*")) if path.name != "fuzz_seeds"]
    unknown = set(chosen) - {target.name for target in targets}
    if unknown or not targets:
        sys.exit(f"no such target: {', '.join(sorted(unknown)) or programs / 'fuzz_*'}")
    return [target for target in targets if not chosen or target.name in chosen]


def main():
    parser = argparse.ArgumentParser(prog="./dev fuzz", description=__doc__.split("\n")[0])
    parser.add_argument("minutes", nargs="?", type=float, default=1, help="for each target (1)")
    parser.add_argument("--target", action="append", default=[], metavar="NAME",
                        help="only this one; can be given again")
    parser.add_argument("--programs", type=Path, default=SOURCE_TREE / "build/asan/bin",
                        help="folder of the fuzz_ programs")
    parser.add_argument("--folder", type=Path, default=SOURCE_TREE / "build/fuzz",
                        help="for the working corpus, the logs and what is found")
    task = parser.add_mutually_exclusive_group()
    task.add_argument("--replay", dest="task", action="store_const", const=replay, default=fuzz,
                      help="run the corpus that is kept, once")
    task.add_argument("--merge", dest="task", action="store_const", const=merge,
                      help="take what is new over into fuzz/corpus")
    arguments = parser.parse_args()

    programs = arguments.programs.resolve()
    folder = arguments.folder.resolve()
    targets = find_targets(programs, folder, arguments.target)
    subprocess.run([programs / "fuzz_seeds", folder], check=True)
    results = run_all(targets, arguments.task, arguments.minutes)
    print_table(results)
    for result in results:
        result.explain()
    return 1 if any(result.findings for result in results) else 0


if __name__ == "__main__":
    sys.exit(main())
