#include "connection/velto.h"

#include "connection/text.h"
#include "protocol/typehelp.h"

using namespace ZAVL3;
using Waiting = CBBaseObject::Waiting;

VeltoConnObject::VeltoConnObject()
{
    for (auto& channel : channels) {
        channel = std::make_unique<ChannelState>();
    }
}

// The worker could still dispatch a report while the members go, so it ends first.
VeltoConnObject::~VeltoConnObject()
{
    stop_worker();
}

void destroy_last_reference(ARefBlock<VeltoConnObject>* block)
{
    VeltoConnObject& object = block->object;
    if (!object.is_worker_thread()) {
        delete block;
        return;
    }
    const auto destroy = [](void* left) { delete static_cast<ARefBlock<VeltoConnObject>*>(left); };
    object.end_on_worker(AFunction<>(destroy, block));
}

void VeltoConnObject::on_connection_up()
{
    for (const ChangeKind* kind : {&clip_changes, &directory_changes}) {
        if (this->*kind->tracking != 0) {
            issue(register_command(*kind));
        }
    }
    for (std::uint32_t channel = 0; channel < tracked_channels; ++channel) {
        for (const ChannelItem* item : channels[channel]->items()) {
            if (item->channel_item_registered != 0) {
                issue(register_command(channel, *item));
            }
        }
    }
    watch_and_scan_again();
}

CBHolder<CBOkObject> VeltoConnObject::make_ok_callback(const ARef<VeltoConnObject>& connection)
{
    const bool waits = connection->asynchronous == 0;
    return CBHolder<CBOkObject>(connection, waits ? Waiting::waits : Waiting::does_not_wait);
}

template <typename Command, typename Use>
VeltoResult VeltoConnObject::question(const ARef<VeltoConnObject>& connection, Use use)
{
    FinalReply<Command> reply;
    const VeltoResult result = fetch(connection, Command{}, reply);
    if (result != result_ok()) { // which leaves "OK" as the text of the failure
        return result;
    }
    use(reply);
    return result_ok();
}

VeltoResult VeltoConnObject::server_name(ARef<VeltoConnObject> connection, VeltoTextBuffer buffer)
{
    return question<command::get_computer_name>(connection, [=](const auto& reply) {
        copy_text(reply.template get<"ComputerName">(), buffer);
    });
}

template <FixedString Field, auto Convert>
VeltoResult VeltoConnObject::video(const ARef<VeltoConnObject>& connection, std::uint32_t* value)
{
    return question<command::get_video_standard>(
        connection, [=](const auto& reply) { *value = Convert(reply.template get<Field>()); });
}

VeltoResult VeltoConnObject::video_standard(ARef<VeltoConnObject> connection,
                                            std::uint32_t* standard)
{
    return video<"VideoStandard", typehelp::standard_from_wire>(connection, standard);
}

VeltoResult VeltoConnObject::video_frequency(ARef<VeltoConnObject> connection,
                                             std::uint32_t* frequency)
{
    return video<"VideoRate", typehelp::rate_from_wire>(connection, frequency);
}

VeltoResult VeltoConnObject::video_resolution(ARef<VeltoConnObject> connection,
                                              std::uint32_t* resolution)
{
    return video<"VideoResolution", typehelp::resolution_from_wire>(connection, resolution);
}

VeltoResult VeltoConnObject::disk_usage(ARef<VeltoConnObject> connection, reply::disk_usage* usage)
{
    return question<command::get_disk_usage>(connection,
                                             [=](const auto& reply) { *usage = reply; });
}

void VeltoConnObject::sync(ARef<VeltoConnObject> connection)
{
    while (connection->outstanding_callbacks != 0) {
        platform::sleep_ms(1);
    }
}
