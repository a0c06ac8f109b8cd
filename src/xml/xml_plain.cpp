#include "xml/xml_plain.h"

#include "foundation/no_destructor.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

// More elements than this, and longer names, are left to the tree: what is kept for the next
// message, and what is read again when a tag comes in pieces, is bounded so.
constexpr std::uint32_t most_elements = 4096;
constexpr std::size_t longest_name = 64;
constexpr std::size_t first_elements = 32;

enum ByteClass : unsigned char {
    text_byte = 1,
    blank_byte = 2,
    name_byte = 4,
    letter_byte = 8,
};

constexpr std::array<unsigned char, 256> make_byte_classes()
{
    std::array<unsigned char, 256> classes{};
    for (unsigned byte = 1; byte < 128; ++byte) {
        const bool is_blank = byte == ' ' || (byte >= '\t' && byte <= '\r');
        const bool is_letter = (byte | 32) >= 'a' && (byte | 32) <= 'z';
        const bool is_digit = byte >= '0' && byte <= '9';
        const bool is_markup = byte == '<' || byte == '>' || byte == '&';
        classes[byte] = static_cast<unsigned char>(
            (is_markup ? 0 : text_byte) | (is_blank ? blank_byte : 0) |
            (is_letter ? letter_byte | name_byte : 0) | (is_digit || byte == '_' ? name_byte : 0));
    }
    return classes;
}

constexpr std::array<unsigned char, 256> byte_classes = make_byte_classes();

bool is_of(ByteClass wanted, char byte)
{
    return (byte_classes[static_cast<unsigned char>(byte)] & wanted) != 0;
}

const char* skip(ByteClass skipped, const char* from, const char* end)
{
    while (from != end && is_of(skipped, *from)) {
        ++from;
    }
    return from;
}

using Outcome = XMLPlainParser::Outcome;

// For names, which are too short to be worth a call.
bool are_same(const char* a, const char* b, std::size_t count)
{
    std::uint64_t word_a = 0;
    std::uint64_t word_b = 0;
    for (; count >= sizeof word_a; count -= sizeof word_a) {
        std::memcpy(&word_a, a, sizeof word_a);
        std::memcpy(&word_b, b, sizeof word_b);
        if (word_a != word_b) {
            return false;
        }
        a += sizeof word_a;
        b += sizeof word_b;
    }
    return std::equal(a, a + count, b);
}

// Whether `expected` stands at `from`; incomplete while all there is agrees.
Outcome compare(const char* from, const char* end, std::string_view expected)
{
    const std::size_t there = std::min(static_cast<std::size_t>(end - from), expected.size());
    if (!are_same(from, expected.data(), there)) {
        return Outcome::not_plain;
    }
    return there == expected.size() ? Outcome::complete : Outcome::incomplete;
}

std::string_view between(const char* from, const char* to)
{
    return {from, static_cast<std::size_t>(to - from)};
}

} // namespace

const AString& XMLPlainElement::get_name() const
{
    static const NoDestructor<AString> unknown;
    return known != nullptr ? known->text : *unknown;
}

void XMLPlainParser::add_root_tag(std::string_view name)
{
    if (const AStringTable::Entry* known = known_names.find(name)) {
        root_names.push_back(known);
    }
}

Outcome XMLPlainParser::parse(const char* bytes, std::uint64_t byte_count)
{
    end = bytes + byte_count;
    if (at == nullptr) {
        go_behind_tag(bytes);
        count = 0;
        innermost = previous = none;
    }
    Outcome outcome = Outcome::incomplete;
    do {
        skip_text();
        outcome = take_tag();
    } while (outcome == Outcome::complete && innermost != none);
    return outcome;
}

void XMLPlainParser::skip_text()
{
    if (text_is_blank) {
        at = skip(blank_byte, at, end);
        text_is_blank = at == end || *at == '<';
    }
    if (!text_is_blank) {
        at = skip(text_byte, at, end);
    }
}

