#include "xml/xml_parse_tag.h"

#include <algorithm>

namespace
{

constexpr AChar open_angle = L1('<');
constexpr AChar close_angle = L1('>');
constexpr AChar slash = L1('/');
constexpr AChar quote = L1('"');

// Function objects, so that the loops that take them have them inline.
constexpr auto is_separator = [](AChar c) {
    return c == L1(' ') || (c >= L1('\t') && c <= L1('\r'));
};
constexpr auto is_equals_sign = [](AChar c) { return c == L1('='); };
constexpr auto is_letter = [](AChar c) { return to_lower(c) >= L1('a') && to_lower(c) <= L1('z'); };
constexpr auto is_name_character = [](AChar c) {
    return is_letter(c) || is_digit(c) || c == L1('_');
};

bool is_element_name(XMLChars name)
{
    return !name.empty() && is_letter(name.front()) &&
           std::all_of(name.begin(), name.end(), is_name_character);
}

XMLChars without_quotes(XMLChars value)
{
    if (!value.empty() && value.front() == quote) {
        value = value.subspan(1);
    }
    if (!value.empty() && value.back() == quote) {
        value = value.first(value.size() - 1);
    }
    return value;
}

// An attribute is exactly two parts around any number of equals signs, quotes or not: a value can
// hold neither a space nor an equals sign.
bool read_attribute(XMLChars piece, XMLTag& tag)
{
    const XMLChars name = take_piece(piece, is_equals_sign);
    const XMLChars value = take_piece(piece, is_equals_sign);
    if (value.empty() || !take_piece(piece, is_equals_sign).empty()) {
        return false;
    }
    tag.attributes.emplace_back(name, without_quotes(value));
    return true;
}

// What stands between the angles.
XMLTagKind read_content(XMLChars content, XMLTag& tag)
{
    content = trim_right(trim_left(content));
    if (content.empty()) {
        return XMLTagKind::error;
    }
    const bool closing = content.front() == slash;
    const bool empty = content.back() == slash;
    if (closing && empty) {
        return XMLTagKind::error;
    }
    if (closing) {
        content = trim_left(content.subspan(1));
    }
    if (empty) {
        content = trim_right(content.first(content.size() - 1));
    }
    tag.name = take_piece(content, is_separator);
    if (!is_element_name(tag.name)) {
        return XMLTagKind::error;
    }
    for (XMLChars piece; !(piece = take_piece(content, is_separator)).empty();) {
        if (!read_attribute(piece, tag)) {
            return XMLTagKind::error;
        }
    }
    return closing ? XMLTagKind::close : empty ? XMLTagKind::empty : XMLTagKind::open;
}

} // namespace

XMLTag next_tag(XMLChars text, std::size_t from)
{
    XMLTag tag;
    const auto start = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(),
                                    [](AChar c) { return c == open_angle || c == close_angle; });
    if (start == text.end()) {
        return tag;
    }
    tag.kind = XMLTagKind::error;
    const auto end = std::find(start, text.end(), close_angle);
    if (*start == close_angle || end == text.end()) {
        return tag;
    }
    tag.start = static_cast<std::size_t>(start - text.begin());
    tag.end = static_cast<std::size_t>(end - text.begin());
    tag.kind = read_content(text.subspan(tag.start + 1, tag.end - tag.start - 1), tag);
    return tag;
}
