#pragma once

#include "foundation/astring.h"

#include <cstdint>

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
