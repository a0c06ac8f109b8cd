// Generated from interface/ by tools/interface/generate.py; change the description instead.

// Each prototype of the header is pinned here in plain types, and the functions that were linked
// are compared with the description's list.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "api/prototypes.h"
#include "velto/velto.h"

static_assert(std::is_same_v<VeltoHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoRecordHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoListHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoResult, std::int32_t>);
static_assert(sizeof(VeltoChar) == 2);

// clang-format off
// Structures
static_assert(std::is_standard_layout_v<VeltoTextBuffer>);
static_assert(std::is_same_v<decltype(VeltoTextBuffer::text), VeltoChar*>);
static_assert(std::is_same_v<decltype(VeltoTextBuffer::size), std::uint32_t>);
// Connection
static_assert(std::is_same_v<decltype(velto_connect), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_wait_until_connected), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_connected), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_synchronous), void(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_sync), void(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_get_last_error), void(VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close), void(std::uint32_t)>);
// Server
static_assert(std::is_same_v<decltype(velto_server_name),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_video_standard),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_video_frequency),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_video_resolution),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_disk_usage1),
    std::int32_t(std::uint32_t, std::uint64_t*, std::uint64_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_disk_usage2),
    std::int32_t(std::uint32_t, std::uint32_t*, std::uint32_t*)>);
// Channel state
static_assert(std::is_same_v<decltype(velto_channel_status),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_clip),
    std::int32_t(std::uint32_t, std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_channel_clip_length),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_position),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_speed),
    std::int32_t(std::uint32_t, std::uint32_t, double*)>);
static_assert(std::is_same_v<decltype(velto_channel_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_angle),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_ee),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_precue_count),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_playlist_count),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_playlist_status),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
// Notices
static_assert(std::is_same_v<decltype(velto_get_notification),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
// Play and stop
static_assert(std::is_same_v<decltype(velto_cmd_play3),
    std::int32_t(std::uint32_t, std::uint32_t, double, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_play2),
    std::int32_t(std::uint32_t, std::uint32_t, double)>);
static_assert(std::is_same_v<decltype(velto_cmd_play1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_stop2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_stop1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play3),
    std::int32_t(std::uint32_t, std::uint32_t, double, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play2),
    std::int32_t(std::uint32_t, std::uint32_t, double)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_stop2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_stop1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Seek
static_assert(std::is_same_v<decltype(velto_goto2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_goto1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_goto2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_goto1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_jog2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_jog1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_jog2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_jog1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Load
static_assert(std::is_same_v<decltype(velto_cmd_loadclip4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip7),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip6),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip5),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadlist1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_unload_channel),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Pre-cue
static_assert(std::is_same_v<decltype(velto_precue4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue_activate1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_precue_activate1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue_clear1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Live and take
static_assert(std::is_same_v<decltype(velto_go_live4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_go_live3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_go_live2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_go_live1), std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_take2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_take1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_angle1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Edit and monitor
static_assert(std::is_same_v<decltype(velto_edit1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_edit_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_edit_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Loop and out point
static_assert(std::is_same_v<decltype(velto_set_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_channel_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_out1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_clear_out),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// List play-out
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_now),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_list),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_next),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_play_now),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_play_next),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Clips on the server
static_assert(std::is_same_v<decltype(velto_clip_exists),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_create_clip1),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_create_clip2),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_create_clip3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_create_child_clip1),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_create_child_clip2),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_create_directory),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_delete_clip),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_rename_clip),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_set_readonly),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_unset_readonly),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
// Clip records
static_assert(std::is_same_v<decltype(velto_open_clip_metadata),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_close_clip_metadata), std::int32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_clip_title),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_creator),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_project),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_uuid),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_parent_uuid),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_length),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_loop_in_point),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_loop_out_point),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_trim_start),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_trim_end),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_playback),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_repeat),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_video_standard),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_timecode_source),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_is_readonly),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_content_last_edited),
    std::int32_t(std::uint32_t, std::uint64_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_metadata_last_edited),
    std::int32_t(std::uint32_t, std::uint64_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_last_loaded),
    std::int32_t(std::uint32_t, std::uint64_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_last_unloaded),
    std::int32_t(std::uint32_t, std::uint64_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_last_played),
    std::int32_t(std::uint32_t, std::uint64_t*)>);
static_assert(std::is_same_v<decltype(velto_get_tracks),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_recorded_timecode0),
    std::int32_t(std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_timecode_stripe),
    std::int32_t(std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_set_clip_title),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_set_clip_creator),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_set_clip_project),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_set_clip_loop_in_point),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_loop_out_point),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_trim_start),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_trim_end),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_playback),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_repeat),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_timecode_source),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_clip_timecode_stripe),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Lists and changes
