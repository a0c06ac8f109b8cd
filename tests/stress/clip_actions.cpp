#include "stress/actions.h"

namespace stress
{

namespace
{

using ReadText = VeltoResult (*)(VeltoRecordHandle, VeltoTextBuffer);
using WriteText = VeltoResult (*)(VeltoRecordHandle, const VeltoChar*);
using ReadNumber = VeltoResult (*)(VeltoRecordHandle, std::uint32_t*);
using WriteNumber = VeltoResult (*)(VeltoRecordHandle, std::uint32_t);
using ReadStamp = VeltoResult (*)(VeltoRecordHandle, std::uint64_t*);

struct Text {
    const char* place;
    ReadText read;
    WriteText write;
};

constexpr Text texts[] = {
    {"title", velto_clip_title, velto_set_clip_title},
    {"creator", velto_clip_creator, velto_set_clip_creator},
    {"project", velto_clip_project, velto_set_clip_project},
};

constexpr ReadNumber numbers[] = {
    velto_clip_length,      velto_clip_loop_in_point,  velto_clip_loop_out_point,
    velto_clip_trim_start,  velto_clip_trim_end,       velto_clip_playback,
    velto_clip_repeat,      velto_clip_video_standard, velto_clip_timecode_source,
    velto_clip_is_readonly, velto_get_tracks,
};

constexpr WriteNumber number_writers[] = {
    velto_set_clip_loop_in_point, velto_set_clip_loop_out_point,  velto_set_clip_playback,
    velto_set_clip_repeat,        velto_set_clip_timecode_source,
};

constexpr ReadStamp stamps[] = {
    velto_clip_content_last_edited, velto_clip_metadata_last_edited, velto_clip_last_loaded,
    velto_clip_last_unloaded,       velto_clip_last_played,
};

constexpr const char* metadata_keys[] = {"stress one", "stress <two>", "stress three"};

// Texts of the clips that are there from the start were not written by the run.
bool may_be_first(std::string_view value)
{
    return value.find('|') == value.npos;
}

void check_text(Actor& actor, const std::string& place, const std::string& value)
{
    actor.check(may_be_first(value) || actor.number_of(place, value),
                "nobody has written '" + value + "' to " + place);
}

void read_text(Actor& actor, const Record& record)
{
    const Text& text = actor.chance.of(texts);
    TextOut out;
    const VeltoResult result = actor.call(text.place, text.read, never_fails, record, out.buffer());
    if (result != VELTO_RESULT_OK) {
        return actor.check(out.is_untouched(), "a closed record gives a text");
    }
    check_text(actor, text.place, out.text());
}

template <typename Number, typename Readers>
void read_number(Actor& actor, const Record& record, const Readers& readers)
{
    Out<Number> out;
    const VeltoResult result =
        actor.call("velto_clip_...", actor.chance.of(readers), never_fails, record, &out.value);
    actor.check(out.is_untouched() == (result != VELTO_RESULT_OK),
                "a record's number is not as it should be");
}

} // namespace

void open_record(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection || actor.world.records.size() >= actor.world.limits.records) {
        return;
    }
    const std::string clip = actor.a_clip();
    Out<VeltoRecordHandle> handle;
    const VeltoResult result = actor.call(NAMED(velto_open_clip_metadata), command, *connection,
                                          units(clip).c_str(), &handle.value);
    if (result != VELTO_RESULT_OK) {
        return actor.check(handle.is_untouched(), "a record is written on failure");
    }
    actor.world.records.add(std::make_shared<Record>(handle.value, connection));
}

void close_record(Actor& actor)
{
    const auto record = actor.world.records.take(actor.chance);
    if (!record) {
        return;
    }
    record->closing = true;
    actor.run(NAMED(velto_close_clip_metadata), record->handle);
    record->closed = true;
    actor.world.records.retire(record->handle, nullptr);
}

void read_record(Actor& actor)
{
    const auto record = actor.a_record();
    for (int i = 0; record && i < 4; ++i) {
        switch (actor.chance.below(3)) {
        case 0:
            read_text(actor, *record);
            break;
        case 1:
            read_number<std::uint32_t>(actor, *record, numbers);
            break;
        default:
            read_number<std::uint64_t>(actor, *record, stamps);
        }
    }
}

void write_record(Actor& actor)
{
    const auto record = actor.a_record();
    if (!record) {
        return;
    }
    if (actor.chance.one_in(2)) {
        actor.call("velto_set_clip_...", actor.chance.of(number_writers), record_writer, *record,
                   actor.chance.below(100));
    } else {
        const Text& text = actor.chance.of(texts);
        actor.call(text.place, text.write, record_writer, *record,
                   units(actor.new_value(text.place)).c_str());
    }
}

