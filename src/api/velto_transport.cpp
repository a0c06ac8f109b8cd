#include "api/dispatch.h"
#include "connection/velto_arguments.h"

using namespace argument;
namespace command = ZAVL3::command;

// ---- Play and stop

VeltoResult velto_cmd_play1(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::play>(handle, Channel{channel});
}

VeltoResult velto_cmd_play2(VeltoHandle handle, uint32_t channel, double speed)
{
    return plain_command<command::play>(handle, Channel{channel}, Speed{speed});
}

VeltoResult velto_cmd_play3(VeltoHandle handle, uint32_t channel, double speed,
                            uint32_t min_latency)
{
    return plain_command<command::play>(handle, Channel{channel}, Speed{speed}, normal_layer,
                                        MinLatency{min_latency});
}

VeltoResult velto_cmd_stop1(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::stop>(handle, Channel{channel});
}

VeltoResult velto_cmd_stop2(VeltoHandle handle, uint32_t channel, uint32_t min_latency)
{
    return plain_command<command::stop>(handle, Channel{channel}, normal_layer,
                                        MinLatency{min_latency});
}

VeltoResult velto_cmd_gang_play1(VeltoHandle handle, uint32_t mask)
{
    return plain_command<command::gang_play>(handle, Mask{mask});
}

VeltoResult velto_cmd_gang_play2(VeltoHandle handle, uint32_t mask, double speed)
{
    return plain_command<command::gang_play>(handle, Mask{mask}, Speed{speed});
}

VeltoResult velto_cmd_gang_play3(VeltoHandle handle, uint32_t mask, double speed,
                                 uint32_t min_latency)
{
    return plain_command<command::gang_play>(handle, Mask{mask}, Speed{speed},
                                             MinLatency{min_latency});
}

VeltoResult velto_cmd_gang_stop1(VeltoHandle handle, uint32_t mask)
{
    return plain_command<command::gang_stop>(handle, Mask{mask});
}

VeltoResult velto_cmd_gang_stop2(VeltoHandle handle, uint32_t mask, uint32_t min_latency)
{
    return plain_command<command::gang_stop>(handle, Mask{mask}, MinLatency{min_latency});
}

// ---- Seek

VeltoResult velto_goto1(VeltoHandle handle, uint32_t channel, uint32_t position)
{
    return plain_command<command::gotocmd>(handle, Channel{channel}, Goto{position});
}

VeltoResult velto_goto2(VeltoHandle handle, uint32_t channel, uint32_t position,
                        uint32_t min_latency)
{
    return plain_command<command::gotocmd>(handle, Channel{channel}, Goto{position},
                                           MinLatency{min_latency});
}

VeltoResult velto_gang_goto1(VeltoHandle handle, uint32_t mask, uint32_t position)
{
    return plain_command<command::gang_gotocmd>(handle, Mask{mask}, Goto{position});
}

VeltoResult velto_gang_goto2(VeltoHandle handle, uint32_t mask, uint32_t position,
                             uint32_t min_latency)
{
    return plain_command<command::gang_gotocmd>(handle, Mask{mask}, Goto{position},
                                                MinLatency{min_latency});
}

VeltoResult velto_jog1(VeltoHandle handle, uint32_t channel, uint32_t distance)
{
    return plain_command<command::jog>(handle, Channel{channel}, Distance{distance});
}

VeltoResult velto_jog2(VeltoHandle handle, uint32_t channel, uint32_t distance,
                       uint32_t min_latency)
{
    return plain_command<command::jog>(handle, Channel{channel}, Distance{distance}, normal_layer,
                                       MinLatency{min_latency});
}

VeltoResult velto_gang_jog1(VeltoHandle handle, uint32_t mask, uint32_t distance)
{
    return plain_command<command::gang_jog>(handle, Mask{mask}, Distance{distance});
}

VeltoResult velto_gang_jog2(VeltoHandle handle, uint32_t mask, uint32_t distance,
                            uint32_t min_latency)
{
    return plain_command<command::gang_jog>(handle, Mask{mask}, Distance{distance},
                                            MinLatency{min_latency});
}

// ---- Load

VeltoResult velto_cmd_loadclip1(VeltoHandle handle, uint32_t channel, const VeltoChar* clip)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip});
}

VeltoResult velto_cmd_loadclip2(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t repeat)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Repeat{repeat});
}

VeltoResult velto_cmd_loadclip3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t repeat, uint32_t goto_position)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Repeat{repeat},
                                            Goto{goto_position});
}

