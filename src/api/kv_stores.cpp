#include "api/kv_stores.h"

KVStoreTable& kv_stores()
{
    return process_table<KVStoreTable>();
}

VeltoResult open_kvstore(ARef<VeltoConnObject> connection, const std::u16string& folder,
                         const std::u16string& prefix, std::uint32_t mode, VeltoStoreHandle* store)
{
    if (mode < kv_read || mode > kv_write) {
        return result_invalid_argument();
    }
    const auto opened =
        std::make_shared<KVStore>(connection, folder, prefix, static_cast<std::int32_t>(mode));
    try {
        *store = kv_stores().add(opened);
    } catch (...) {
        opened->close();
        throw;
    }
    return result_ok();
}

// Whoever is in a call on the store drops the last reference in place of this one.
void close_kvstore(VeltoStoreHandle store)
{
    if (const auto closed = kv_stores().take(store)) {
        (*closed)->close();
    }
}
