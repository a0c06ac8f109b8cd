#include "connection/text.h"

#include <algorithm>
#include <string>

AString text_from_units(const VeltoChar* units)
{
    if (units == nullptr) {
        return AString(static_cast<const char16_t*>(nullptr));
    }
    const VeltoChar* end = units;
    while (*end != 0) {
        ++end;
    }
    return AString(std::u16string(units, end));
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
