#pragma once

#include "connection/channel_state.h"
#include "connection/kv_scan.h"
#include "connection/kv_watch.h"
#include "connection/notify.h"
#include "connection/result.h"
#include "connection/velto_callbacks.h"
#include "foundation/aprotect.h"
#include "protocol/zavl3_client_win32.h"

#include <set>

// One connection to one server, with all that the library knows of that server. It makes blocking
// calls of the asynchronous protocol. It lives inside an ARef, and each member takes a reference
// for as long as it runs.
//
// Thread: members on any; what is called on_ on the worker.
class VeltoConnObject : public ZAVL3::Client
{
public:
    VeltoConnObject();
    ~VeltoConnObject() override;

    // The reports that feed the change sets and the channel cache; the others are dropped.
#define VELTO_KEPT_REPORTS(REPORT)                                                                 \
    REPORT(clip_created)                                                                           \
    REPORT(clip_changed)                                                                           \
    REPORT(clip_deleted)                                                                           \
    REPORT(directory_created)                                                                      \
    REPORT(directory_deleted)                                                                      \
    REPORT(channel_status)                                                                         \
    REPORT(channel_clipid)                                                                         \
    REPORT(channel_speed)                                                                          \
    REPORT(channel_timecode)                                                                       \
    REPORT(channel_info)                                                                           \
    REPORT(channel_listplay_list)                                                                  \
    REPORT(channel_listplay_unloaded)                                                              \
    REPORT(channel_listplay_item_exists)                                                           \
    REPORT(channel_listplay_item_insert)                                                           \
    REPORT(channel_listplay_item_remove)                                                           \
    REPORT(channel_listplay_clear_all)                                                             \
    REPORT(channel_listplay_air_now)                                                               \
    REPORT(channel_listplay_air_lock)                                                              \
    REPORT(channel_listplay_air_next)                                                              \
    REPORT(channel_listplay_loop)
#define VELTO_KEPT_REPORT_OPERATION(name)                                                          \
    void on_report_##name(const ZAVL3::report::name& report) override;
    VELTO_KEPT_REPORTS(VELTO_KEPT_REPORT_OPERATION)
#undef VELTO_KEPT_REPORT_OPERATION

    // Repeats what the server has to know of this client: the registrations.
    void on_connection_up() override;

    // Sends a command that is answered with a plain ok; waits for the reply unless `asynchronous`
    // is set.
    template <typename Command>
    static VeltoResult plain_command(ARef<VeltoConnObject> connection, const Command& command)
    {
        return complete(connection, command, make_ok_callback(connection));
    }

    // The same, but waits in any case.
    template <typename Command>
    static VeltoResult waiting_command(const ARef<VeltoConnObject>& connection,
                                       const Command& command)
    {
        return complete(connection, command,
                        CBHolder<CBOkObject>(connection, CBBaseObject::Waiting::waits));
    }

    // Sends a command that is answered with data, waits in any case, and on success fills `reply`.
    template <typename Command>
    static VeltoResult fetch(const ARef<VeltoConnObject>& connection, const Command& command,
                             ZAVL3::FinalReply<Command>& reply)
    {
        using Reply = ZAVL3::FinalReply<Command>;
        const CBHolder<CBReplyObject<Reply>> callback(connection, CBBaseObject::Waiting::waits);
        connection->issue(command,
                          {callback.template delegate<&CBReplyObject<Reply>::reply_delegate>(),
                           callback.template delegate<&CBReplyObject<Reply>::error_delegate>()});
        const VeltoResult result = callback.outcome();
        if (result == VELTO_RESULT_OK) {
            reply = std::move(callback->reply);
        }
        return result;
    }

    static VeltoResult server_name(ARef<VeltoConnObject> connection, VeltoTextBuffer buffer);
    static VeltoResult video_standard(ARef<VeltoConnObject> connection, std::uint32_t* standard);
    static VeltoResult video_frequency(ARef<VeltoConnObject> connection, std::uint32_t* frequency);
    static VeltoResult video_resolution(ARef<VeltoConnObject> connection,
                                        std::uint32_t* resolution);
    // The bytes in all and free, and those of a field. These questions lose the text of a failure.
    static VeltoResult disk_usage(ARef<VeltoConnObject> connection,
                                  ZAVL3::reply::disk_usage* usage);

