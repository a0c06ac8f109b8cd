#!/usr/bin/env python3
"""Makes the documentation site, and checks that nothing is missing in it.

usage: build.py SIMULATOR LIBRARY OUTPUT
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree
from pathlib import Path

import captures
import messages

ROOT = Path(__file__).resolve().parents[2]


def run_doxygen(output, generated):
    environment = os.environ | {
        "VELTO_DOCS_OUTPUT": str(output),
        "VELTO_DOCS_GENERATED": str(generated),
    }
    return subprocess.run(["doxygen", "docs/Doxyfile"], cwd=ROOT, env=environment).returncode == 0


def text_in(element, tag):
    found = element.find(tag)
    return "".join(found.itertext()).strip() if found is not None else ""


def documented(output):
    """What the site explains: functions, and structures, fields and constants."""
    functions, others = set(), set()
    for path in (output / "xml").glob("*.xml"):
        for member in xml.etree.ElementTree.parse(path).iter():
            if member.tag not in ("memberdef", "enumvalue") or not text_in(member, "briefdescription"):
                continue
            kind = functions if member.get("kind") == "function" else others
            kind.add(text_in(member, "name"))
    return functions, others


def missing(output):
    """What the header has and the site does not explain."""
    header = (ROOT / "include/velto/velto.h").read_text(encoding="utf-8")
    functions, others = documented(output)
    wanted = set(re.findall(r"^VELTO_API .*?(velto_\w+)\(", header, flags=re.MULTILINE))
    constants = set(re.findall(r"^    (VELTO_\w+) =", header, flags=re.MULTILINE))
    constants |= set(re.findall(r"^#define (VELTO_(?:IPV4|CHANNEL_BIT|TEXT))\(", header, flags=re.MULTILINE))
    print(f"{len(functions & wanted)} of {len(wanted)} functions explained, ", end="")
    print(f"{len(others & constants)} of {len(constants)} constants")
    return sorted((wanted - functions) | (constants - others))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("simulator", type=Path)
    parser.add_argument("library", type=Path)
    parser.add_argument("output", type=Path)
    options = parser.parse_args()

    output = options.output.resolve()
    shutil.rmtree(output, ignore_errors=True)
    generated = output / "generated"
    generated.mkdir(parents=True)
    seen = captures.capture(options.simulator.resolve(), options.library.resolve())
    print(messages.write_pages(generated, seen))

    if not run_doxygen(output, generated):
        return "doxygen has warned"
    if lost := missing(output):
        return "not explained: " + ", ".join(lost)
    print(f"the site is at {options.output / 'html' / 'index.html'}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
