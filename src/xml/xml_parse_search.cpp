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
    const std::uint64_t angles_end = std::min(count, limit);
    while (!is_found()) {
        if (expected == Expected::angle) {
            const void* angle =
                start < angles_end ? std::memchr(bytes + start, '<', angles_end - start) : nullptr;
            if (angle == nullptr) {
                restart(std::max(start, angles_end));
                return false;
            }
            start = static_cast<std::uint64_t>(static_cast<const unsigned char*>(angle) - bytes);
            end = start + 1;
            if (end < count && !can_begin(name, bytes[end])) { // most tags go no further
                restart(end);
                continue;
            }
            expected = closing ? Expected::slash : Expected::name;
            matched = 0;
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

// Whether the byte can follow the opening angle.
bool XMLTagSearch::can_begin(std::string_view name, unsigned char byte) const
{
    const char first = closing ? '/' : name.empty() ? '>' : name.front();
    return byte == static_cast<unsigned char>(first) || is_raw_space(byte);
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
