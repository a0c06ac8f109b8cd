"""Writes include/velto/velto.h."""

from layout import FIRST_LINE, WIDTH, banner, fill, flat, sentence, wrap

PLATFORM = """\
/** One UTF-16 unit of a text. */
#ifdef _WIN32
typedef wchar_t VeltoChar;
#define VELTO_TEXT_UNITS(literal) L##literal
#define VELTO_EXPORTED __declspec(dllexport)
#define VELTO_IMPORTED __declspec(dllimport)
#else
typedef char16_t VeltoChar;
#define VELTO_TEXT_UNITS(literal) u##literal
#define VELTO_EXPORTED __attribute__((visibility("default")))
#define VELTO_IMPORTED VELTO_EXPORTED
#endif
/** A text of VeltoChar units from a literal: VELTO_TEXT("news_open"). */
#define VELTO_TEXT(literal) VELTO_TEXT_UNITS(literal)

/* VELTO_BUILDING_LIBRARY is for the library itself, VELTO_STATIC for what links its objects. */
#if defined(VELTO_STATIC)
#define VELTO_API
#elif defined(VELTO_BUILDING_LIBRARY)
#define VELTO_API VELTO_EXPORTED
#else
#define VELTO_API VELTO_IMPORTED
#endif
"""

INCLUDES = """\
#ifndef VELTO_VELTO_H
#define VELTO_VELTO_H

#include <stddef.h>
#include <stdint.h>
#if !defined(__cplusplus) && !defined(_WIN32)
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif
"""

END = """\
#ifdef __cplusplus
}
#endif

#endif
"""


def opening(description):
    lines = ["/*"]
    lines += wrap(f"{description.library['name']}. {description.library['summary']}", " * ", " * ")
    lines += [" *", " * What holds for every function:"]
    for number, (title, text) in enumerate(rules(description), 1):
        begin = f" * {number}. "
        lines += [" *", *wrap(f"{title}. {text}", begin, " *" + " " * (len(begin) - 2))]
    return "\n".join(lines + [" */", ""])


def rules(description):
    """The general rules, and behind them the behaviours that many functions share."""
    told = [(rule["title"], rule["text"]) for rule in description.rules]
    return told + [
        (shared.title, behaviour_text(description, shared))
        for shared in description.shared_behaviours
        if shared.title
    ]


def behaviour_text(description, behaviour):
    parts = [behaviour.text, results_text(description, behaviour.results), *behaviour.notes]
    parts += [behaviour.outputs, behaviour.blocks, behaviour.last_error]
    return " ".join(sentence(part) for part in parts if part)


def typedefs(description):
    blocks = []
    for entry in description.types.values():
        if "plain" in entry:
            remark = f"/** {sentence(entry['text'])} */"
            blocks.append(f"{remark}\ntypedef {entry['plain']} {entry['c']};\n")
    for entry in description.structures:
        members = [
            (f"    {description.types[member['type']]['c']} {member['name']};", member["text"])
            for member in entry["fields"]
        ]
        name = entry["name"]
        lines = [f"/** {sentence(entry['text'])} */", f"typedef struct {name} {{"]
        blocks.append("\n".join(lines + commented(members) + [f"}} {name};", ""]))
    return "\n".join(blocks)


def commented(pairs):
    """Code with remarks behind it, lined up."""
    width = max(len(code) for code, _ in pairs)
    return [f"{code:{width}} /**< {sentence(remark)} */" for code, remark in pairs]


def result_enumeration(description):
    values = []
    for result in description.results:
        remark = result["text"]
        if "recorded" in result:
            remark = f'"{result["recorded"]}": {remark}'
        values.append({"name": result["name"], "value": result["code"], "text": remark})
    return {"name": "VeltoResultCode", "text": "Values of a VeltoResult.", "values": values}


def enumeration(entry):
    members = [
        (f"    {value['name']} = {value['value']},", value["text"])
        for value in entry["values"]
    ]
    lines = [f"/** {sentence(entry['text'])} */", f"enum {entry['name']} {{"]
    return "\n".join(lines + commented(members) + ["};", ""])


def constants(description):
    entries = [result_enumeration(description)] + description.enumerations
    blocks = [enumeration(entry) for entry in entries]
    blocks += [macro(entry) for entry in description.macros]
    return "\n".join(blocks)


