#pragma once

#include "foundation/afunction.h"

#include <array>
#include <cstdint>

// Groups many small writes into few large ones for a sink.
class ABuffer
{
public:
    using Sink = AFunction<const unsigned char*, std::uint64_t>;

    explicit ABuffer(const Sink& target) : sink(target) {}

    // A block that fills the whole ring, met while it is empty, goes straight to the sink.
    void append(const unsigned char* bytes, std::uint64_t size);
    void flush();

private:
    static constexpr std::uint64_t ring_size = 1500;

    Sink sink;
    std::array<unsigned char, ring_size> ring;
    std::uint64_t read_position = 0;
    std::uint64_t write_position = 0;
    std::uint64_t count = 0;
};