void use_metadata(Actor& actor)
{
    const auto record = actor.a_record();
    if (!record) {
        return;
    }
    const std::string key = actor.chance.of(metadata_keys);
    const std::basic_string<VeltoChar> wide_key = units(key);
    TextOut value;
    Out<std::uint32_t> has;
    Out<VeltoListHandle> list;
    switch (actor.chance.below(6)) {
    case 0:
        actor.call(NAMED(velto_clip_set_meta), record_writer, *record, wide_key.c_str(),
                   units(actor.new_value(key)).c_str());
        return;
    case 1:
        actor.call(NAMED(velto_clip_delete_meta), record_writer, *record, wide_key.c_str());
        return;
    case 2:
        actor.call(NAMED(velto_clip_has_meta), never_fails, *record, wide_key.c_str(), &has.value);
        return actor.check(has.value <= VELTO_YES, "velto_clip_has_meta gives neither");
    case 3:
        if (actor.call(NAMED(velto_clip_open_metakeys), never_fails, *record, &list.value) ==
            VELTO_RESULT_OK) {
            const Part keys(list.value, nullptr);
            actor.call(NAMED(velto_get_metakey), never_fails, keys, value.buffer());
            actor.run(NAMED(velto_close_metakeys), list.value);
        }
        return;
    default:
        actor.call(NAMED(velto_clip_get_meta), never_fails, *record, wide_key.c_str(),
                   value.buffer());
        check_text(actor, key, value.text());
    }
}

namespace
{

// A command that fails may have been obeyed all the same. One that is not waited for tells nothing,
// and may be obeyed behind a later one on another link: it has to end first.
void note(Actor& actor, std::uint32_t index, VeltoResult result, const Connection& connection,
          Existence wanted)
{
    if (result == VELTO_RESULT_INVALID_HANDLE) {
        return;
    }
    if (connection.may_not_wait) {
        actor.run(NAMED(velto_sync), connection.handle);
    }
    const bool is_known = result == VELTO_RESULT_OK && !connection.may_not_wait;
    actor.clips[index] = is_known ? wanted : Existence::unknown;
}

void create(Actor& actor, const Connection& connection, std::uint32_t index)
{
    const VeltoResult result =
        actor.call(NAMED(velto_create_clip2), command, connection,
                   units(actor.own_clip(index)).c_str(), VELTO_TRACK_ALL, 500u);
    note(actor, index, result, connection, Existence::there);
}

void remove(Actor& actor, const Connection& connection, std::uint32_t index)
{
    const VeltoResult result = actor.call(NAMED(velto_delete_clip), command, connection,
                                          units(actor.own_clip(index)).c_str());
    note(actor, index, result, connection, Existence::gone);
}

void rename(Actor& actor, const Connection& connection, std::uint32_t from)
{
    const std::uint32_t to = (from + 1) % own_clips;
    const VeltoResult result =
        actor.call(NAMED(velto_rename_clip), command, connection,
                   units(actor.own_clip(from)).c_str(), units(actor.own_clip(to)).c_str());
    note(actor, from, result, connection, Existence::gone);
    note(actor, to, result, connection, Existence::there);
}

} // namespace

void change_clip(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const std::uint32_t index = actor.chance.below(own_clips);
    switch (actor.chance.below(8)) {
    case 0:
        actor.call(NAMED(velto_set_readonly), Rule{bit(VELTO_RESULT_FAILED)}, *connection,
                   VELTO_TEXT("any"));
        return;
    case 1:
        actor.call(NAMED(velto_create_directory), command, *connection,
                   units("d/" + std::to_string(index)).c_str());
        return;
    case 2:
        return rename(actor, *connection, index);
    case 3:
    case 4:
        return remove(actor, *connection, index);
    default:
        return create(actor, *connection, index);
    }
}

void look_for_clip(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const std::uint32_t index = actor.chance.below(own_clips);
    Out<std::uint32_t> exists;
    const VeltoResult result = actor.call(NAMED(velto_clip_exists), command, *connection,
                                          units(actor.own_clip(index)).c_str(), &exists.value);
    if (result != VELTO_RESULT_OK) {
        return actor.check(exists.value == VELTO_NO, "velto_clip_exists says yes and fails");
    }
    const Existence known = actor.clips[index];
    actor.check(known == Existence::unknown ||
                    exists.value == (known == Existence::there ? VELTO_YES : VELTO_NO),
                "the clip '" + actor.own_clip(index) + "' is " +
                    (exists.value == VELTO_YES ? "" : "not ") +
                    "there, against what was done to it");
}

void edit_virtual_clip(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const auto name = units("v/t" + std::to_string(actor.chance.below(4)));
    const auto clip = units(actor.a_clip());
    const VeltoChar* const vclip = name.c_str();
    switch (actor.chance.below(8)) {
    case 0:
        actor.call(NAMED(velto_vclip_create), command, *connection, vclip, 1000u);
        return;
    case 1:
        actor.call(NAMED(velto_vclip_free), command, *connection, vclip);
        return;
    case 2:
        actor.call(NAMED(velto_vclip_modification_start), command, *connection, vclip);
        return;
    case 3:
        actor.call(NAMED(velto_vclip_modification_end), command, *connection, vclip);
        return;
    case 4:
        actor.call(NAMED(velto_vclip_cfg_tracks), command, *connection, vclip, clip.c_str(),
                   VELTO_TRACK_ALL);
        return;
    case 5:
        actor.call(NAMED(velto_vclip_clear_segment), command, *connection, vclip, VELTO_TRACK_ALL,
                   actor.chance.below(500), 10u);
        return;
    case 6:
        actor.call(NAMED(velto_vclip_track_enable), command, *connection, vclip,
                   actor.chance.below(8));
        return;
    default:
        actor.call(NAMED(velto_vclip_add_segment2), command, *connection, vclip, clip.c_str(),
                   actor.chance.below(100), VELTO_TRACK_ALL, actor.chance.below(500), 100u, 1.0);
    }
}

} // namespace stress
