#pragma once

#include "connection/channel_state.h"
#include "connection/notify.h"
#include "connection/result.h"
#include "connection/velto_callbacks.h"
#include "protocol/zavl3_client_win32.h"

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

    // The reports that feed the channel cache.
#define VELTO_CACHED_REPORTS(REPORT)                                                               \
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
#define VELTO_CACHED_REPORT_OPERATION(name)                                                        \
    void on_report_##name(const ZAVL3::report::name& report) override;
    VELTO_CACHED_REPORTS(VELTO_CACHED_REPORT_OPERATION)
#undef VELTO_CACHED_REPORT_OPERATION

    // Repeats what the server has to know of this client: the registrations.
    void on_connection_up() override;

    // Sends a command that is answered with a plain ok; waits for the reply unless `asynchronous`
    // is set. Each argument fills its field of the command.
    template <typename Command, typename... FieldArguments>
    static VeltoResult plain_command(ARef<VeltoConnObject> connection,
                                     const FieldArguments&... arguments)
    {
        Command command;
        (arguments.fill(command), ...);
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

    static VeltoResult server_name(ARef<VeltoConnObject> connection, VeltoTextBuffer buffer);
    static VeltoResult video_standard(ARef<VeltoConnObject> connection, std::uint32_t* standard);
    static VeltoResult video_frequency(ARef<VeltoConnObject> connection, std::uint32_t* frequency);
    static VeltoResult video_resolution(ARef<VeltoConnObject> connection,
                                        std::uint32_t* resolution);
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

    // Null for a channel that is not tracked.
    ChannelState* channel_state(std::uint32_t channel)
    {
        return channel < tracked_channels ? channels[channel].get() : nullptr;
    }

    NoticeQueue notices;

    // Non-zero makes a plain command return at once.
    std::atomic<std::uint32_t> asynchronous{0};
    std::atomic<std::uint32_t> outstanding_callbacks{0};
    BSem idle_semaphore{false}; // held for nobody: no operation waits on it

private:
    friend void destroy_last_reference(ARefBlock<VeltoConnObject>* block);

    static constexpr std::uint32_t tracked_channels = 8;
    std::array<std::unique_ptr<ChannelState>, tracked_channels> channels;

    static CBHolder<CBOkObject> make_ok_callback(const ARef<VeltoConnObject>& connection);
    template <typename Command>
    static VeltoResult complete(const ARef<VeltoConnObject>& connection, const Command& command,
                                const CBHolder<CBOkObject>& callback)
    {
        connection->issue(command, {callback.delegate<&CBOkObject::ok_delegate>(),
                                    callback.delegate<&CBOkObject::error_delegate>()});
        return callback.outcome();
    }

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
    // Asks for the video standard and hands the reply to `store`.
    template <typename Store>
    static VeltoResult ask_video_standard(const ARef<VeltoConnObject>& connection, Store store);
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
    callback->done_semaphore->wait(platform::infinite);
    return result_with_code(callback->result_code, callback->result_text);
}
