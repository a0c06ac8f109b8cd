#pragma once

#include <cstddef>
#include <string_view>

// A string literal as a template argument.
template <std::size_t Size>
struct FixedString {
    char text[Size]{};

    constexpr FixedString() = default;
    constexpr FixedString(const char (&literal)[Size])
    {
        for (std::size_t i = 0; i < Size; ++i) {
            text[i] = literal[i];
        }
    }

    constexpr std::string_view view() const { return {text, Size - 1}; }

    template <typename... Words>
    constexpr bool is_one_of(const Words&... words) const
    {
        return ((view() == words) || ...);
    }
};
