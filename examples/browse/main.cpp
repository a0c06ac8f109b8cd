// Looks through what is stored on a video server: lists directories, clips and playlists, shows one
// clip with its metadata, edits its title, and follows what is created, changed and deleted.

#include "common/application.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

namespace
{

using namespace std::chrono_literals;

constexpr std::array repeats{"off", "loop", "loop to", "ping-pong", "ping-pong to"};
constexpr std::array playbacks{"field", "f12"};
constexpr std::array sources{"zero based", "striped", "recorded", "recorded, striped"};
constexpr std::array standards{"1080 60i", "1080 59.94i", "1080 50i", "1080 48i", "1080 47.95i",
                               "720 60p",  "720 59.94p",  "720 50p",  "625 50i",  "525 59.94i"};

template <std::size_t Count>
std::string word(const std::array<const char*, Count>& words, uint32_t number)
{
    return number < Count ? words[number] : std::to_string(number);
}

// A text that `get` writes to a buffer.
template <typename Get>
std::string text_of(const Get& get)
{
    std::vector<VeltoChar> buffer(4096);
    check(get(VeltoTextBuffer{buffer.data(), static_cast<uint32_t>(buffer.size())}), "reading");
    return printable(buffer.data());
}

// The names of a list that `open` makes, each taken once.
template <typename Open>
void for_each_name(const Open& open, const std::function<void(const std::string& name)>& use)
{
    VeltoListHandle list = 0;
    check(open(&list), "listing");
    for (;;) {
        const std::string name =
            text_of([list](VeltoTextBuffer buffer) { return velto_get_clip_name(list, buffer); });
        if (name.empty()) {
            break;
        }
        use(name);
    }
    velto_close_clip_list(list);
}

void print_name(const std::string& name)
{
    fmt::print("{}\n", name);
}

// The record of a clip, for as long as the object lives.
class Record
{
public:
    Record(VeltoHandle server, const std::string& clip)
    {
        check(velto_open_clip_metadata(server, units(clip).c_str(), &handle), clip);
    }
    ~Record() { velto_close_clip_metadata(handle); }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    template <auto Reader>
    std::string text() const
    {
        return text_of([this](VeltoTextBuffer buffer) { return Reader(handle, buffer); });
    }

    template <auto Reader>
    uint32_t number() const
    {
        uint32_t value = 0;
        check(Reader(handle, &value), "reading");
        return value;
    }

    template <auto Reader>
    std::string stamp() const
    {
        uint64_t value = 0;
        check(Reader(handle, &value), "reading");
        return value == 0 ? "-" : std::to_string(value);
    }

    std::string tracks() const
    {
        const uint32_t mask = number<velto_get_tracks>();
        std::string names;
        names += (mask & VELTO_TRACK_VIDEO) != 0 ? "video " : "";
        names += (mask & VELTO_TRACK_KEY) != 0 ? "key " : "";
        names += (mask & VELTO_TRACK_AUDIO) != 0 ? "audio " : "";
        return names;
    }

    std::string timecode() const
    {
        uint32_t field = 0, non_drop = 0;
        check(velto_clip_timecode_stripe(handle, &field, &non_drop), "reading");
        return fmt::format("field {}, {}drop frame", static_cast<int32_t>(field),
                           non_drop != VELTO_DROP_FRAME ? "non-" : "");
    }

    void print_metadata() const
    {
        const auto open = [this](VeltoListHandle* list) {
            return velto_clip_open_metakeys(handle, list);
        };
        for_each_name(open, [this](const std::string& key) {
            const std::string value = text_of([&](VeltoTextBuffer buffer) {
                return velto_clip_get_meta(handle, units(key).c_str(), buffer);
            });
            fmt::print("  {} = {}\n", key, value);
        });
    }

