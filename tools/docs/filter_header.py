"""Prepares velto.h for Doxygen: the opening rules become the page of the file, and each banner the
heading of a group of functions.

usage: filter_header.py FILE
"""

import re
import sys
from pathlib import Path


def filtered(header):
    header = header.replace("/*\n * VeltoAPI64.", "/**\n * @file\n * VeltoAPI64.", 1)
    first, *families = re.split(r"^/\* ---- (.*?) -+ \*/\n", header, flags=re.MULTILINE)
    parts = [first]
    for title, functions in zip(families[::2], families[1::2]):
        *functions, end = re.split(r"^(?=#ifdef __cplusplus\n})", functions, flags=re.MULTILINE)
        if not functions:
            functions, end = [end], ""
        parts += [f"/** @name {title} */\n/** @{{ */\n", *functions, "/** @} */\n", end]
    return "".join(parts)


if __name__ == "__main__":
    print(filtered(Path(sys.argv[1]).read_text(encoding="utf-8")), end="")
