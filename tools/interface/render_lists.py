"""Writes the export lists: those of both linkers, and the plain one that check_exports.py reads."""

from layout import FIRST_LINE


def by_family(description, title, name):
    lines = []
    for family in description.families:
        lines += ["", title(family.title)] if family.functions else []
        lines += [name(function.name) for function in family.functions]
    return lines


def definition(description):
    lines = [f"; {FIRST_LINE}", f"LIBRARY {description.library['name']}", "EXPORTS"]
    lines += by_family(description, lambda title: f"; {title}", lambda name: f"    {name}")
    return "\n".join(lines) + "\n"


def version_script(description):
    lines = [f"/* {FIRST_LINE} */", "", f"{description.library['version_node']} {{", "global:"]
    body = by_family(description, lambda title: f"    /* {title} */", lambda name: f"    {name};")
    lines += body[1:]
    return "\n".join(lines + ["", "local:", "    *;", "};"]) + "\n"


def names(description):
    lines = [f"# {FIRST_LINE}", *sorted(function.name for function in description.functions)]
    return "\n".join(lines) + "\n"
