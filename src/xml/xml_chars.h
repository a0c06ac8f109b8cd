#pragma once

#include "foundation/astring.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

// Characters side by side, for code that scans text with pointers.
using XMLChars = std::span<const AChar>;

inline bool is_blank(XMLChars text)
{
    return std::all_of(text.begin(), text.end(), [](AChar c) { return is_space(c); });
}

inline bool same_chars(XMLChars a, XMLChars b)
{
    return a.size() == b.size() && (a.data() == b.data() || a.empty() ||
                                    std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

XMLChars trim_left(XMLChars text);
XMLChars trim_right(XMLChars text);

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

// The characters of a text side by side: borrowed from a string where they lie in one block, else
// copied or decoded to room of its own, which is used again.
class XMLFlatText
{
public:
    XMLFlatText() = default;
    explicit XMLFlatText(const AString& string);
    XMLFlatText(const XMLFlatText&) = delete;
    XMLFlatText& operator=(const XMLFlatText&) = delete;
    XMLFlatText(XMLFlatText&&) = default; // the characters stay where they are

    // The text of UTF-8 bytes, as AString::from_utf8 has it.
    void decode(const unsigned char* bytes, std::uint64_t count);
    XMLChars get_chars() const { return chars; }
    // Whether a string of this stretch of `get_chars ()` may share the text where strings can have
    // `slack` characters beyond their own.
    bool can_share(XMLChars stretch, std::uint64_t slack) const
    {
        return !text.is_empty() && text.storage->total_len - stretch.size() <= slack;
    }
    // A string of a stretch of `get_chars ()`. It shares the text where `compact_copy (slack)`
    // would.
    AString keep(XMLChars stretch, std::uint64_t slack) const;

private:
    AString text;
    std::vector<AChar> own;
    XMLChars chars;
};
