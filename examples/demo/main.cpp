// Drives the channels of a video server: connects, asks, loads, plays, jogs, seeks, watches, is
// refused, and lives through a loss of the link. Each step prints the call, its result, its time
// and its text, and what it has brought.
//
//   demo ADDRESS [STOP-COMMAND START-COMMAND]
//
// The two commands take the server away and bring it back; without them that part is left out.

#include "common/application.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr auto link_time_limit = std::chrono::seconds(10);

std::optional<uint32_t> parse_address(const char* text)
{
    unsigned a = 0, b = 0, c = 0, d = 0;
    char rest = 0;
    if (std::sscanf(text, "%3u.%3u.%3u.%3u%c", &a, &b, &c, &d, &rest) != 4 || a > 255 || b > 255 ||
        c > 255 || d > 255) {
        return std::nullopt;
    }
    return VELTO_IPV4(a, b, c, d);
}

class Demo
{
public:
    explicit Demo(uint32_t address) : handle(velto_connect(address)) {}
    ~Demo() { velto_close(handle); }
    Demo(const Demo&) = delete;
    Demo& operator=(const Demo&) = delete;

    bool run(const char* stop_command, const char* start_command);

private:
    // One call, one line.
    template <typename Call>
    void step(const char* what, VeltoResult expected, Call call)
    {
        value.clear();
        const auto start = Clock::now();
        const VeltoResult result = call();
        const auto time =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        const std::string text = last_error() + (value.empty() ? "" : ": " + value);
        std::printf("  %-44s %d %8lld us  %s%s\n", what, static_cast<int>(result),
                    static_cast<long long>(time.count()), text.c_str(),
                    result == expected ? "" : "  <- not expected");
        std::fflush(stdout);
        as_expected = as_expected && result == expected;
    }

    void heading(const char* text)
    {
        std::printf("\n%s\n", text);
        std::fflush(stdout);
    }

    bool wait_for_link(uint32_t state, const char* what);
    void ask_server();
    void drive_channels();
    void drive_gang();
    void read_channel_a();
    void watch_channels();
    void count_notices();
    void be_refused();
    void lose_and_regain_link(const char* stop_command, const char* start_command);
    void let_play() { std::this_thread::sleep_for(std::chrono::milliseconds(400)); }

    VeltoHandle handle;
    std::string value; // what the call of a step has brought
    bool as_expected = true;
};

