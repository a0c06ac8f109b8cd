#include "foundation/csem.h"

#include "foundation/aassert.h"

CSem::CSem(std::uint32_t initial, std::uint32_t maximum)
    : handle(platform::create_semaphore(initial, maximum))
{
    A_CHECK("csem", handle != nullptr);
}

CSem::~CSem()
{
    platform::destroy_semaphore(handle);
}

bool CSem::wait(std::uint32_t time_ms)
{
    platform::WaitResult result;
    do {
        // The whole time again after an interruption; what has passed already does not count.
        result = platform::wait_semaphore(handle, time_ms);
    } while (result == platform::WaitResult::interrupted);
    if (result == platform::WaitResult::signalled) {
        return true;
    }
    if (result == platform::WaitResult::timed_out) {
        A_CHECK("csem", time_ms != platform::infinite);
    } else {
        A_REPORT("csem", "WaitForSingleObjectEx ()");
    }
    return false;
}
