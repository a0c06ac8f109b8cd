#include "foundation/astringformat.h"

#include "foundation/astring_runs.h"

namespace
{

constexpr AChar placeholder_mark = L1('%');

// The length of the placeholder that stands at `at`: `%` and one or two digits. 0 for any other
// text, `%` with three digits or more too.
std::uint64_t placeholder_length(AStringRuns at)
{
    if (at.at_end() || at.current() != placeholder_mark) {
        return 0;
    }
    std::uint64_t digits = 0;
    for (at.skip(1); digits < 3 && !at.at_end() && is_digit(at.current()); at.skip(1)) {
        ++digits;
    }
    return digits == 1 || digits == 2 ? 1 + digits : 0;
}

// Keeps its place, so that a template is walked once.
void find_placeholder(void* place, const AString*, std::uint64_t from, std::int64_t* position,
                      std::uint64_t* length)
{
    AStringRuns& at = *static_cast<AStringRuns*>(place);
    at.skip(from - at.position());
    for (; at.find(placeholder_mark); at.skip(1)) {
        if (const std::uint64_t found = placeholder_length(at)) {
            *position = static_cast<std::int64_t>(at.position());
            *length = found;
            return;
        }
    }
}

int placeholder_number(const AString& piece)
{
    std::uint32_t number = 0;
    const bool placeholder =
        placeholder_length(AStringRuns(piece)) != 0 && to_u32(piece.drop_left(1), &number);
    return placeholder ? static_cast<int>(number) : -1;
}

} // namespace

AStringFormat::AStringFormat(const AString& text)
{
    AStringRuns place(text);
    pieces = text.split_with(AString::Finder(find_placeholder, &place), false, true);
    for (const AString& piece : pieces) {
        indexes.push_back(placeholder_number(piece));
    }
}

// One piece a call, and ties to the first: a template with %1 twice takes two calls for it, even
// where a %2 is waiting. Callers count on it.
AStringFormat& AStringFormat::arg(AString value)
{
    std::uint32_t chosen = 0;
    int lowest = -1;
    std::uint32_t at = 0;
    for (const int index : indexes) {
        if (index != -1 && (lowest == -1 || index < lowest)) {
            lowest = index;
            chosen = at;
        }
        ++at;
    }
    if (lowest != -1) {
        pieces.at(chosen) = std::move(value);
        indexes.at(chosen) = -1;
    }
    return *this;
}

AStringFormat& AStringFormat::arg(std::uint32_t value, std::int64_t width, char fill)
{
    return arg(from_u64(value, width, fill));
}

AStringFormat& AStringFormat::arg(std::uint64_t value, std::int64_t width, char fill)
{
    return arg(from_u64(value, width, fill));
}

AString AStringFormat::to_string() const
{
    return AString::join(pieces, AString());
}
