/* Generated from interface/ by tools/interface/generate.py; change the description instead. */

/* Each prototype of the header is pinned here in plain types, and its address taken at run time. */
#include "api/prototypes.h"

#include "velto/velto.h"

#define PIN(name, result, arguments)                                                               \
    _Static_assert(_Generic(&name, result(*) arguments : 1, default : 0), "prototype of " #name)

_Static_assert(_Generic((VeltoHandle)0, uint32_t : 1, default : 0), "VeltoHandle");
_Static_assert(_Generic((VeltoResult)0, int32_t : 1, default : 0), "VeltoResult");
_Static_assert(sizeof(VeltoChar) == 2, "VeltoChar");

/* clang-format off */
/* Connection */
PIN(velto_connect, uint32_t, (uint32_t));
PIN(velto_wait_until_connected, uint32_t, (uint32_t));
PIN(velto_connected, uint32_t, (uint32_t));
PIN(velto_synchronous, void, (uint32_t, uint32_t));
PIN(velto_sync, void, (uint32_t));
PIN(velto_get_last_error, void, (VeltoTextBuffer));
PIN(velto_close, void, (uint32_t));
/* Server */
PIN(velto_server_name, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_video_standard, int32_t, (uint32_t, uint32_t*));
PIN(velto_video_frequency, int32_t, (uint32_t, uint32_t*));
PIN(velto_video_resolution, int32_t, (uint32_t, uint32_t*));
/* Channel state */
PIN(velto_channel_status, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_channel_clip, int32_t, (uint32_t, uint32_t, VeltoTextBuffer));
PIN(velto_channel_clip_length, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_channel_position, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_channel_speed, int32_t, (uint32_t, uint32_t, double*));
PIN(velto_channel_repeat, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_channel_angle, int32_t, (uint32_t, uint32_t, uint32_t*, uint32_t*));
PIN(velto_channel_ee, int32_t, (uint32_t, uint32_t, uint32_t*, uint32_t*));
PIN(velto_channel_precue_count, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_playlist_count, int32_t, (uint32_t, uint32_t, uint32_t*));
PIN(velto_playlist_status, int32_t, (uint32_t, uint32_t, uint32_t*));
/* Notices */
PIN(velto_get_notification, int32_t, (uint32_t, uint32_t, uint32_t*, uint32_t*));
/* Play and stop */
PIN(velto_cmd_play3, int32_t, (uint32_t, uint32_t, double, uint32_t));
PIN(velto_cmd_play2, int32_t, (uint32_t, uint32_t, double));
PIN(velto_cmd_play1, int32_t, (uint32_t, uint32_t));
PIN(velto_cmd_stop2, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_stop1, int32_t, (uint32_t, uint32_t));
PIN(velto_cmd_gang_play3, int32_t, (uint32_t, uint32_t, double, uint32_t));
PIN(velto_cmd_gang_play2, int32_t, (uint32_t, uint32_t, double));
PIN(velto_cmd_gang_play1, int32_t, (uint32_t, uint32_t));
PIN(velto_cmd_gang_stop2, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_gang_stop1, int32_t, (uint32_t, uint32_t));
/* Seek */
PIN(velto_goto2, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_goto1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_gang_goto2, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_gang_goto1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_jog2, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_jog1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_gang_jog2, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_gang_jog1, int32_t, (uint32_t, uint32_t, uint32_t));
/* Load */
PIN(velto_cmd_loadclip4, int32_t,
    (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_loadclip3, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_cmd_loadclip2, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t));
PIN(velto_cmd_loadclip1, int32_t, (uint32_t, uint32_t, const VeltoChar*));
PIN(velto_cmd_loadclip7, int32_t,
    (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_loadclip6, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_cmd_loadclip5, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t));
PIN(velto_cmd_load_vclip3, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_cmd_load_vclip2, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t));
PIN(velto_cmd_load_vclip1, int32_t, (uint32_t, uint32_t, const VeltoChar*));
PIN(velto_cmd_loadlist1, int32_t, (uint32_t, uint32_t, const VeltoChar*));
PIN(velto_unload_channel, int32_t, (uint32_t, uint32_t));
/* Pre-cue */
PIN(velto_precue4, int32_t,
    (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_precue3, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t));