    // These keep it.
    static VeltoResult clip_exists(ARef<VeltoConnObject> connection, const AString& clip_id,
                                   bool* exists);
    static VeltoResult clip_info(ARef<VeltoConnObject> connection, const AString& clip_id,
                                 ZAVL3::ClipInfo* info);
    // All names that `Command` downloads, in the order of the server.
    template <typename Command>
    static VeltoResult download_names(ARef<VeltoConnObject> connection, NameList* names);

    // What this server cannot do.
    static VeltoResult not_implemented(ARef<VeltoConnObject> connection);

    // Ids in the order of `AString`, which is that of their characters.
    using IdSet = std::set<AString>;

    // What is told of clips, or of directories: the registration that brings it, whether the server
    // has accepted that, and what guards the change sets. An id is in one set of its kind at most.
    struct ChangeKind {
        ZAVL3::ReportType type;
        std::atomic<std::uint32_t> VeltoConnObject::*tracking;
        AMutex VeltoConnObject::*lock;
    };
    static const ChangeKind clip_changes;
    static const ChangeKind directory_changes;

    // Registers for a kind of changes, the first time.
    static VeltoResult track_changes(ARef<VeltoConnObject> connection, const ChangeKind& kind);
    // Takes the first id of a set of that kind, the empty text when there is none; starts tracking.
    static VeltoResult take_change(ARef<VeltoConnObject> connection, const ChangeKind& kind,
                                   IdSet VeltoConnObject::*set, VeltoTextBuffer buffer);

    // Waits, looking once a millisecond, until no completion object is alive.
    static void sync(ARef<VeltoConnObject> connection);

    // Reads a cached item: the first call registers it and waits for its first report, which can
    // take up to 6 seconds; later ones are local. `read` gets the value, under its lock.
    template <typename Value, typename Read>
    static VeltoResult read_channel(ARef<VeltoConnObject> connection, std::uint32_t channel,
                                    CachedItem<Value> ChannelState::*cached, Read read)
    {
        ChannelState* state = connection->channel_state(channel);
        CachedItem<Value>* item = state != nullptr ? &(state->*cached) : nullptr;
        const VeltoResult result = ensure_channel_item(connection, channel, item);
        if (result != result_ok()) { // which leaves "OK" as the text of the failure
            return result;
        }
        {
            const AMutexLock guard(&item->lock);
            read(item->value);
        }
        return result_ok();
    }

    // Key-value stores (kv_store.h). The first reader of a folder has the server watch it, the last
    // one ends that; every reader that comes has the whole folder downloaded again.
    // Locks: `watches` is held while the commands go out; none of them waits for its reply.
    void register_store(KVStore* kvstore, const std::u16string& folder);
    void unregister_store(KVStore* kvstore);
    // False when the time ran out before the last download under way had ended well.
    bool wait_scan(const std::u16string& folder, std::uint32_t timeout_ms);
    static VeltoResult metadata_set(ARef<VeltoConnObject> connection, const std::u16string& folder,
                                    const std::u16string& key, const std::u16string& value);
    static VeltoResult metadata_erase(ARef<VeltoConnObject> connection,
                                      const std::u16string& folder, const std::u16string& key);
    void on_report_metadata_change(const ZAVL3::report::metadata_change& report) override;
    void on_report_metadata_remove(const ZAVL3::report::metadata_remove& report) override;

    // Null for a channel that is not tracked.
    ChannelState* channel_state(std::uint32_t channel)
    {
        return channel < tracked_channels ? channels[channel].get() : nullptr;
    }

    AMutex clip_changes_lock; // guards the three sets, for their operations alone
    std::atomic<std::uint32_t> clip_tracking{0};
    IdSet clips_added;
    IdSet clips_deleted;
    IdSet clips_changed;
    AMutex directory_changes_lock; // guards the two sets, for their operations alone
    std::atomic<std::uint32_t> directory_tracking{0};
    IdSet directories_added;
    IdSet directories_deleted;

