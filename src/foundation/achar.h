#pragma once

#include <cstddef>
#include <cstdint>

// One code point. Nothing restricts its value.
using AChar = std::uint32_t;

constexpr AChar L1(unsigned char byte)
{
    return byte;
}

constexpr bool is_digit(AChar c)
{
    return c >= L1('0') && c <= L1('9');
}

// Wanted as it is, and relied on by trimming and blank tests: besides the six white-space
// characters, 0 and every code point of 256 and above count as white space.
constexpr bool is_space(AChar c)
{
    return c == L1(' ') || (c >= L1('\t') && c <= L1('\r')) || c == 0 || c >= 256;
}

// ASCII only; the one case folding of the library.
constexpr AChar to_lower(AChar c)
{
    return c >= L1('A') && c <= L1('Z') ? c + 32 : c;
}

constexpr int digit_value(AChar c, int default_value)
{
    return is_digit(c) ? static_cast<int>(c - L1('0')) : default_value;
}

// 0 to 35; letters beyond F are not refused.
constexpr int alnum_value(AChar c, int default_value)
{
    const AChar lower = to_lower(c);
    return lower >= L1('a') && lower <= L1('z') ? static_cast<int>(lower - L1('a')) + 10
                                                : digit_value(c, default_value);
}

unsigned char to_latin1(AChar c, unsigned char default_value);

// One-character codecs. True on success; the out counts are 0 after a failure. Pointers marked
// "optional" may be null.
bool utf8_decode(const unsigned char* bytes, std::uint64_t count, AChar* c /* optional */,
                 std::uint64_t& consumed);
bool utf8_encode(AChar c, unsigned char* buffer, std::uint64_t room,
                 std::uint64_t* written /* optional */);
bool utf16_decode(const char16_t* units, std::uint64_t count, AChar* c /* optional */,
                  std::uint64_t* consumed /* optional */);
bool utf16_encode(AChar c, char16_t* buffer /* optional */, std::uint64_t room,
                  std::uint64_t* written /* optional */);