    VeltoRecordHandle handle = 0;
};

void print_field(const char* name, const std::string& value)
{
    fmt::print("{:<18}{}\n", name, value);
}

void print_position(const char* name, uint32_t fields)
{
    print_field(name, fmt::format("{} fields", fields));
}

void show(VeltoHandle server, const std::string& clip)
{
    const Record record(server, clip);
    print_field("clip", clip);
    print_field("title", record.text<velto_clip_title>());
    print_field("creator", record.text<velto_clip_creator>());
    print_field("project", record.text<velto_clip_project>());
    print_field("uuid", record.text<velto_clip_uuid>());
    print_field("parent", record.text<velto_clip_parent_uuid>());
    print_field("standard", word(standards, record.number<velto_clip_video_standard>()));
    print_field("tracks", record.tracks());
    print_position("length", record.number<velto_clip_length>());
    print_position("loop in", record.number<velto_clip_loop_in_point>());
    print_position("loop out", record.number<velto_clip_loop_out_point>());
    print_position("trim start", record.number<velto_clip_trim_start>());
    print_position("trim end", record.number<velto_clip_trim_end>());
    print_field("playback", word(playbacks, record.number<velto_clip_playback>()));
    print_field("repeat", word(repeats, record.number<velto_clip_repeat>()));
    print_field("timecode source", word(sources, record.number<velto_clip_timecode_source>()));
    print_field("timecode", record.timecode());
    print_field("read-only", record.number<velto_clip_is_readonly>() == VELTO_YES ? "yes" : "no");
    print_field("content edited", record.stamp<velto_clip_content_last_edited>());
    print_field("metadata edited", record.stamp<velto_clip_metadata_last_edited>());
    print_field("loaded", record.stamp<velto_clip_last_loaded>());
    print_field("unloaded", record.stamp<velto_clip_last_unloaded>());
    print_field("played", record.stamp<velto_clip_last_played>());
    fmt::print("metadata\n");
    record.print_metadata();
}

void set_title(VeltoHandle server, const std::string& clip, const std::string& title)
{
    const Record record(server, clip);
    const std::string before = record.text<velto_clip_title>();
    check(velto_set_clip_title(record.handle, units(title).c_str()), clip);
    fmt::print("{}: \"{}\" was \"{}\"\n", clip, record.text<velto_clip_title>(), before);
}

// What changes, as names taken from the sets that the library collects them in.
class Follower
{
public:
    explicit Follower(VeltoHandle connection) : server(connection)
    {
        check(velto_track_clip_changes(server), "tracking clips");
        check(velto_track_directory_changes(server), "tracking directories");
    }

    void run(std::chrono::seconds duration) const
    {
        const auto end = std::chrono::steady_clock::now() + duration;
        while (duration == 0s || std::chrono::steady_clock::now() < end) {
            take_all();
            std::fflush(stdout);
            std::this_thread::sleep_for(50ms);
        }
    }

private:
    void take_all() const
    {
        take<velto_track_change_added_directory>("new directory");
        take<velto_track_change_added_clip>("new clip");
        take<velto_track_change_changed_clip>("changed clip");
        take<velto_track_change_deleted_clip>("deleted clip");
        take<velto_track_change_deleted_directory>("deleted directory");
    }

    template <auto Take>
    void take(const char* what) const
    {
        for (;;) {
            const std::string name =
                text_of([this](VeltoTextBuffer buffer) { return Take(server, buffer); });
            if (name.empty()) {
                return;
            }
            fmt::print("{:<18}{}\n", what, name);
        }
    }

    VeltoHandle server;
};

} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Looks through the clips of a video server.");
    std::string address = "127.0.0.1";
    std::string clip;
    std::string title;
    int seconds = 0;
    app.add_option("--address", address, "The server's IPv4 address")
        ->check(CLI::ValidIPV4)
        ->capture_default_str();
    app.require_subcommand(1);
    const auto* directories = app.add_subcommand("directories", "List the directories");
    const auto* clips = app.add_subcommand("clips", "List the clips");
    const auto* playlists = app.add_subcommand("playlists", "List the playlists");
    auto* shown = app.add_subcommand("show", "Show one clip and its metadata");
    shown->add_option("clip", clip, "Name of the clip")->required();
    auto* edited = app.add_subcommand("title", "Change the title of a clip");
    edited->add_option("clip", clip, "Name of the clip")->required();
    edited->add_option("title", title, "The new title")->required();
    auto* followed = app.add_subcommand("follow", "Print what is created, changed and deleted");
    followed->add_option("--seconds", seconds, "End after so many seconds; 0 goes on")
        ->check(CLI::Range(0, 1000000));
    CLI11_PARSE(app, argc, argv);

    try {
        const Server server(address);
        server.wait_for_link();
        if (*directories) {
            for_each_name([&](auto* list) { return velto_open_directory_list(server, list); },
                          print_name);
        } else if (*clips) {
            for_each_name([&](auto* list) { return velto_open_clip_list(server, list); },
                          print_name);
        } else if (*playlists) {
            for_each_name([&](auto* list) { return velto_open_playlist_list(server, list); },
                          print_name);
        } else if (*shown) {
            show(server, clip);
        } else if (*edited) {
            set_title(server, clip, title);
        } else {
            Follower(server).run(std::chrono::seconds(seconds));
        }
    } catch (const std::exception& failure) {
        fmt::print(stderr, "browse: {}\n", failure.what());
        return 1;
    }
}
