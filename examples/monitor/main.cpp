// Follows the channels of a video server and shows what each of them is doing: one thread waits for
// notices, and reads what they speak of.

#include "common/application.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

namespace
{

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::array statuses{"-", "idle", "cueing", "play", "record"};
constexpr std::array repeats{"off", "loop", "loopto", "pingpong", "pingpongto"};

template <std::size_t Count>
const char* word(const std::array<const char*, Count>& words, uint32_t number)
{
    return number < Count ? words[number] : "?";
}

// Whole pictures a second, for counting; a rate of 59.94 counts 60.
uint32_t pictures_per_second(VeltoHandle server)
{
    static constexpr std::array<uint32_t, 5> field_rates{60, 60, 50, 48, 48};
    uint32_t frequency = 0;
    uint32_t resolution = VELTO_VIDEO_RESOLUTION_1080I;
    velto_video_frequency(server, &frequency);
    velto_video_resolution(server, &resolution);
    const uint32_t fields = frequency < field_rates.size() ? field_rates[frequency] : 50;
    return resolution == VELTO_VIDEO_RESOLUTION_720P ? fields : fields / 2;
}

// What the application knows of one channel: the latest values of its items.
struct Channel {
    uint32_t status = 0;
    std::string clip;
    uint32_t position = 0;
    uint32_t length = 0;
    double speed = 0;
    uint32_t repeat = 0;
    uint32_t angle = 0;
    uint32_t angles = 0;
};

class Monitor
{
public:
    Monitor(VeltoHandle connection, bool table) : server(connection), as_table(table) {}

    void run(std::chrono::seconds duration)
    {
        rate = pictures_per_second(server);
        for (uint32_t number = 0; number < channels.size(); ++number) {
            read_all(number);
        }
        const auto end = Clock::now() + duration;
        while (duration == 0s || Clock::now() < end) {
            follow();
            show();
        }
    }

private:
    // The first read of an item also asks the server to report it from then on.
    void read_all(uint32_t number)
    {
        for (const uint32_t kind : {VELTO_NOTICE_STATUS, VELTO_NOTICE_CLIP, VELTO_NOTICE_SPEED,
                                    VELTO_NOTICE_POSITION, VELTO_NOTICE_INFORMATION_2}) {
            read_item(kind, number);
        }
    }

    void read_item(uint32_t kind, uint32_t number)
    {
        Channel& channel = channels[number];
        switch (kind) {
        case VELTO_NOTICE_STATUS:
            velto_channel_status(server, number, &channel.status);
            break;
        case VELTO_NOTICE_CLIP: {
            VeltoChar clip[128] = {};
            velto_channel_clip(server, number, {clip, 128});
            channel.clip = printable(clip);
            break;
        }
        case VELTO_NOTICE_SPEED:
            velto_channel_speed(server, number, &channel.speed);
            break;
        case VELTO_NOTICE_POSITION:
            velto_channel_position(server, number, &channel.position);
            break;
        default:
            velto_channel_clip_length(server, number, &channel.length);
            velto_channel_repeat(server, number, &channel.repeat);
            velto_channel_angle(server, number, &channel.angle, &channel.angles);
        }
        if (kind != VELTO_NOTICE_POSITION) {
            changed[number] = true;
        }
    }

    // Takes in what comes until it is time to show it.
    void follow()
    {
        constexpr auto interval = 50ms;
        const auto end = Clock::now() + interval;
        for (auto now = Clock::now(); now < end; now = Clock::now()) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - now);
            uint32_t kind = 0;
            uint32_t number = 0;
            velto_get_notification(server, static_cast<uint32_t>(left.count()), &kind, &number);
            if (kind != VELTO_NOTICE_NONE) {
                ++notices;
                read_item(kind, number);
            }
        }
    }

    void show()
    {
        if (as_table) {
            show_table();
        } else {
            show_lines();
        }
        std::fflush(stdout);
    }

    void show_table()
    {
        if (lines_drawn != 0) {
            fmt::print("\033[{}A", lines_drawn); // back to its first line
        }
        fmt::print("{}\033[K\n", heading());
        for (uint32_t number = 0; number < channels.size(); ++number) {
            fmt::print("{}\033[K\n", line(number));
        }
        fmt::print("link {}, {} notices\033[K\n", velto_connected(server) ? "up" : "down", notices);
        lines_drawn = channels.size() + 2;
    }

    // A channel gets a line when anything but its position has changed, and each second while that
    // moves.
    void show_lines()
    {
        const bool second_over = Clock::now() - last_second >= 1s;
        if (second_over) {
            last_second = Clock::now();
        }
        for (uint32_t number = 0; number < channels.size(); ++number) {
            const bool moved = positions_shown[number] != channels[number].position;
            if (changed[number] || (second_over && moved)) {
                fmt::print("{}\n", line(number));
                changed[number] = false;
                positions_shown[number] = channels[number].position;
            }
        }
    }

    static std::string heading()
    {
        return fmt::format("{:<3}{:<8}{:<24}{:>12}{:>13}{:>8}  {:<11}{:>5}", "ch", "status", "clip",
                           "position", "length", "speed", "loop", "angle");
    }

    std::string line(uint32_t number) const
    {
        const Channel& channel = channels[number];
        return fmt::format("{:<3}{:<8}{:<24.23}{:>12}{:>13}{:>8.2f}  {:<11}{:>3}/{}",
                           static_cast<char>('A' + number), word(statuses, channel.status),
                           channel.clip.empty() ? "-" : channel.clip, timecode(channel.position),
                           timecode(channel.length), channel.speed, word(repeats, channel.repeat),
                           channel.angle, channel.angles);
    }

    // Fields as hours, minutes, seconds and pictures.
    std::string timecode(uint32_t fields) const
    {
        const uint32_t pictures = fields_per_picture() == 2 ? fields / 2 : fields;
        const uint32_t seconds = pictures / rate;
        return fmt::format("{:02}:{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60,
                           seconds % 60, pictures % rate);
    }

    uint32_t fields_per_picture() const { return rate <= 30 ? 2 : 1; }

    VeltoHandle server;
    bool as_table;
    uint32_t rate = 25;
    std::array<Channel, VELTO_TRACKED_CHANNELS> channels;
    std::array<bool, VELTO_TRACKED_CHANNELS> changed{};
    std::array<uint32_t, VELTO_TRACKED_CHANNELS> positions_shown{};
    std::size_t lines_drawn = 0;
    uint64_t notices = 0;
    Clock::time_point last_second = Clock::now();
};

} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Shows what the channels of a video server are doing, until it is interrupted.");
    std::string address = "127.0.0.1";
    int seconds = 0;
    bool plain = false;
    app.add_option("address", address, "The server's IPv4 address")
        ->check(CLI::ValidIPV4)
        ->capture_default_str();
    app.add_option("--seconds", seconds, "End after so many seconds; 0 goes on")
        ->check(CLI::Range(0, 1000000));
    app.add_flag("--plain", plain, "Lines instead of a table, as when the output is no terminal");
    CLI11_PARSE(app, argc, argv);

    try {
        const Server server(address);
        server.wait_for_link();
        Monitor(server, !plain && isatty(STDOUT_FILENO) != 0).run(std::chrono::seconds(seconds));
    } catch (const std::exception& failure) {
        fmt::print(stderr, "monitor: {}\n", failure.what());
        return 1;
    }
}
