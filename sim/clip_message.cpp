#include "sim/clip_message.h"

#include <algorithm>
#include <array>
#include <iterator>

#include <fmt/format.h>

#include "sim/channel.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// What frames the record in a message.
constexpr std::size_t room_for_frame = 2048;

constexpr std::array<std::string_view, 3> content_tags{"TrimStart", "TrimEnd", "TrackAttrVector"};

// Writing. ---------------------------------------------------------------------------------------

template <Recorded Record>
void add_fields(const pugi::xml_node& element, const Record& record);

void add_special(const pugi::xml_node& parent, std::string_view tag, const std::string& text)
{
    add_text(parent, tag, text);
}

void add_special(const pugi::xml_node& parent, std::string_view tag, const Tracks& tracks)
{
    const pugi::xml_node list = add_element(parent, tag);
    for (const Track& track : tracks) {
        add_fields(add_element(list, "TrackInfo"), track);
    }
}

void add_special(const pugi::xml_node& parent, std::string_view tag, const Metadata& metadata)
{
    const pugi::xml_node list = add_element(parent, tag);
    for (const auto& [key, value] : metadata) {
        const pugi::xml_node pair = add_element(list, "Metadata");
        add_text(pair, "Key", key);
        add_text(pair, "Value", value);
    }
}

template <class T>
void add_value(const pugi::xml_node& parent, std::string_view tag, const T& value, Words words)
{
    if constexpr (is_optional<T>) {
        if (value) {
            add_value(parent, tag, *value, words);
        }
    } else if constexpr (Recorded<T>) {
        add_fields(add_element(parent, tag), value);
    } else if constexpr (std::is_enum_v<T>) {
        add_text(parent, tag, words[static_cast<std::size_t>(value)]);
    } else if constexpr (std::is_same_v<T, bool>) {
        add_bool(parent, tag, value);
    } else if constexpr (std::is_integral_v<T>) {
        add_text(parent, tag, std::to_string(value));
    } else {
        add_special(parent, tag, value);
    }
}

template <Recorded Record>
void add_fields(const pugi::xml_node& element, const Record& record)
{
    for_each_field<Record>([&](const auto& field) {
        if (!field.tag.empty()) {
            add_value(element, field.tag, record.*field.member, field.words);
        }
    });
}

// Changing. --------------------------------------------------------------------------------------

template <Recorded Record>
void set_fields(const Fields& sent, Record& record);

void set_special(const FieldValue& sent, std::string& text)
{
    text = sent.text;
}

void set_special(const FieldValue&, Tracks&) {} // no change holds them

void set_special(const FieldValue& sent, Metadata& metadata)
{
    for (const FieldValue& pair : sent.items) {
        const std::string& key = pair.parts.text("Key");
        const auto found = std::find_if(metadata.begin(), metadata.end(),
                                        [&](const auto& known) { return known.first == key; });
        if (found == metadata.end()) {
            metadata.emplace_back(key, pair.parts.text("Value"));
        } else {
            found->second = pair.parts.text("Value");
        }
    }
}

template <class T>
void set_value(const FieldValue& sent, T& value)
{
    if constexpr (is_optional<T>) {
        set_value(sent, value ? *value : value.emplace());
    } else if constexpr (Recorded<T>) {
        set_fields(sent.parts, value);
    } else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>) {
        value = static_cast<T>(sent.number);
    } else {
        set_special(sent, value);
    }
}

template <Recorded Record>
void set_fields(const Fields& sent, Record& record)
{
    for_each_field<Record>([&](const auto& field) {
        if (const FieldValue* value = sent.find(field.tag)) {
            set_value(*value, record.*field.member);
        }
    });
}

void delete_keys(const FieldValue& keys, Clip& clip)
{
    for (const FieldValue& key : keys.items) {
        if (clip.metadata) {
            std::erase_if(*clip.metadata, [&](const auto& pair) { return pair.first == key.text; });
        }
    }
}

