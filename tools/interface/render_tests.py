"""Writes the tests that pin each prototype, in C and in C++."""

import re
from itertools import combinations
from string import Template

from layout import FIRST_LINE, WIDTH, fill
from render_header import c_type

C_TOP = """\
/* {first} */

/* Each prototype of the header is pinned here in plain types, and its address taken at run time. */
#include "api/prototypes.h"

#include "velto/velto.h"

#define PIN(name, result, arguments)                                                               \\
    _Static_assert(_Generic(&name, result(*) arguments : 1, default : 0), "prototype of " #name)

_Static_assert(_Generic((VeltoHandle)0, uint32_t : 1, default : 0), "VeltoHandle");
_Static_assert(_Generic((VeltoRecordHandle)0, uint32_t : 1, default : 0), "VeltoRecordHandle");
_Static_assert(_Generic((VeltoListHandle)0, uint32_t : 1, default : 0), "VeltoListHandle");
_Static_assert(_Generic((VeltoResult)0, int32_t : 1, default : 0), "VeltoResult");
_Static_assert(sizeof(VeltoChar) == 2, "VeltoChar");

/* clang-format off */
#define LISTED(name) {{#name, (VeltoFunction)name}}

"""

CPP_TOP = """\
// {first}

// Each prototype of the header is pinned here in plain types, and the functions that were linked
// are compared with the description's list.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "api/prototypes.h"
#include "velto/velto.h"

static_assert(std::is_same_v<VeltoHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoRecordHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoListHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoResult, std::int32_t>);
static_assert(sizeof(VeltoChar) == 2);

// clang-format off
"""

CPP_TESTS = Template(
    """\
// clang-format on

namespace
{

// Functions that may be one and the same code.
const std::set<std::set<std::string>> same_code = {
$same
};

const std::vector<std::string> described = {
$described
};

std::vector<VeltoPrototype> linked()
{
    std::vector<VeltoPrototype> prototypes(velto_prototypes(nullptr, 0));
    velto_prototypes(prototypes.data(), prototypes.size());
    return prototypes;
}

} // namespace

TEST(Prototypes, AreThoseOfTheDescription)
{
    std::vector<std::string> names;
    for (const VeltoPrototype& prototype : linked()) {
        names.emplace_back(prototype.name);
    }
    EXPECT_EQ(names.size(), std::size_t{$count});
    EXPECT_EQ(names, described);
}

TEST(Prototypes, EachFunctionHasAnAddress)
{
    for (const VeltoPrototype& prototype : linked()) {
        EXPECT_NE(prototype.address, nullptr) << prototype.name;
    }
}

TEST(Prototypes, OnlyFunctionsOfOneCodeShareAnAddress)
{
    const std::vector<VeltoPrototype> prototypes = linked();
    for (const VeltoPrototype& one : prototypes) {
        for (const VeltoPrototype& other : prototypes) {
            const std::set<std::string> pair = {one.name, other.name};
            if (one.address == other.address && pair.size() == 2) {
                EXPECT_EQ(same_code.count(pair), 1U) << one.name << " and " << other.name;
            }
        }
    }
}
"""
)


def plain_type(description, type_name, argument=None):
    entry = description.types[type_name]
    if "plain" not in entry:
        return c_type(description, argument) if argument else entry["c"]
    is_pointer = argument is not None and argument.direction == "out"
    return entry["plain"] + ("*" if is_pointer else "")


def signature(description, function):
    result = "void"
    if function.returns != "none":
        result = plain_type(description, function.returns)
    arguments = [plain_type(description, a.type, a) for a in function.arguments] or ["void"]
    return result, arguments


def c_pins(description):
    lines = []
    for family in description.families:
        lines += [f"/* {family.title} */"] if family.functions else []
        for function in family.functions:
            result, arguments = signature(description, function)
            lines += pin(f"PIN({function.name}, {result},", "(", arguments, "));")
    return lines


def pin(begin, opening, arguments, end):
    """On one line, or with the signature on lines of its own."""
    line = f"{begin} {opening}{', '.join(arguments)}{end}"
    return [line] if len(line) <= WIDTH else [begin, *fill("    " + opening, arguments, end)]


def c_test(description):
    lines = c_pins(description)
    lines += ["", "size_t velto_prototypes(VeltoPrototype* prototypes, size_t capacity)", "{"]
    lines += ["    const VeltoPrototype all[] = {"]
    for function in description.functions:
        lines.append(f"        LISTED({function.name}),")
    lines += ["    };", "    const size_t count = sizeof all / sizeof all[0];", ""]
    lines += ["    for (size_t i = 0; i < count && i < capacity; ++i) {"]
    lines += ["        prototypes[i] = all[i];", "    }", "    return count;", "}"]
    lines += ["/* clang-format on */"]
    return C_TOP.format(first=FIRST_LINE) + "\n".join(lines) + "\n"


def with_std(text):
    return re.sub(r"\bu?int\d+_t\b", r"std::\g<0>", text)


def structure_pins(description):
    lines = ["// Structures"]
    for entry in description.structures:
        name = entry["name"]
        lines.append(f"static_assert(std::is_standard_layout_v<{name}>);")
        for member in entry["fields"]:
            wanted = with_std(plain_type(description, member["type"]))
            pinned = f"decltype({name}::{member['name']})"
            lines.append(f"static_assert(std::is_same_v<{pinned}, {wanted}>);")
    return lines


def cpp_pins(description):
    lines = []
    for family in description.families:
        lines += [f"// {family.title}"] if family.functions else []
        for function in family.functions:
            result, arguments = signature(description, function)
            begin = f"static_assert(std::is_same_v<decltype({function.name}),"
            arguments = [with_std(argument) for argument in arguments]
            lines += pin(begin, f"{with_std(result)}(", arguments, ")>);")
    return lines


def same_code(functions):
    """The pairs of names that may stand for one code."""
    groups = {}
    for function in functions:
        groups.setdefault(function.same_as or function.name, []).append(function.name)
    return [pair for group in groups.values() for pair in combinations(group, 2)]


def cpp_test(description):
    functions = description.functions
    tests = CPP_TESTS.substitute(
        same="\n".join(f'    {{"{one}", "{other}"}},' for one, other in same_code(functions)),
        described="\n".join(f'    "{function.name}",' for function in functions),
        count=len(functions),
    )
    pins = structure_pins(description) + cpp_pins(description)
    return CPP_TOP.format(first=FIRST_LINE) + "\n".join(pins) + "\n" + tests
