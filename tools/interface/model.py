"""What a description holds once it is read and resolved."""

from dataclasses import dataclass, field


@dataclass
class Argument:
    name: str
    type: str
    text: str
    direction: str = "in"
    unit: str = ""
    range: str = ""
    constants: str = ""
    outside: str = ""


@dataclass
class Behaviour:
    name: str
    blocks: str
    title: str = ""
    text: str = ""
    results: list = field(default_factory=list)
    last_error: str = ""
    outputs: str = ""
    notes: list = field(default_factory=list)


@dataclass
class Function:
    name: str
    where: str
    summary: str
    arguments: list
    behaviour: Behaviour
    returns: str
    returns_text: str
    notes: list
    variant_of: str
    fixed: dict
    same_as: str
    left_out: list


@dataclass
class Family:
    title: str
    functions: list


@dataclass
class Description:
    library: dict
    rules: list
    results: list
    types: dict
    structures: list
    enumerations: list
    macros: list
    families: list
    shared_behaviours: list

    @property
    def functions(self):
        return [function for family in self.families for function in family.functions]

    def result_name(self, code):
        return next(result["name"] for result in self.results if result["code"] == code)
