#pragma once

#include "xml/xml_chars.h"

#include <utility>

enum class XMLTagKind {
    none = 0, // neither `<` nor `>` from there on
    error = 1,
    open = 2,
    close = 3,
    empty = 4, // opened and closed at once
};

// One tag in a text. Names and values are stretches of the text.
struct XMLTag {
    XMLTagKind kind = XMLTagKind::none;
    bool space_before = true; // nothing else stands before it
    XMLChars name;
    std::size_t start = 0;                                 // of the `<`
    std::size_t end = 0;                                   // of the `>`
    std::vector<std::pair<XMLChars, XMLChars>> attributes; // in order of appearance
};

// `innermost` is the name of the element that the next close tag is expected to close, if any. It
// changes nothing but the time that it takes.
XMLTag next_tag(XMLChars text, std::size_t from, XMLChars innermost = {});
