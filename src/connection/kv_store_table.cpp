#include "connection/kv_store_table.h"

#include "foundation/no_destructor.h"

KVStoreTable& kv_store_table()
{
    static NoDestructor<KVStoreTable> table;
    return *table;
}

std::uint32_t KVStoreTable::add(const std::shared_ptr<KVStore>& store)
{
    const std::lock_guard guard(lock);
    std::uint32_t handle = 0;
    do { // after the counter has wrapped, what is still open is stepped over
        handle = ++counter;
    } while (handle == 0 || stores.count(handle) != 0);
    stores.emplace(handle, store);
    return handle;
}

std::shared_ptr<KVStore> KVStoreTable::find(std::uint32_t handle)
{
    const std::lock_guard guard(lock);
    const auto found = stores.find(handle);
    return found == stores.end() ? nullptr : found->second;
}

std::shared_ptr<KVStore> KVStoreTable::take(std::uint32_t handle)
{
    const std::lock_guard guard(lock);
    const auto entry = stores.extract(handle);
    return entry.empty() ? nullptr : entry.mapped();
}

VeltoResult open_kvstore(ARef<VeltoConnObject> connection, const std::u16string& folder,
                         const std::u16string& prefix, std::uint32_t mode, std::uint32_t* handle)
{
    if (mode < kv_read || mode > kv_write) {
        return result_invalid_argument();
    }
    *handle = kv_store_table().add(
        std::make_shared<KVStore>(connection, folder, prefix, static_cast<std::int32_t>(mode)));
    return result_ok();
}

// Whoever is in a call on the store drops the last reference in place of this one.
void close_kvstore(std::uint32_t handle)
{
    if (const std::shared_ptr<KVStore> store = kv_store_table().take(handle)) {
        store->close();
    }
}