VeltoResult velto_cmd_loadclip4(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t repeat, uint32_t goto_position, uint32_t loop_in,
                                uint32_t position)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Repeat{repeat},
                                            Goto{goto_position}, Position{position},
                                            LoopIn{loop_in});
}

VeltoResult velto_cmd_loadclip5(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t angle)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Angle{angle});
}

VeltoResult velto_cmd_loadclip6(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t angle, uint32_t goto_position)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip},
                                            Goto{goto_position}, Angle{angle});
}

VeltoResult velto_cmd_loadclip7(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                uint32_t angle, uint32_t goto_position, uint32_t position)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip},
                                            Goto{goto_position}, Position{position}, Angle{angle});
}

VeltoResult velto_cmd_load_vclip1(VeltoHandle handle, uint32_t channel, const VeltoChar* clip)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, vclip_scope);
}

VeltoResult velto_cmd_load_vclip2(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                  uint32_t repeat)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Repeat{repeat},
                                            vclip_scope);
}

VeltoResult velto_cmd_load_vclip3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                  uint32_t repeat, uint32_t goto_position)
{
    return plain_command<command::cue_clip>(handle, Channel{channel}, Clip{clip}, Repeat{repeat},
                                            Goto{goto_position}, vclip_scope);
}

VeltoResult velto_cmd_loadlist1(VeltoHandle handle, uint32_t channel, const VeltoChar* list)
{
    return plain_command<command::list_load>(handle, Channel{channel}, List{list});
}

VeltoResult velto_unload_channel(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::unload>(handle, Channel{channel});
}

// ---- Pre-cue

VeltoResult velto_precue1(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                          uint32_t condition)
{
    return plain_command<command::precue>(handle, Channel{channel}, Clip{clip},
                                          Condition{condition});
}

VeltoResult velto_precue2(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                          uint32_t condition, uint32_t goto_position)
{
    return plain_command<command::precue>(handle, Channel{channel}, Clip{clip},
                                          Condition{condition}, Goto{goto_position});
}

VeltoResult velto_precue3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                          uint32_t condition, uint32_t goto_position, uint32_t length)
{
    return plain_command<command::precue>(handle, Channel{channel}, Clip{clip},
                                          Condition{condition}, Goto{goto_position},
                                          Length{length});
}

VeltoResult velto_precue4(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                          uint32_t condition, uint32_t goto_position, uint32_t loop_in,
                          uint32_t length)
{
    return plain_command<command::precue>(handle, Channel{channel}, Clip{clip},
                                          Condition{condition}, Goto{goto_position}, Length{length},
                                          LoopIn{loop_in}, no_loop);
}

VeltoResult velto_precue_activate1(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::precue_activate>(handle, Channel{channel});
}

VeltoResult velto_precue_clear1(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::precue_clear>(handle, Channel{channel});
}

VeltoResult velto_gang_precue_activate1(VeltoHandle handle, uint32_t mask)
{
    return plain_command<command::gang_precue_activate>(handle, Mask{mask});
}

// ---- Live and take

VeltoResult velto_go_live1(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::go_live>(handle, Channel{channel}, always_min_latency);
}

VeltoResult velto_go_live2(VeltoHandle handle, uint32_t channel, uint32_t angle)
{
    return plain_command<command::go_live>(handle, Channel{channel}, Angle{angle},
                                           always_min_latency);
}

VeltoResult velto_go_live3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip)
{
    return plain_command<command::go_live>(handle, Channel{channel}, Clip{clip},
                                           always_min_latency);
}

VeltoResult velto_go_live4(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                           uint32_t angle)
{
    return plain_command<command::go_live>(handle, Channel{channel}, Clip{clip}, Angle{angle},
                                           always_min_latency);
}

VeltoResult velto_take1(VeltoHandle handle, uint32_t channel, uint32_t transition,
                        uint32_t duration)
{
    return plain_command<command::take>(handle, Channel{channel}, Transition{transition},
                                        Duration{duration});
}

VeltoResult velto_take2(VeltoHandle handle, uint32_t channel, uint32_t transition,
                        uint32_t duration, uint32_t follow)
{
    return plain_command<command::take>(handle, Channel{channel}, Transition{transition},
                                        Duration{duration}, Follow{follow});
}

VeltoResult velto_angle1(VeltoHandle handle, uint32_t channel, uint32_t angle)
{
    return plain_command<command::iso_angle>(handle, Channel{channel}, Angle{angle});
}

