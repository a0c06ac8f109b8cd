#include "foundation/achar.h"

#include "foundation/aassert.h"

namespace
{

struct Utf8Row {
    std::uint64_t length;
    unsigned lead_byte_databits;
    unsigned lead_byte_pattern;
    AChar largest;
};

constexpr Utf8Row utf8_tbl[] = {
    {1, 7, 0x00, 0x7F},
    {2, 5, 0xC0, 0x7FF},
    {3, 4, 0xE0, 0xFFFF},
    {4, 3, 0xF0, 0x10FFFF},
};

constexpr bool is_continuation(unsigned byte)
{
    return (byte & 0xC0u) == 0x80;
}

constexpr bool is_low_surrogate(AChar unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool is_surrogate(AChar unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

void set_optional(std::uint64_t* out, std::uint64_t value)
{
    if (out != nullptr) {
        *out = value;
    }
}

} // namespace

unsigned char to_latin1(AChar c, unsigned char default_value)
{
    return c < 256 ? static_cast<unsigned char>(c) : default_value;
}

// Overlong forms of three and four bytes, surrogates, and values above 0x10FFFF behind a lead byte
// 0xF4 pass, and are meant to.
bool utf8_decode(const unsigned char* bytes, std::uint64_t count, AChar* c, std::uint64_t& consumed)
{
    consumed = 0;
    if (count == 0 || bytes[0] == 0) {
        return false;
    }
    const unsigned lead = bytes[0];
    if (lead == 0xC0 || lead == 0xC1 || lead >= 0xF5) {
        return false;
    }
    for (const Utf8Row& row : utf8_tbl) {
        // Before the pattern is looked at: what is cut short is refused without a report.
        if (row.length > count) {
            return false;
        }
        const unsigned data_mask = (1u << row.lead_byte_databits) - 1;
        if ((lead & ~data_mask) != row.lead_byte_pattern) {
            continue;
        }
        AChar value = lead & data_mask;
        for (std::uint64_t i = 1; i < row.length; ++i) {
            if (!is_continuation(bytes[i])) {
                return false;
            }
            value = (value << 6) | (bytes[i] & 0x3Fu);
        }
        if (c != nullptr) {
            *c = value;
        }
        consumed = row.length;
        return true;
    }
    assert_failed("achar", __LINE__, "lead byte");
    return false;
}

bool utf8_encode(AChar c, unsigned char* buffer, std::uint64_t room, std::uint64_t* written)
{
    set_optional(written, 0);
    if (room == 0) {
        return false;
    }
    const Utf8Row* row = utf8_tbl;
    const Utf8Row* const end = utf8_tbl + sizeof utf8_tbl / sizeof *utf8_tbl;
    while (row != end && row->largest < c) {
        ++row;
    }
    if (!A_CHECK("achar", row != end) || row->length > room) {
        return false;
    }
    for (std::uint64_t i = row->length - 1; i != 0; --i) {
        buffer[i] = static_cast<unsigned char>(0x80u | (c & 0x3Fu));
        c >>= 6;
    }
    if (!A_CHECK("achar", c >> row->lead_byte_databits == 0)) {
        return false;
    }
    buffer[0] = static_cast<unsigned char>(row->lead_byte_pattern | c);
    set_optional(written, row->length);
    return true;
}

bool utf16_decode(const char16_t* units, std::uint64_t count, AChar* c, std::uint64_t* consumed)
{
    set_optional(consumed, 0);
    if (count == 0 || units[0] == 0) {
        return false;
    }
    AChar value = units[0];
    std::uint64_t length = 1;
    if (is_surrogate(value)) {
        if (is_low_surrogate(value) || count < 2 || !is_low_surrogate(units[1])) {
            return false;
        }
        value = (((value & 0x3FFu) + 64) << 10) + (units[1] & 0x3FFu);
        length = 2;
    }
    if (c != nullptr) {
        *c = value;
    }
    set_optional(consumed, length);
    return true;
}

bool utf16_encode(AChar c, char16_t* buffer, std::uint64_t room, std::uint64_t* written)
{
    set_optional(written, 0);
    const std::uint64_t length = c < 0x10000 ? 1 : 2;
    if (room < length || c >= 0x110000 || is_surrogate(c)) {
        return false;
    }
    if (buffer != nullptr && length == 1) {
        buffer[0] = static_cast<char16_t>(c);
    } else if (buffer != nullptr) {
        buffer[0] = static_cast<char16_t>(0xD800u + ((c - 0x10000) >> 10));
        buffer[1] = static_cast<char16_t>(0xDC00u + (c & 0x3FFu));
    }
    set_optional(written, length);
    return true;
}
