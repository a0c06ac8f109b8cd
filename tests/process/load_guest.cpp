// A process that loads and unloads the library.
//
// usage: load_guest LIBRARY ADDRESS idle|closed|open|late

#include "process/loaded_library.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include <velto/velto.h>

namespace
{

constexpr int exit_code = 42;
constexpr int wrong_exit_code = 99;
constexpr int rounds = 100;

void check(bool good, const char* what)
{
    if (!good) {
        std::printf("wrong: %s\n", what);
        std::fflush(stdout);
        std::_Exit(wrong_exit_code);
    }
}

void say(const char* line)
{
    std::printf("%s\n", line);
    std::fflush(stdout);
}

struct Velto : LoadedLibrary {
    using LoadedLibrary::LoadedLibrary;

#define VELTO_LOADED(name)                                                                         \
    decltype(velto_##name)* name = function<decltype(velto_##name)>("velto_" #name)
    VELTO_LOADED(connect);
    VELTO_LOADED(wait_until_connected);
    VELTO_LOADED(cmd_stop1);
    VELTO_LOADED(close);
#undef VELTO_LOADED
};

// Threads that have been closed need a moment to be gone.
void await(const Resources& before)
{
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!(resources() == before)) {
        const Resources now = resources();
        if (std::chrono::steady_clock::now() > bound) {
            std::printf("%d threads, %d descriptors; before %d, %d\n",
                        static_cast<int>(now.threads), static_cast<int>(now.descriptors),
                        static_cast<int>(before.threads), static_cast<int>(before.descriptors));
            check(false, "something has grown");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// Used without a connection, or with one that is closed before the library is unloaded.
void load_and_unload(const char* path, bool connects)
{
    const auto once = [&] {
        const Velto velto(path);
        check(velto.is_loaded(), "it is not loaded");
        check(velto.cmd_stop1(0, VELTO_CHANNEL_A) == VELTO_RESULT_INVALID_HANDLE, "a result");
        if (connects) {
            const VeltoHandle handle =
                velto.connect(VELTO_IPV4(127, 255, 255, 254)); // nobody there
            check(velto.cmd_stop1(handle, VELTO_CHANNEL_A) == VELTO_RESULT_FAILED, "a result");
            velto.close(handle);
        }
    };
    once(); // what the system keeps for good
    const Resources before = resources();
    for (int round = 0; round != rounds; ++round) {
        once();
    }
    await(before);
}

// Unloaded with a link up. The worker goes on, as the server can see; loaded again, the library has
// the connection still.
void unload_with_a_connection(const char* path, std::uint32_t address)
{
    VeltoHandle handle = 0;
    {
        const Velto velto(path);
        check(velto.is_loaded(), "it is not loaded");
        handle = velto.connect(address);
        velto.wait_until_connected(handle);
    }
    say("unloaded");
    std::getchar(); // the server has lost the link, and has the next one
    const Velto velto(path);
    velto.wait_until_connected(handle);
    check(velto.cmd_stop1(handle, VELTO_CHANNEL_A) == VELTO_RESULT_OK, "a command");
    say("loaded again");
}

// Calls of a process that is on its way out, by handlers that stand on either side of the library's
// own.
const Velto* late_velto = nullptr;
VeltoHandle late_connection = 0;

void call_late()
{
    check(late_velto->cmd_stop1(late_connection, VELTO_CHANNEL_A) == VELTO_RESULT_OK,
          "a late call");
    say("late call");
}

void exit_with_a_connection(const char* path, std::uint32_t address)
{
    std::atexit(&call_late);
    late_velto = new Velto(path); // for good
    check(late_velto->is_loaded(), "it is not loaded");
    late_connection = late_velto->connect(address);
    late_velto->wait_until_connected(late_connection);
    std::atexit(&call_late);
}

} // namespace

int main(int count, char** arguments)
{
    check(count == 4, "arguments");
    const std::string way = arguments[3];
    const auto address = static_cast<std::uint32_t>(std::strtoul(arguments[2], nullptr, 10));
    if (way == "open") {
        unload_with_a_connection(arguments[1], address);
    } else if (way == "late") {
        exit_with_a_connection(arguments[1], address);
    } else {
        load_and_unload(arguments[1], way == "closed");
    }
    return exit_code;
}
