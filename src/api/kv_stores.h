#pragma once

#include "connection/handle_table.h"
#include "connection/kv_store.h"

// The open stores, whatever their connection. Those that are open when the process ends are left as
// they are.
using KVStoreTable = HandleTable<std::shared_ptr<KVStore>, OwnCounter>;
KVStoreTable& kv_stores();

VeltoResult open_kvstore(ARef<VeltoConnObject> connection, const std::u16string& folder,
                         const std::u16string& prefix, std::uint32_t mode, VeltoStoreHandle* store);
void close_kvstore(VeltoStoreHandle store);

// The frame of every other call on a store, which cannot go while the call is in it.
template <typename Operation, typename... Arguments>
VeltoResult with_kvstore(VeltoStoreHandle handle, Operation operation,
                         const Arguments&... arguments)
{
    const auto store = kv_stores().find(handle);
    return store ? (store->get()->*operation)(arguments...) : result_invalid_handle();
}
