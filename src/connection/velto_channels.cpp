#include "connection/velto.h"

#include "foundation/astringformat.h"
#include "protocol/typehelp.h"

using namespace ZAVL3;

namespace
{

constexpr std::int64_t first_report_wait_seconds = 5;

template <typename Report>
std::uint32_t channel_of(const Report& report)
{
    return static_cast<std::uint32_t>(report.template get<"Channel">());
}

} // namespace

command::channel_report_register VeltoConnObject::register_command(std::uint32_t channel,
                                                                   const ChannelItem& item)
{
    command::channel_report_register command;
    command.set<"Channel">(typehelp::channel_to_wire(channel));
    command.set<"ChannelReportType">(item.type);
    return command;
}

// The value and the flag under the lock, the notices after it. A report for a channel that is not
// tracked is dropped.
//
// Thread: worker. Locks: the item's, for the assignment alone.
template <typename Report, typename Value, typename Assign>
void VeltoConnObject::update_item(const Report& report, CachedItem<Value> ChannelState::*cached,
                                  std::initializer_list<std::uint32_t> notice_kinds, Assign assign)
{
    const std::uint32_t channel = channel_of(report);
    ChannelState* state = channel_state(channel);
    if (state == nullptr) {
        return;
    }
    CachedItem<Value>& item = state->*cached;
    {
        const AMutexLock guard(&item.lock);
        assign(item.value);
        item.channel_item_received = 1;
    }
    for (const std::uint32_t kind : notice_kinds) {
        notices.post_notice(kind, channel);
    }
}

// Sets the flag of `info`, and never that of `list_play`: wanted as it is. The list getters
// therefore run out of time, while the cache behind them is right.
template <typename Report, typename Change>
void VeltoConnObject::update_list(const Report& report, Change change)
{
    ChannelState* state = channel_state(channel_of(report));
    if (state == nullptr) {
        return;
    }
    const AMutexLock guard(&state->list_play.lock);
    change(state->list_play.value);
    state->info.channel_item_received = 1;
}

void VeltoConnObject::on_report_channel_status(const report::channel_status& report)
{
    update_item(report, &ChannelState::status, {5},
                [&](ChannelStatus& status) { status = report.get<"ChannelStatus">(); });
}

void VeltoConnObject::on_report_channel_clipid(const report::channel_clipid& report)
{
    update_item(report, &ChannelState::clip_id, {1},
                [&](AString& clip_id) { clip_id = report.get<"ClipID">(); });
}

void VeltoConnObject::on_report_channel_speed(const report::channel_speed& report)
{
    update_item(report, &ChannelState::speed, {7},
                [&](fract16& speed) { speed = report.get<"Speed">(); });
}

void VeltoConnObject::on_report_channel_timecode(const report::channel_timecode& report)
{
    update_item(report, &ChannelState::timecode, {3}, [&](ChannelTimecodes& timecode) {
        timecode.position = report.get<"ClipPosition">();
        timecode.display_timecode = report.get<"DisplayTimecode">();
        timecode.input_timecode = report.get<"InputTimecode">();
    });
}

void VeltoConnObject::on_report_channel_info(const report::channel_info& report)
{
    update_item(report, &ChannelState::info, {2, 4, 6, 8, 9},
                [&](ChannelInformation& info) { info = report.get<"ChannelInformation">(); });
}

void VeltoConnObject::on_report_channel_listplay_list(const report::channel_listplay_list& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.load(report.get<"ListID">(), report.get<"ListPlayMode">());
    });
}

void VeltoConnObject::on_report_channel_listplay_unloaded(
    const report::channel_listplay_unloaded& report)
{
    update_list(report, [](ChannelListPlay& list) { list.unload(); });
}

void VeltoConnObject::on_report_channel_listplay_item_exists(
    const report::channel_listplay_item_exists& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.replace(report.get<"ListIndex">(), report.get<"ListElement">());
    });
}

void VeltoConnObject::on_report_channel_listplay_item_insert(
    const report::channel_listplay_item_insert& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.insert(report.get<"ListIndex">(), report.get<"ListElement">());
    });
}

void VeltoConnObject::on_report_channel_listplay_item_remove(
    const report::channel_listplay_item_remove& report)
{
    update_list(report, [&](ChannelListPlay& list) { list.remove(report.get<"ListIndex">()); });
}

void VeltoConnObject::on_report_channel_listplay_clear_all(
    const report::channel_listplay_clear_all& report)
{
    update_list(report, [](ChannelListPlay& list) { list.clear_all(); });
}

void VeltoConnObject::on_report_channel_listplay_air_now(
    const report::channel_listplay_air_now& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.set_air(ChannelListPlay::air_now, report.get<"ListPlaybackIndex">());
    });
}

void VeltoConnObject::on_report_channel_listplay_air_lock(
    const report::channel_listplay_air_lock& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.set_air(ChannelListPlay::air_lock, report.get<"ListPlaybackIndex">());
    });
}

void VeltoConnObject::on_report_channel_listplay_air_next(
    const report::channel_listplay_air_next& report)
{
    update_list(report, [&](ChannelListPlay& list) {
        list.set_air(ChannelListPlay::air_next, report.get<"ListPlaybackIndex">());
    });
}

void VeltoConnObject::on_report_channel_listplay_loop(const report::channel_listplay_loop& report)
{
    update_list(report, [&](ChannelListPlay& list) { list.set_loop(report.get<"Loop">()); });
}

// No lock covers it: two threads that read a new item at the same time both register it.
VeltoResult VeltoConnObject::ensure_channel_item(const ARef<VeltoConnObject>& connection,
                                                 std::uint32_t channel, ChannelItem* item)
{
    if (item == nullptr) {
        return result_failed(AStringFormat("Channel %1 does not exist").arg(channel).to_string());
    }
    if (item->channel_item_registered != 0) {
        return result_ok();
    }
    const VeltoResult result = waiting_command(connection, register_command(channel, *item));
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    // A spin and not a sleep: it is over when the worker has read one more message. The clock's
    // grain makes it 5 to 6 seconds when no report comes.
    const std::int64_t limit = platform::unix_time_seconds() + first_report_wait_seconds;
    while (item->channel_item_received == 0 && platform::unix_time_seconds() <= limit) {
        platform::yield_thread();
    }
    if (item->channel_item_received == 0) {
        return result_failed("Register for channel item failed unexpectedly");
    }
    item->channel_item_registered = 1;
    return result_ok();
}
