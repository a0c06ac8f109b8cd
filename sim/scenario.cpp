#include "sim/scenario.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "sim/located_json.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

constexpr std::uint32_t most_fields = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint8_t most_angles = std::numeric_limits<std::uint8_t>::max();

// A client that registers a list is told all its elements at once.
constexpr std::size_t most_elements = 1000;

using Keys = std::initializer_list<std::string_view>;

[[noreturn]] void refuse(const LocatedJson& value, std::string_view allowed)
{
    const std::string what = value.key.empty() ? "this" : quote(value.key);
    throw LocatedError(value.line, fmt::format("{} holds {}; allowed is {}", what,
                                               quote(value.value.dump()), allowed));
}

// Runs `action`, with whose refusal `line` has something to do.
template <class Action>
void at_line(std::size_t line, const Action& action)
{
    try {
        action();
    } catch (const Refusal& refusal) {
        throw LocatedError(line, refusal.what());
    }
}

// One object of the scenario. Whatever is wrong with it is thrown as a LocatedError.
class Entry
{
public:
    Entry(const LocatedJson& object, std::string_view entry_kind, Keys keys)
        : json(object), kind(entry_kind)
    {
        if (!json.value.is_object()) {
            refuse(json, fmt::format("an object, {}", kind));
        }
        for (const LocatedJson& member : json.items) {
            if (std::find(keys.begin(), keys.end(), member.key) == keys.end()) {
                throw LocatedError(member.line,
                                   fmt::format("there is no key {} in {}; its keys are {}",
                                               quote(member.key), kind, fmt::join(keys, ", ")));
            }
        }
    }

    std::size_t line() const { return json.line; }
    std::size_t line(std::string_view key) const { return required(key).line; }
    bool has(std::string_view key) const { return json.find(key) != nullptr; }

    std::string name(std::string_view key) const
    {
        const LocatedJson& member = required(key);
        if (!member.value.is_string() || !is_name(member.value.get<std::string>())) {
            refuse(member, fmt::format("a name; {}", name_rule));
        }
        return member.value.get<std::string>();
    }

    template <class T>
    std::optional<T> number(std::string_view key, std::uint32_t lowest, std::uint32_t highest) const
    {
        const LocatedJson* member = json.find(key);
        if (!member) {
            return std::nullopt;
        }
        const bool whole = member->value.is_number_unsigned();
        const auto number = whole ? member->value.get<std::uint64_t>() : 0;
        if (!whole || number < lowest || number > highest) {
            refuse(*member, fmt::format("a whole number from {} to {}", lowest, highest));
        }
        return static_cast<T>(number);
    }
    std::optional<std::uint32_t> field(std::string_view key) const
    {
        return number<std::uint32_t>(key, 0, most_fields);
    }

    template <class E>
    std::optional<E> word(std::string_view key, Words words) const
    {
        const LocatedJson* member = json.find(key);
        if (!member) {
            return std::nullopt;
        }
        const auto text = member->value.is_string() ? member->value.get<std::string>() : "";
        const auto found = std::find(words.begin(), words.end(), text);
        if (found == words.end()) {
            refuse(*member, any_of(words));
        }
        return static_cast<E>(std::distance(words.begin(), found));
    }

    bool flag(std::string_view key) const
    {
        const LocatedJson* member = json.find(key);
        if (member && !member->value.is_boolean()) {
            refuse(*member, "true or false");
        }
        return member && member->value.get<bool>();
    }

    std::optional<Speed> speed(std::string_view key) const
    {
        const LocatedJson* member = json.find(key);
        if (!member) {
            return std::nullopt;
        }
        constexpr double most = double{fastest} / normal_speed;
        const double number = member->value.is_number() ? member->value.get<double>() : 2 * most;
        if (number < -most || number > most) {
            refuse(*member, fmt::format("a speed from {} to {}, 1 being normal", -most, most));
        }
        return static_cast<Speed>(number * normal_speed);
    }

    std::string text(std::string_view key) const { return has(key) ? name(key) : ""; }

    // The elements of an array, none if it is not there.
    const std::vector<LocatedJson>& array(std::string_view key) const
    {
        static const std::vector<LocatedJson> none;
        const LocatedJson* member = json.find(key);
        if (member && !member->value.is_array()) {
            refuse(*member, "an array");
        }
        return member ? member->items : none;
    }