PIN(velto_precue2, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_precue1, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t));
PIN(velto_precue_activate1, int32_t, (uint32_t, uint32_t));
PIN(velto_gang_precue_activate1, int32_t, (uint32_t, uint32_t));
PIN(velto_precue_clear1, int32_t, (uint32_t, uint32_t));
/* Live and take */
PIN(velto_go_live4, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t));
PIN(velto_go_live3, int32_t, (uint32_t, uint32_t, const VeltoChar*));
PIN(velto_go_live2, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_go_live1, int32_t, (uint32_t, uint32_t));
PIN(velto_take2, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_take1, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_angle1, int32_t, (uint32_t, uint32_t, uint32_t));
/* Edit and monitor */
PIN(velto_edit1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_edit_all_on, int32_t, (uint32_t, uint32_t));
PIN(velto_edit_all_off, int32_t, (uint32_t, uint32_t));
PIN(velto_gang_edit1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_gang_edit_all_on, int32_t, (uint32_t, uint32_t));
PIN(velto_gang_edit_all_off, int32_t, (uint32_t, uint32_t));
PIN(velto_ee1, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_ee_all_on, int32_t, (uint32_t, uint32_t));
PIN(velto_ee_all_off, int32_t, (uint32_t, uint32_t));
PIN(velto_gang_ee1, int32_t, (uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_gang_ee_all_on, int32_t, (uint32_t, uint32_t));
PIN(velto_gang_ee_all_off, int32_t, (uint32_t, uint32_t));
/* Loop and out point */
PIN(velto_set_repeat, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_set_channel_repeat, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_set_out1, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_clear_out, int32_t, (uint32_t, uint32_t));
/* List play-out */
PIN(velto_cmd_playlist_cue_now, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_playlist_cue_list, int32_t, (uint32_t, uint32_t));
PIN(velto_cmd_playlist_cue_next, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_playlist_play_now, int32_t, (uint32_t, uint32_t, uint32_t));
PIN(velto_cmd_playlist_play_next, int32_t, (uint32_t, uint32_t, uint32_t));

size_t velto_prototypes(VeltoPrototype* prototypes, size_t capacity)
{
    const VeltoPrototype all[] = {
        {"velto_connect", (VeltoFunction)velto_connect},
        {"velto_wait_until_connected", (VeltoFunction)velto_wait_until_connected},
        {"velto_connected", (VeltoFunction)velto_connected},
        {"velto_synchronous", (VeltoFunction)velto_synchronous},
        {"velto_sync", (VeltoFunction)velto_sync},
        {"velto_get_last_error", (VeltoFunction)velto_get_last_error},
        {"velto_close", (VeltoFunction)velto_close},
        {"velto_server_name", (VeltoFunction)velto_server_name},
        {"velto_video_standard", (VeltoFunction)velto_video_standard},
        {"velto_video_frequency", (VeltoFunction)velto_video_frequency},
        {"velto_video_resolution", (VeltoFunction)velto_video_resolution},
        {"velto_channel_status", (VeltoFunction)velto_channel_status},
        {"velto_channel_clip", (VeltoFunction)velto_channel_clip},
        {"velto_channel_clip_length", (VeltoFunction)velto_channel_clip_length},
        {"velto_channel_position", (VeltoFunction)velto_channel_position},
        {"velto_channel_speed", (VeltoFunction)velto_channel_speed},
        {"velto_channel_repeat", (VeltoFunction)velto_channel_repeat},
        {"velto_channel_angle", (VeltoFunction)velto_channel_angle},
        {"velto_channel_ee", (VeltoFunction)velto_channel_ee},
        {"velto_channel_precue_count", (VeltoFunction)velto_channel_precue_count},
        {"velto_playlist_count", (VeltoFunction)velto_playlist_count},
        {"velto_playlist_status", (VeltoFunction)velto_playlist_status},
        {"velto_get_notification", (VeltoFunction)velto_get_notification},
        {"velto_cmd_play3", (VeltoFunction)velto_cmd_play3},
        {"velto_cmd_play2", (VeltoFunction)velto_cmd_play2},
        {"velto_cmd_play1", (VeltoFunction)velto_cmd_play1},
        {"velto_cmd_stop2", (VeltoFunction)velto_cmd_stop2},
        {"velto_cmd_stop1", (VeltoFunction)velto_cmd_stop1},
        {"velto_cmd_gang_play3", (VeltoFunction)velto_cmd_gang_play3},
        {"velto_cmd_gang_play2", (VeltoFunction)velto_cmd_gang_play2},
        {"velto_cmd_gang_play1", (VeltoFunction)velto_cmd_gang_play1},
        {"velto_cmd_gang_stop2", (VeltoFunction)velto_cmd_gang_stop2},
        {"velto_cmd_gang_stop1", (VeltoFunction)velto_cmd_gang_stop1},
        {"velto_goto2", (VeltoFunction)velto_goto2},
        {"velto_goto1", (VeltoFunction)velto_goto1},
        {"velto_gang_goto2", (VeltoFunction)velto_gang_goto2},
        {"velto_gang_goto1", (VeltoFunction)velto_gang_goto1},
        {"velto_jog2", (VeltoFunction)velto_jog2},
        {"velto_jog1", (VeltoFunction)velto_jog1},
        {"velto_gang_jog2", (VeltoFunction)velto_gang_jog2},
        {"velto_gang_jog1", (VeltoFunction)velto_gang_jog1},
        {"velto_cmd_loadclip4", (VeltoFunction)velto_cmd_loadclip4},
        {"velto_cmd_loadclip3", (VeltoFunction)velto_cmd_loadclip3},
        {"velto_cmd_loadclip2", (VeltoFunction)velto_cmd_loadclip2},
        {"velto_cmd_loadclip1", (VeltoFunction)velto_cmd_loadclip1},
        {"velto_cmd_loadclip7", (VeltoFunction)velto_cmd_loadclip7},
        {"velto_cmd_loadclip6", (VeltoFunction)velto_cmd_loadclip6},
        {"velto_cmd_loadclip5", (VeltoFunction)velto_cmd_loadclip5},
        {"velto_cmd_load_vclip3", (VeltoFunction)velto_cmd_load_vclip3},
        {"velto_cmd_load_vclip2", (VeltoFunction)velto_cmd_load_vclip2},
        {"velto_cmd_load_vclip1", (VeltoFunction)velto_cmd_load_vclip1},
        {"velto_cmd_loadlist1", (VeltoFunction)velto_cmd_loadlist1},
        {"velto_unload_channel", (VeltoFunction)velto_unload_channel},
        {"velto_precue4", (VeltoFunction)velto_precue4},
        {"velto_precue3", (VeltoFunction)velto_precue3},
        {"velto_precue2", (VeltoFunction)velto_precue2},
        {"velto_precue1", (VeltoFunction)velto_precue1},
        {"velto_precue_activate1", (VeltoFunction)velto_precue_activate1},
        {"velto_gang_precue_activate1", (VeltoFunction)velto_gang_precue_activate1},
        {"velto_precue_clear1", (VeltoFunction)velto_precue_clear1},
        {"velto_go_live4", (VeltoFunction)velto_go_live4},
        {"velto_go_live3", (VeltoFunction)velto_go_live3},
        {"velto_go_live2", (VeltoFunction)velto_go_live2},
        {"velto_go_live1", (VeltoFunction)velto_go_live1},
        {"velto_take2", (VeltoFunction)velto_take2},
        {"velto_take1", (VeltoFunction)velto_take1},
        {"velto_angle1", (VeltoFunction)velto_angle1},
        {"velto_edit1", (VeltoFunction)velto_edit1},
        {"velto_edit_all_on", (VeltoFunction)velto_edit_all_on},
        {"velto_edit_all_off", (VeltoFunction)velto_edit_all_off},
        {"velto_gang_edit1", (VeltoFunction)velto_gang_edit1},
        {"velto_gang_edit_all_on", (VeltoFunction)velto_gang_edit_all_on},
        {"velto_gang_edit_all_off", (VeltoFunction)velto_gang_edit_all_off},
        {"velto_ee1", (VeltoFunction)velto_ee1},
        {"velto_ee_all_on", (VeltoFunction)velto_ee_all_on},
        {"velto_ee_all_off", (VeltoFunction)velto_ee_all_off},
        {"velto_gang_ee1", (VeltoFunction)velto_gang_ee1},
        {"velto_gang_ee_all_on", (VeltoFunction)velto_gang_ee_all_on},
        {"velto_gang_ee_all_off", (VeltoFunction)velto_gang_ee_all_off},
        {"velto_set_repeat", (VeltoFunction)velto_set_repeat},
        {"velto_set_channel_repeat", (VeltoFunction)velto_set_channel_repeat},
        {"velto_set_out1", (VeltoFunction)velto_set_out1},
        {"velto_clear_out", (VeltoFunction)velto_clear_out},
        {"velto_cmd_playlist_cue_now", (VeltoFunction)velto_cmd_playlist_cue_now},
        {"velto_cmd_playlist_cue_list", (VeltoFunction)velto_cmd_playlist_cue_list},
        {"velto_cmd_playlist_cue_next", (VeltoFunction)velto_cmd_playlist_cue_next},
        {"velto_cmd_playlist_play_now", (VeltoFunction)velto_cmd_playlist_play_now},
        {"velto_cmd_playlist_play_next", (VeltoFunction)velto_cmd_playlist_play_next},
    };
    const size_t count = sizeof all / sizeof all[0];

    for (size_t i = 0; i < count && i < capacity; ++i) {
        prototypes[i] = all[i];
    }
    return count;
}
/* clang-format on */
