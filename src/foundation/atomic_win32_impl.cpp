#include "foundation/atomic_win32_impl.h"

#include "foundation/amutex.h"

#include <bit>

namespace
{

constinit std::atomic<AMutex*> global_mutex{nullptr};

// Two threads can both find none; the one whose mutex is not published drops it.
AMutex* get_global_mutex()
{
    AMutex* published = global_mutex.load();
    if (published != nullptr) {
        return published;
    }
    auto* made = new AMutex;
    if (global_mutex.compare_exchange_strong(published, made)) {
        return made;
    }
    delete made;
    return published;
}

// One instruction of the processor; asking for it here spares the library for wide atomics.
__extension__ typedef unsigned __int128 Wide __attribute__((may_alias));

} // namespace

void atomic_detail::run_guarded(void (*step)(void* context), void* context)
{
    const AMutexLock lock(get_global_mutex());
    step(context);
}

__attribute__((target("cx16"))) bool atomic_compare_exchange(AtomicCell128* cell,
                                                             const AtomicCell128& expected,
                                                             const AtomicCell128& desired)
{
    return __sync_bool_compare_and_swap(
        reinterpret_cast<Wide*>(cell), std::bit_cast<Wide>(expected), std::bit_cast<Wide>(desired));
}
