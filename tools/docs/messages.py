"""The pages of all messages, from the library's tables and from what a simulator has sent."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PROTOCOL = ROOT / "src" / "protocol"

INTRODUCTION = """
Each with its fields in their order. A field that may be left out is marked *optional*. The captures
were taken from a simulator while this page was made; those of messages that it never sends are
missing.
"""


def entries(file, macro):
    """The rows of a table of the library: name, and the rest."""
    text = (PROTOCOL / file).read_text(encoding="utf-8")
    rows = re.findall(rf"^    {macro}\((\w+)(?:, )?(.*)\)", text, flags=re.MULTILINE)
    return [(name, re.sub(r"\) *\\$", "", rest)) for name, rest in rows]


def fields(rest):
    return re.findall(r'"(\w+)(\??)"', rest)


def field_list(rest):
    named = [f"`{name}`" + (" (*optional*)" if mark else "") for name, mark in fields(rest)]
    return "Fields: " + ", ".join(named) + "." if named else "No fields."


def answered_with(rest):
    replies = re.match(r"\(([\w, ]+)\)", rest).group(1).split(", ")
    final, *streaming = [f"`{reply}`" for reply in replies]
    before = f", after any number of {streaming[0]}" if streaming else ""
    return f"Answered with {final}{before}, or with `error`."


def section(kind, name, remarks, captures):
    lines = [f"## {name} {{#{kind}_{name}}}", "", *remarks, ""]
    if capture := captures.get((kind, name)):
        lines += ["~~~{.xml}", capture, "~~~", ""]
    return lines


def command_remarks(rest):
    return [field_list(rest), answered_with(rest)]


def reply_remarks(rest):
    is_final = rest.startswith("final")
    ending = "It ends its command." if is_final else "It can come any number of times."
    return [field_list(rest), ending]


def report_remarks(rest):
    return [field_list(rest)]


# Title and name of a page, the kind of its captures, the table it is made from, and what it says.
PAGES = [
    ("Commands", "commands.md", "cmd", ("zavl3_commands.h", "COMMAND"), command_remarks),
    ("Replies", "replies.md", "reply", ("zavl3_messages.h", "REPLY"), reply_remarks),
    ("Reports", "reports.md", "report", ("zavl3_messages.h", "REPORT"), report_remarks),
]


def write_pages(directory, captures):
    """Gives what was written, for people."""
    counts = []
    for title, file, kind, table, remarks in PAGES:
        lines = [f"# {title}", INTRODUCTION]
        rows = entries(*table)
        for name, rest in rows:
            lines += section(kind, name, remarks(rest), captures)
        (directory / file).write_text("\n".join(lines), encoding="utf-8")
        seen = sum((kind, name) in captures for name, _ in rows)
        counts.append(f"{len(rows)} {title.lower()} ({seen} captured)")
    return ", ".join(counts)
