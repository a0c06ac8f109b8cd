#include "stress/verdict.h"

#include <cstdio>

#include <fmt/format.h>

namespace stress
{

namespace
{

constexpr std::uint64_t most_told = 50;

} // namespace

void Verdict::finding(std::string_view text)
{
    if (++count <= most_told) {
        fmt::print("FINDING: {}\n", text);
        std::fflush(stdout);
    }
}

} // namespace stress
