#pragma once

#include "protocol/zavl3_messages.h"

namespace ZAVL3
{

// Every command that the library can send: its tag, the replies that its issuer takes besides
// `error`, the final one first, and its fields in wire order. `?` marks a field that may be absent.
// An entry here is all that building, sending and completing a command needs.

// clang-format off
#define ZAVL3_COMMANDS(COMMAND) \
    COMMAND(channel_report_register, (ok), "Channel", "ChannelReportType") \
    COMMAND(clear_out_point, (ok), "Channel") \
    COMMAND(clip_exists, (clipexists), "ClipID") \
    COMMAND(create_child_clip, (ok), "ClipID", "ParentClipID", "Angle?") \
    COMMAND(create_clip, (ok), "ClipID", "TrackSet", "ClipLength?", "Channel?") \
    COMMAND(create_directory, (ok), "DirectoryName") \
    COMMAND(cue_clip, (ok), "Channel", "ClipID", "Loop?", "GotoPosition?", "ClipPosition?", "Angle?", "Playback?", "Speed?", "ClipScope?", "LoopIn?", "LoopOut?", "Layer?", "BlackOnCue") \
    COMMAND(delete_clip, (ok), "ClipID") \
    COMMAND(download_clipids, (ok, clipid), "DirectoryName?") \
    COMMAND(download_directory_names, (ok, directory_name), "DirectoryName?") \
    COMMAND(download_listids, (ok, listid)) \
    COMMAND(download_metadata, (ok, metadata), "MetadataDatabase", "MetadataPrefix?") \
    COMMAND(ee, (ok), "Channel", "SonyEditMask", "AutoEE") \
    COMMAND(gang_ee, (ok), "ChannelSet", "SonyEditMask", "AutoEE") \
    COMMAND(gang_gotocmd, (ok), "ChannelSet", "GotoPosition", "MinLatency") \
    COMMAND(gang_insert_edit, (ok), "ChannelSet", "SonyEditMask") \
    COMMAND(gang_jog, (ok), "ChannelSet", "JogDistance", "MinLatency") \
    COMMAND(gang_play, (ok), "ChannelSet", "Speed?", "MinLatency") \
    COMMAND(gang_precue_activate, (ok), "ChannelSet") \
    COMMAND(gang_stop, (ok), "ChannelSet", "MinLatency") \
    COMMAND(get_clip_info, (clipinfo), "ClipID") \
    COMMAND(get_computer_name, (computername)) \
    COMMAND(get_disk_usage, (disk_usage)) \
    COMMAND(get_video_standard, (video_standard)) \
    COMMAND(go_live, (ok), "Channel", "ClipID?", "Angle?", "TimeDelay?", "MinLatency") \
    COMMAND(gotocmd, (ok), "Channel", "GotoPosition", "MinLatency") \
    COMMAND(insert_edit, (ok), "Channel", "SonyEditMask") \
    COMMAND(iso_angle, (ok), "Channel", "Angle") \
    COMMAND(jog, (ok), "Channel", "JogDistance", "Layer?", "MinLatency") \
    COMMAND(list_load, (ok), "Channel", "ListID", "ListPlayMode?", "Transition?", "Layer?") \
    COMMAND(list_play_next, (ok), "Channel", "ListIndex", "Roll") \
    COMMAND(list_play_now, (ok), "Channel", "ListIndex", "Roll", "JogDistance?") \
    COMMAND(metadata_erase, (ok), "MetadataDatabase", "KeyList", "MetadataPrefix?") \
    COMMAND(metadata_set, (ok), "MetadataDatabase", "MetadataList", "MetadataPrefix?") \
    COMMAND(modify_clip_attributes, (ok), "ClipID", "ClipAttrChange") \
    COMMAND(play, (ok), "Channel", "Speed?", "Layer?", "MinLatency") \
    COMMAND(precue, (ok), "Channel", "ClipID", "PrecueCondition?", "GotoPosition?", "ClipLength?", "Angle?", "LoopIn?", "LoopOut?", "Loop?", "MinLatency") \
    COMMAND(precue_activate, (ok), "Channel") \
    COMMAND(precue_clear, (ok), "Channel") \
    COMMAND(rename_clip, (ok), "FromID", "ToID") \
    COMMAND(report_register, (ok), "ReportType") \
    COMMAND(set_loop, (ok), "Channel", "Loop", "Layer?") \
    COMMAND(set_out_point, (ok), "Channel", "ClipPosition") \
    COMMAND(stop, (ok), "Channel", "Layer?", "MinLatency") \
    COMMAND(take, (ok), "Channel", "TransitionType?", "TransitionDuration?", "FollowSpeed?") \
    COMMAND(unload, (ok), "Channel", "Layer?") \
    COMMAND(unwatch_metadata_database, (ok), "MetadataDatabase") \
    COMMAND(vclip_add_segment, (ok), "VClipID", "ClipID", "ClipPosition", "TrackSet", "VClipPosition", "ClipLength", "Speed?") \
    COMMAND(vclip_cfg_tracks, (ok), "VClipID", "ClipID", "TrackSet") \
    COMMAND(vclip_clear_segment, (ok), "VClipID", "TrackSet", "VClipPosition", "ClipLength") \
    COMMAND(vclip_create, (ok), "VClipID", "ClipLength") \
    COMMAND(vclip_free, (ok), "VClipID") \
    COMMAND(vclip_modification_end, (ok), "VClipID") \
    COMMAND(vclip_modification_start, (ok), "VClipID") \
    COMMAND(vclip_ripple, (ok), "VClipID", "TrackSet", "VClipPosition", "VClipDistance") \
    COMMAND(vclip_track_enable, (ok), "VClipID", "TrackSet") \
    COMMAND(watch_metadata_database, (ok), "MetadataDatabase", "MetadataPrefix?")
// clang-format on

// The reply kinds that a command is answered with.
template <typename... Replies>
struct Answers {
};

template <typename Final, typename... Streaming>
Final final_reply(Answers<Final, Streaming...>);

namespace command
{

namespace answers
{
using namespace reply;
#define ZAVL3_DECLARE_ANSWERS(name, replies, ...) using of_##name = ZAVL3_ANSWERS replies;
#define ZAVL3_ANSWERS(...) Answers<__VA_ARGS__>
ZAVL3_COMMANDS(ZAVL3_DECLARE_ANSWERS)
#undef ZAVL3_ANSWERS
#undef ZAVL3_DECLARE_ANSWERS
} // namespace answers

#define ZAVL3_DECLARE_COMMAND(tag_name, replies, ...)                                              \
    struct tag_name : Record<__VA_ARGS__> {                                                        \
        static const AString& name() { return tag<#tag_name>(); }                                  \
        using Replies = answers::of_##tag_name;                                                    \
    };
ZAVL3_COMMANDS(ZAVL3_DECLARE_COMMAND)
#undef ZAVL3_DECLARE_COMMAND

} // namespace command

// The reply that ends a command.
template <typename Command>
using FinalReply = decltype(final_reply(typename Command::Replies{}));

} // namespace ZAVL3
