#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace veltosim
{

// Fields a second, as a fraction. A progressive standard counts one field for each of its pictures.
struct FieldRate {
    std::uint32_t fields = 50;
    std::uint32_t seconds = 1;
};

// One video standard in the protocol's words.
struct Standard {
    std::string_view name;
    std::string_view rate;
    std::string_view resolution;
    FieldRate field_rate;
};

std::span<const Standard> standards();

// The standard of that name, or null.
const Standard* find_standard(std::string_view name);

} // namespace veltosim
