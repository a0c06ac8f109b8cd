// Drives the channels of a video server: connects, asks, loads, plays, jogs, seeks, is refused, and
// lives through a loss of the link. Each step prints the call, its result, its text and its time.
//
//   demo ADDRESS [STOP-COMMAND START-COMMAND]
//
// The two commands take the server away and bring it back; without them that part is left out.

#include "velto/velto.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr auto link_time_limit = std::chrono::seconds(10);

std::string printable(const VeltoChar* text)
{
    const std::u8string bytes = std::filesystem::path(text).u8string();
    return {bytes.begin(), bytes.end()};
}

std::string last_error()
{
    VeltoChar text[256];
    velto_get_last_error({text, 256});
    return printable(text);
}

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
        const auto start = Clock::now();
        const VeltoResult result = call();
        const auto time =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        const std::string text = last_error();
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
    void be_refused();
    void lose_and_regain_link(const char* stop_command, const char* start_command);
    void let_play() { std::this_thread::sleep_for(std::chrono::milliseconds(400)); }

    VeltoHandle handle;
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
