#include "api/handle_table.h"

std::atomic<std::uint32_t> last_handle{0};

VeltoHandle next_handle()
{
    VeltoHandle handle = 0;
    do {
        handle = atomic_increment(last_handle);
    } while (handle == 0);
    return handle;
}
