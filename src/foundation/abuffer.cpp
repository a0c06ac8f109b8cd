#include "foundation/abuffer.h"

#include <algorithm>
#include <cstring>

namespace
{

// No step goes beyond the ring's end.
std::uint64_t next_position(std::uint64_t position, std::uint64_t step, std::uint64_t end)
{
    return position + step == end ? 0 : position + step;
}

} // namespace

void ABuffer::append(const unsigned char* bytes, std::uint64_t size)
{
    while (size != 0) {
        if (count == ring_size) {
            flush();
        }
        if (count == 0 && size >= ring_size) {
            sink(bytes, size);
            return;
        }
        const std::uint64_t todo = std::min({ring_size - count, size, ring_size - write_position});
        if (todo == 0) {
            assert_failed("abuffer", 56, "todo != 0");
            return;
        }
        std::memcpy(ring.data() + write_position, bytes, todo);
        write_position = next_position(write_position, todo, ring_size);
        count += todo;
        bytes += todo;
        size -= todo;
    }
}

void ABuffer::flush()
{
    while (count != 0) {
        const std::uint64_t run = std::min(ring_size - read_position, count);
        const unsigned char* start = ring.data() + read_position;
        read_position = next_position(read_position, run, ring_size);
        count -= run;
        sink(start, run);
    }
}