// ---- Edit and monitor

VeltoResult velto_edit1(VeltoHandle handle, uint32_t channel, uint32_t bits)
{
    return plain_command<command::insert_edit>(handle, Channel{channel}, EditBits{bits});
}

VeltoResult velto_edit_all_on(VeltoHandle handle, uint32_t channel)
{
    return velto_edit1(handle, channel, VELTO_EDIT_ALL);
}

VeltoResult velto_edit_all_off(VeltoHandle handle, uint32_t channel)
{
    return velto_edit1(handle, channel, VELTO_EDIT_NONE);
}

VeltoResult velto_gang_edit1(VeltoHandle handle, uint32_t mask, uint32_t bits)
{
    return plain_command<command::gang_insert_edit>(handle, Mask{mask}, EditBits{bits});
}

VeltoResult velto_gang_edit_all_on(VeltoHandle handle, uint32_t mask)
{
    return velto_gang_edit1(handle, mask, VELTO_EDIT_ALL);
}

VeltoResult velto_gang_edit_all_off(VeltoHandle handle, uint32_t mask)
{
    return velto_gang_edit1(handle, mask, VELTO_EDIT_NONE);
}

VeltoResult velto_ee1(VeltoHandle handle, uint32_t channel, uint32_t bits, uint32_t manual)
{
    return plain_command<command::ee>(handle, Channel{channel}, EditBits{bits}, Manual{manual});
}

VeltoResult velto_ee_all_on(VeltoHandle handle, uint32_t channel)
{
    return velto_ee1(handle, channel, VELTO_EDIT_ALL, VELTO_MONITOR_AUTOMATIC);
}

VeltoResult velto_ee_all_off(VeltoHandle handle, uint32_t channel)
{
    return velto_ee1(handle, channel, VELTO_EDIT_NONE, VELTO_MONITOR_AUTOMATIC);
}

VeltoResult velto_gang_ee1(VeltoHandle handle, uint32_t mask, uint32_t bits, uint32_t manual)
{
    return plain_command<command::gang_ee>(handle, Mask{mask}, EditBits{bits}, Manual{manual});
}

VeltoResult velto_gang_ee_all_on(VeltoHandle handle, uint32_t mask)
{
    return velto_gang_ee1(handle, mask, VELTO_EDIT_ALL, VELTO_MONITOR_AUTOMATIC);
}

VeltoResult velto_gang_ee_all_off(VeltoHandle handle, uint32_t mask)
{
    return velto_gang_ee1(handle, mask, VELTO_EDIT_NONE, VELTO_MONITOR_AUTOMATIC);
}

// ---- Loop and out point

VeltoResult velto_set_repeat(VeltoHandle handle, uint32_t channel, uint32_t repeat)
{
    return plain_command<command::set_loop>(handle, Channel{channel}, Repeat{repeat});
}

VeltoResult velto_set_channel_repeat(VeltoHandle handle, uint32_t channel, uint32_t repeat)
{
    return plain_command<command::set_loop>(handle, Channel{channel}, Repeat{repeat});
}

VeltoResult velto_set_out1(VeltoHandle handle, uint32_t channel, uint32_t position)
{
    return plain_command<command::set_out_point>(handle, Channel{channel}, Position{position});
}

VeltoResult velto_clear_out(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::clear_out_point>(handle, Channel{channel});
}

// ---- List play-out

VeltoResult velto_cmd_playlist_cue_list(VeltoHandle handle, uint32_t channel)
{
    return plain_command<command::list_play_now>(handle, Channel{channel}, Index{0}, cue_only);
}

VeltoResult velto_cmd_playlist_cue_now(VeltoHandle handle, uint32_t channel, uint32_t index)
{
    return plain_command<command::list_play_now>(handle, Channel{channel}, Index{index}, cue_only);
}

VeltoResult velto_cmd_playlist_cue_next(VeltoHandle handle, uint32_t channel, uint32_t index)
{
    return plain_command<command::list_play_next>(handle, Channel{channel}, Index{index}, cue_only);
}

VeltoResult velto_cmd_playlist_play_now(VeltoHandle handle, uint32_t channel, uint32_t index)
{
    return plain_command<command::list_play_now>(handle, Channel{channel}, Index{index}, roll);
}

VeltoResult velto_cmd_playlist_play_next(VeltoHandle handle, uint32_t channel, uint32_t index)
{
    return plain_command<command::list_play_next>(handle, Channel{channel}, Index{index}, roll);
}
