#include "connection/handle_table.h"

std::atomic<std::uint32_t> last_handle{0};

namespace
{

VeltoHandle next_of(std::atomic<std::uint32_t>& last)
{
    VeltoHandle handle = 0;
    do {
        handle = atomic_increment(last);
    } while (handle == 0);
    return handle;
}

} // namespace

VeltoHandle next_handle()
{
    return next_of(last_handle);
}

VeltoHandle OwnCounter::next()
{
    return next_of(last);
}
