#include "xml/xml_parse_search.h"

#include <algorithm>
#include <cstring>

namespace
{

// Wanted: the backspace is white space to this scan, the vertical tab and the form feed are not.
bool is_raw_space(unsigned char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\b';
}

} // namespace

void XMLTagSearch::restart(std::uint64_t from)
{
    expected = Expected::angle;
    start = from;
    end = from;
}

void XMLTagSearch::drop_front(std::uint64_t count)
{
    if (start < count) {
        restart(0);
        return;
    }
    start -= count;
    end -= count;
}

bool XMLTagSearch::find(std::string_view name, const unsigned char* bytes, std::uint64_t count,
                        std::uint64_t limit)
{
    while (!is_found()) {
        if (expected == Expected::angle) {
            if (!find_candidate(name, bytes, count, std::min(count, limit))) {
                return false;
            }
        } else if (end == count) {
            return false;
        } else if (take(name, bytes[end])) {
            ++end;
        } else {
            restart(start + 1);
        }
    }
    return true;
}

// Moves to the next angle before `limit` that can begin a tag: most cannot, by the next byte or
// two.
bool XMLTagSearch::find_candidate(std::string_view name, const unsigned char* bytes,
                                  std::uint64_t count, std::uint64_t limit)
{
    const unsigned char first = name.empty() ? '>' : static_cast<unsigned char>(name.front());
    const unsigned char* const bytes_end = bytes + count;
    for (std::uint64_t from = start; from < limit;) {
        const auto* at =
            static_cast<const unsigned char*>(std::memchr(bytes + from, '<', limit - from));
        if (at == nullptr) {
            break;
        }
        const unsigned char* next = at + 1;
        from = static_cast<std::uint64_t>(next - bytes);
        if (closing && next != bytes_end && *next == '/') {
            ++next;
        } else if (closing && next != bytes_end && !is_raw_space(*next)) {
            continue;
        }
        if (next == bytes_end || *next == first || is_raw_space(*next)) {
            start = from - 1;
            end = from;
            expected = closing ? Expected::slash : Expected::name;
            matched = 0;
            return true;
        }
    }
    restart(std::max(start, limit));
    return false;
}

// False when the byte cannot follow in the tag.
bool XMLTagSearch::take(std::string_view name, unsigned char byte)
{
    const bool between_parts = expected != Expected::name || matched == 0;
    if (between_parts && is_raw_space(byte)) {
        return true;
    }
    switch (expected) {
    case Expected::slash:
        expected = Expected::name;
        return byte == '/';
    case Expected::name:
        if (matched < name.size()) {
            const auto wanted = static_cast<unsigned char>(name[matched++]);
            if (matched == name.size()) {
                expected = Expected::close_angle;
            }
            return byte == wanted;
        }
        [[fallthrough]]; // an empty name
    default:
        expected = Expected::nothing;
        return byte == '>';
    }
}
