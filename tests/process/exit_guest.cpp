// A process that ends in the way that it is told, with connections open, commands outstanding and a
// store whose writes are not confirmed.
//
// usage: exit_guest ADDRESS WAY

#include "process/quick_end.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include <velto/velto.h>

namespace
{

constexpr int exit_code = 42;
constexpr int wrong_exit_code = 99;

VeltoHandle connections[3];

// Calls of a process that is on its way out: their results are as ever.
void call_late(const char* from)
{
    const VeltoHandle first = connections[0];
    VeltoChar text[64];
    velto_get_last_error({text, 64});
    const VeltoHandle another = velto_connect(VELTO_IPV4(127, 255, 255, 254));
    const bool good = velto_connected(first) == VELTO_LINK_UP &&
                      velto_cmd_stop1(first, VELTO_CHANNEL_A) == VELTO_RESULT_OK &&
                      velto_cmd_stop1(0, VELTO_CHANNEL_A) == VELTO_RESULT_INVALID_HANDLE &&
                      another != 0;
    velto_close(another);
    std::printf("%s: %s\n", from, good ? "good" : "wrong");
    std::fflush(stdout);
    if (!good) {
        std::_Exit(wrong_exit_code);
    }
}

struct Static {
    ~Static()
    {
        if (connections[0] != 0) {
            call_late("static destructor");
        }
    }
} at_the_end;

void connect_all(std::uint32_t address)
{
    for (VeltoHandle& connection : connections) {
        connection = velto_connect(address);
        velto_wait_until_connected(connection);
        // Never answered.
        std::thread([connection] {
            VeltoChar name[64];
            velto_server_name(connection, {name, 64});
        }).detach();
        velto_synchronous(connection, VELTO_COMMANDS_DO_NOT_WAIT);
        velto_cmd_play1(connection, VELTO_CHANNEL_A);
        velto_synchronous(connection, VELTO_COMMANDS_WAIT);
        VeltoStoreHandle store = 0;
        velto_open_kvstore(connection, VELTO_TEXT("notes"), VELTO_TEXT(""), VELTO_STORE_READ_WRITE,
                           &store);
        velto_kvstore_set(store, VELTO_TEXT("key"), VELTO_TEXT("value"));
    }
    std::uint32_t standard = 0; // answered when the server has seen the questions of all
    velto_video_standard(connections[0], &standard);
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3) {
        return wrong_exit_code;
    }
    const char* way = arguments[2];
    std::atexit([] { call_late("atexit"); });
    connect_all(static_cast<std::uint32_t>(std::strtoul(arguments[1], nullptr, 10)));
    std::printf("ready\n");
    std::fflush(stdout);
    if (std::strcmp(way, "exit") == 0) {
        std::exit(exit_code);
    }
    if (std::strcmp(way, "exit_of_a_thread") == 0) {
        std::thread([] { std::exit(exit_code); }).detach();
        VeltoChar name[64];
        velto_server_name(connections[0], {name, 64});
        return wrong_exit_code;
    }
    if (std::strcmp(way, "quick_exit") == 0) {
        end_quickly(exit_code);
    }
    if (std::strcmp(way, "_Exit") == 0) {
        std::_Exit(exit_code);
    }
    return exit_code;
}
