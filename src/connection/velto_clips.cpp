#include "connection/velto.h"

#include "connection/text.h"

using namespace ZAVL3;

const VeltoConnObject::ChangeKind VeltoConnObject::clip_changes{
    word<ReportType>("clip_change"), &VeltoConnObject::clip_tracking,
    &VeltoConnObject::clip_changes_lock};
const VeltoConnObject::ChangeKind VeltoConnObject::directory_changes{
    word<ReportType>("directory_change"), &VeltoConnObject::directory_tracking,
    &VeltoConnObject::directory_changes_lock};

// Keeps the text of a failure, and gives the default value with it.
template <typename Command, FixedString Field, typename Value>
VeltoResult VeltoConnObject::ask_of_clip(const ARef<VeltoConnObject>& connection,
                                         const AString& clip_id, Value* value)
{
    Command command;
    command.template set<"ClipID">(clip_id);
    FinalReply<Command> reply;
    const VeltoResult result = fetch(connection, command, reply);
    *value = std::move(reply.template get<Field>());
    return result;
}

VeltoResult VeltoConnObject::clip_exists(ARef<VeltoConnObject> connection, const AString& clip_id,
                                         bool* exists)
{
    return ask_of_clip<command::clip_exists, "Exists">(connection, clip_id, exists);
}

VeltoResult VeltoConnObject::clip_info(ARef<VeltoConnObject> connection, const AString& clip_id,
                                       ClipInfo* info)
{
    return ask_of_clip<command::get_clip_info, "ClipInfo">(connection, clip_id, info);
}

template <typename Command>
VeltoResult VeltoConnObject::download_names(ARef<VeltoConnObject> connection, NameList* names)
{
    using Callback = CBNamesObject<Command>;
    const CBHolder<Callback> callback(connection, CBBaseObject::Waiting::waits);
    connection->issue(Command{}, {callback.template delegate<&Callback::ok_delegate>(),
                                  callback.template delegate<&Callback::name_delegate>(),
                                  callback.template delegate<&Callback::error_delegate>()});
    const VeltoResult result = callback.outcome();
    if (result == VELTO_RESULT_OK) {
        *names = callback->names.finish();
    }
    return result;
}

template VeltoResult
VeltoConnObject::download_names<command::download_clipids>(ARef<VeltoConnObject> connection,
                                                           NameList* names);
template VeltoResult
VeltoConnObject::download_names<command::download_directory_names>(ARef<VeltoConnObject> connection,
                                                                   NameList* names);
template VeltoResult
VeltoConnObject::download_names<command::download_listids>(ARef<VeltoConnObject> connection,
                                                           NameList* names);

VeltoResult VeltoConnObject::not_implemented(ARef<VeltoConnObject>)
{
    return result_failed("Not implemented");
}

command::report_register VeltoConnObject::register_command(const ChangeKind& kind)
{
    command::report_register command;
    command.set<"ReportType">(kind.type);
    return command;
}

// No lock covers it: two threads that are the first both register.
VeltoResult VeltoConnObject::track_changes(ARef<VeltoConnObject> connection, const ChangeKind& kind)
{
    std::atomic<std::uint32_t>& tracking = *connection.*kind.tracking;
    if (tracking != 0) {
        return result_ok();
    }
    const VeltoResult result = waiting_command(connection, register_command(kind));
    if (result == result_ok()) { // which leaves "OK" as the text of a failure
        tracking = 1;
    }
    return result;
}

VeltoResult VeltoConnObject::take_change(ARef<VeltoConnObject> connection, const ChangeKind& kind,
                                         IdSet VeltoConnObject::*set, VeltoTextBuffer buffer)
{
    const VeltoResult result = track_changes(connection, kind);
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    const AMutexLock guard(&(*connection.*kind.lock));
    IdSet& ids = *connection.*set;
    copy_text(ids.empty() ? AString() : *ids.begin(), buffer);
    if (!ids.empty()) {
        ids.erase(ids.begin());
    }
    return result_ok();
}

// Thread: worker. Locks: that of the kind.
void VeltoConnObject::record_change(const ChangeKind& kind, const AString& id, IdSet& into,
                                    std::initializer_list<IdSet*> out_of)
{
    if (id.is_empty()) {
        return;
    }
    const AMutexLock guard(&(this->*kind.lock));
    into.insert(id);
    for (IdSet* set : out_of) {
        set->erase(id);
    }
}

void VeltoConnObject::on_report_clip_created(const report::clip_created& report)
{
    record_change(clip_changes, report.get<"ClipID">(), clips_added,
                  {&clips_deleted, &clips_changed});
}

// A clip that nobody has seen yet stays new.
void VeltoConnObject::on_report_clip_changed(const report::clip_changed& report)
{
    const AMutexLock guard(&clip_changes_lock);
    if (!clips_added.contains(report.get<"ClipID">())) {
        record_change(clip_changes, report.get<"ClipID">(), clips_changed, {&clips_deleted});
    }
}

void VeltoConnObject::on_report_clip_deleted(const report::clip_deleted& report)
{
    record_change(clip_changes, report.get<"ClipID">(), clips_deleted,
                  {&clips_added, &clips_changed});
}

void VeltoConnObject::on_report_directory_created(const report::directory_created& report)
{
    record_change(directory_changes, report.get<"DirectoryName">(), directories_added,
                  {&directories_deleted});
}

void VeltoConnObject::on_report_directory_deleted(const report::directory_deleted& report)
{
    record_change(directory_changes, report.get<"DirectoryName">(), directories_deleted,
                  {&directories_added});
}
