#pragma once

#include <cstdint>
#include <iterator>
#include <random>

namespace stress
{

// What happens next. The same seed gives the same sequence on every system.
class Chance
{
public:
    Chance(std::uint64_t seed, std::uint64_t stream)
        : generator(seed * 0x9E3779B97F4A7C15u + stream * 0xBF58476D1CE4E5B9u + 1)
    {
    }

    std::uint32_t below(std::uint32_t count)
    {
        return static_cast<std::uint32_t>((generator() >> 16) % count);
    }
    bool one_in(std::uint32_t count) { return below(count) == 0; }

    template <typename Choices>
    const auto& of(const Choices& choices)
    {
        return *std::next(std::begin(choices),
                          below(static_cast<std::uint32_t>(std::size(choices))));
    }
    // One of a table, by the entries' weights.
    template <typename Table>
    const auto& weighted(const Table& table)
    {
        std::uint32_t total = 0;
        for (const auto& entry : table) {
            total += entry.weight;
        }
        std::uint32_t drawn = below(total);
        auto chosen = std::begin(table);
        while (drawn >= chosen->weight) {
            drawn -= chosen->weight;
            ++chosen;
        }
        return *chosen;
    }

private:
    std::mt19937_64 generator;
};

} // namespace stress
