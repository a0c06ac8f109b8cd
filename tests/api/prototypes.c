/* Generated from interface/ by tools/interface/generate.py; change the description instead. */

/* Each prototype of the header is pinned here in plain types, and its address taken at run time. */
#include "api/prototypes.h"

#include "velto/velto.h"

#define PIN(name, result, arguments)                                                               \
    _Static_assert(_Generic(&name, result(*) arguments : 1, default : 0), "prototype of " #name)

_Static_assert(_Generic((VeltoHandle)0, uint32_t : 1, default : 0), "VeltoHandle");
_Static_assert(_Generic((VeltoRecordHandle)0, uint32_t : 1, default : 0), "VeltoRecordHandle");
_Static_assert(_Generic((VeltoListHandle)0, uint32_t : 1, default : 0), "VeltoListHandle");
_Static_assert(_Generic((VeltoResult)0, int32_t : 1, default : 0), "VeltoResult");
_Static_assert(sizeof(VeltoChar) == 2, "VeltoChar");

/* clang-format off */
#define LISTED(name) {#name, (VeltoFunction)name}

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
PIN(velto_disk_usage1, int32_t, (uint32_t, uint64_t*, uint64_t*, uint32_t*));
PIN(velto_disk_usage2, int32_t, (uint32_t, uint32_t*, uint32_t*));
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
/* Clips on the server */
PIN(velto_clip_exists, int32_t, (uint32_t, const VeltoChar*, uint32_t*));
PIN(velto_create_clip1, int32_t, (uint32_t, const VeltoChar*, uint32_t));
PIN(velto_create_clip2, int32_t, (uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_create_clip3, int32_t, (uint32_t, uint32_t, const VeltoChar*, uint32_t, uint32_t));
PIN(velto_create_child_clip1, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*));
PIN(velto_create_child_clip2, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*, uint32_t));
PIN(velto_create_directory, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_delete_clip, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_rename_clip, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*));
PIN(velto_set_readonly, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_unset_readonly, int32_t, (uint32_t, const VeltoChar*));
/* Clip records */
PIN(velto_open_clip_metadata, int32_t, (uint32_t, const VeltoChar*, uint32_t*));
PIN(velto_close_clip_metadata, int32_t, (uint32_t));
PIN(velto_clip_title, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_clip_creator, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_clip_project, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_clip_uuid, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_clip_parent_uuid, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_clip_length, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_loop_in_point, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_loop_out_point, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_trim_start, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_trim_end, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_playback, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_repeat, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_video_standard, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_timecode_source, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_is_readonly, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_content_last_edited, int32_t, (uint32_t, uint64_t*));
PIN(velto_clip_metadata_last_edited, int32_t, (uint32_t, uint64_t*));
PIN(velto_clip_last_loaded, int32_t, (uint32_t, uint64_t*));
PIN(velto_clip_last_unloaded, int32_t, (uint32_t, uint64_t*));
PIN(velto_clip_last_played, int32_t, (uint32_t, uint64_t*));
PIN(velto_get_tracks, int32_t, (uint32_t, uint32_t*));
PIN(velto_clip_recorded_timecode0, int32_t, (uint32_t, uint32_t*, uint32_t*));
PIN(velto_clip_timecode_stripe, int32_t, (uint32_t, uint32_t*, uint32_t*));
PIN(velto_set_clip_title, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_set_clip_creator, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_set_clip_project, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_set_clip_loop_in_point, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_loop_out_point, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_trim_start, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_trim_end, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_playback, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_repeat, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_timecode_source, int32_t, (uint32_t, uint32_t));
PIN(velto_set_clip_timecode_stripe, int32_t, (uint32_t, uint32_t, uint32_t));
/* Lists and changes */
PIN(velto_open_clip_list, int32_t, (uint32_t, uint32_t*));
PIN(velto_get_clip_name, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_close_clip_list, void, (uint32_t));
PIN(velto_open_directory_list, int32_t, (uint32_t, uint32_t*));
PIN(velto_get_directory_name, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_close_directory_list, void, (uint32_t));
PIN(velto_open_playlist_list, int32_t, (uint32_t, uint32_t*));
PIN(velto_get_playlist_name, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_close_playlist_list, void, (uint32_t));
PIN(velto_track_clip_changes, int32_t, (uint32_t));
PIN(velto_track_directory_changes, int32_t, (uint32_t));
PIN(velto_track_change_added_clip, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_track_change_changed_clip, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_track_change_deleted_clip, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_track_change_added_directory, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_track_change_deleted_directory, int32_t, (uint32_t, VeltoTextBuffer));
/* Clip metadata */
PIN(velto_clip_get_meta, int32_t, (uint32_t, const VeltoChar*, VeltoTextBuffer));
PIN(velto_clip_has_meta, int32_t, (uint32_t, const VeltoChar*, uint32_t*));
PIN(velto_clip_set_meta, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*));
PIN(velto_clip_delete_meta, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_clip_open_metakeys, int32_t, (uint32_t, uint32_t*));
PIN(velto_get_metakey, int32_t, (uint32_t, VeltoTextBuffer));
PIN(velto_close_metakeys, int32_t, (uint32_t));
/* Virtual clips */
PIN(velto_vclip_create, int32_t, (uint32_t, const VeltoChar*, uint32_t));
PIN(velto_vclip_free, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_vclip_modification_start, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_vclip_modification_end, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_vclip_cfg_tracks, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*, uint32_t));
PIN(velto_vclip_add_segment1, int32_t,
    (uint32_t, const VeltoChar*, const VeltoChar*, uint32_t, uint32_t, uint32_t, uint32_t));
