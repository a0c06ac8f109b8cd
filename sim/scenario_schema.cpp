#include "sim/scenario_schema.h"

#include <initializer_list>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

#include <nlohmann/json.hpp>

#include "sim/clip_record.h"
#include "sim/vclips.h"
#include "sim/words.h"

namespace veltosim
{

namespace
{

using Json = nlohmann::ordered_json;

Json of_type(const char* type)
{
    return {{"type", type}};
}

Json one_of_words(Words words)
{
    return {{"enum", std::vector<std::string>(words.begin(), words.end())}};
}

Json array_of(Json items)
{
    return {{"type", "array"}, {"items", std::move(items)}};
}

Json object_of(Json values)
{
    return {{"type", "object"}, {"additionalProperties", std::move(values)}};
}

// With these members and no others.
Json object_with(Json properties, std::vector<std::string> required = {})
{
    Json object = of_type("object");
    object["properties"] = std::move(properties);
    object["required"] = std::move(required);
    object["additionalProperties"] = false;
    return object;
}

template <class Number>
Json number_from(std::uint64_t lowest = 0)
{
    Json number = of_type("integer");
    if constexpr (std::is_signed_v<Number>) {
        number["minimum"] = std::numeric_limits<Number>::min();
    } else {
        number["minimum"] = lowest;
    }
    number["maximum"] = std::numeric_limits<Number>::max();
    return number;
}

// What a field of a record may hold, by its type.

template <class Record>
Json record_schema(std::vector<std::string> required = {});

Json special_schema(const std::string*)
{
    return of_type("string");
}

Json special_schema(const SegmentSpeed*)
{
    return of_type("number");
}

Json special_schema(const Metadata*)
{
    return object_of(of_type("string"));
}

Json special_schema(const Tracks*)
{
    return array_of({{"anyOf", {one_of_words(track_type_words), record_schema<Track>()}}});
}

template <class Record>
Json special_schema(const std::vector<Record>*)
{
    return array_of(record_schema<Record>());
}

template <class T>
Json value_schema(Words words, std::uint64_t lowest, const T* type)
{
    if constexpr (Recorded<T>) {
        return record_schema<T>();
    } else if constexpr (std::is_enum_v<T>) {
        return one_of_words(words);
    } else if constexpr (std::is_same_v<T, bool>) {
        return of_type("boolean");
    } else if constexpr (std::is_integral_v<T>) {
        return number_from<T>(lowest);
    } else {
        return special_schema(type);
    }
}

template <class T>
Json value_schema(Words words, std::uint64_t lowest, const std::optional<T>*)
{
    return value_schema(words, lowest, static_cast<const T*>(nullptr));
}

template <class Record, class T>
Json field_schema(const RecordField<Record, T>& field)
{
    return value_schema(field.words, field.lowest, static_cast<const T*>(nullptr));
}

template <class Record>
Json record_schema(std::vector<std::string> required)
{
    Json properties = Json::object();
    for_each_field<Record>(
        [&](const auto& field) { properties[std::string(field.key)] = field_schema(field); });
    return object_with(std::move(properties), std::move(required));
}

Json clip_schema()
{
    Json clip = record_schema<Clip>({"name", "length"});
    clip["properties"]["audio_tracks"] = number_from<std::uint8_t>();
    return clip;
}

// Exactly one of these members names what is used.
Json use_of(std::initializer_list<const char*> names, Json properties)
{
    Json choices = Json::array();
    for (const char* name : names) {
        properties[name] = of_type("string");
        choices.push_back({{"required", {name}}});
    }
    properties["position"] = number_from<std::uint32_t>();
    properties["out"] = number_from<std::uint32_t>();
    properties["angle"] = number_from<std::uint8_t>();
    Json object = object_with(std::move(properties));
    object["oneOf"] = std::move(choices);
    return object;
}

Json playlist_schema()
{
    const Json element =
        use_of({"clip", "vclip"}, {{"at_end", one_of_words(list_element_at_end_words)}});
    return object_with({{"name", of_type("string")}, {"elements", array_of(element)}},
                       {"name", "elements"});
}

Json channel_schema()
{
    Json channel =
        use_of({"clip", "vclip", "playlist"}, {{"channel", one_of_words(channel_words)},
                                               {"mode", one_of_words(list_play_mode_words)},
                                               {"loop", one_of_words(loop_words)},
                                               {"play", of_type("boolean")},
                                               {"speed", of_type("number")}});
    channel["required"] = {"channel"};
    return channel;
}

} // namespace

std::string scenario_schema()
{
    const Json disk = object_with(
        {{"total", number_from<std::uint64_t>()}, {"field_size", number_from<std::uint32_t>(1)}});
    Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                   {"title", "A scenario of veltosim"}};
    schema.update(object_with({{"disk", disk},
                               {"directories", array_of(of_type("string"))},
                               {"clips", array_of(clip_schema())},
                               {"vclips", array_of(record_schema<VirtualClip>({"name", "length"}))},
                               {"playlists", array_of(playlist_schema())},
                               {"metadata", object_of(object_of(of_type("string")))},
                               {"channels", array_of(channel_schema())}}));
    return schema.dump(2) + "\n";
}

} // namespace veltosim
