"""Reads interface/*.toml: the description of the exported functions. schema.py lists the tables."""

import re
import tomllib
from pathlib import Path

from model import Argument, Behaviour, Description, Family, Function
from schema import (
    ALIAS_KEYS,
    BEHAVIOUR_KEYS,
    FIELD_KEYS,
    FULL_FUNCTION_KEYS,
    KEYWORDS,
    LISTS,
    NAMED,
    OUTCOME_KEYS,
    OWN_ARGUMENT_KEYS,
    SINGLE,
    TABLE_KEYS,
    USED_ARGUMENT_KEYS,
    VALUE_KEYS,
    VARIANT_KEYS,
    check_keys,
    fail,
)


class Loader:
    """Gathers the tables of all files, then turns them into a Description."""

    def __init__(self):
        self.lists = {kind: [] for kind in LISTS}
        self.named = {kind: {} for kind in NAMED}
        self.library = None
        self.families = []
        self.functions = {}
        self.taken = {}

    # Reading.

    def read_file(self, path):
        try:
            tables = tomllib.loads(path.read_text(encoding="utf-8"))
        except tomllib.TOMLDecodeError as error:
            fail(path.name, str(error))
        for kind, content in tables.items():
            if kind in SINGLE:
                self.read_single(kind, content, path.name)
            elif kind in LISTS:
                self.read_list(kind, content, path.name)
            elif kind in NAMED:
                self.read_named(kind, content, path.name)
            else:
                fail(path.name, f"unknown table '{kind}'")
        if "function" in tables and "family" not in tables:
            fail(path.name, "functions need a [family]")
        if "family" in tables:
            names = [(entry["name"], where) for entry, where in self.lists["function"]]
            own = [name for name, where in names if where.startswith(path.name + ":")]
            self.families.append((tables["family"]["title"], own))

    def read_single(self, kind, content, file):
        check_keys(content, TABLE_KEYS[kind], f"{file}: [{kind}]")
        if kind == "library":
            if self.library is not None:
                fail(file, "a second [library]")
            self.library = content

    def read_list(self, kind, content, file):
        if not isinstance(content, list):
            fail(file, f"'{kind}' is written [[{kind}]]")
        for number, entry in enumerate(content, 1):
            label = entry.get("name", entry.get("title", f"[[{kind}]] number {number}"))
            where = f"{file}: {label}"
            check_keys(entry, self.keys_of(kind, entry), where)
            if "name" in entry:
                self.take_name(entry["name"], where)
            self.lists[kind].append((entry, where))

    def keys_of(self, kind, entry):
        if kind != "function":
            return TABLE_KEYS[kind]
        if "variant_of" in entry:
            return VARIANT_KEYS
        return ALIAS_KEYS if "same_as" in entry else FULL_FUNCTION_KEYS

    def read_named(self, kind, content, file):
        for name, entry in content.items():
            where = f"{file}: [{kind}.{name}]"
            if not isinstance(entry, dict):
                fail(where, f"'{kind}' is written [{kind}.NAME]")
            check_keys(entry, TABLE_KEYS[kind], where)
            if name in self.named[kind]:
                fail(where, f"duplicate {kind} '{name}', also in {self.named[kind][name][1]}")
            self.named[kind][name] = (entry, where)

    def take_name(self, name, where):
        """One name space for all that the header declares; a macro counts without parameters."""
        bare = name.split("(")[0]
        if bare in self.taken:
            fail(where, f"duplicate name '{bare}', also in {self.taken[bare]}")
        self.taken[bare] = where

    # Checking what stands alone.

    def check_constants(self):
        for entry, where in self.lists["enumeration"]:
            for value in entry["values"]:
                check_keys(value, VALUE_KEYS, where)
                self.take_name(value["name"], where)
        codes = [entry["code"] for entry, _ in self.lists["result"]]
        if codes != list(range(len(codes))):
            fail("result codes", f"must be listed in order from 0, without gaps, not {codes}")

    def check_types(self):
        for entry, where in self.lists["structure"]:
            for member in entry["fields"]:
                check_keys(member, FIELD_KEYS, where)
                self.check_type(member["type"], where)
        for entry, where in self.named["type"].values():
            if ("plain" in entry) != ("text" in entry):
                fail(where, "'plain' and 'text' go together")

    def check_type(self, name, where):
        if name not in self.named["type"]:
            fail(where, f"unknown type '{name}'")

    # Arguments.

    def argument(self, element, where):
        if isinstance(element, str):
            return self.checked_argument(element, self.shared_argument(element, where), where)
        if isinstance(element, dict) and "use" in element:
            check_keys(element, USED_ARGUMENT_KEYS, where)
            changes = {key: value for key, value in element.items() if key != "use"}
            shared = self.shared_argument(element["use"], where)
            return self.checked_argument(element["use"], shared | changes, where)
        check_keys(element, OWN_ARGUMENT_KEYS, f"{where}: argument")
        own = {key: value for key, value in element.items() if key != "name"}
        return self.checked_argument(element["name"], own, where)

    def shared_argument(self, name, where):
        if name not in self.named["argument"]:
            fail(where, f"unknown argument '{name}'")
        return self.named["argument"][name][0]

    def checked_argument(self, name, keys, where):
        where = f"{where}: argument '{name}'"
        argument = Argument(name=name, **keys)
        if name in KEYWORDS or not re.fullmatch(r"[a-z][a-z0-9_]*", name):
            fail(where, "not a legal name")
        self.check_type(argument.type, where)
        if argument.direction not in ("in", "out"):
            fail(where, f"unknown direction '{argument.direction}'")
        enumerations = [entry["name"] for entry, _ in self.lists["enumeration"]]
        if argument.constants and argument.constants not in enumerations:
            fail(where, f"unknown enumeration '{argument.constants}'")
        is_handle = "plain" in self.named["type"][argument.type][0]
        is_number = argument.type not in ("text", "buffer") and not is_handle
        if is_number and argument.direction == "in" and not (argument.constants or argument.range):
            fail(where, "a number needs 'range' or 'constants'")
        return argument

    # Behaviours.

    def behaviour(self, given, where):
        name = given if isinstance(given, str) else ""
        if name:
            if given not in self.named["behaviour"]:
                fail(where, f"unknown behaviour '{given}'")
            given, where = self.named["behaviour"][given]
        else:
            where = f"{where}: behaviour"
            check_keys(given, BEHAVIOUR_KEYS, where)
        for outcome in given.get("results", []):
            self.check_outcome(outcome, where)
        if ("results" in given) == ("last_error" in given):
            fail(where, "one of 'results' and 'last_error' is needed")
        if ("title" in given) != ("text" in given) or ("title" in given and not name):
            fail(where, "'title' and 'text' go together, in a shared behaviour")
        return Behaviour(name=name, **given)

    def check_outcome(self, outcome, where):
        check_keys(outcome, OUTCOME_KEYS, where)
        codes = {entry["code"]: entry for entry, _ in self.lists["result"]}
        if outcome["code"] not in codes:
            fail(where, f"unknown result code {outcome['code']}")
        texts = ("text" in outcome) + ("text_is" in outcome)
        texts += "recorded" in codes[outcome["code"]]
        if texts != 1 and not (texts == 2 and "text" in outcome):
            fail(where, f"result code {outcome['code']} needs one text")

    def check_shared(self):
        """Also what no function uses yet must be right."""
        for name, (_, where) in self.named["argument"].items():
            self.argument(name, where)
        for name, (_, where) in self.named["behaviour"].items():
            self.behaviour(name, where)

    # Functions.

    def build_functions(self):
        entries = self.lists["function"]
        for entry, where in entries:
            if not re.fullmatch(r"velto_[a-z0-9_]+", entry["name"]):
                fail(where, "an exported name is velto_ and lower case")
            for note in entry.get("notes", []):
                if not isinstance(note, str):
                    fail(where, f"'notes' holds texts, not {note!r}")
            if "summary" in entry:
                self.functions[entry["name"]] = self.full_function(entry, where)
        for entry, where in entries:
            if "variant_of" in entry:
                self.functions[entry["name"]] = self.variant(entry, where)
            elif "same_as" in entry:
                self.functions[entry["name"]] = self.alias(entry, where)

    def full_function(self, entry, where):
        arguments = self.arguments(entry, where)
        behaviour = self.behaviour(entry["behaviour"], where)
        returns = entry.get("returns", "result")
        if returns != "none":
            self.check_type(returns, where)
        if (returns == "result") != bool(behaviour.results):
            fail(where, "a function has 'results' exactly if it returns a VeltoResult")
        if (returns not in ("result", "none")) != ("returns_text" in entry):
            fail(where, "'returns_text' goes with a returned value other than a VeltoResult")
        has_outputs = any(argument.direction == "out" for argument in arguments)
        if has_outputs and behaviour.results and not behaviour.outputs:
            fail(where, "missing field 'outputs' of its behaviour: the outputs after a failure")
        return self.make_function(entry, where, arguments, behaviour, returns)

    def variant(self, entry, where):
        full = self.described(entry["variant_of"], where)
        arguments = self.variant_arguments(entry, full, where)
        names = [argument.name for argument in arguments]
        left_out = [argument.name for argument in full.arguments if argument.name not in names]
        fixed = entry.get("fixed", {})
        constants = {value["name"] for e, _ in self.lists["enumeration"] for value in e["values"]}
        for name, value in fixed.items():
            if name not in left_out:
                fail(where, f"'fixed' names '{name}', which {full.name} alone must have")
            if not isinstance(value, str) or not (value.isdigit() or value in constants):
                fail(where, f"'fixed' gives '{name}' no number or named constant: {value!r}")
        left_out = [name for name in left_out if name not in fixed]
        if not left_out and not fixed:
            fail(where, f"leaves nothing of {full.name} out")
        entry = entry | {"returns_text": full.returns_text}
        return self.make_function(entry, where, arguments, full.behaviour, full.returns, left_out)

    def variant_arguments(self, entry, full, where):
        """A variant's arguments are the fullest's own, fewer of them, in the same order."""
        known = {argument.name: argument for argument in full.arguments}
        names = entry["arguments"]
        for name in names:
            if name not in known:
                fail(where, f"argument '{name}' is none of {full.name}")
        if names != [name for name in known if name in names]:
            fail(where, f"arguments are not in the order of {full.name}")
        return [known[name] for name in names]

    def alias(self, entry, where):
        full = self.described(entry["same_as"], where)
        entry = entry | {"returns_text": full.returns_text}
        return self.make_function(entry, where, full.arguments, full.behaviour, full.returns)

    def described(self, name, where):
        function = self.functions.get(name)
        if function is None or function.variant_of or function.same_as:
            fail(where, f"'{name}' is no fully described function")
        return function

    def arguments(self, entry, where):
        arguments = [self.argument(element, where) for element in entry["arguments"]]
        names = [argument.name for argument in arguments]
        for name in names:
            if names.count(name) > 1:
                fail(where, f"duplicate argument '{name}'")
        return arguments

    @staticmethod
    def make_function(entry, where, arguments, behaviour, returns, left_out=()):
        return Function(
            name=entry["name"],
            where=where,
            summary=entry.get("summary", ""),
            arguments=arguments,
            behaviour=behaviour,
            returns=returns,
            returns_text=entry.get("returns_text", ""),
            notes=entry.get("notes", []),
            variant_of=entry.get("variant_of", ""),
            fixed=entry.get("fixed", {}),
            same_as=entry.get("same_as", ""),
            left_out=list(left_out),
        )

    # Texts.

    def check_mentions(self, tables, where):
        """Every velto_ and VELTO_ name in a text must exist: no text outlives its subject."""
        if isinstance(tables, dict):
            for key, value in tables.items():
                self.check_mentions(value, where if key != "version_node" else None)
        elif isinstance(tables, list):
            for value in tables:
                self.check_mentions(value, where)
        elif isinstance(tables, str) and where is not None:
            for name in re.findall(r"\b(?:velto|VELTO)_\w+", tables):
                if name not in self.taken and name != "VELTO_TEXT":
                    fail(where, f"mentions '{name}', which does not exist")

    def check_all_mentions(self):
        for entries in self.lists.values():
            for entry, where in entries:
                self.check_mentions(entry, where)
        for entries in self.named.values():
            for entry, where in entries.values():
                self.check_mentions(entry, where)

    def description(self):
        if self.library is None:
            fail("interface", "no [library]")
        self.check_constants()
        self.check_types()
        self.check_shared()
        self.build_functions()
        self.check_all_mentions()
        families = [
            Family(title, [self.functions[name] for name in names])
            for title, names in self.families
        ]
        plain = {kind: [entry for entry, _ in entries] for kind, entries in self.lists.items()}
        return Description(
            library=self.library,
            rules=plain["rule"],
            results=plain["result"],
            types={name: entry for name, (entry, _) in self.named["type"].items()},
            structures=plain["structure"],
            enumerations=plain["enumeration"],
            macros=plain["macro"],
            families=families,
            shared_behaviours=[
                self.behaviour(name, where)
                for name, (_, where) in self.named["behaviour"].items()
            ],
        )


def load(directory: Path) -> Description:
    """The description in a directory of TOML files."""
    paths = sorted(directory.glob("*.toml"))
    if not paths:
        fail(str(directory), "no description files")
    loader = Loader()
    for path in paths:
        loader.read_file(path)
    return loader.description()