PIN(velto_vclip_add_segment2, int32_t,
    (uint32_t, const VeltoChar*, const VeltoChar*, uint32_t, uint32_t, uint32_t, uint32_t, double));
PIN(velto_vclip_clear_segment, int32_t, (uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t));
PIN(velto_vclip_ripple, int32_t, (uint32_t, const VeltoChar*, uint32_t, uint32_t, uint32_t));
PIN(velto_vclip_track_enable, int32_t, (uint32_t, const VeltoChar*, uint32_t));
/* Key-value stores */
PIN(velto_open_kvstore, int32_t,
    (uint32_t, const VeltoChar*, const VeltoChar*, uint32_t, uint32_t*));
PIN(velto_kvstore_wait_scan, int32_t, (uint32_t, uint32_t));
PIN(velto_kvstore_get_change, int32_t,
    (uint32_t, uint32_t, uint32_t*, VeltoTextBuffer, VeltoTextBuffer));
PIN(velto_kvstore_set, int32_t, (uint32_t, const VeltoChar*, const VeltoChar*));
PIN(velto_kvstore_erase, int32_t, (uint32_t, const VeltoChar*));
PIN(velto_kvstore_flush, int32_t, (uint32_t, uint32_t));
PIN(velto_close_key_value_store, void, (uint32_t));

