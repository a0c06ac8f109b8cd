#include "api/connection_registry.h"

#include "foundation/no_destructor.h"

std::atomic<std::uint32_t> last_handle{0};

VeltoHandle next_handle()
{
    VeltoHandle handle = 0;
    do {
        handle = atomic_increment(last_handle);
    } while (handle == 0);
    return handle;
}

ConnectionRegistry& connection_registry()
{
    static NoDestructor<ConnectionRegistry> registry;
    return *registry;
}

VeltoHandle ConnectionRegistry::add_connection(const ARef<VeltoConnObject>& reference)
{
    for (;;) {
        const VeltoHandle handle = next_handle();
        const AMutexLock guard(&lock);
        if (!find_connection(handle)) {
            connections.emplace(handle, reference);
            return handle;
        }
    }
}

ARef<VeltoConnObject> ConnectionRegistry::find_connection(VeltoHandle handle)
{
    const AMutexLock guard(&lock);
    const auto found = connections.find(handle);
    return found == connections.end() ? ARef<VeltoConnObject>() : found->second;
}

void ConnectionRegistry::remove_connection(VeltoHandle handle)
{
    const AMutexLock guard(&lock);
    connections.erase(handle);
}

VeltoResult ConnectionRegistry::resolve_connection(VeltoHandle handle,
                                                   ARef<VeltoConnObject>& reference)
{
    reference = find_connection(handle);
    return reference ? VELTO_RESULT_OK : result_invalid_handle();
}
