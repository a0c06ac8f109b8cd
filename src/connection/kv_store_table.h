#pragma once

#include "connection/kv_store.h"

#include <map>

// From handles to open stores, whatever their connection. Stores that are open when the process
// ends are left as they are.
//
// Thread: any. Locks: `lock` guards the table; it is taken alone.
class KVStoreTable
{
public:
    std::uint32_t add(const std::shared_ptr<KVStore>& store);
    // Null for an unknown handle. The store lives for as long as the caller holds the reference.
    std::shared_ptr<KVStore> find(std::uint32_t handle);
    // The same, and the handle is unknown from then on.
    std::shared_ptr<KVStore> take(std::uint32_t handle);

    // Apart from that of all other handles: the first store is 1, 0 is never given out.
    std::uint32_t counter = 0; // guarded by lock

private:
    std::mutex lock;
    std::map<std::uint32_t, std::shared_ptr<KVStore>> stores; // guarded by lock
};

// The one of the process.
KVStoreTable& kv_store_table();

VeltoResult open_kvstore(ARef<VeltoConnObject> connection, const std::u16string& folder,
                         const std::u16string& prefix, std::uint32_t mode, std::uint32_t* handle);
void close_kvstore(std::uint32_t handle);

// The frame of every other call on a store, which cannot go while the call is in it.
template <typename Operation, typename... Arguments>
VeltoResult with_kvstore(std::uint32_t handle, Operation operation, const Arguments&... arguments)
{
    const std::shared_ptr<KVStore> store = kv_store_table().find(handle);
    return store ? (store.get()->*operation)(arguments...) : result_invalid_handle();
}
