"""The tables and keys that interface/*.toml may hold, and the check of one table.

Every file may hold any of these tables; names are global, and the files are read in name order.

  [library]       name, version_node, summary. Exactly one.
  [family]        title. The functions of the file belong to it.
  [[rule]]        title, text. Numbered in order.
  [[result]]      code, name, text, recorded: the last-error text that goes with the code.
  [type.X]        c; plain and text for a typedef.
  [[structure]]   name, text, fields: {name, type, text}.
  [[enumeration]] name, text, values: {name, value, text}; bits = true for bits to be combined.
  [[macro]]       name, definition, text.
  [argument.X]    type, text, unit, range ("any" if every number is sent unchanged), constants
                  (an enumeration), outside (what other numbers do), direction ("in" if absent,
                  or "out").
  [behaviour.X]   blocks; results: {code, when, text or text_is} for functions that return a
                  VeltoResult, last_error for the others; outputs: what they hold after a failure;
                  notes. With title and text it becomes a rule, and is told there alone.
  [[function]]    name, summary, arguments, behaviour, returns ("result" if absent, "none" or a
                  type), returns_text, notes.
                  variant_of: a lesser variant, described by the fullest; fixed: {argument = value}.
                  same_as: the same function under another name.

An element of `arguments` is the name of an [argument.X], {use = "X", ...} to replace some of its
keys, or a whole argument of the function's own with its name.
"""

class DescriptionError(Exception):
    """The description breaks a rule; the text says where and which."""


# Table -> key -> (type, whether it is required).
ARGUMENT_KEYS = {
    "type": (str, True),
    "text": (str, True),
    "direction": (str, False),
    "unit": (str, False),
    "range": (str, False),
    "constants": (str, False),
    "outside": (str, False),
}
OWN_ARGUMENT_KEYS = {"name": (str, True)} | ARGUMENT_KEYS
USED_ARGUMENT_KEYS = {"use": (str, True)} | {key: (str, False) for key in ARGUMENT_KEYS}
OUTCOME_KEYS = {
    "code": (int, True),
    "when": (str, True),
    "text": (str, False),
    "text_is": (str, False),
}
BEHAVIOUR_KEYS = {
    "title": (str, False),
    "text": (str, False),
    "blocks": (str, True),
    "results": (list, False),
    "last_error": (str, False),
    "outputs": (str, False),
    "notes": (list, False),
}
FULL_FUNCTION_KEYS = {
    "name": (str, True),
    "summary": (str, True),
    "arguments": (list, True),
    "behaviour": ((str, dict), True),
    "returns": (str, False),
    "returns_text": (str, False),
    "notes": (list, False),
}
VARIANT_KEYS = {
    "name": (str, True),
    "variant_of": (str, True),
    "arguments": (list, True),
    "fixed": (dict, False),
    "notes": (list, False),
}
ALIAS_KEYS = {"name": (str, True), "same_as": (str, True), "notes": (list, False)}
VALUE_KEYS = {"name": (str, True), "value": (int, True), "text": (str, True)}
FIELD_KEYS = {"name": (str, True), "type": (str, True), "text": (str, True)}
TABLE_KEYS = {
    "library": {"name": (str, True), "version_node": (str, True), "summary": (str, True)},
    "family": {"title": (str, True)},
    "rule": {"title": (str, True), "text": (str, True)},
    "result": {
        "code": (int, True),
        "name": (str, True),
        "text": (str, True),
        "recorded": (str, False),
    },
    "type": {"c": (str, True), "plain": (str, False), "text": (str, False)},
    "structure": {"name": (str, True), "text": (str, True), "fields": (list, True)},
    "enumeration": {
        "name": (str, True),
        "text": (str, True),
        "bits": (bool, False),
        "values": (list, True),
    },
    "macro": {"name": (str, True), "definition": (str, True), "text": (str, True)},
    "argument": ARGUMENT_KEYS,
    "behaviour": BEHAVIOUR_KEYS,
}
LISTS = ("rule", "result", "structure", "enumeration", "macro", "function")
NAMED = ("type", "argument", "behaviour")
SINGLE = ("library", "family")

KEYWORDS = set(
    """alignas alignof and asm auto bitand bitor bool break case catch char class compl const
    constexpr continue default delete do double else enum explicit export extern false float for
    friend goto if inline int long mutable namespace new noexcept not nullptr operator or private
    protected public register restrict return short signed sizeof static struct switch template this
    thread_local throw true try typedef typeid typename union unsigned using virtual void volatile
    wchar_t while xor""".split()
)


def fail(where, reason):
    raise DescriptionError(f"{where}: {reason}")


def check_keys(table, keys, where):
    """Fails on an unknown, missing or mistyped key."""
    if not isinstance(table, dict):
        fail(where, f"a table is expected, not {table!r}")
    for key, value in table.items():
        if key not in keys:
            fail(where, f"unknown key '{key}'")
        wanted = keys[key][0]
        is_bool_for_int = isinstance(value, bool) and wanted is int
        if not isinstance(value, wanted) or is_bool_for_int:
            fail(where, f"'{key}' has the wrong type: {value!r}")
        if isinstance(value, str) and not value.strip():
            fail(where, f"'{key}' is empty")
    for key, (_, required) in keys.items():
        if required and key not in table:
            fail(where, f"missing field '{key}'")