bool Demo::wait_for_link(uint32_t state, const char* what)
{
    const auto start = Clock::now();
    while (velto_connected(handle) != state) {
        if (Clock::now() - start > link_time_limit) {
            std::printf("  the link is not %s after %lld seconds\n", what,
                        static_cast<long long>(link_time_limit.count()));
            as_expected = false;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    std::printf("  the link is %s (after %lld ms)\n", what, static_cast<long long>(time.count()));
    return true;
}

void Demo::ask_server()
{
    VeltoChar name[64] = {};
    uint32_t standard = 0, frequency = 0, resolution = 0;
    heading("The server");
    step("velto_server_name", VELTO_RESULT_OK, [&] {
        return velto_server_name(handle, {name, 64});
    });
    step("velto_video_standard", VELTO_RESULT_OK,
         [&] { return velto_video_standard(handle, &standard); });
    step("velto_video_frequency", VELTO_RESULT_OK,
         [&] { return velto_video_frequency(handle, &frequency); });
    step("velto_video_resolution", VELTO_RESULT_OK,
         [&] { return velto_video_resolution(handle, &resolution); });

    static const char* const standards[] = {"1080 60i",    "1080 59.94i", "1080 50i",   "1080 48i",
                                            "1080 47.95i", "720 60p",     "720 59.94p", "720 50p",
                                            "625 50i",     "525 59.94i"};
    std::printf("  it is called \"%s\" and runs %s\n", printable(name).c_str(),
                standard < std::size(standards) ? standards[standard] : "an unknown standard");
}

void Demo::drive_channels()
{
    heading("Two channels");
    step("velto_cmd_loadclip1(A, news_open)", VELTO_RESULT_OK,
         [&] { return velto_cmd_loadclip1(handle, VELTO_CHANNEL_A, VELTO_TEXT("news_open")); });
    step("velto_cmd_loadclip2(B, weather, loop)", VELTO_RESULT_OK, [&] {
        return velto_cmd_loadclip2(handle, VELTO_CHANNEL_B, VELTO_TEXT("weather"),
                                   VELTO_REPEAT_LOOP);
    });
    step("velto_cmd_play1(A)", VELTO_RESULT_OK,
         [&] { return velto_cmd_play1(handle, VELTO_CHANNEL_A); });
    step("velto_cmd_play2(B, 1.5)", VELTO_RESULT_OK,
         [&] { return velto_cmd_play2(handle, VELTO_CHANNEL_B, 1.5); });
    let_play();
    step("velto_cmd_stop1(A)", VELTO_RESULT_OK,
         [&] { return velto_cmd_stop1(handle, VELTO_CHANNEL_A); });
    step("velto_jog1(A, -5)", VELTO_RESULT_OK,
         [&] { return velto_jog1(handle, VELTO_CHANNEL_A, static_cast<uint32_t>(-5)); });
    step("velto_goto2(A, 100, minimum latency)", VELTO_RESULT_OK,
         [&] { return velto_goto2(handle, VELTO_CHANNEL_A, 100, VELTO_LATENCY_MINIMUM); });
    step("velto_precue1(B, sport_intro, end of clip)", VELTO_RESULT_OK, [&] {
        return velto_precue1(handle, VELTO_CHANNEL_B, VELTO_TEXT("sport_intro"),
                             VELTO_PRECUE_END_OF_CLIP);
    });
}

void Demo::drive_gang()
{
    constexpr uint32_t gang =
        VELTO_CHANNEL_BIT(VELTO_CHANNEL_A) | VELTO_CHANNEL_BIT(VELTO_CHANNEL_B);
    heading("Both together");
    step("velto_gang_goto1(A B, 0)", VELTO_RESULT_OK,
         [&] { return velto_gang_goto1(handle, gang, 0); });
    step("velto_cmd_gang_play1(A B)", VELTO_RESULT_OK,
         [&] { return velto_cmd_gang_play1(handle, gang); });
    let_play();
    step("velto_cmd_gang_stop1(A B)", VELTO_RESULT_OK,
         [&] { return velto_cmd_gang_stop1(handle, gang); });
}

// The first read of each asks the server to report it; the next ones are local.
void Demo::read_channel_a()
{
    step("velto_channel_status(A)", VELTO_RESULT_OK, [&] {
        static const char* const states[] = {"none", "stopped", "cueing", "play", "record"};
        uint32_t status = 0;
        const VeltoResult result = velto_channel_status(handle, VELTO_CHANNEL_A, &status);
        value = states[status];
        return result;
    });
    step("velto_channel_clip(A)", VELTO_RESULT_OK, [&] {
        VeltoChar clip[64] = {};
        const VeltoResult result = velto_channel_clip(handle, VELTO_CHANNEL_A, {clip, 64});
        value = printable(clip);
        return result;
    });
    step("velto_channel_position(A)", VELTO_RESULT_OK, [&] {
        uint32_t position = 0;
        const VeltoResult result = velto_channel_position(handle, VELTO_CHANNEL_A, &position);
        value = std::to_string(position);
        return result;
    });
}

// A short loop turns on B, and a playlist advances on C.
void Demo::watch_channels()
{
    heading("A loop and a playlist");
    step("velto_cmd_loadclip2(B, countdown, loop)", VELTO_RESULT_OK, [&] {
        return velto_cmd_loadclip2(handle, VELTO_CHANNEL_B, VELTO_TEXT("countdown"),
                                   VELTO_REPEAT_LOOP);
    });
    step("velto_cmd_play2(B, 20.0)", VELTO_RESULT_OK,
         [&] { return velto_cmd_play2(handle, VELTO_CHANNEL_B, 20.0); });
    step("velto_cmd_loadlist1(C, idents)", VELTO_RESULT_OK,
         [&] { return velto_cmd_loadlist1(handle, VELTO_CHANNEL_C, VELTO_TEXT("idents")); });
    step("velto_cmd_playlist_play_now(C, 0)", VELTO_RESULT_OK,
         [&] { return velto_cmd_playlist_play_now(handle, VELTO_CHANNEL_C, 0); });
    step("velto_cmd_play1(A)", VELTO_RESULT_OK,
         [&] { return velto_cmd_play1(handle, VELTO_CHANNEL_A); });
    heading("What the channels do, read from the cache");
    read_channel_a();
    for (int i = 0; i < 6; ++i) {
        let_play();
        std::printf("  ");
        for (uint32_t channel = VELTO_CHANNEL_A; channel <= VELTO_CHANNEL_C; ++channel) {
            VeltoChar clip[64] = {};
            uint32_t position = 0;
            velto_channel_clip(handle, channel, {clip, 64});
            velto_channel_position(handle, channel, &position);
            std::printf("%c %-14s %6u    ", 'A' + static_cast<int>(channel),
                        printable(clip).c_str(), position);
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

void Demo::count_notices()
{
    constexpr uint32_t wait_ms = 100;
    heading("Notices of half a second");
    uint32_t counts[10] = {};
    const auto end = Clock::now() + std::chrono::milliseconds(500);
    while (Clock::now() < end) {
        uint32_t kind = 0, channel = 0;
        velto_get_notification(handle, wait_ms, &kind, &channel);
        ++counts[kind % 10];
    }
    std::printf("  %u of positions, %u of speeds, %u of states, %u of clips\n",
                counts[VELTO_NOTICE_POSITION], counts[VELTO_NOTICE_SPEED],
                counts[VELTO_NOTICE_STATUS], counts[VELTO_NOTICE_CLIP]);
}

void Demo::be_refused()
{
    heading("A refusal");
    step("velto_cmd_loadclip1(C, no_such_clip)", VELTO_RESULT_FAILED,
         [&] { return velto_cmd_loadclip1(handle, VELTO_CHANNEL_C, VELTO_TEXT("no_such_clip")); });
}

void Demo::lose_and_regain_link(const char* stop_command, const char* start_command)
{
    heading("The server goes away");
    if (std::system(stop_command) != 0) {
        std::printf("  \"%s\" failed\n", stop_command);
        as_expected = false;
        return;
    }
    if (!wait_for_link(VELTO_LINK_DOWN, "down")) {
        return;
    }
    step("velto_cmd_play1(A)", VELTO_RESULT_FAILED,
         [&] { return velto_cmd_play1(handle, VELTO_CHANNEL_A); });
    read_channel_a();

    heading("The server comes back");
    if (std::system(start_command) != 0) {
        std::printf("  \"%s\" failed\n", start_command);
        as_expected = false;
        return;
    }
    if (!wait_for_link(VELTO_LINK_UP, "up again")) {
        return;
    }
    step("velto_cmd_loadclip1(A, news_open)", VELTO_RESULT_OK,
         [&] { return velto_cmd_loadclip1(handle, VELTO_CHANNEL_A, VELTO_TEXT("news_open")); });
    step("velto_cmd_play1(A)", VELTO_RESULT_OK,
         [&] { return velto_cmd_play1(handle, VELTO_CHANNEL_A); });
    let_play();
    read_channel_a();
}

bool Demo::run(const char* stop_command, const char* start_command)
{
    std::printf("  %-44s %s %11s  %s\n", "call", "r", "time", "text");
    heading("The link");
    if (!wait_for_link(VELTO_LINK_UP, "up")) {
        return false;
    }
    ask_server();
    drive_channels();
    drive_gang();
    be_refused();
    watch_channels();
    count_notices();
    if (stop_command != nullptr) {
        lose_and_regain_link(stop_command, start_command);
    }
    std::printf("\n%s\n", as_expected ? "All as expected." : "Not all was as expected.");
    return as_expected;
}

} // namespace

int main(int argc, char** argv)
{
    const auto address = argc == 2 || argc == 4 ? parse_address(argv[1]) : std::nullopt;
    if (!address) {
        std::fprintf(stderr, "usage: demo ADDRESS [STOP-COMMAND START-COMMAND]\n"
                             "ADDRESS is the server's IPv4 address, such as 127.0.0.1\n");
        return 2;
    }
    Demo demo(*address);
    return demo.run(argc == 4 ? argv[2] : nullptr, argc == 4 ? argv[3] : nullptr) ? 0 : 1;
}
