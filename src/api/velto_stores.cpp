#include "api/dispatch.h"
#include "api/kv_stores.h"
#include "connection/text.h"

VeltoResult velto_open_kvstore(VeltoHandle handle, const VeltoChar* folder, const VeltoChar* prefix,
                               uint32_t mode, VeltoStoreHandle* store)
{
    return dispatch(handle, &open_kvstore, wide_from_units(folder), wide_from_units(prefix), mode,
                    store);
}

void velto_close_key_value_store(VeltoStoreHandle store)
{
    close_kvstore(store);
}

VeltoResult velto_kvstore_set(VeltoStoreHandle store, const VeltoChar* key, const VeltoChar* value)
{
    return with_kvstore(store, &KVStore::set, wide_from_units(key), wide_from_units(value));
}

VeltoResult velto_kvstore_erase(VeltoStoreHandle store, const VeltoChar* key)
{
    return with_kvstore(store, &KVStore::erase, wide_from_units(key));
}

VeltoResult velto_kvstore_flush(VeltoStoreHandle store, uint32_t timeout_ms)
{
    return with_kvstore(store, &KVStore::flush, timeout_ms);
}

VeltoResult velto_kvstore_get_change(VeltoStoreHandle store, uint32_t timeout_ms, uint32_t* kind,
                                     VeltoTextBuffer key, VeltoTextBuffer value)
{
    return with_kvstore(store, &KVStore::get_change, timeout_ms, kind, key, value);
}

VeltoResult velto_kvstore_wait_scan(VeltoStoreHandle store, uint32_t timeout_ms)
{
    return with_kvstore(store, &KVStore::wait_scan, timeout_ms);
}
