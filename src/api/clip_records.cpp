#include "api/clip_records.h"

#include "api/dispatch.h"

ZAVL3::ClipInfo& ClipRecord::get_writable()
{
    if (!record.has_no_others(1)) {
        record = ARef<ZAVL3::ClipInfo>::create_or_throw(*record);
    }
    return *record;
}

ClipRecordTable& clip_records()
{
    return process_table<ClipRecordTable>();
}

VeltoResult update_record(VeltoHandle handle, const ChangeClip& change, const StoreClip& store)
{
    std::optional<ClipRecord> before = clip_records().find(handle);
    if (!before) {
        return result_invalid_handle();
    }
    ZAVL3::command::modify_clip_attributes command;
    command.set<"ClipID">(before->get().get<"ClipID">());
    change(command.get<"ClipAttrChange">());
    const VeltoResult result =
        dispatch(before->connection,
                 &VeltoConnObject::plain_command<ZAVL3::command::modify_clip_attributes>, command);
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    before.reset(); // a share of the record would make a copy of what is written to
    // The handle can have been closed meanwhile; the server has made the change all the same.
    const bool is_stored =
        clip_records().change(handle, [&](ClipRecord& record) { store(record.get_writable()); });
    return is_stored ? result_ok() : result_invalid_handle();
}
