#pragma once

#include "common/application.h"

#include <array>
#include <cstdint>
#include <string>

namespace stress
{

// Room for an output, which tells whether it was written to.
class TextOut
{
public:
    TextOut() { room.fill(untouched); }

    VeltoTextBuffer buffer() { return {room.data(), static_cast<std::uint32_t>(room.size())}; }
    bool is_untouched() const { return room[0] == untouched; }
    std::string text() const { return printable(room.data()); }

private:
    static constexpr VeltoChar untouched = 0x5A5A;
    std::array<VeltoChar, 512> room;
};

// The same for numbers: no call gives this one.
template <typename Number>
struct Out {
    static constexpr auto untouched = static_cast<Number>(0xA5A5A5A5);

    Number value = untouched;
    bool is_untouched() const { return value == untouched; }
};

} // namespace stress
