#pragma once

#include "foundation/achar.h"

#include <array>
#include <cstring>

// UTF-8 taken apart in stretches, as nearly all text is ASCII.

// The bytes from 1 to 127 that the text starts with.
inline std::uint64_t ascii_run(const unsigned char* bytes, std::uint64_t count)
{
    constexpr std::uint64_t every_byte = 0x0101010101010101u;
    std::uint64_t run = 0;
    for (std::uint64_t word = 0; count - run >= sizeof word; run += sizeof word) {
        std::memcpy(&word, bytes + run, sizeof word);
        // A zero byte borrows its top bit, so that one mask finds both ends of the range.
        if ((((word - every_byte) | word) & (every_byte * 0x80)) != 0) {
            break;
        }
    }
    while (run < count && bytes[run] >= 1 && bytes[run] <= 127) {
        ++run;
    }
    return run;
}

// Each byte becomes one character.
inline void widen(const unsigned char* bytes, std::uint64_t count, AChar* room)
{
    // Blocks of a fixed size, and a copy that `room` cannot alias: compilers make vector code of
    // it.
    std::array<unsigned char, 16> block;
    for (; count >= block.size(); count -= block.size()) {
        std::memcpy(block.data(), bytes, block.size());
        for (std::size_t i = 0; i < block.size(); ++i) {
            room[i] = L1(block[i]);
        }
        bytes += block.size();
        room += block.size();
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        room[i] = L1(bytes[i]);
    }
}

// Calls `take_ascii (pointer, count)` for each ASCII run and `take_character (c)` for each other
// character. Ends, without a mark, at the first byte that is not UTF-8 or is 0.
template <typename TakeAscii, typename TakeCharacter>
void decode_utf8(const unsigned char* bytes, std::uint64_t count, TakeAscii take_ascii,
                 TakeCharacter take_character)
{
    while (count != 0) {
        std::uint64_t consumed = ascii_run(bytes, count);
        if (consumed != 0) {
            take_ascii(bytes, consumed);
        } else {
            AChar c = 0;
            if (!utf8_decode(bytes, count, &c, consumed)) {
                return;
            }
            take_character(c);
        }
        bytes += consumed;
        count -= consumed;
    }
}
