#include "connection/velto.h"

#include "connection/text.h"
#include "protocol/typehelp.h"

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
    for (std::uint32_t channel = 0; channel < tracked_channels; ++channel) {
        for (const ChannelItem* item : channels[channel]->items()) {
            if (item->channel_item_registered != 0) {
                issue(register_command(channel, *item));
            }
        }
    }
}

CBHolder<CBOkObject> VeltoConnObject::make_ok_callback(const ARef<VeltoConnObject>& connection)
{
    const bool waits = connection->asynchronous == 0;
    return CBHolder<CBOkObject>(connection, waits ? Waiting::waits : Waiting::does_not_wait);
}

VeltoResult VeltoConnObject::server_name(ARef<VeltoConnObject> connection, VeltoTextBuffer buffer)
{
    const CBHolder<CBServerNameObject> callback(connection, Waiting::waits);
    connection->issue(ZAVL3::command::get_computer_name{},
                      {callback.delegate<&CBServerNameObject::computername_delegate>(),
                       callback.delegate<&CBServerNameObject::error_delegate>()});
    const VeltoResult result = callback.outcome();
    if (result != result_ok()) { // which leaves "OK" as the text of the failure
        return result;
    }
    copy_text(callback->name, buffer);
    return result_ok();
}

template <typename Store>
VeltoResult VeltoConnObject::ask_video_standard(const ARef<VeltoConnObject>& connection,
                                                Store store)
{
    const CBHolder<CBVideoStandardObject> callback(connection, Waiting::waits);
    connection->issue(ZAVL3::command::get_video_standard{},
                      {callback.delegate<&CBVideoStandardObject::video_standard_delegate>(),
                       callback.delegate<&CBVideoStandardObject::error_delegate>()});
    const VeltoResult result = callback.outcome();
    if (result != result_ok()) { // which leaves "OK" as the text of the failure
        return result;
    }
    store(*callback.operator->());
    return result_ok();
}

VeltoResult VeltoConnObject::video_standard(ARef<VeltoConnObject> connection,
                                            std::uint32_t* standard)
{
    return ask_video_standard(connection, [standard](const CBVideoStandardObject& reply) {
        *standard = typehelp::standard_from_wire(reply.standard);
    });
}

VeltoResult VeltoConnObject::video_frequency(ARef<VeltoConnObject> connection,
                                             std::uint32_t* frequency)
{
    return ask_video_standard(connection, [frequency](const CBVideoStandardObject& reply) {
        *frequency = typehelp::rate_from_wire(reply.rate);
    });
}

VeltoResult VeltoConnObject::video_resolution(ARef<VeltoConnObject> connection,
                                              std::uint32_t* resolution)
{
    return ask_video_standard(connection, [resolution](const CBVideoStandardObject& reply) {
        *resolution = typehelp::resolution_from_wire(reply.resolution);
    });
}

void VeltoConnObject::sync(ARef<VeltoConnObject> connection)
{
    while (connection->outstanding_callbacks != 0) {
        platform::sleep_ms(1);
    }
}
