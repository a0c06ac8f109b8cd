#pragma once

#include "foundation/astring.h"

#include <span>
#include <vector>

// Characters side by side, for code that scans text with pointers.
using XMLChars = std::span<const AChar>;

bool is_blank(XMLChars text);
XMLChars trim_left(XMLChars text);
XMLChars trim_right(XMLChars text);
bool same_chars(XMLChars a, XMLChars b);

// Takes the next stretch without separators off `text`, and what separates it; empty at the end.
template <typename IsSeparator>
XMLChars take_piece(XMLChars& text, IsSeparator is_separator)
{
    std::size_t start = 0;
    while (start != text.size() && is_separator(text[start])) {
        ++start;
    }
    std::size_t end = start;
    while (end != text.size() && !is_separator(text[end])) {
        ++end;
    }
    const XMLChars piece = text.subspan(start, end - start);
    text = text.subspan(end);
    return piece;
}

// The characters of a string side by side: borrowed where they lie in one block, else copied once.
class XMLFlatText
{
public:
    explicit XMLFlatText(const AString& string);
    XMLFlatText(const XMLFlatText&) = delete;
    XMLFlatText& operator=(const XMLFlatText&) = delete;

    XMLChars get_chars() const { return chars; }
    // A string of a stretch of `get_chars ()`. It shares the text where `compact_copy (slack)`
    // would.
    AString keep(XMLChars stretch, std::uint64_t slack) const;

private:
    AString text;
    std::vector<AChar> copied;
    XMLChars chars;
};
