#include "stress/actions.h"

namespace stress
{

namespace
{

using OneNumber = VeltoResult (*)(VeltoHandle, std::uint32_t);
using TwoNumbers = VeltoResult (*)(VeltoHandle, std::uint32_t, std::uint32_t);
using ChannelText = VeltoResult (*)(VeltoHandle, std::uint32_t, const VeltoChar*);
using ReadNumber = VeltoResult (*)(VeltoHandle, std::uint32_t, std::uint32_t*);
using ReadTwo = VeltoResult (*)(VeltoHandle, std::uint32_t, std::uint32_t*, std::uint32_t*);

template <typename Function>
struct Named {
    const char* name;
    Function function;
};

constexpr Named<OneNumber> plain[] = {
    {NAMED(velto_cmd_play1)},      {NAMED(velto_cmd_stop1)},
    {NAMED(velto_unload_channel)}, {NAMED(velto_precue_activate1)},
    {NAMED(velto_precue_clear1)},  {NAMED(velto_go_live1)},
    {NAMED(velto_edit_all_on)},    {NAMED(velto_edit_all_off)},
    {NAMED(velto_ee_all_on)},      {NAMED(velto_ee_all_off)},
    {NAMED(velto_clear_out)},      {NAMED(velto_cmd_playlist_cue_list)},
};

constexpr Named<TwoNumbers> with_number[] = {
    {NAMED(velto_goto1)},
    {NAMED(velto_jog1)},
    {NAMED(velto_cmd_stop2)},
    {NAMED(velto_go_live2)},
    {NAMED(velto_angle1)},
    {NAMED(velto_edit1)},
    {NAMED(velto_set_repeat)},
    {NAMED(velto_set_channel_repeat)},
    {NAMED(velto_set_out1)},
    {NAMED(velto_cmd_playlist_cue_now)},
    {NAMED(velto_cmd_playlist_cue_next)},
    {NAMED(velto_cmd_playlist_play_now)},
    {NAMED(velto_cmd_playlist_play_next)},
};

constexpr Named<ChannelText> with_clip[] = {
    {NAMED(velto_cmd_loadclip1)},
    {NAMED(velto_cmd_load_vclip1)},
    {NAMED(velto_cmd_loadlist1)},
    {NAMED(velto_go_live3)},
};

constexpr Named<OneNumber> together[] = {
    {NAMED(velto_cmd_gang_play1)},        {NAMED(velto_cmd_gang_stop1)},
    {NAMED(velto_gang_precue_activate1)}, {NAMED(velto_gang_edit_all_on)},
    {NAMED(velto_gang_edit_all_off)},     {NAMED(velto_gang_ee_all_on)},
    {NAMED(velto_gang_ee_all_off)},
};

constexpr Named<TwoNumbers> together_with_number[] = {
    {NAMED(velto_gang_goto1)},
    {NAMED(velto_gang_jog1)},
    {NAMED(velto_cmd_gang_stop2)},
    {NAMED(velto_gang_edit1)},
};

struct ReadOne : Named<ReadNumber> {
    std::uint32_t most;
};

constexpr std::uint32_t any = 0xFFFFFFFF;
constexpr ReadOne numbers[] = {
    {{NAMED(velto_channel_status)}, VELTO_CHANNEL_STATUS_RECORD},
    {{NAMED(velto_channel_clip_length)}, any},
    {{NAMED(velto_channel_position)}, any},
    {{NAMED(velto_channel_repeat)}, VELTO_REPEAT_PING_PONG_TO},
    {{NAMED(velto_channel_precue_count)}, 1000},
};

constexpr Named<ReadTwo> pairs[] = {
    {NAMED(velto_channel_angle)},
    {NAMED(velto_channel_ee)},
};

constexpr double speeds[] = {0, 1, -1, 0.5, 20, -200, 1e9};

template <typename Functions, typename... Arguments>
void call_one_of(Actor& actor, const Functions& functions, const Connection& connection,
                 Arguments... arguments)
{
    const auto& chosen = actor.chance.of(functions);
    actor.call(chosen.name, chosen.function, command, connection, arguments...);
}

void precue(Actor& actor, const Connection& connection)
{
    actor.call(NAMED(velto_precue2), command, connection, actor.channel(),
               units(actor.a_clip()).c_str(), actor.chance.below(4), actor.chance.below(200));
}

void read_number(Actor& actor, const Connection& connection, std::uint32_t channel)
{
    const ReadOne& chosen = actor.chance.of(numbers);
    Out<std::uint32_t> out;
    const VeltoResult result =
        actor.call(chosen.name, chosen.function, getter, connection, channel, &out.value);
    actor.check(result == VELTO_RESULT_OK ? out.value <= chosen.most && channel < 8
                                          : out.is_untouched(),
                "a getter gives what cannot be");
}

void read_pair(Actor& actor, const Connection& connection, std::uint32_t channel)
{
    const auto& chosen = actor.chance.of(pairs);
    Out<std::uint32_t> one, two;
    const VeltoResult result =
        actor.call(chosen.name, chosen.function, getter, connection, channel, &one.value,
                   actor.chance.one_in(4) ? nullptr : &two.value);
    actor.check(result == VELTO_RESULT_OK ? one.value < 256
                                          : one.is_untouched() && two.is_untouched(),
                "a getter of two gives what cannot be");
}

void read_clip(Actor& actor, const Connection& connection, std::uint32_t channel)
{
    TextOut clip;
    const VeltoResult result =
        actor.call(NAMED(velto_channel_clip), getter, connection, channel, clip.buffer());
    if (result != VELTO_RESULT_OK) {
        return actor.check(clip.is_untouched(), "velto_channel_clip writes on failure");
    }
    const std::string name = clip.text();
    actor.check(name.empty() || actor.is_clip_name(name) || name == "headlines" ||
                    name == "goals_of_the_day",
                "a channel has the clip '" + name + "'");
}

void read_speed(Actor& actor, const Connection& connection, std::uint32_t channel)
{
    constexpr double untouched = 12345.5;
    double speed = untouched;
    const VeltoResult result =
        actor.call(NAMED(velto_channel_speed), getter, connection, channel, &speed);
    actor.check(result == VELTO_RESULT_OK
                    ? speed >= -VELTO_SPEED_LIMIT && speed <= VELTO_SPEED_LIMIT
                    : speed == untouched,
                "velto_channel_speed gives what cannot be");
}

} // namespace

void drive_channel(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const std::uint32_t number = actor.chance.below(300);
    switch (actor.chance.below(6)) {
    case 0:
        return call_one_of(actor, with_clip, *connection, actor.channel(),
                           units(actor.a_clip()).c_str());
    case 1:
        return call_one_of(actor, with_number, *connection, actor.channel(), number);
    case 2:
        return precue(actor, *connection);
    case 3:
        actor.call(NAMED(velto_cmd_play2), command, *connection, actor.channel(),
                   actor.chance.of(speeds));
        return;
    default:
        return call_one_of(actor, plain, *connection, actor.channel());
    }
}

void drive_channels_together(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const std::uint32_t mask = actor.chance.below(256);
    if (actor.chance.one_in(2)) {
        call_one_of(actor, together, *connection, mask);
    } else {
        call_one_of(actor, together_with_number, *connection, mask, actor.chance.below(300));
    }
}

void drive_in_a_burst(Actor& actor)
{
    const auto connection = actor.a_connection();
    for (int i = 0; connection && i < 40; ++i) {
        call_one_of(actor, plain, *connection, actor.channel());
    }
}

void read_channel(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const std::uint32_t channel = actor.chance.one_in(16) ? actor.channel() : actor.chance.below(8);
    switch (actor.chance.below(5)) {
    case 0:
        return read_pair(actor, *connection, channel);
    case 1:
        return read_clip(actor, *connection, channel);
    case 2:
        return read_speed(actor, *connection, channel);
    default:
        return read_number(actor, *connection, channel);
    }
}

// Five seconds in vain, unless the link goes.
void read_channel_list(Actor& actor)
{
    if (const auto connection = actor.a_connection(); connection && actor.chance.one_in(4)) {
        Out<std::uint32_t> out;
        actor.call(NAMED(velto_playlist_count), always_fails, *connection, actor.chance.below(9),
                   &out.value);
        actor.check(out.is_untouched(), "velto_playlist_count writes its output");
    }
}

void take_notices(Actor& actor)
{
    const auto connection = actor.a_connection();
    for (int i = 0; connection && i < 8; ++i) {
        Out<std::uint32_t> kind, channel;
        const VeltoResult result =
            actor.call(NAMED(velto_get_notification), notification, *connection,
                       actor.chance.below(10), &kind.value, &channel.value);
        if (result != VELTO_RESULT_OK) {
            return actor.check(kind.is_untouched() && channel.is_untouched(),
                               "a notice is written on failure");
        }
        actor.check(kind.value <= VELTO_NOTICE_INFORMATION_9 && channel.value < 8 &&
                        (kind.value != 0 || channel.value == 0),
                    "there is no such notice");
        if (kind.value == VELTO_NOTICE_NONE) {
            return;
        }
        ++actor.world.notices;
    }
}

} // namespace stress
