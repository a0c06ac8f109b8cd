#pragma once

#include "support/wire_row.h"

#include <cstdint>

// What the tables of rows are written with.

// The name of the function, and the call with these further arguments.
#define CALL(function, ...)                                                                        \
#function, [](VeltoHandle handle) { return function(handle, __VA_ARGS__); }

inline constexpr std::uint32_t all_ones = 0xFFFFFFFF;
inline constexpr const VeltoChar* none = nullptr;
