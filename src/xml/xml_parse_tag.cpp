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
constexpr auto is_angle = [](AChar c) { return c == open_angle || c == close_angle; };
constexpr auto is_equals_sign = [](AChar c) { return c == L1('='); };
constexpr auto is_letter = [](AChar c) { return (c | 32) - L1('a') < 26; };
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

// `</expected>`, as nearly all close tags are.
bool read_expected_close(XMLChars content, XMLChars expected, XMLTag& tag)
{
    const std::size_t count = expected.size();
    if (count == 0 || content.size() < count + 2 || content[0] != slash ||
        content[count + 1] != close_angle || !same_chars(content.subspan(1, count), expected)) {
        return false;
    }
    tag.kind = XMLTagKind::close;
    tag.name = expected;
    tag.end = tag.start + count + 2;
    return true;
}

// `<name>`, as nearly all other tags are.
bool read_plain_open(XMLChars content, XMLTag& tag)
{
    const AChar* const first = content.data();
    const AChar* const end = first + content.size();
    const AChar* at = first;
    while (at != end && is_name_character(*at)) {
        ++at;
    }
    if (at == end || *at != close_angle || !is_letter(*first)) {
        return false;
    }
    tag.kind = XMLTagKind::open;
    tag.name = XMLChars(first, at);
    tag.end = tag.start + 1 + tag.name.size();
    return true;
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

XMLTag next_tag(XMLChars text, std::size_t from, XMLChars innermost)
{
    XMLTag tag;
    const AChar* at = text.data() + from;
    const AChar* const end = text.data() + text.size();
    while (at != end && is_space(*at)) {
        ++at;
    }
    tag.space_before = at == end || is_angle(*at);
    while (at != end && !is_angle(*at)) {
        ++at;
    }
    if (at == end) {
        return tag;
    }
    tag.kind = XMLTagKind::error;
    if (*at == close_angle) {
        return tag;
    }
    tag.start = static_cast<std::size_t>(at - text.data());
    const XMLChars behind(at + 1, end);
    if (read_expected_close(behind, innermost, tag) || read_plain_open(behind, tag)) {
        return tag;
    }
    const auto close = std::find(behind.begin(), behind.end(), close_angle);
    if (close == behind.end()) {
        return tag;
    }
    const auto count = static_cast<std::size_t>(close - behind.begin());
    tag.end = tag.start + 1 + count;
    tag.kind = read_content(behind.first(count), tag);
    return tag;
}