def macro(entry):
    define, definition = f"#define {entry['name']}", entry["definition"]
    lines = [f"{define} {definition}"]
    if len(lines[0]) > WIDTH:
        lines = [f"{define:{WIDTH - 1}}\\", f"    {definition}"]
    return "\n".join([f"/** {sentence(entry['text'])} */", *lines, ""])


def c_type(description, argument):
    written = description.types[argument.type]["c"]
    is_pointer = argument.direction == "out" and argument.type != "buffer"
    return written + "*" if is_pointer else written


def prototype(description, function):
    returned = "void" if function.returns == "none" else description.types[function.returns]["c"]
    arguments = [f"{c_type(description, a)} {a.name}" for a in function.arguments] or ["void"]
    return fill(f"VELTO_API {returned} {function.name}(", arguments, ");")


def argument_text(description, argument):
    parts = argument.text
    if argument.unit:
        parts += f", in {argument.unit}"
    if argument.constants:
        is_bits = any(
            entry["name"] == argument.constants and entry.get("bits")
            for entry in description.enumerations
        )
        parts += f", {argument.constants} combined" if is_bits else f", a {argument.constants}"
    if argument.range not in ("", "any"):
        parts += f": {argument.range}"
    if argument.outside:
        parts += f"; {argument.outside}"
    return sentence(parts)


def results_text(description, outcomes):
    """Each code once, its causes behind it with the text that they leave."""
    said = {}
    for outcome in outcomes:
        cause = outcome["when"]
        if "text" in outcome:
            cause += f' (text "{outcome["text"]}")'
        elif "text_is" in outcome:
            cause += f" (text: {outcome['text_is']})"
        said.setdefault(outcome["code"], []).append(cause)
    return " ".join(
        sentence(f"{description.result_name(code)}: {', or '.join(causes)}")
        for code, causes in said.items()
    )


def outcome_text(description, behaviour):
    if not behaviour.title:
        return results_text(description, behaviour.results)
    titles = [title for title, _ in rules(description)]
    codes = dict.fromkeys(str(outcome["code"]) for outcome in behaviour.results)
    rule = titles.index(behaviour.title) + 1
    return f"{joined(list(codes), 'or')} of VeltoResultCode, as any {behaviour.name} (rule {rule})."


def joined(names, word="and"):
    return f" {word} ".join([", ".join(names[:-1]), names[-1]] if len(names) > 1 else names)


def variant_summary(function):
    parts = []
    if function.left_out:
        parts.append(f"without {joined(function.left_out)}")
    if function.fixed:
        fixed = [f"{name} {value}" for name, value in function.fixed.items()]
        parts.append(f"with {joined(fixed)}")
    return f"{function.variant_of} {', '.join(parts)}."


def comment(description, function):
    if function.variant_of or function.same_as:
        summary = (
            variant_summary(function)
            if function.variant_of
            else f"The same as {function.same_as} under another name."
        )
        notes = " ".join(flat(note) for note in function.notes)
        lines = wrap(f"{summary} {notes}", " * ", " * ")
        if len(lines) == 1:
            return [f"/** {lines[0][3:]} */"]
        return ["/**", *lines, " */"]
    return ["/**", *full_comment(description, function), " */"]


def full_comment(description, function):
    behaviour = function.behaviour
    lines = wrap(sentence(function.summary), " * ", " * ")
    told = list(function.notes)
    if not behaviour.title:
        told += [*behaviour.notes, behaviour.blocks, behaviour.outputs, behaviour.last_error]
    lines += wrap(" ".join(sentence(text) for text in told if text), " * ", " * ") + [" *"]
    tags = [
        f"@param{'[out]' if argument.direction == 'out' else ''} {argument.name}"
        for argument in function.arguments
    ]
    width = max(map(len, tags), default=0)
    for tag, argument in zip(tags, function.arguments):
        lines += wrap(argument_text(description, argument), f" * {tag:{width}}  ", " *     ")
    returned = function.returns_text or outcome_text(description, behaviour)
    if returned:
        lines += wrap(returned, " * @return ", " *     ")
    return lines if lines[-1] != " *" else lines[:-1]


def family(description, entry):
    lines = [banner(entry.title), ""]
    for function in entry.functions:
        lines += comment(description, function) + prototype(description, function) + [""]
    return "\n".join(lines)


def header(description):
    blocks = [
        f"/* {FIRST_LINE} */",
        opening(description),
        INCLUDES,
        PLATFORM,
        typedefs(description),
        constants(description),
        *[family(description, entry) for entry in description.families if entry.functions],
        END,
    ]
    return "\n".join(blocks)
