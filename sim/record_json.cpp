#include "sim/record_json.h"

#include <utility>

#include "sim/text.h"

namespace veltosim
{

namespace
{

using Json = nlohmann::ordered_json;

// A client that registers a list is told all its elements at once.
constexpr std::size_t most_elements = 1000;

// As many as a message about a clip can name.
constexpr std::size_t most_tracks = 17;

template <class Record>
constexpr std::string_view kind_of = "";
template <>
constexpr std::string_view kind_of<Clip> = "a clip";
template <>
constexpr std::string_view kind_of<Track> = "a track";
template <>
constexpr std::string_view kind_of<StripeTimecode> = "a stripe timecode";
template <>
constexpr std::string_view kind_of<Frame0Timecode> = "a timecode of frame 0";
template <>
constexpr std::string_view kind_of<VirtualClip> = "a virtual clip";
template <>
constexpr std::string_view kind_of<VirtualTrack> = "a virtual clip's track";
template <>
constexpr std::string_view kind_of<Segment> = "a segment";

template <class Record>
Keys keys_of()
{
    Keys keys;
    for_each_field<Record>([&](const auto& field) { keys.push_back(field.key); });
    return keys;
}

// Reading. ---------------------------------------------------------------------------------------

template <class Record>
Record read_record(const LocatedJson& json);

void read_special(const LocatedJson& json, std::string& value)
{
    value = to_text(json);
}

void read_special(const LocatedJson& json, SegmentSpeed& value)
{
    value.value = to_speed(json);
}

void read_special(const LocatedJson& json, Metadata& value)
{
    if (!json.value.is_object()) {
        refuse(json, "an object of texts");
    }
    for (const LocatedJson& member : json.items) {
        value.emplace_back(member.key, to_text(member));
    }
}

void read_special(const LocatedJson& json, Tracks& value)
{
    value.clear();
    for (const LocatedJson& element : to_array(json)) {
        if (element.value.is_object()) {
            value.push_back(read_record<Track>(element));
        } else {
            value.push_back({static_cast<TrackType>(to_word(element, track_type_words)), {}});
        }
    }
    if (value.size() > most_tracks) {
        throw LocatedError(json.line, fmt::format("a clip has {} tracks; {} are allowed",
                                                  value.size(), most_tracks));
    }
}

template <class Record>
void read_special(const LocatedJson& json, std::vector<Record>& value)
{
    for (const LocatedJson& element : to_array(json)) {
        value.push_back(read_record<Record>(element));
    }
}

template <class Record>
void read_fields(const Entry& entry, Record& record);

template <class Record>
Record read_record(const LocatedJson& json)
{
    Record record;
    read_fields(Entry(json, kind_of<Record>, keys_of<Record>()), record);
    return record;
}

template <class T, class Field>
void read_value(const LocatedJson& json, const Field& field, T& value)
{
    if constexpr (is_optional<T>) {
        read_value(json, field, value.emplace());
    } else if constexpr (Recorded<T>) {
        value = read_record<T>(json);
    } else if constexpr (std::is_enum_v<T>) {
        value = static_cast<T>(to_word(json, field.words));
    } else if constexpr (std::is_same_v<T, bool>) {
        value = to_flag(json);
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
        value = to_number<T>(json, std::numeric_limits<T>::min());
    } else if constexpr (std::is_integral_v<T>) {
        value = to_number<T>(json, static_cast<T>(field.lowest));
    } else {
        read_special(json, value);
    }
}

template <class Record>
void read_fields(const Entry& entry, Record& record)
{
    for_each_field<Record>([&](const auto& field) {
        if (const LocatedJson* member = entry.find(field.key)) {
            read_value(*member, field, record.*field.member);
        }
    });
}

template <class Record>
void require_name_and_length(const Entry& entry)
{
    entry.name("name");
    entry.required("length");
}

// Writing. ---------------------------------------------------------------------------------------

template <class Record>
Json record_json(const Record& record);

Json special_json(const std::string& value)
{
    return value;
}

Json special_json(const SegmentSpeed& speed)
{
    return static_cast<double>(speed.value) / normal_speed;
}

Json special_json(const Metadata& metadata)
{
    Json object = Json::object();
    for (const auto& [key, value] : metadata) {
        object[key] = value;
    }
    return object;
}

template <class Record>
Json special_json(const std::vector<Record>& records)
{
    Json array = Json::array();
    for (const Record& record : records) {
        array.push_back(record_json(record));
    }
    return array;
}

template <class T, class Field>
Json value_json(const T& value, const Field& field)
{
    if constexpr (is_optional<T>) {
        return value_json(*value, field);
    } else if constexpr (Recorded<T>) {
        return record_json(value);
    } else if constexpr (std::is_enum_v<T>) {
        return field.words[static_cast<std::size_t>(value)];
    } else if constexpr (std::is_integral_v<T>) {
        return value;
    } else {
        return special_json(value);
    }
}

template <class Record>
Json record_json(const Record& record)
{
    static const Record fresh;
    Json object = Json::object();
    for_each_field<Record>([&](const auto& field) {
        const auto& value = record.*field.member;
        if (value != fresh.*field.member) {
            object[std::string(field.key)] = value_json(value, field);
        }
    });
    return object;
}

} // namespace

Clip read_clip(const LocatedJson& json)
{
    Keys keys = keys_of<Clip>();
    keys.push_back("audio_tracks");
    const Entry entry(json, kind_of<Clip>, keys);
    require_name_and_length<Clip>(entry);
    Clip clip;
    read_fields(entry, clip);
    if (const auto count =
            entry.number<std::uint8_t>("audio_tracks", 0, std::uint8_t{most_tracks - 1})) {
        if (entry.has("tracks")) {
            throw LocatedError(entry.line("audio_tracks"),
                               "'audio_tracks' is said by 'tracks' already");
        }
        clip.tracks.assign(1, {TrackType::video, {}});
        clip.tracks.insert(clip.tracks.end(), *count, {TrackType::audio, {}});
    }
    return clip;
}

VirtualClip read_virtual_clip(const LocatedJson& json)
{
    const Entry entry(json, kind_of<VirtualClip>, keys_of<VirtualClip>());
    require_name_and_length<VirtualClip>(entry);
    VirtualClip virtual_clip;
    read_fields(entry, virtual_clip);
    return virtual_clip;
}

PlaylistElement read_use_of_clip(const Entry& entry, std::string_view key)
{
    PlaylistElement use;
    use.clip = entry.name(key);
    use.scope = key == "vclip" ? ClipScope::vclip : ClipScope::clip;
    use.start = entry.number<std::uint32_t>("position").value_or(0);
    use.out_point = entry.number<std::uint32_t>("out");
    use.angle = entry.number<std::uint8_t>("angle").value_or(use.angle);
    return use;
}

Playlist read_playlist(const LocatedJson& json)
{
    const Entry entry(json, "a playlist", {"name", "elements"});
    Playlist list;
    list.name = entry.name("name");
    const std::vector<LocatedJson>& array = entry.array("elements");
    if (array.empty() || array.size() > most_elements) {
        throw LocatedError(entry.line(),
                           fmt::format("the playlist {} has {} elements; 1 to {} are allowed",
                                       quote(list.name), array.size(), most_elements));
    }
    for (const LocatedJson& element : array) {
        const Entry item(element, "an element of a playlist",
                         {"clip", "vclip", "position", "out", "angle", "at_end"});
        PlaylistElement& use =
            list.elements.emplace_back(read_use_of_clip(item, item.one_of({"clip", "vclip"})));
        use.at_end =
            item.word<ListElementAtEnd>("at_end", list_element_at_end_words).value_or(use.at_end);
    }
    return list;
}

std::string to_json(const Clip& clip)
{
    Json json = record_json(clip);
    json["length"] = clip.length; // is required
    return json.dump();
}

std::string to_json(const VirtualClip& virtual_clip)
{
    Json json = record_json(virtual_clip);
    json["length"] = virtual_clip.length;
    return json.dump();
}

std::string to_json(const Playlist& list)
{
    Json elements = Json::array();
    for (const PlaylistElement& use : list.elements) {
        Json& element = elements.emplace_back(Json::object());
        element[use.scope == ClipScope::vclip ? "vclip" : "clip"] = use.clip;
        element["position"] = use.start;
        if (use.out_point) {
            element["out"] = *use.out_point;
        }
        element["angle"] = use.angle;
        element["at_end"] = word_of(list_element_at_end_words, use.at_end);
    }
    return Json{{"name", list.name}, {"elements", std::move(elements)}}.dump();
}

} // namespace veltosim
