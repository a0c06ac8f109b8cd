#pragma once

#include "foundation/astring.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

// Words with a number each, found by their characters: an open hash table that is never more than
// half full. Filled by one thread, read-only afterwards.
class AStringTable
{
public:
    struct Entry {
        AString text;
        std::int32_t value;
        std::vector<AChar> characters; // of the text, side by side
        std::string bytes;             // the same for an ASCII text, else empty
    };

    // `text` is not empty. Of the same texts the first stays.
    void add(const AString& text, std::int32_t value);
    // Null when there is none.
    const Entry* find(const AChar* characters, std::uint64_t count) const;
    const Entry* find(const AString& text) const;
    const Entry* find(std::string_view ascii) const;

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0; // of the entry, from 1; 0 in a free slot
    };

    void place(const Slot& slot);
    template <typename Character, typename IsText>
    const Entry* find_if(const Character* characters, std::uint64_t count, IsText is_text) const;

    std::deque<Entry> entries; // they stay where they are
    std::vector<Slot> slots;   // none, or a power of two of them
};
