#!/usr/bin/env python3
"""Compares a built library with the list of exported functions.

A .so must define exactly the listed names, all under its one version node. A DLL must export
exactly the listed names and import system DLLs alone. Exits with 1 on any difference.
"""

import argparse
import re
import shutil
import subprocess
import sys
from pathlib import Path

SOURCE_TREE = Path(__file__).resolve().parents[2]
VERSION_NODE = "VELTOAPI64_1"
SYSTEM_DLLS = {"KERNEL32.dll", "msvcrt.dll", "WS2_32.dll"}
MINGW_OBJDUMP = "x86_64-w64-mingw32-objdump"


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def listed_names(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    return {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def compare(names, exported):
    problems = [f"not exported: {name}" for name in sorted(names - exported)]
    return problems + [f"exported, but not listed: {name}" for name in sorted(exported - names)]


def so_problems(names, nm_output):
    """nm_output is that of nm -D --defined-only."""
    exported, problems, nodes = set(), [], set()
    for line in nm_output.splitlines():
        _, kind, symbol = line.split()
        if kind == "A":
            nodes.add(symbol)
            continue
        name, _, version = symbol.partition("@@")
        exported.add(name)
        if kind != "T":
            problems.append(f"no function: {name} (kind {kind})")
        if version != VERSION_NODE:
            problems.append(f"not under version node {VERSION_NODE}: {symbol}")
    if nodes != {VERSION_NODE}:
        problems.append(f"version nodes: {sorted(nodes)}, wanted {VERSION_NODE} alone")
    return problems + compare(names, exported)


def dll_problems(names, objdump_output):
    """objdump_output is that of objdump -p."""
    imported = set(re.findall(r"^\s*DLL Name: (\S+)", objdump_output, re.MULTILINE))
    allowed = {name.lower() for name in SYSTEM_DLLS}
    problems = [
        f"imports {name}, no system DLL" for name in sorted(imported) if name.lower() not in allowed
    ]
    _, _, table = objdump_output.partition("[Ordinal/Name Pointer] Table")
    rows = re.findall(r"^\s*\[\s*\d+\]\s.*$", table, re.MULTILINE)
    return problems + compare(names, {row.split()[-1] for row in rows})


def main(arguments=None):
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--so", type=Path, help="shared library to check by nm")
    parser.add_argument("--dll", type=Path, help="DLL to check by objdump")
    default = SOURCE_TREE / "interface" / "exports.txt"
    parser.add_argument("--list", type=Path, default=default, help="names, one a line")
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--objdump", default=shutil.which(MINGW_OBJDUMP) or "objdump")
    options = parser.parse_args(arguments)
    if options.so is None and options.dll is None:
        parser.error("nothing to check: give --so or --dll")

    names = listed_names(options.list)
    problems = []
    if options.so is not None:
        output = run(options.nm, "-D", "--defined-only", str(options.so))
        problems += [f"{options.so}: {text}" for text in so_problems(names, output)]
    if options.dll is not None:
        output = run(options.objdump, "-p", str(options.dll))
        problems += [f"{options.dll}: {text}" for text in dll_problems(names, output)]
    for text in problems:
        print(text, file=sys.stderr)
    if not problems:
        print(f"{len(names)} functions exported, and nothing else")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
