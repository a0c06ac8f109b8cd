#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sim/words.h"

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

    // Timecode that leaves out numbers to keep to the clock: that of the 59.94 and 29.97 rates.
    bool drop_frame() const { return rate == "59_94" || rate == "29_97"; }
};

std::span<const Standard> standards();

// Its number in messages.
VideoStandard value_of(const Standard& standard);

// The standard of that name, or null.
const Standard* find_standard(std::string_view name);

} // namespace veltosim