static_assert(std::is_same_v<decltype(velto_open_clip_list),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_get_clip_name),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close_clip_list), void(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_open_directory_list),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_get_directory_name),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close_directory_list), void(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_open_playlist_list),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_get_playlist_name),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close_playlist_list), void(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_track_clip_changes), std::int32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_track_directory_changes), std::int32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_track_change_added_clip),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_track_change_changed_clip),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_track_change_deleted_clip),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_track_change_added_directory),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_track_change_deleted_directory),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
// Clip metadata
static_assert(std::is_same_v<decltype(velto_clip_get_meta),
    std::int32_t(std::uint32_t, const VeltoChar*, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_clip_has_meta),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_clip_set_meta),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_clip_delete_meta),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_clip_open_metakeys),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_get_metakey),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close_metakeys), std::int32_t(std::uint32_t)>);
// Virtual clips
static_assert(std::is_same_v<decltype(velto_vclip_create),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_vclip_free),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_vclip_modification_start),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_vclip_modification_end),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_vclip_cfg_tracks),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_vclip_add_segment1),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_vclip_add_segment2),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t, double)>);
static_assert(std::is_same_v<decltype(velto_vclip_clear_segment),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_vclip_ripple),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_vclip_track_enable),
    std::int32_t(std::uint32_t, const VeltoChar*, std::uint32_t)>);
// Key-value stores
static_assert(std::is_same_v<decltype(velto_open_kvstore),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*, std::uint32_t,
                 std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_kvstore_wait_scan),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_kvstore_get_change),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, VeltoTextBuffer, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_kvstore_set),
    std::int32_t(std::uint32_t, const VeltoChar*, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_kvstore_erase),
    std::int32_t(std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_kvstore_flush),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_close_key_value_store), void(std::uint32_t)>);
// clang-format on

