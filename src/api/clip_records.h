#pragma once

#include "connection/handle_table.h"
#include "connection/velto.h"

#include <functional>

// A clip as the server told of it, and on which connection: what a record handle stands for. It is
// a snapshot: only what is written through its handle changes it.
//
// Copies share the record, whatever its length, until one is written to.
class ClipRecord
{
public:
    ClipRecord(VeltoHandle origin, ZAVL3::ClipInfo info)
        : connection(origin), record(ARef<ZAVL3::ClipInfo>::create_or_throw(std::move(info)))
    {
    }

    const ZAVL3::ClipInfo& get() const { return *record; }
    ZAVL3::ClipInfo& get_writable();

    VeltoHandle connection;

private:
    ARef<ZAVL3::ClipInfo> record;
};

using ClipRecordTable = HandleTable<ClipRecord>;
ClipRecordTable& clip_records();

// Calls `read` with a copy of the record.
template <typename Read>
VeltoResult read_record(VeltoHandle handle, Read read)
{
    const std::optional<ClipRecord> record = clip_records().find(handle);
    if (!record) {
        return result_invalid_handle();
    }
    read(record->get());
    return result_ok();
}

using ChangeClip = std::function<void(ZAVL3::ClipAttrChange& change)>;
using StoreClip = std::function<void(ZAVL3::ClipInfo& info)>;

// Sends what `change` sets to the server and then makes the record say so by `store`, which runs
// under the lock of the table. Whether the clip may be written to is for the server to say. Without
// waiting for replies the record changes at once, whatever becomes of the command.
VeltoResult update_record(VeltoHandle handle, const ChangeClip& change, const StoreClip& store);