    // The one of several keys that is there.
    std::string_view one_of(Keys keys) const
    {
        const auto present = [&](std::string_view key) { return has(key); };
        if (std::count_if(keys.begin(), keys.end(), present) != 1) {
            throw LocatedError(line(), fmt::format("{} has one of the keys {}, and only one", kind,
                                                   fmt::join(keys, ", ")));
        }
        return *std::find_if(keys.begin(), keys.end(), present);
    }

private:
    const LocatedJson& required(std::string_view key) const
    {
        const LocatedJson* member = json.find(key);
        if (!member) {
            throw LocatedError(json.line, fmt::format("{} has no {}", kind, quote(key)));
        }
        return *member;
    }

    const LocatedJson& json;
    std::string_view kind;
};

// The names of one kind, of which each is used once.
class Names
{
public:
    explicit Names(std::string_view named_kind) : kind(named_kind) {}

    std::string add(const Entry& entry, std::string_view key)
    {
        const std::string name = entry.name(key);
        if (!used.insert(name).second) {
            throw LocatedError(entry.line(key),
                               fmt::format("the {} {} is given twice", kind, quote(name)));
        }
        return name;
    }

private:
    std::string_view kind;
    std::set<std::string> used;
};

Clip read_clip(const Entry& entry, Names& names)
{
    Clip clip;
    clip.name = names.add(entry, "name");
    clip.title = entry.text("title");
    entry.line("length"); // is required
    clip.length = *entry.number<std::uint32_t>("length", 1, most_fields);
    clip.angles = entry.number<std::uint8_t>("angles", 1, most_angles).value_or(clip.angles);
    clip.audio_tracks =
        entry.number<std::uint8_t>("audio_tracks", 0, most_angles).value_or(clip.audio_tracks);
    clip.interp = entry.word<Interp>("interp", interp_words).value_or(clip.interp);
    clip.loop = entry.word<Loop>("loop", loop_words).value_or(clip.loop);
    clip.loop_in = entry.field("loop_in");
    clip.loop_out = entry.field("loop_out");
    at_line(entry.line(), [&] {
        Material whole;
        whole.clip = std::make_shared<const Clip>(clip);
        whole.loop_in = clip.loop_in;
        whole.loop_out = clip.loop_out;
        check_material(whole);
    });
    return clip;
}

template <class Add>
void read_clips(const std::vector<LocatedJson>& array, std::string_view kind, const Add& add)
{
    Names names(kind);
    const std::string a_kind = fmt::format("a {}", kind);
    for (const LocatedJson& json : array) {
        const Entry entry(json, a_kind,
                          {"name", "title", "length", "angles", "audio_tracks", "interp", "loop",
                           "loop_in", "loop_out"});
        add(read_clip(entry, names));
    }
}

// What lists and channels say about a clip in the same words.
PlaylistElement read_use_of_clip(const Entry& entry, std::string_view key)
{
    PlaylistElement use;
    use.clip = entry.name(key);
    use.scope = key == "vclip" ? ClipScope::vclip : ClipScope::clip;
    use.start = entry.field("position").value_or(0);
    use.out_point = entry.field("out");
    use.angle = entry.number<std::uint8_t>("angle", 0, most_angles).value_or(use.angle);
    return use;
}

Playlist read_playlist(const Entry& entry, Names& names, const ClipStore& store)
{
    Playlist list;
    list.name = names.add(entry, "name");
    const std::vector<LocatedJson>& array = entry.array("elements");
    if (array.empty() || array.size() > most_elements) {
        throw LocatedError(entry.line(),
                           fmt::format("the playlist {} has {} elements; 1 to {} are "
                                       "allowed",
                                       quote(list.name), array.size(), most_elements));
    }
    for (const LocatedJson& json : array) {
        const Entry item(json, "an element of a playlist",
                         {"clip", "vclip", "position", "out", "angle", "at_end"});
        PlaylistElement element = read_use_of_clip(item, item.one_of({"clip", "vclip"}));
        element.at_end = item.word<ListElementAtEnd>("at_end", list_element_at_end_words)
                             .value_or(element.at_end);
        at_line(item.line(), [&] { make_material(store, element); });
        list.elements.push_back(std::move(element));
    }
    return list;
}

