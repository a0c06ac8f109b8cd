#pragma once

#include "foundation/astring.h"

#include <cstdint>
#include <limits>
#include <string_view>

// 16.16 fixed point; 0x00010000 is 1.0.
using fract16 = std::int32_t;

// Number parsing. True on success; the out value may be null and is untouched after a failure.
bool to_u64(const AString& text, std::uint64_t* value);
bool to_i64(const AString& text, std::int64_t* value);
bool to_i32(const AString& text, std::int32_t* value);
bool to_u32(const AString& text, std::uint32_t* value);
bool to_u16(const AString& text, std::uint16_t* value);
bool to_u8(const AString& text, std::uint8_t* value);
bool to_fract16(const AString& text, fract16* value);

// The same of nothing but a few digits, as nearly all numbers are. False says nothing about a text.
template <typename T>
bool take_short_decimal(std::string_view text, T* value)
{
    constexpr std::size_t most_digits = 9;
    if (text.empty() || text.size() > most_digits) {
        return false;
    }
    std::uint32_t total = 0;
    for (const char c : text) {
        const auto digit = static_cast<std::uint32_t>(c) - '0';
        if (digit > 9) {
            return false;
        }
        total = total * 10 + digit;
    }
    if (total > static_cast<std::uint64_t>(std::numeric_limits<T>::max())) {
        return false;
    }
    *value = static_cast<T>(total);
    return true;
}

// Decimal text, padded as AString::pad does; a width of 0 pads nothing.
AString from_u64(std::uint64_t value, std::int64_t width = 0, char fill = ' ');
AString from_i64(std::int64_t value, std::int64_t width = 0, char fill = ' ');
inline AString from_u32(std::uint32_t value, std::int64_t width = 0, char fill = ' ')
{
    return from_u64(value, width, fill);
}
inline AString from_i32(std::int32_t value, std::int64_t width = 0, char fill = ' ')
{
    return from_i64(value, width, fill);
}
AString from_fract16(fract16 value, std::uint32_t digits);
