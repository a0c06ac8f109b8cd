#include "fuzz/exports.h"

#include "connection/velto.h"
#include "fuzz/check.h"

#include <array>

namespace fuzz
{

namespace
{

// A buffer as callers have it, small enough for texts to be cut.
class Text
{
public:
    VeltoTextBuffer buffer() { return {units.data(), room}; }

    // Checks what a function has written there, and forgets it.
    void check()
    {
        std::size_t length = 0;
        while (length < room && units[length] != 0) {
            ++length;
        }
        FUZZ_CHECK(length < room);
        FUZZ_CHECK(AString(units.data(), length).to_wide().size() == length); // no half of a pair
        FUZZ_CHECK(units[room] == guard);
        units.fill(guard);
    }

private:
    static constexpr VeltoChar guard = 0x7E7E;
    static constexpr std::uint32_t room = 24;
    std::array<VeltoChar, room + 1> units = [] {
        std::array<VeltoChar, room + 1> filled;
        filled.fill(guard);
        return filled;
    }();
};

// Whether `read` succeeds; if so, what it has put into its text.
template <typename Read>
bool read_text(Read read)
{
    Text text;
    if (read(text.buffer()) != VELTO_RESULT_OK) {
        return false;
    }
    text.check();
    return true;
}

// All names up to the empty text; `take` is a function that takes one.
template <typename Take>
void read_names(Take take)
{
    for (std::array<VeltoChar, 24> name{1}; name.front() != 0;) {
        if (take(VeltoTextBuffer{name.data(), name.size()}) != VELTO_RESULT_OK) {
            return;
        }
    }
}

void read_list(VeltoListHandle list)
{
    read_names([&](VeltoTextBuffer name) { return velto_get_clip_name(list, name); });
    velto_close_clip_list(list);
}

void read_record(VeltoRecordHandle record)
{
    for (const auto reader : {&velto_clip_title, &velto_clip_creator, &velto_clip_project,
                              &velto_clip_uuid, &velto_clip_parent_uuid}) {
        FUZZ_CHECK(read_text([&](VeltoTextBuffer text) { return reader(record, text); }));
    }
    for (const auto reader :
         {&velto_clip_length, &velto_clip_loop_in_point, &velto_clip_loop_out_point,
          &velto_clip_trim_start, &velto_clip_trim_end, &velto_clip_playback, &velto_clip_repeat,
          &velto_clip_video_standard, &velto_clip_timecode_source, &velto_clip_is_readonly,
          &velto_get_tracks}) {
        std::uint32_t value = 0;
        FUZZ_CHECK(reader(record, &value) == VELTO_RESULT_OK);
    }
    for (const auto reader :
         {&velto_clip_content_last_edited, &velto_clip_metadata_last_edited,
          &velto_clip_last_loaded, &velto_clip_last_unloaded, &velto_clip_last_played}) {
        std::uint64_t stamp = 0;
        FUZZ_CHECK(reader(record, &stamp) == VELTO_RESULT_OK);
    }
    for (const auto reader : {&velto_clip_recorded_timecode0, &velto_clip_timecode_stripe}) {
        std::uint32_t field = 0;
        std::uint32_t non_drop = 0;
        FUZZ_CHECK(reader(record, &field, &non_drop) == VELTO_RESULT_OK);
        FUZZ_CHECK(non_drop <= VELTO_NON_DROP_FRAME);
    }
    std::uint32_t has = 0;
    velto_clip_has_meta(record, u"title", &has);
    FUZZ_CHECK(read_text(
        [&](VeltoTextBuffer value) { return velto_clip_get_meta(record, u"title", value); }));
    VeltoListHandle keys = 0;
    FUZZ_CHECK(velto_clip_open_metakeys(record, &keys) == VELTO_RESULT_OK);
    read_list(keys);
    velto_close_clip_metadata(record);
}

void open_record(VeltoHandle handle)
{
    VeltoRecordHandle record = 0;
    if (velto_open_clip_metadata(handle, u"news_open", &record) == VELTO_RESULT_OK) {
        read_record(record);
    }
}

template <auto Open>
void open_list(VeltoHandle handle)
{
    VeltoListHandle list = 0;
    if (Open(handle, &list) == VELTO_RESULT_OK) {
        read_list(list);
    }
}

template <auto Ask>
void ask_for_number(VeltoHandle handle)
{
    std::uint32_t value = 0;
    Ask(handle, &value);
}

void command_channel(VeltoHandle handle)
{
    velto_cmd_stop1(handle, VELTO_CHANNEL_A);
    FUZZ_CHECK(read_text([](VeltoTextBuffer text) {
        velto_get_last_error(text);
        return VELTO_RESULT_OK;
    }));
}

constexpr Question all_questions[] = {
    {"clipinfo", &open_record},
    {"ok", &open_list<&velto_open_clip_list>},
    {"ok", &open_list<&velto_open_directory_list>},
    {"ok", &open_list<&velto_open_playlist_list>},
    {"ok", &command_channel},
    {"video_standard", &ask_for_number<&velto_video_standard>},
    {"video_standard", &ask_for_number<&velto_video_frequency>},
    {"video_standard", &ask_for_number<&velto_video_resolution>},
    {"computername",
     [](VeltoHandle handle) {
         read_text([&](VeltoTextBuffer name) { return velto_server_name(handle, name); });
     }},
    {"disk_usage",
     [](VeltoHandle handle) {
         std::uint64_t total = 0;
         std::uint64_t available = 0;
         std::uint32_t field_size = 0;
         velto_disk_usage1(handle, &total, &available, &field_size);
     }},
    {"disk_usage",
     [](VeltoHandle handle) {
         std::uint32_t total = 0;
         std::uint32_t available = 0;
         velto_disk_usage2(handle, &total, &available);
     }},
    {"clipexists",
     [](VeltoHandle handle) {
         std::uint32_t exists = 0;
         velto_clip_exists(handle, u"news_open", &exists);
     }},
};

} // namespace

void read_channel(VeltoHandle handle, std::uint32_t channel)
{
    for (const auto getter :
         {&velto_channel_status, &velto_channel_clip_length, &velto_channel_position,
          &velto_channel_repeat, &velto_channel_precue_count, &velto_playlist_count,
          &velto_playlist_status}) {
        std::uint32_t value = 0;
        FUZZ_CHECK(getter(handle, channel, &value) == VELTO_RESULT_OK);
    }
    for (const auto getter : {&velto_channel_angle, &velto_channel_ee}) {
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        FUZZ_CHECK(getter(handle, channel, &first, &second) == VELTO_RESULT_OK);
    }
    double speed = 0;
    FUZZ_CHECK(velto_channel_speed(handle, channel, &speed) == VELTO_RESULT_OK);
    FUZZ_CHECK(speed >= -32768.0 && speed < 32768.0);
    FUZZ_CHECK(
        read_text([&](VeltoTextBuffer b) { return velto_channel_clip(handle, channel, b); }));
}

void read_notices(VeltoHandle handle)
{
    std::uint32_t kind = 0;
    do {
        std::uint32_t channel = VELTO_TRACKED_CHANNELS;
        FUZZ_CHECK(velto_get_notification(handle, 0, &kind, &channel) == VELTO_RESULT_OK);
        FUZZ_CHECK(channel < VELTO_TRACKED_CHANNELS);
    } while (kind != VELTO_NOTICE_NONE);
}

void read_changes(VeltoHandle handle)
{
    for (const auto take : {&velto_track_change_added_clip, &velto_track_change_changed_clip,
                            &velto_track_change_deleted_clip, &velto_track_change_added_directory,
                            &velto_track_change_deleted_directory}) {
        read_names([&](VeltoTextBuffer name) { return take(handle, name); });
    }
}

void read_store(VeltoStoreHandle store)
{
    velto_kvstore_wait_scan(store, 0);
    for (VeltoResult result = VELTO_RESULT_OK; result == VELTO_RESULT_OK;) {
        Text key;
        Text value;
        std::uint32_t kind = 0;
        result = velto_kvstore_get_change(store, 0, &kind, key.buffer(), value.buffer());
        if (result == VELTO_RESULT_OK) {
            FUZZ_CHECK(kind == VELTO_STORE_CHANGE_SET || kind == VELTO_STORE_CHANGE_ERASED);
            key.check();
            value.check();
        } else {
            FUZZ_CHECK(result == VELTO_RESULT_TIMEOUT);
        }
    }
}

std::span<const Question> questions()
{
    return all_questions;
}

} // namespace fuzz
