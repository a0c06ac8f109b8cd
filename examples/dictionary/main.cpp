// Shares a folder of keys and values with whoever else uses it: sets and erases keys, prints every
// change that it sees, its own included, and goes on while the server is stopped and started.

#include "common/application.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr uint32_t answer_limit_ms = 10000;

volatile std::sig_atomic_t interrupted = 0;

std::pair<std::string, std::string> split(const std::string& assignment)
{
    const std::size_t sign = assignment.find('=');
    return {assignment.substr(0, sign), assignment.substr(sign + 1)};
}

struct Settings {
    std::string address = "127.0.0.1";
    std::string folder;
    std::string prefix;
    std::vector<std::string> assignments;
    std::vector<std::string> erasures;
    std::string counter;
    int seconds = -1; // none: no following, 0: without end
};

class Dictionary
{
public:
    Dictionary(VeltoHandle connection, Settings given)
        : server(connection), settings(std::move(given))
    {
    }
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    ~Dictionary() { velto_close_key_value_store(store); }

    bool run()
    {
        if (velto_open_kvstore(server, units(settings.folder).c_str(),
                               units(settings.prefix).c_str(), VELTO_STORE_READ_WRITE,
                               &store) != VELTO_RESULT_OK) {
            fmt::print(stderr, "dictionary: cannot open the folder: {}\n", last_error());
            return false;
        }
        write();
        return settings.seconds < 0 ? finish() : follow();
    }

private:
    // Nothing here waits for the server.
    void write()
    {
        for (const std::string& assignment : settings.assignments) {
            const auto [key, value] = split(assignment);
            velto_kvstore_set(store, units(key).c_str(), units(value).c_str());
        }
        for (const std::string& key : settings.erasures) {
            velto_kvstore_erase(store, units(key).c_str());
        }
    }

    bool finish()
    {
        if (velto_kvstore_flush(store, answer_limit_ms) != VELTO_RESULT_OK) {
            return complain("has not taken all that was written");
        }
        if (velto_kvstore_wait_scan(store, answer_limit_ms) != VELTO_RESULT_OK) {
            return complain("has not told what the folder holds");
        }
        while (print_change(0)) {
        }
        return true;
    }

    bool complain(const char* what) const
    {
        const bool up = velto_connected(server) == VELTO_LINK_UP;
        fmt::print(stderr, "dictionary: the server at {}, port 8913, {} in {} seconds{}\n",
                   settings.address, what, answer_limit_ms / 1000,
                   up ? "; the link is up" : ": the link is down");
        return false;
    }

    bool follow()
    {
        const auto duration = std::chrono::seconds(settings.seconds);
        auto next_count = Clock::now();
        while (interrupted == 0 && (duration == 0s || Clock::now() - start < duration)) {
            if (!settings.counter.empty() && Clock::now() >= next_count) {
                velto_kvstore_set(store, units(settings.counter).c_str(),
                                  units(std::to_string(++count)).c_str());
                next_count += 1s;
            }
            print_link();
            print_change(50);
        }
        if (velto_kvstore_flush(store, 0) == VELTO_RESULT_TIMEOUT) {
            line("not everything is written yet; closing tries for two seconds");
        }
        return true;
    }

    bool print_change(uint32_t timeout_ms)
    {
        VeltoChar key[256];
        VeltoChar value[1024];
        uint32_t kind = 0;
        if (velto_kvstore_get_change(store, timeout_ms, &kind, {key, 256}, {value, 1024}) !=
            VELTO_RESULT_OK) {
            return false;
        }
        if (kind == VELTO_STORE_CHANGE_SET) {
            line(fmt::format("{} = {}", printable(key), printable(value)));
        } else {
            line(fmt::format("{} is erased", printable(key)));
        }
        return true;
    }

    void print_link()
    {
        if (std::exchange(link, velto_connected(server)) != link) {
            line(link == VELTO_LINK_UP ? "-- the link is up" : "-- the link is down");
        }
    }

    void line(const std::string& text) const
    {
        const std::chrono::duration<double> time = Clock::now() - start;
        fmt::print("{:8.3f}  {}\n", time.count(), text);
        std::fflush(stdout);
    }

    VeltoHandle server;
    Settings settings;
    VeltoStoreHandle store = 0;
    uint32_t link = VELTO_LINK_DOWN;
    int count = 0;
    Clock::time_point start = Clock::now();
};

std::string check_text(const std::string& text)
{
    try {
        units(text);
        return {};
    } catch (const std::exception&) {
        return "'" + text + "' is not UTF-8";
    }
}

std::string check_name(const std::string& name)
{
    return name.empty() ? "must not be empty" : check_text(name);
}

std::string check_assignment(const std::string& text)
{
    const std::size_t sign = text.find('=');
    return sign == std::string::npos || sign == 0 ? "KEY=VALUE is expected, not '" + text + "'"
                                                  : check_text(text);
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Shares a folder of keys and values on a video server: writes what the options\n"
                 "say, then prints what the folder holds, as seconds and KEY = VALUE.");
    app.footer("Example, in two terminals:\n"
               "  dictionary 127.0.0.1 notes --follow 0\n"
               "  dictionary 127.0.0.1 notes --set host=Anna --erase guest");
    Settings settings;
    app.add_option("ADDRESS", settings.address, "The server's IPv4 address")
        ->required()
        ->check(CLI::ValidIPV4);
    app.add_option("FOLDER", settings.folder, "The server's name for the folder")
        ->required()
        ->check(CLI::Validator(check_name, ""));
    app.add_option("--prefix", settings.prefix, "Beginning of all keys; left out in what is shown")
        ->check(CLI::Validator(check_text, ""));
    app.add_option("--set", settings.assignments, "Gives a key a value; as often as wanted")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false)
        ->check(CLI::Validator(check_assignment, ""));
    app.add_option("--erase", settings.erasures,
                   "Erases a key, after all --set; as often as wanted")
        ->type_name("KEY")
        ->allow_extra_args(false)
        ->check(CLI::Validator(check_name, ""));
    app.add_option("--follow", settings.seconds,
                   "Goes on for so many seconds, 0 until it is interrupted, and prints all changes")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--count", settings.counter,
                   "Sets the key to 1, 2, 3 and so on, once a second, while it follows")
        ->type_name("KEY")
        ->needs("--follow")
        ->check(CLI::Validator(check_name, ""));
    CLI11_PARSE(app, argc, argv);

    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    const Server server(settings.address);
    return Dictionary(server, settings).run() ? 0 : 1;
}
