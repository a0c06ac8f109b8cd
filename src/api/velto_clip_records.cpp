#include "api/clip_records.h"
#include "api/dispatch.h"
#include "connection/text.h"
#include "protocol/typehelp.h"

using namespace ZAVL3;

namespace
{

// ---- Reading

template <typename T>
const T& value_of(const Maybe<T>& field)
{
    return field.value;
}

template <typename T>
const T& value_of(const T& field)
{
    return field;
}

// A field that the record has not is its default: 0, the empty text.
template <FixedString Name>
VeltoResult read_text(VeltoRecordHandle record, VeltoTextBuffer text)
{
    return read_record(record,
                       [=](const ClipInfo& info) { copy_text(value_of(info.get<Name>()), text); });
}

template <FixedString Name, typename Number>
VeltoResult read_number(VeltoRecordHandle record, Number* number)
{
    return read_record(record, [=](const ClipInfo& info) { *number = value_of(info.get<Name>()); });
}

template <FixedString Name, auto Convert>
VeltoResult read_number(VeltoRecordHandle record, uint32_t* number)
{
    return read_record(record, [=](const ClipInfo& info) { *number = Convert(info.get<Name>()); });
}

// A timecode as a field number, and whether it counts without dropping.
struct ReadTimecode {
    explicit ReadTimecode(const ClipInfo& info)
        : can_drop(typehelp::is_59_94_family(info.get<"VideoStandard">())), non_drop(!can_drop)
    {
    }

    template <typename Timecode>
    void take(const Timecode& timecode)
    {
        field_number = static_cast<uint32_t>(timecode.template get<"FieldNumber">().value);
        const Maybe<DropFrameFlag>& flag = timecode.template get<"DropFrameFlag">();
        if (can_drop && flag.has && flag.value == word<DropFrameFlag>("ndf")) {
            non_drop = true;
        }
    }

    void take(const Maybe<Frame0Timecode>& timecode)
    {
        if (timecode.has) {
            take(timecode.value);
        }
    }

    void store(uint32_t* number, uint32_t* flag) const
    {
        *number = field_number;
        *flag = non_drop;
    }

    const bool can_drop;
    bool non_drop;
    uint32_t field_number = 0;
};

void take_by_source(ReadTimecode& read, const ClipInfo& info)
{
    const TimecodeSource source = info.get<"TimecodeSource">();
    if (source == word<TimecodeSource>("striped")) {
        if (info.get<"StripeTimecode">().get<"Valid">()) {
            read.take(info.get<"StripeTimecode">());
        }
    } else if (source == word<TimecodeSource>("rectc") ||
               source == word<TimecodeSource>("rec0_stripe")) {
        read.take(info.get<"Frame0Timecode">());
    }
}

uint32_t track_mask(const TrackInfoVector& tracks)
{
    uint32_t mask = 0;
    for (uint32_t i = 0; i < tracks.count; ++i) {
        const auto type = static_cast<uint32_t>(tracks.vec[i].get<"TrackType">());
        if (type <= static_cast<uint32_t>(word<TrackType>("audio"))) {
            mask |= 1u << type;
        }
    }
    return mask;
}

// ---- Writing

template <FixedString Name, typename Value>
VeltoResult write_field(VeltoRecordHandle record, const Value& value)
{
    return update_record(
        record, [&](ClipAttrChange& change) { change.set<Name>(value); },
        [&](ClipInfo& info) { info.set<Name>(value); });
}

// Trims fall on whole frames.
uint32_t even(uint32_t fields)
{
    return fields & ~uint32_t{1};
}

} // namespace

VeltoResult velto_open_clip_metadata(VeltoHandle handle, const VeltoChar* clip,
                                     VeltoRecordHandle* record)
{
    ClipInfo info;
    const VeltoResult result = dispatch(handle, [&](const ARef<VeltoConnObject>& connection) {
        return VeltoConnObject::clip_info(connection, text_from_units(clip), &info);
    });
    if (result == VELTO_RESULT_OK && record != nullptr) {
        *record = clip_records().add(ClipRecord(handle, std::move(info)));
    }
    return result;
}

VeltoResult velto_close_clip_metadata(VeltoRecordHandle record)
{
    clip_records().remove(record);
    return result_ok();
}

// ---- Readers

VeltoResult velto_clip_title(VeltoRecordHandle record, VeltoTextBuffer title)
{
    return read_text<"Title">(record, title);
}

VeltoResult velto_clip_creator(VeltoRecordHandle record, VeltoTextBuffer creator)
{
    return read_text<"Creator">(record, creator);
}

VeltoResult velto_clip_project(VeltoRecordHandle record, VeltoTextBuffer project)
{
    return read_text<"Project">(record, project);
}

VeltoResult velto_clip_uuid(VeltoRecordHandle record, VeltoTextBuffer uuid)
{
    return read_text<"ClipUUID">(record, uuid);
}

VeltoResult velto_clip_parent_uuid(VeltoRecordHandle record, VeltoTextBuffer parent_uuid)
{
    return read_text<"ParentUUID">(record, parent_uuid);
}

VeltoResult velto_clip_length(VeltoRecordHandle record, uint32_t* length)
{
    return read_number<"ClipLength">(record, length);
}

VeltoResult velto_clip_loop_in_point(VeltoRecordHandle record, uint32_t* position)
{
    return read_number<"LoopIn">(record, position);
}

VeltoResult velto_clip_loop_out_point(VeltoRecordHandle record, uint32_t* position)
{
    return read_number<"LoopOut">(record, position);
}

VeltoResult velto_clip_trim_start(VeltoRecordHandle record, uint32_t* position)
{
    return read_number<"TrimStart">(record, position);
}