    NoticeQueue notices;

    // Non-zero makes a plain command return at once.
    std::atomic<std::uint32_t> asynchronous{0};
    std::atomic<std::uint32_t> outstanding_callbacks{0};
    BSem idle_semaphore{false}; // held for nobody: no operation waits on it

private:
    friend void destroy_last_reference(ARefBlock<VeltoConnObject>* block);

    static constexpr std::uint32_t tracked_channels = 8;
    std::array<std::unique_ptr<ChannelState>, tracked_channels> channels;

    // Lock order: `watches`, then either `scans` or the lock of a KVScan or of a store's changes,
    // or those of a command on its way out (send_lock, OutstandingCommands, which then may take
    // that of a KVScan). No two of the former at a time.
    AProtect<KVWatch> watches;
    AProtect<KVScans> scans;
    // What a download brings takes the road of a report.
    const ZAVL3::reply::metadata::Delegate metadata_data =
        bind<&VeltoConnObject::take_scanned>(this);

    static CBHolder<CBOkObject> make_ok_callback(const ARef<VeltoConnObject>& connection);
    template <typename Command>
    static VeltoResult complete(const ARef<VeltoConnObject>& connection, const Command& command,
                                const CBHolder<CBOkObject>& callback)
    {
        connection->issue(command, {callback.delegate<&CBOkObject::ok_delegate>(),
                                    callback.delegate<&CBOkObject::error_delegate>()});
        return callback.outcome();
    }

    static ZAVL3::command::report_register register_command(const ChangeKind& kind);
    static ZAVL3::command::channel_report_register register_command(std::uint32_t channel,
                                                                    const ChannelItem& item);
    // `item` is null for a channel that is not tracked.
    static VeltoResult ensure_channel_item(const ARef<VeltoConnObject>& connection,
                                           std::uint32_t channel, ChannelItem* item);
    template <typename Report, typename Value, typename Assign>
    void update_item(const Report& report, CachedItem<Value> ChannelState::*cached,
                     std::initializer_list<std::uint32_t> notice_kinds, Assign assign);
    template <typename Report, typename Change>
    void update_list(const Report& report, Change change);
    void record_change(const ChangeKind& kind, const AString& id, IdSet& into,
                       std::initializer_list<IdSet*> out_of);
    // As fetch, handing the reply to `use`.
    template <typename Command, typename Use>
    static VeltoResult question(const ARef<VeltoConnObject>& connection, Use use);
    template <typename Command, FixedString Field, typename Value>
    static VeltoResult ask_of_clip(const ARef<VeltoConnObject>& connection, const AString& clip_id,
                                   Value* value);
    template <FixedString Field, auto Convert>
    static VeltoResult video(const ARef<VeltoConnObject>& connection, std::uint32_t* value);
    std::shared_ptr<KVScan> get_scan(const std::u16string& folder);
    void start_scan(const std::u16string& folder);
    void watch_and_scan_again();
    void watch(const std::u16string& folder);
    void unwatch(const std::u16string& folder);
    template <typename Report, typename List>
    void tell_stores(const Report& report, const List& list,
                     void (KVStore::*tell)(const AString& prefix, const List& list));
    void take_scanned(AString database, AString prefix, std::vector<ZAVL3::Metadata> list);
};

// The last reference can go on the object's own worker, which the destructor cannot wait for: there
// the worker unwinds, ends its loop and destroys the object as its last act.
void destroy_last_reference(ARefBlock<VeltoConnObject>* block);

template <typename Callback>
VeltoResult CBHolder<Callback>::outcome() const
{
    if (callback->done_semaphore == nullptr) {
        return result_ok();
    }
    if (!callback->done_semaphore->wait(platform::infinite)) {
        // Without a semaphore nobody can say when the delegates are through with the result.
        return result_failed("Internal software error");
    }
    return result_with_code(callback->result_code, callback->result_text);
}
