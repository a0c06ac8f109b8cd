#pragma once

#include "foundation/astring_table.h"

#include <map>
#include <span>

// A two-way table between numbers and words, made once and read-only afterwards. Matching is exact.
class EnumString
{
public:
    struct Row {
        std::int32_t value;
        const char* text; // rows with a null or empty text are skipped
    };

    // With duplicates the first row wins, in each direction.
    EnumString(std::span<const Row> rows, std::int32_t unknown_value, const AString& unknown_text);

    const AString& to_string(std::int32_t value) const;
    std::int32_t from_string(const AString& text) const;
    std::int32_t from_string(std::string_view ascii) const;
    // False, with the value untouched, for an unknown word.
    bool from_string(const AString& text, std::int32_t* value) const;

    std::int32_t invalid_value;
    AString invalid_text;

private:
    std::map<std::int32_t, AString> by_value;
    AStringTable by_text;
};