VeltoResult velto_clip_trim_end(VeltoRecordHandle record, uint32_t* position)
{
    return read_number<"TrimEnd">(record, position);
}

VeltoResult velto_clip_playback(VeltoRecordHandle record, uint32_t* playback)
{
    return read_number<"Playback", typehelp::playback_from_wire>(record, playback);
}

VeltoResult velto_clip_repeat(VeltoRecordHandle record, uint32_t* repeat)
{
    return read_number<"Loop", typehelp::repeat_from_wire>(record, repeat);
}

VeltoResult velto_clip_video_standard(VeltoRecordHandle record, uint32_t* standard)
{
    return read_number<"VideoStandard", typehelp::standard_from_wire>(record, standard);
}

VeltoResult velto_clip_timecode_source(VeltoRecordHandle record, uint32_t* source)
{
    return read_number<"TimecodeSource", typehelp::timecode_source_from_wire>(record, source);
}

VeltoResult velto_clip_is_readonly(VeltoRecordHandle record, uint32_t* read_only)
{
    return read_number<"ReadOnly">(record, read_only);
}

VeltoResult velto_clip_content_last_edited(VeltoRecordHandle record, uint64_t* stamp)
{
    return read_number<"ContentEditStamp">(record, stamp);
}

VeltoResult velto_clip_metadata_last_edited(VeltoRecordHandle record, uint64_t* stamp)
{
    return read_number<"MetaEditStamp">(record, stamp);
}

VeltoResult velto_clip_last_loaded(VeltoRecordHandle record, uint64_t* stamp)
{
    return read_number<"LoadedStamp">(record, stamp);
}

VeltoResult velto_clip_last_unloaded(VeltoRecordHandle record, uint64_t* stamp)
{
    return read_number<"UnloadedStamp">(record, stamp);
}

VeltoResult velto_clip_last_played(VeltoRecordHandle record, uint64_t* stamp)
{
    return read_number<"PlayedStamp">(record, stamp);
}

VeltoResult velto_get_tracks(VeltoRecordHandle record, uint32_t* tracks)
{
    return read_number<"TrackInfoVector", track_mask>(record, tracks);
}

VeltoResult velto_clip_recorded_timecode0(VeltoRecordHandle record, uint32_t* field_number,
                                          uint32_t* non_drop)
{
    return read_record(record, [=](const ClipInfo& info) {
        ReadTimecode timecode(info);
        timecode.take(info.get<"Frame0Timecode">());
        timecode.store(field_number, non_drop);
    });
}

VeltoResult velto_clip_timecode_stripe(VeltoRecordHandle record, uint32_t* field_number,
                                       uint32_t* non_drop)
{
    return read_record(record, [=](const ClipInfo& info) {
        ReadTimecode timecode(info);
        take_by_source(timecode, info);
        timecode.store(field_number, non_drop);
    });
}

// ---- Writers

VeltoResult velto_set_clip_title(VeltoRecordHandle record, const VeltoChar* title)
{
    return write_field<"Title">(record, text_from_units(title));
}

VeltoResult velto_set_clip_creator(VeltoRecordHandle record, const VeltoChar* creator)
{
    return write_field<"Creator">(record, text_from_units(creator));
}

VeltoResult velto_set_clip_project(VeltoRecordHandle record, const VeltoChar* project)
{
    return write_field<"Project">(record, text_from_units(project));
}

VeltoResult velto_set_clip_loop_in_point(VeltoRecordHandle record, uint32_t position)
{
    return write_field<"LoopIn">(record, position);
}

VeltoResult velto_set_clip_loop_out_point(VeltoRecordHandle record, uint32_t position)
{
    return write_field<"LoopOut">(record, position);
}

VeltoResult velto_set_clip_trim_start(VeltoRecordHandle record, uint32_t position)
{
    return write_field<"TrimStart">(record, even(position));
}

VeltoResult velto_set_clip_trim_end(VeltoRecordHandle record, uint32_t position)
{
    return write_field<"TrimEnd">(record, even(position));
}

VeltoResult velto_set_clip_playback(VeltoRecordHandle record, uint32_t playback)
{
    return write_field<"Playback">(record, typehelp::playback_to_wire(playback));
}

VeltoResult velto_set_clip_repeat(VeltoRecordHandle record, uint32_t repeat)
{
    return write_field<"Loop">(record, typehelp::repeat_to_wire(repeat));
}

VeltoResult velto_set_clip_timecode_source(VeltoRecordHandle record, uint32_t source)
{
    return write_field<"TimecodeSource">(record, typehelp::timecode_source_to_wire(source));
}

// The record's own timecode stays valid or not, as it was. Wanted.
VeltoResult velto_set_clip_timecode_stripe(VeltoRecordHandle record, uint32_t field_number,
                                           uint32_t flag)
{
    const auto set_stripe = [=](Timecode& stripe) {
        stripe.set<"FieldNumber">(static_cast<int32_t>(field_number));
        stripe.set<"DropFrameFlag">(typehelp::stripe_to_wire(flag));
    };
    const TimecodeSource striped = word<TimecodeSource>("striped");
    const auto change = [=](ClipAttrChange& fields) {
        Timecode stripe;
        stripe.set<"Valid">(true);
        set_stripe(stripe);
        fields.set<"StripeTimecode">(stripe);
        fields.set<"TimecodeSource">(striped);
    };
    const auto store = [=](ClipInfo& info) {
        set_stripe(info.get<"StripeTimecode">());
        info.set<"TimecodeSource">(striped);
    };
    return update_record(record, change, store);
}