namespace
{

// Functions that may be one and the same code.
const std::set<std::set<std::string>> same_code = {
    {"velto_set_repeat", "velto_set_channel_repeat"},
    {"velto_get_clip_name", "velto_get_directory_name"},
    {"velto_get_clip_name", "velto_get_playlist_name"},
    {"velto_get_clip_name", "velto_get_metakey"},
    {"velto_get_directory_name", "velto_get_playlist_name"},
    {"velto_get_directory_name", "velto_get_metakey"},
    {"velto_get_playlist_name", "velto_get_metakey"},
    {"velto_close_clip_list", "velto_close_directory_list"},
    {"velto_close_clip_list", "velto_close_playlist_list"},
    {"velto_close_directory_list", "velto_close_playlist_list"},
};

const std::vector<std::string> described = {
    "velto_connect",
    "velto_wait_until_connected",
    "velto_connected",
    "velto_synchronous",
    "velto_sync",
    "velto_get_last_error",
    "velto_close",
    "velto_server_name",
    "velto_video_standard",
    "velto_video_frequency",
    "velto_video_resolution",
    "velto_disk_usage1",
    "velto_disk_usage2",
    "velto_channel_status",
    "velto_channel_clip",
    "velto_channel_clip_length",
    "velto_channel_position",
    "velto_channel_speed",
    "velto_channel_repeat",
    "velto_channel_angle",
    "velto_channel_ee",
    "velto_channel_precue_count",
    "velto_playlist_count",
    "velto_playlist_status",
    "velto_get_notification",
    "velto_cmd_play3",
    "velto_cmd_play2",
    "velto_cmd_play1",
    "velto_cmd_stop2",
    "velto_cmd_stop1",
    "velto_cmd_gang_play3",
    "velto_cmd_gang_play2",
    "velto_cmd_gang_play1",
    "velto_cmd_gang_stop2",
    "velto_cmd_gang_stop1",
    "velto_goto2",
    "velto_goto1",
    "velto_gang_goto2",
    "velto_gang_goto1",
    "velto_jog2",
    "velto_jog1",
    "velto_gang_jog2",
    "velto_gang_jog1",
    "velto_cmd_loadclip4",
    "velto_cmd_loadclip3",
    "velto_cmd_loadclip2",
    "velto_cmd_loadclip1",
    "velto_cmd_loadclip7",
    "velto_cmd_loadclip6",
    "velto_cmd_loadclip5",
    "velto_cmd_load_vclip3",
    "velto_cmd_load_vclip2",
    "velto_cmd_load_vclip1",
    "velto_cmd_loadlist1",
    "velto_unload_channel",
    "velto_precue4",
    "velto_precue3",
    "velto_precue2",
    "velto_precue1",
    "velto_precue_activate1",
    "velto_gang_precue_activate1",
    "velto_precue_clear1",
    "velto_go_live4",
    "velto_go_live3",
    "velto_go_live2",
    "velto_go_live1",
    "velto_take2",
    "velto_take1",
    "velto_angle1",
    "velto_edit1",
    "velto_edit_all_on",
    "velto_edit_all_off",
    "velto_gang_edit1",
    "velto_gang_edit_all_on",
    "velto_gang_edit_all_off",
    "velto_ee1",
    "velto_ee_all_on",
    "velto_ee_all_off",
    "velto_gang_ee1",
    "velto_gang_ee_all_on",
    "velto_gang_ee_all_off",
    "velto_set_repeat",
    "velto_set_channel_repeat",
    "velto_set_out1",
    "velto_clear_out",
    "velto_cmd_playlist_cue_now",
    "velto_cmd_playlist_cue_list",
    "velto_cmd_playlist_cue_next",
    "velto_cmd_playlist_play_now",
    "velto_cmd_playlist_play_next",
    "velto_clip_exists",
    "velto_create_clip1",
    "velto_create_clip2",
    "velto_create_clip3",
    "velto_create_child_clip1",
    "velto_create_child_clip2",
    "velto_create_directory",
    "velto_delete_clip",
    "velto_rename_clip",
    "velto_set_readonly",
    "velto_unset_readonly",
    "velto_open_clip_metadata",
    "velto_close_clip_metadata",
    "velto_clip_title",
    "velto_clip_creator",
    "velto_clip_project",
    "velto_clip_uuid",
    "velto_clip_parent_uuid",
    "velto_clip_length",
    "velto_clip_loop_in_point",
    "velto_clip_loop_out_point",
    "velto_clip_trim_start",
    "velto_clip_trim_end",
    "velto_clip_playback",
    "velto_clip_repeat",
    "velto_clip_video_standard",
    "velto_clip_timecode_source",
    "velto_clip_is_readonly",
    "velto_clip_content_last_edited",
    "velto_clip_metadata_last_edited",
    "velto_clip_last_loaded",
    "velto_clip_last_unloaded",
    "velto_clip_last_played",
    "velto_get_tracks",
    "velto_clip_recorded_timecode0",
    "velto_clip_timecode_stripe",
    "velto_set_clip_title",
    "velto_set_clip_creator",
    "velto_set_clip_project",
    "velto_set_clip_loop_in_point",
    "velto_set_clip_loop_out_point",
    "velto_set_clip_trim_start",
    "velto_set_clip_trim_end",
    "velto_set_clip_playback",
    "velto_set_clip_repeat",
    "velto_set_clip_timecode_source",
    "velto_set_clip_timecode_stripe",
    "velto_open_clip_list",
    "velto_get_clip_name",
    "velto_close_clip_list",
    "velto_open_directory_list",
    "velto_get_directory_name",
    "velto_close_directory_list",
    "velto_open_playlist_list",
    "velto_get_playlist_name",
    "velto_close_playlist_list",
    "velto_track_clip_changes",
    "velto_track_directory_changes",
    "velto_track_change_added_clip",
    "velto_track_change_changed_clip",
    "velto_track_change_deleted_clip",
    "velto_track_change_added_directory",
    "velto_track_change_deleted_directory",
    "velto_clip_get_meta",
    "velto_clip_has_meta",
    "velto_clip_set_meta",
    "velto_clip_delete_meta",
    "velto_clip_open_metakeys",
    "velto_get_metakey",
    "velto_close_metakeys",
    "velto_vclip_create",
    "velto_vclip_free",
    "velto_vclip_modification_start",
    "velto_vclip_modification_end",
    "velto_vclip_cfg_tracks",
    "velto_vclip_add_segment1",
    "velto_vclip_add_segment2",
    "velto_vclip_clear_segment",
    "velto_vclip_ripple",
    "velto_vclip_track_enable",
    "velto_open_kvstore",
    "velto_kvstore_wait_scan",
    "velto_kvstore_get_change",
    "velto_kvstore_set",
    "velto_kvstore_erase",
    "velto_kvstore_flush",
    "velto_close_key_value_store",
};

std::vector<VeltoPrototype> linked()
{
    std::vector<VeltoPrototype> prototypes(velto_prototypes(nullptr, 0));
    velto_prototypes(prototypes.data(), prototypes.size());
    return prototypes;
}

} // namespace

TEST(Prototypes, AreThoseOfTheDescription)
{
    std::vector<std::string> names;
    for (const VeltoPrototype& prototype : linked()) {
        names.emplace_back(prototype.name);
    }
    EXPECT_EQ(names.size(), std::size_t{177});
    EXPECT_EQ(names, described);
}

TEST(Prototypes, EachFunctionHasAnAddress)
{
    for (const VeltoPrototype& prototype : linked()) {
        EXPECT_NE(prototype.address, nullptr) << prototype.name;
    }
}

TEST(Prototypes, OnlyFunctionsOfOneCodeShareAnAddress)
{
    const std::vector<VeltoPrototype> prototypes = linked();
    for (const VeltoPrototype& one : prototypes) {
        for (const VeltoPrototype& other : prototypes) {
            const std::set<std::string> pair = {one.name, other.name};
            if (one.address == other.address && pair.size() == 2) {
                EXPECT_EQ(same_code.count(pair), 1U) << one.name << " and " << other.name;
            }
        }
    }
}
