#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

namespace stress
{

// What the model of the library does not allow. Said at once, for the first of them.
class Verdict
{
public:
    void finding(std::string_view text);
    void check(bool good, std::string_view text)
    {
        if (!good) {
            finding(text);
        }
    }

    std::uint64_t findings() const { return count; }

private:
    std::atomic<std::uint64_t> count{0};
};

} // namespace stress
