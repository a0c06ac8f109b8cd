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

#include "sim/clip_message.h"
#include "sim/json_entry.h"
#include "sim/record_json.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// The names of one kind, of which each is used once.
class Names
{
public:
    explicit Names(std::string_view named_kind) : kind(named_kind) {}

    void add(const LocatedJson& json, const std::string& name)
    {
        if (!used.insert(name).second) {
            throw LocatedError(json.line,
                               fmt::format("the {} {} is given twice", kind, quote(name)));
        }
    }

private:
    std::string_view kind;
    std::set<std::string> used;
};

void check_clip(const Clip& clip)
{
    check_store_name("clip", clip.name);
    Material whole;
    whole.clip = std::make_shared<const Clip>(clip);
    whole.loop_in = clip.loop_in;
    whole.loop_out = clip.loop_out;
    check_material(whole);
    check_message_size(clip, standards().front());
}

// The tracks with their segments in order, none over another.
VirtualTracks checked(const VirtualClip& owner, const VirtualTracks& tracks, const ClipStore& store)
{
    VirtualClip scratch = owner;
    scratch.draft.emplace();
    for (const VirtualTrack& track : tracks) {
        const bool known = std::any_of(scratch.draft->begin(), scratch.draft->end(),
                                       [&](const auto& other) { return other.type == track.type; });
        if (known) {
            throw Refusal(fmt::format("virtual clip {} has two {} tracks", quote(owner.name),
                                      word_of(track_type_words, track.type)));
        }
        scratch.draft->push_back({track.type, track.enabled, track.count, {}});
        for (const Segment& segment : track.segments) {
            add_segment(scratch, {track.type}, segment, *store.clip(segment.clip));
        }
    }
    return *scratch.draft;
}

void check_virtual_clip(VirtualClip& virtual_clip, const ClipStore& store)
{
    check_store_name("virtual clip", virtual_clip.name);
    virtual_clip.tracks = checked(virtual_clip, virtual_clip.tracks, store);
    if (virtual_clip.draft) {
        virtual_clip.draft = checked(virtual_clip, *virtual_clip.draft, store);
    }
}

void check_playlist(const LocatedJson& json, const Playlist& list, const ClipStore& store)
{
    auto element = json.find("elements")->items.begin();
    for (const PlaylistElement& use : list.elements) {
        at_line(element->line, [&] { make_material(store, use); });
        ++element;
    }
}

// Reads the elements of one array, each with a name of its own, checks them, and adds them.
template <class Read, class Check, class Add>
void read_each(const std::vector<LocatedJson>& array, std::string_view kind, const Read& read,
               const Check& check, const Add& add)
{
    Names names(kind);
    for (const LocatedJson& json : array) {
        auto record = read(json);
        names.add(json, record.name);
        at_line(json.line, [&] { check(json, record); });
        add(std::move(record));
    }
}

Disk read_disk(const LocatedJson& json)
{
    const Entry entry(json, "the disk", {"total", "field_size"});
    Disk disk;
    disk.total = entry.number<std::uint64_t>("total").value_or(disk.total);
    disk.field_size = entry.number<std::uint32_t>("field_size", 1).value_or(disk.field_size);
    return disk;
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

const LocatedJson& required_object(const LocatedJson& json, std::string_view allowed)
{
    if (!json.value.is_object()) {
        refuse(json, allowed);
    }
    return json;
}

void read_databases(const LocatedJson& json, ClipStore& store)
{
    for (const LocatedJson& database : required_object(json, "an object of databases").items) {
        for (const LocatedJson& entry : required_object(database, "an object of texts").items) {
            const std::string value = to_text(entry);
            at_line(entry.line, [&] { check_entry_size(database.key, entry.key, value); });
            store.add_metadata({database.key, entry.key, value});
        }
    }
}

Scenario to_scenario(const LocatedJson& json)
{
    const Entry root(
        json, "the scenario",
        {"disk", "directories", "clips", "vclips", "playlists", "metadata", "channels"});
    Scenario scenario;
    ClipStore& store = scenario.clips;
    if (const LocatedJson* disk = root.find("disk")) {
        store.set_disk(read_disk(*disk));
    }
    for (const LocatedJson& directory : root.array("directories")) {
        const std::string name = to_name(directory);
        at_line(directory.line, [&] { check_store_name("directory", name); });
        store.add_directory(name);
    }
    read_each(
        root.array("clips"), "clip", read_clip,
        [&](const LocatedJson&, const Clip& clip) { check_clip(clip); },
        [&](Clip clip) { store.add_clip(std::move(clip)); });
    read_each(
        root.array("vclips"), "virtual clip", read_virtual_clip,
        [&](const LocatedJson&, VirtualClip& clip) { check_virtual_clip(clip, store); },
        [&](VirtualClip clip) { store.add_virtual_clip(std::move(clip)); });
    read_each(
        root.array("playlists"), "playlist", read_playlist,
        [&](const LocatedJson& json_list, const Playlist& list) {
            check_playlist(json_list, list, store);
        },
        [&](Playlist list) { store.add_playlist(std::move(list)); });
    if (const LocatedJson* databases = root.find("metadata")) {
        read_databases(*databases, store);
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

void load_possible_channels(Station& station, const std::vector<ChannelLoad>& loads, TimePoint now)
{
    for (const ChannelLoad& wanted : loads) {
        try {
            load_channels(station, {wanted}, now);
        } catch (const Refusal&) { // what it names is gone, or has become another
        }
    }
}

} // namespace veltosim
