"""Lays text out as one would by hand: wrapped comments, prototypes, banners."""

import re
import textwrap

WIDTH = 100
FIRST_LINE = (
    "Generated from interface/ by tools/interface/generate.py; change the description instead."
)


def flat(text):
    return " ".join(text.split())


def wrap(text, first, rest):
    """One paragraph as lines, with what begins the first and the other lines."""
    unbroken = re.sub(r"\brule (?=\d)", "rule\u00a0", flat(text))
    lines = textwrap.wrap(
        unbroken,
        WIDTH,
        initial_indent=first,
        subsequent_indent=rest,
        break_long_words=False,
        break_on_hyphens=False,
    )
    return [line.replace("\u00a0", " ") for line in lines]


def sentence(text):
    text = flat(text)
    return text if text.endswith((".", ":")) else text + "."


def banner(title):
    line = f"/* ---- {title} "
    return line + "-" * (WIDTH - len(line) - 3) + " */"


def fill(opening, items, closing):
    """opening, items with commas, closing; broken behind a comma, lined up behind the opening."""
    indent = " " * len(opening)
    lines = []
    line = opening
    for number, item in enumerate(items):
        item += "," if number + 1 < len(items) else closing
        separator = "" if line in (opening, indent) else " "
        if len(line) + len(separator) + len(item) > WIDTH:
            lines.append(line)
            line, separator = indent, ""
        line += separator + item
    return lines + [line]
