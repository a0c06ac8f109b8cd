#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz
{

// Tells what does not hold and ends the program, in every kind of build.
[[noreturn]] void fail(const char* file, int line, const char* expression);

inline std::string_view text_of(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace fuzz

#define FUZZ_CHECK(condition)                                                                      \
    ((condition) ? static_cast<void>(0) : fuzz::fail(__FILE__, __LINE__, #condition))
