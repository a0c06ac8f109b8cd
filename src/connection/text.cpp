#include "connection/text.h"

#include <algorithm>

std::u16string wide_from_units(const VeltoChar* units)
{
    if (!A_CHECK("astring", units != nullptr)) {
        return {};
    }
    const VeltoChar* end = units;
    while (*end != 0) {
        ++end;
    }
    return std::u16string(units, end);
}

AString text_from_units(const VeltoChar* units)
{
    return AString(wide_from_units(units));
}

void copy_text(const AString& text, VeltoTextBuffer buffer)
{
    if (buffer.size == 0) {
        return;
    }
    const std::uint64_t room = buffer.size - 1;
    std::u16string units(std::min(room, 2 * text.length()), u'\0');
    std::uint64_t count = 0;
    text.to_utf16(units.data(), units.size(), &count);
    std::copy_n(units.begin(), count, buffer.text);
    buffer.text[count] = 0;
}

void copy_text(const std::u16string& text, VeltoTextBuffer buffer)
{
    if (buffer.size == 0) {
        return;
    }
    const auto is_first_of_pair = [](char16_t unit) { return (unit & 0xFC00) == 0xD800; };
    std::size_t count = std::min<std::size_t>(buffer.size - 1, text.size());
    if (count != 0 && count != text.size() && is_first_of_pair(text[count - 1])) {
        --count;
    }
    std::copy_n(text.begin(), count, buffer.text);
    buffer.text[count] = 0;
}