Outcome XMLPlainParser::take_tag()
{
    if (at == end) {
        return Outcome::incomplete;
    }
    if (*at != '<') {
        return Outcome::not_plain;
    }
    if (end - at < 2) {
        return Outcome::incomplete;
    }
    return at[1] == '/' ? take_close_tag() : take_open_tag();
}

Outcome XMLPlainParser::take_close_tag()
{
    if (innermost == none) {
        return Outcome::not_plain;
    }
    XMLPlainElement& closed = elements[innermost];
    // With the `>` that stands behind the name in its open tag.
    const std::string_view name_and_angle(closed.name.data(), closed.name.size() + 1);
    const Outcome outcome = compare(at + 2, end, name_and_angle);
    if (outcome != Outcome::complete) {
        return outcome;
    }
    if (!closed.has_children) {
        closed.text = between(text_start, at);
    } else if (!text_is_blank) {
        return Outcome::not_plain;
    }
    close_element();
    go_behind_tag(at + 2 + name_and_angle.size());
    return Outcome::complete;
}

Outcome XMLPlainParser::take_open_tag()
{
    const AStringTable::Entry* known = expected_name();
    const std::string_view name =
        known != nullptr ? between(at + 1, at + 1 + known->bytes.size()) : scan_name();
    const char* const behind = name.data() + name.size();
    if (name.empty() || name.size() > longest_name || !text_is_blank) {
        return Outcome::not_plain;
    }
    const bool is_empty = behind != end && *behind != '>';
    const std::string_view rest = !is_empty ? ">" : *behind == '/' ? "/>" : " />";
    const Outcome outcome = compare(behind, end, rest);
    if (outcome != Outcome::complete) {
        return outcome;
    }
    if (known == nullptr) {
        known = known_names.find(name);
    }
    if (!may_open(known, is_empty)) {
        return Outcome::not_plain;
    }
    go_behind_tag(behind + rest.size());
    open_element(name, known);
    if (is_empty) {
        close_element();
    }
    return Outcome::complete;
}

// The name that this element had in the last message, if it stands there again.
const AStringTable::Entry* XMLPlainParser::expected_name() const
{
    const AStringTable::Entry* known = count < elements.size() ? elements[count].known : nullptr;
    if (known == nullptr) {
        return nullptr;
    }
    const std::string_view rest = between(at + 1, end);
    const std::size_t length = known->bytes.size();
    const bool is_there = rest.size() > length && !is_of(name_byte, rest[length]) &&
                          are_same(rest.data(), known->bytes.data(), length);
    return is_there ? known : nullptr;
}

std::string_view XMLPlainParser::scan_name() const
{
    const char* const start = at + 1;
    return is_of(letter_byte, *start) ? between(start, skip(name_byte, start, end))
                                      : std::string_view();
}

// The stream ends a message at the first close tag with the name of its root, and sees no root in
// an empty element.
bool XMLPlainParser::may_open(const AStringTable::Entry* known, bool is_empty) const
{
    if (count == most_elements) {
        return false;
    }
    if (innermost != none) {
        return known != elements.front().known;
    }
    return !is_empty && std::find(root_names.begin(), root_names.end(), known) != root_names.end();
}

void XMLPlainParser::open_element(std::string_view name, const AStringTable::Entry* known)
{
    if (count == elements.size()) {
        elements.resize(std::max(first_elements, 2 * elements.size()));
    }
    if (previous != none) {
        elements[previous].to_next = count - previous;
    } else if (innermost != none) {
        elements[innermost].has_children = true;
    }
    XMLPlainElement& opened = elements[count];
    opened.name_storage = known != nullptr ? known->text.storage.get() : nullptr;
    opened.known = known;
    opened.name = name;
    opened.text = {};
    opened.parent = innermost;
    opened.to_next = 0;
    opened.has_children = false;
    innermost = count++;
    previous = none;
}

void XMLPlainParser::close_element()
{
    previous = innermost;
    innermost = elements[innermost].parent;
}

void XMLPlainParser::go_behind_tag(const char* behind)
{
    at = text_start = behind;
    text_is_blank = true;
}