void load(Channel& channel, const ClipStore& store, const ChannelLoad& wanted, TimePoint now)
{
    if (wanted.playlist) {
        channel.load_list(now, make_list(store, *wanted.playlist, wanted.mode));
    } else {
        Material material = make_material(store, wanted.clip);
        material.loop_in = material.clip->loop_in;
        material.loop_out = material.clip->loop_out;
        channel.cue(now, std::move(material));
    }
    if (wanted.loop) {
        channel.set_loop(now, *wanted.loop);
    }
    if (wanted.play) {
        channel.play(now, wanted.speed);
    }
}

ChannelLoad read_channel(const LocatedJson& json)
{
    const Entry entry(json, "a channel",
                      {"channel", "clip", "vclip", "playlist", "position", "out", "angle", "mode",
                       "loop", "play", "speed"});
    ChannelLoad wanted;
    entry.line("channel"); // is required
    wanted.channel = *entry.word<std::size_t>("channel", channel_words);
    const std::string_view key = entry.one_of({"clip", "vclip", "playlist"});
    if (key == "playlist") {
        for (const std::string_view other : {"position", "out", "angle"}) {
            if (entry.has(other)) {
                throw LocatedError(entry.line(other),
                                   fmt::format("{} is the playlist's matter", quote(other)));
            }
        }
        wanted.playlist = entry.name(key);
    } else {
        wanted.clip = read_use_of_clip(entry, key);
    }
    wanted.mode = entry.word<ListPlayMode>("mode", list_play_mode_words).value_or(wanted.mode);
    wanted.loop = entry.word<Loop>("loop", loop_words);
    wanted.play = entry.flag("play");
    wanted.speed = entry.speed("speed").value_or(wanted.speed);
    return wanted;
}

std::vector<ChannelLoad> read_channels(const std::vector<LocatedJson>& array,
                                       const ClipStore& store)
{
    std::vector<ChannelLoad> loads;
    std::set<std::size_t> loaded;
    for (const LocatedJson& json : array) {
        loads.push_back(read_channel(json));
        const std::size_t channel = loads.back().channel;
        if (!loaded.insert(channel).second) {
            throw LocatedError(json.line,
                               fmt::format("channel {} is loaded twice", channel_words[channel]));
        }
        at_line(json.line, [&] {
            Channel trial(channel_words[channel].front(), FieldRate{});
            load(trial, store, loads.back(), TimePoint{});
        });
    }
    return loads;
}

Scenario to_scenario(const LocatedJson& json)
{
    const Entry root(json, "the scenario", {"clips", "vclips", "playlists", "channels"});
    Scenario scenario;
    ClipStore& store = scenario.clips;
    read_clips(root.array("clips"), "clip", [&](Clip clip) { store.add_clip(std::move(clip)); });
    read_clips(root.array("vclips"), "virtual clip",
               [&](Clip clip) { store.add_virtual_clip(std::move(clip)); });
    Names list_names("playlist");
    for (const LocatedJson& list : root.array("playlists")) {
        const Entry entry(list, "a playlist", {"name", "elements"});
        store.add_playlist(read_playlist(entry, list_names, store));
    }
    scenario.channels = read_channels(root.array("channels"), store);
    return scenario;
}

} // namespace

Scenario parse_scenario(std::string_view text, const std::string& file)
{
    try {
        return to_scenario(parse_json(text));
    } catch (const LocatedError& error) {
        throw ScenarioError(fmt::format("{}:{}: {}", file, error.line, error.what()));
    }
}

Scenario read_scenario(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    for (std::array<char, 4096> block;
         stream.read(block.data(), block.size()), stream.gcount() > 0;) {
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        throw ScenarioError(
            fmt::format("{}: cannot be read: {}", file, std::generic_category().message(errno)));
    }
    return parse_scenario(text, file);
}

Scenario default_scenario()
{
    return parse_scenario(default_scenario_text(), "built-in scenario");
}

void load_channels(Station& station, const std::vector<ChannelLoad>& loads, TimePoint now)
{
    for (const ChannelLoad& wanted : loads) {
        load(station.channels.at(wanted.channel), station.clips, wanted, now);
    }
}

} // namespace veltosim
