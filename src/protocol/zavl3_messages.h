#pragma once

#include "foundation/afunction.h"
#include "protocol/zavl3_elements.h"

namespace ZAVL3
{

// What a reply does to its command: a final one ends it, a streaming one can come any number of
// times before.
enum class Ending { final, streaming };

// Every message that the server sends, in the order of its kind: its tag and its fields in the
// order in which they are read. `?` marks a field that may be absent. An entry here is all that
// reading, checking and dispatching a message needs.

// clang-format off
#define ZAVL3_REPLIES(REPLY) \
    REPLY(ok, final) \
    REPLY(error, final, "ErrorMessage", "ErrorCode") \
    REPLY(clipexists, final, "ClipID", "Exists") \
    REPLY(clipid, streaming, "ClipID") \
    REPLY(directory_name, streaming, "DirectoryName") \
    REPLY(configuration_item, streaming, "ConfigurationItem") \
    REPLY(one_configuration_item, final, "ConfigurationItem") \
    REPLY(clipinfo, final, "ClipInfo") \
    REPLY(computername, final, "ComputerName") \
    REPLY(reference_source, final, "ReferenceSource") \
    REPLY(video_standard, final, "VideoStandard", "VideoRate", "VideoResolution") \
    REPLY(disk_usage, final, "TotalDiskSpace", "AvailableDiskSpace", "FieldSize") \
    REPLY(version_info, final, "SVNVersion", "SVNPath") \
    REPLY(compression_info, final, "CompressionInfo") \
    REPLY(melt_item, streaming, "MeltItem") \
    REPLY(melt_flags, streaming, "MeltFlags") \
    REPLY(steal_info, final, "StealSwapped") \
    REPLY(listid, streaming, "ListID") \
    REPLY(chaseid, streaming, "ChaseID") \
    REPLY(list_element, streaming, "ListElement") \
    REPLY(chase_element, streaming, "ChaseElement") \
    REPLY(metadata, streaming, "MetadataDatabase", "MetadataPrefix", "MetadataList") \
    REPLY(volatile_file_info, streaming, "KeyList") \
    REPLY(channel_current_timecode, final, "Channel", "DisplayTimecode", "ClipLength", "ClipPosition")

// clang-format on

// clang-format off
#define ZAVL3_REPORTS(REPORT) \
    REPORT(clip_created, "ClipID") \
    REPORT(clip_changed, "ClipID") \
    REPORT(clip_deleted, "ClipID") \
    REPORT(directory_created, "DirectoryName") \
    REPORT(directory_deleted, "DirectoryName") \
    REPORT(playlist_created, "ListID") \
    REPORT(playlist_changed, "ListID") \
    REPORT(playlist_deleted, "ListID") \
    REPORT(chaselist_created, "ChaseID") \
    REPORT(chaselist_changed, "ChaseID") \
    REPORT(chaselist_deleted, "ChaseID") \
    REPORT(config_changed, "ConfigurationChange?") \
    REPORT(disk_space_changed, "DiskSpaceChange") \
    REPORT(temperature, "Temperature10") \
    REPORT(chase_ltc_timecode, "Timecode") \
    REPORT(channel_status, "Channel", "ChannelStatus", "ClipID?") \
    REPORT(channel_clipid, "Channel", "ClipID") \
    REPORT(channel_speed, "Channel", "Speed") \
    REPORT(channel_timecode, "Channel", "ClipPosition", "DisplayTimecode", "InputTimecode") \
    REPORT(channel_info, "Channel", "ChannelInformation") \
    REPORT(channel_peak, "Channel", "LevelList") \
    REPORT(channel_aux_audio_status, "Channel", "ChannelStatus", "ClipID?") \
    REPORT(channel_aux_audio_clipid, "Channel", "ClipID") \
    REPORT(channel_aux_audio_speed, "Channel", "Speed") \
    REPORT(channel_aux_audio_timecode, "Channel", "ClipPosition") \
    REPORT(channel_aux_audio_info, "Channel", "ChannelInformation") \
    REPORT(channel_aux_audio_peak, "Channel", "LevelList") \
    REPORT(melt_available, "MeltClientID") \
    REPORT(channel_listplay_list, "Channel", "ListID", "ListPlayMode") \
    REPORT(channel_listplay_unloaded, "Channel") \
    REPORT(channel_listplay_item_exists, "Channel", "ListIndex", "ListElement") \
    REPORT(channel_listplay_item_insert, "Channel", "ListIndex", "ListElement") \
    REPORT(channel_listplay_item_remove, "Channel", "ListIndex") \
    REPORT(channel_listplay_clear_all, "Channel") \
    REPORT(channel_listplay_air_now, "Channel", "ListPlaybackIndex") \
    REPORT(channel_listplay_air_lock, "Channel", "ListPlaybackIndex") \
    REPORT(channel_listplay_air_next, "Channel", "ListPlaybackIndex") \
    REPORT(channel_listplay_loop, "Channel", "Loop") \
    REPORT(channel_listplay_modified, "Channel", "ModifiedFlag") \
    REPORT(channel_chaseplay_chase, "Channel", "ChaseID") \
    REPORT(channel_chaseplay_unloaded, "Channel") \
    REPORT(channel_chaseplay_item_exists, "Channel", "ChaseIndex", "ChaseElement") \
    REPORT(channel_chaseplay_item_insert, "Channel", "ChaseIndex", "ChaseElement") \
    REPORT(channel_chaseplay_item_remove, "Channel", "ChaseIndex") \
    REPORT(channel_chaseplay_clear_all, "Channel") \
    REPORT(channel_chaseplay_air_now, "Channel", "ChasePlaybackIndex") \
    REPORT(channel_chaseplay_modified, "Channel", "ModifiedFlag") \
    REPORT(metadata_change, "MetadataDatabase", "MetadataPrefix", "MetadataList") \
    REPORT(metadata_remove, "MetadataDatabase", "MetadataPrefix", "KeyList") \
    REPORT(export_requested, "Channel") \
    REPORT(userdict_change, "Key") \
    REPORT(alert, "Alert") \
    REPORT(ltc_timecode, "Timecode")
// clang-format on

// The kinds are numbered over both tables.
enum MessageKind : std::int32_t {
#define ZAVL3_REPLY_KIND(name, ...) reply_##name,
#define ZAVL3_REPORT_KIND(name, ...) report_##name,
    ZAVL3_REPLIES(ZAVL3_REPLY_KIND) ZAVL3_REPORTS(ZAVL3_REPORT_KIND) message_kind_count,
#undef ZAVL3_REPLY_KIND
#undef ZAVL3_REPORT_KIND
    first_report_kind = report_clip_created,
};

namespace reply
{

#define ZAVL3_DECLARE_REPLY(name, ends, ...)                                                       \
    struct name : Record<__VA_ARGS__> {                                                            \
        static constexpr MessageKind kind = reply_##name;                                          \
        static constexpr Ending ending = Ending::ends;                                             \
        using Delegate = rebind<AFunction>;                                                        \
    };
ZAVL3_REPLIES(ZAVL3_DECLARE_REPLY)
#undef ZAVL3_DECLARE_REPLY

} // namespace reply

namespace report
{

#define ZAVL3_DECLARE_REPORT(name, ...)                                                            \
    struct name : Record<__VA_ARGS__> {                                                            \
        static constexpr MessageKind kind = report_##name;                                         \
    };
ZAVL3_REPORTS(ZAVL3_DECLARE_REPORT)
#undef ZAVL3_DECLARE_REPORT

} // namespace report

} // namespace ZAVL3