// Its elements are for the tracks in their order.
void set_track_attributes(const FieldValue& attributes, Clip& clip)
{
    if (attributes.items.size() > clip.tracks.size()) {
        throw Refusal(fmt::format("TrackAttrVector holds {} tracks; clip {} has {}",
                                  attributes.items.size(), quote(clip.name), clip.tracks.size()));
    }
    auto track = clip.tracks.begin();
    for (const FieldValue& attribute : attributes.items) {
        const auto type = attribute.parts.optional<TrackType>("TrackType");
        if (type && *type != track->type) {
            throw Refusal(fmt::format("track {} of clip {} is {}, and not {}",
                                      std::distance(clip.tracks.begin(), track), quote(clip.name),
                                      word_of(track_type_words, track->type),
                                      word_of(track_type_words, *type)));
        }
        if (const auto trim = attribute.parts.optional<std::uint32_t>("TrimStart")) {
            track->trim_start = trim;
        }
        ++track;
    }
}

// The clip is as long as its trim points leave of it.
void trim(Clip& clip, std::uint32_t whole)
{
    const std::uint64_t cut =
        std::uint64_t{clip.trim_start.value_or(0)} + clip.trim_end.value_or(0);
    if (cut >= whole) {
        throw Refusal(fmt::format("trims of {} and {} leave nothing of the {} fields of clip {}",
                                  clip.trim_start.value_or(0), clip.trim_end.value_or(0), whole,
                                  quote(clip.name)));
    }
    clip.untrimmed_length = whole;
    clip.length = static_cast<std::uint32_t>(whole - cut);
}

void check_loop(const Clip& clip)
{
    Material whole;
    whole.clip = std::make_shared<const Clip>(clip);
    whole.loop_in = clip.loop_in;
    whole.loop_out = clip.loop_out;
    check_material(whole);
}

struct SizeCounter : pugi::xml_writer {
    std::size_t size = 0;
    void write(const void*, std::size_t count) override { size += count; }
};

} // namespace

void add_clip_info(const pugi::xml_node& parent, const Clip& clip, const Standard& standard)
{
    Clip whole = clip;
    if (!whole.standard) {
        whole.standard = value_of(standard);
    }
    whole.loop_in = clip.loop_in.value_or(0);
    whole.loop_out = clip.loop_out.value_or(clip.length);
    add_fields(add_element(parent, "ClipInfo"), whole);
}

void check_message_size(const Clip& clip, const Standard& standard)
{
    pugi::xml_document document;
    add_clip_info(document, clip, standard);
    SizeCounter counter;
    document.first_child().print(counter, "", pugi::format_raw, pugi::encoding_utf8);
    if (counter.size + room_for_frame > largest_message) {
        throw Refusal(fmt::format("the record of clip {} would take {} bytes; a message holds {}",
                                  quote(clip.name), counter.size,
                                  largest_message - room_for_frame));
    }
}

Clip changed_clip(const Clip& clip, const Fields& change, const Standard& standard)
{
    Clip changed = clip;
    const std::uint32_t whole = clip.untrimmed_length.value_or(clip.length);
    set_fields(change, changed);
    if (const FieldValue* keys = change.find("KeyList")) {
        delete_keys(*keys, changed);
    }
    if (const FieldValue* attributes = change.find("TrackAttrVector")) {
        set_track_attributes(*attributes, changed);
    }
    if (change.has("TrimStart") || change.has("TrimEnd")) {
        trim(changed, whole);
    }
    check_loop(changed);
    check_message_size(changed, standard);
    return changed;
}

bool changes_content(const Fields& change)
{
    return std::any_of(content_tags.begin(), content_tags.end(),
                       [&](std::string_view tag) { return change.has(tag); });
}

bool changes_meta(const Fields& change)
{
    const auto count = std::count_if(content_tags.begin(), content_tags.end(),
                                     [&](std::string_view tag) { return change.has(tag); });
    return change.size() > static_cast<std::size_t>(count);
}

} // namespace veltosim