size_t velto_prototypes(VeltoPrototype* prototypes, size_t capacity)
{
    const VeltoPrototype all[] = {
        LISTED(velto_connect),
        LISTED(velto_wait_until_connected),
        LISTED(velto_connected),
        LISTED(velto_synchronous),
        LISTED(velto_sync),
        LISTED(velto_get_last_error),
        LISTED(velto_close),
        LISTED(velto_server_name),
        LISTED(velto_video_standard),
        LISTED(velto_video_frequency),
        LISTED(velto_video_resolution),
        LISTED(velto_disk_usage1),
        LISTED(velto_disk_usage2),
        LISTED(velto_channel_status),
        LISTED(velto_channel_clip),
        LISTED(velto_channel_clip_length),
        LISTED(velto_channel_position),
        LISTED(velto_channel_speed),
        LISTED(velto_channel_repeat),
        LISTED(velto_channel_angle),
        LISTED(velto_channel_ee),
        LISTED(velto_channel_precue_count),
        LISTED(velto_playlist_count),
        LISTED(velto_playlist_status),
        LISTED(velto_get_notification),
        LISTED(velto_cmd_play3),
        LISTED(velto_cmd_play2),
        LISTED(velto_cmd_play1),
        LISTED(velto_cmd_stop2),
        LISTED(velto_cmd_stop1),
        LISTED(velto_cmd_gang_play3),
        LISTED(velto_cmd_gang_play2),
        LISTED(velto_cmd_gang_play1),
        LISTED(velto_cmd_gang_stop2),
        LISTED(velto_cmd_gang_stop1),
        LISTED(velto_goto2),
        LISTED(velto_goto1),
        LISTED(velto_gang_goto2),
        LISTED(velto_gang_goto1),
        LISTED(velto_jog2),
        LISTED(velto_jog1),
        LISTED(velto_gang_jog2),
        LISTED(velto_gang_jog1),
        LISTED(velto_cmd_loadclip4),
        LISTED(velto_cmd_loadclip3),
        LISTED(velto_cmd_loadclip2),
        LISTED(velto_cmd_loadclip1),
        LISTED(velto_cmd_loadclip7),
        LISTED(velto_cmd_loadclip6),
        LISTED(velto_cmd_loadclip5),
        LISTED(velto_cmd_load_vclip3),
        LISTED(velto_cmd_load_vclip2),
        LISTED(velto_cmd_load_vclip1),
        LISTED(velto_cmd_loadlist1),
        LISTED(velto_unload_channel),
        LISTED(velto_precue4),
        LISTED(velto_precue3),
        LISTED(velto_precue2),
        LISTED(velto_precue1),
        LISTED(velto_precue_activate1),
        LISTED(velto_gang_precue_activate1),
        LISTED(velto_precue_clear1),
        LISTED(velto_go_live4),
        LISTED(velto_go_live3),
        LISTED(velto_go_live2),
        LISTED(velto_go_live1),
        LISTED(velto_take2),
        LISTED(velto_take1),
        LISTED(velto_angle1),
        LISTED(velto_edit1),
        LISTED(velto_edit_all_on),
        LISTED(velto_edit_all_off),
        LISTED(velto_gang_edit1),
        LISTED(velto_gang_edit_all_on),
        LISTED(velto_gang_edit_all_off),
        LISTED(velto_ee1),
        LISTED(velto_ee_all_on),
        LISTED(velto_ee_all_off),
        LISTED(velto_gang_ee1),
        LISTED(velto_gang_ee_all_on),
        LISTED(velto_gang_ee_all_off),
        LISTED(velto_set_repeat),
        LISTED(velto_set_channel_repeat),
        LISTED(velto_set_out1),
        LISTED(velto_clear_out),
        LISTED(velto_cmd_playlist_cue_now),
        LISTED(velto_cmd_playlist_cue_list),
        LISTED(velto_cmd_playlist_cue_next),
        LISTED(velto_cmd_playlist_play_now),
        LISTED(velto_cmd_playlist_play_next),
        LISTED(velto_clip_exists),
        LISTED(velto_create_clip1),
        LISTED(velto_create_clip2),
        LISTED(velto_create_clip3),
        LISTED(velto_create_child_clip1),
        LISTED(velto_create_child_clip2),
        LISTED(velto_create_directory),
        LISTED(velto_delete_clip),
        LISTED(velto_rename_clip),
        LISTED(velto_set_readonly),
        LISTED(velto_unset_readonly),
        LISTED(velto_open_clip_metadata),
        LISTED(velto_close_clip_metadata),
        LISTED(velto_clip_title),
        LISTED(velto_clip_creator),
        LISTED(velto_clip_project),
        LISTED(velto_clip_uuid),
        LISTED(velto_clip_parent_uuid),
        LISTED(velto_clip_length),
        LISTED(velto_clip_loop_in_point),
        LISTED(velto_clip_loop_out_point),
        LISTED(velto_clip_trim_start),
        LISTED(velto_clip_trim_end),
        LISTED(velto_clip_playback),
        LISTED(velto_clip_repeat),
        LISTED(velto_clip_video_standard),
        LISTED(velto_clip_timecode_source),
        LISTED(velto_clip_is_readonly),
        LISTED(velto_clip_content_last_edited),
        LISTED(velto_clip_metadata_last_edited),
        LISTED(velto_clip_last_loaded),
        LISTED(velto_clip_last_unloaded),
        LISTED(velto_clip_last_played),
        LISTED(velto_get_tracks),
        LISTED(velto_clip_recorded_timecode0),
        LISTED(velto_clip_timecode_stripe),
        LISTED(velto_set_clip_title),
        LISTED(velto_set_clip_creator),
        LISTED(velto_set_clip_project),
        LISTED(velto_set_clip_loop_in_point),
        LISTED(velto_set_clip_loop_out_point),
        LISTED(velto_set_clip_trim_start),
        LISTED(velto_set_clip_trim_end),
        LISTED(velto_set_clip_playback),
        LISTED(velto_set_clip_repeat),
        LISTED(velto_set_clip_timecode_source),
        LISTED(velto_set_clip_timecode_stripe),
        LISTED(velto_open_clip_list),
        LISTED(velto_get_clip_name),
        LISTED(velto_close_clip_list),
        LISTED(velto_open_directory_list),
        LISTED(velto_get_directory_name),
        LISTED(velto_close_directory_list),
        LISTED(velto_open_playlist_list),
        LISTED(velto_get_playlist_name),
        LISTED(velto_close_playlist_list),
        LISTED(velto_track_clip_changes),
        LISTED(velto_track_directory_changes),
        LISTED(velto_track_change_added_clip),
        LISTED(velto_track_change_changed_clip),
        LISTED(velto_track_change_deleted_clip),
        LISTED(velto_track_change_added_directory),
        LISTED(velto_track_change_deleted_directory),
        LISTED(velto_clip_get_meta),
        LISTED(velto_clip_has_meta),
        LISTED(velto_clip_set_meta),
        LISTED(velto_clip_delete_meta),
        LISTED(velto_clip_open_metakeys),
        LISTED(velto_get_metakey),
        LISTED(velto_close_metakeys),
        LISTED(velto_vclip_create),
        LISTED(velto_vclip_free),
        LISTED(velto_vclip_modification_start),
        LISTED(velto_vclip_modification_end),
        LISTED(velto_vclip_cfg_tracks),
        LISTED(velto_vclip_add_segment1),
        LISTED(velto_vclip_add_segment2),
        LISTED(velto_vclip_clear_segment),
        LISTED(velto_vclip_ripple),
        LISTED(velto_vclip_track_enable),
        LISTED(velto_open_kvstore),
        LISTED(velto_kvstore_wait_scan),
        LISTED(velto_kvstore_get_change),
        LISTED(velto_kvstore_set),
        LISTED(velto_kvstore_erase),
        LISTED(velto_kvstore_flush),
        LISTED(velto_close_key_value_store),
    };
    const size_t count = sizeof all / sizeof all[0];

    for (size_t i = 0; i < count && i < capacity; ++i) {
        prototypes[i] = all[i];
    }
    return count;
}
/* clang-format on */
