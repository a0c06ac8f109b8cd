#include "scale.h"

#include "measure.h"
#include "responder.h"
#include "velto/velto.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

using asio::ip::tcp;

namespace
{

constexpr std::uint16_t port = 8913;
constexpr std::uint32_t servers = 10;
constexpr const char* serve_option = "--scale-server";
constexpr const char* connect_option = "--scale-clients";

// Ten of its own for each process, so that measurements side by side do not meet.
std::uint32_t first_address(pid_t process)
{
    return 0x7F0C0001 + (static_cast<std::uint32_t>(process) % 4096) * 16;
}

void raise_descriptor_limit()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

// This program once more, `channel` being its standard input.
pid_t start_part(const char* option, std::uint32_t number, int channel)
{
    const std::string argument = std::to_string(number);
    char* const words[] = {const_cast<char*>("velto_bench"), const_cast<char*>(option),
                           const_cast<char*>(argument.c_str()), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, channel, STDIN_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    pid_t process = -1;
    require(posix_spawn(&process, "/proc/self/exe", &actions, nullptr, words, environ) == 0,
            "a process cannot be started");
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

// ---- The servers: one thread for all, in a process of their own, so that none of it is counted.

class Client : public std::enable_shared_from_this<Client>
{
public:
    explicit Client(tcp::socket accepted) : socket(std::move(accepted)) {}

    void read()
    {
        socket.async_read_some(
            asio::buffer(block),
            [self = shared_from_this()](const std::error_code& error, std::size_t received) {
                if (!error) {
                    self->answer({self->block.data(), received});
                    self->read();
                }
            });
    }

private:
    // The clients wait for each reply: one always fits into the socket.
    void answer(std::string_view received)
    {
        constexpr std::string_view end_tag = "</cmd>";
        pending += received;
        for (std::size_t end = 0; (end = pending.find(end_tag)) != std::string::npos;) {
            end += end_tag.size();
            std::error_code gone;
            asio::write(socket, asio::buffer(ok_reply_to(pending.substr(0, end))), gone);
            pending.erase(0, end);
        }
    }

    tcp::socket socket;
    std::array<char, 4096> block{};
    std::string pending;
};

void accept(tcp::acceptor& acceptor)
{
    acceptor.async_accept([&acceptor](const std::error_code& error, tcp::socket socket) {
        require(!error, "a server cannot accept");
        socket.set_option(tcp::no_delay(true));
        std::make_shared<Client>(std::move(socket))->read();
        accept(acceptor);
    });
}

// Until the other end of the standard input is closed.
void serve(std::uint32_t first)
{
    asio::io_context context(1);
    std::vector<tcp::acceptor> acceptors;
    for (std::uint32_t host = first; host != first + servers; ++host) {
        acceptors.emplace_back(context, tcp::endpoint(asio::ip::address_v4(host), port));
    }
    for (tcp::acceptor& acceptor : acceptors) {
        accept(acceptor);
    }
    asio::posix::stream_descriptor parent(context, STDIN_FILENO);
    asio::write(parent, asio::buffer("!", 1));
    char unused = 0;
    parent.async_read_some(asio::buffer(&unused, 1),
                           [&](const std::error_code&, std::size_t) { context.stop(); });
    context.run();
}

// ---- The clients, in a process of their own too: what other measurements have left in this one
// would be counted.

std::size_t status_figure(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name + ":") {
            std::size_t value = 0;
            status >> value;
            return value;
        }
    }
    return 0;
}

struct Memory {
    double resident = static_cast<double>(status_figure("VmRSS")) * 1024;
    double allocated = allocated_bytes();
};

struct RoundTrip {
    double median_us;
    double slow_us;
};

RoundTrip round_trip(VeltoHandle connection, int calls)
{
    std::vector<double> times;
    for (int i = 0; i < calls; ++i) {
        const auto start = Clock::now();
        require(velto_cmd_stop1(connection, VELTO_CHANNEL_A) == VELTO_RESULT_OK,
                "velto_cmd_stop1 failed");
        times.push_back(seconds_since(start) * 1e6);
    }
    return {median(times), percentile(times, 0.99)};
}

void wait_for_all(const std::vector<VeltoHandle>& connections)
{
    for (const VeltoHandle connection : connections) {
        velto_wait_until_connected(connection);
    }
}

class Clients
{
public:
    explicit Clients(std::uint32_t number)
        : count(number), is_smoke(number < 1000), first_host(first_address(getpid()))
    {
    }

    // The connections stay open to the end of the process: closing one takes up to a second.
    void run()
    {
        start_servers();
        connections.push_back(velto_connect(first_host));
        wait_for_all(connections);
        const int calls = is_smoke ? 20 : 10000;
        round_trip(connections.front(), calls / 2); // warms up
        const RoundTrip alone = round_trip(connections.front(), calls);
        connect_others();
        print_idle(is_smoke ? 1 : 10);
        const RoundTrip beside = round_trip(connections.front(), calls);
        std::printf("  %-38s %10s %10s\n", "velto_cmd_stop1", "median us", "99 % us");
        std::printf("  %-38s %10.1f %10.1f\n", "alone", alone.median_us, alone.slow_us);
        std::printf("  beside %-31u %10.1f %10.1f\n", count - 1, beside.median_us, beside.slow_us);
        std::fflush(stdout);
    }

private:
    void start_servers()
    {
        int ends[2];
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "no socket pair");
        start_part(serve_option, first_host, ends[1]);
        close(ends[1]);
        char ready = 0;
        require(read(ends[0], &ready, 1) == 1, "the servers do not start");
    }

    void connect_others()
    {
        const Memory before;
        const auto start = Clock::now();
        while (connections.size() < count) {
            const auto number = static_cast<std::uint32_t>(connections.size());
            connections.push_back(velto_connect(first_host + number % servers));
        }
        const double asked = seconds_since(start);
        wait_for_all(connections);
        const double up = seconds_since(start);
        const Memory after;
        const double others = count - 1;
        std::printf("%u connections in one process to %u addresses\n", count, servers);
        std::printf("  velto_connect of all took %.3f s; all were up after %.3f s\n", asked, up);
        std::printf("  %zu threads\n", status_figure("Threads"));
        std::printf("  %.1f KB resident each, %.1f KB of that from the allocator\n",
                    (after.resident - before.resident) / others / 1024,
                    (after.allocated - before.allocated) / others / 1024);
    }

    void print_idle(int seconds) const
    {
        const double before = cpu_seconds(CLOCK_PROCESS_CPUTIME_ID);
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        const double used = cpu_seconds(CLOCK_PROCESS_CPUTIME_ID) - before;
        std::printf("  %.5f %% of a core each when idle, over %d s\n", 100 * used / seconds / count,
                    seconds);
    }

    const std::uint32_t count;
    const bool is_smoke;
    const std::uint32_t first_host;
    std::vector<VeltoHandle> connections;
};

} // namespace

bool run_part_of_scale(int argc, char** argv)
{
    if (argc != 3) {
        return false;
    }
    const auto number = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    raise_descriptor_limit();
    if (std::strcmp(argv[1], serve_option) == 0) {
        serve(number);
        return true;
    }
    if (std::strcmp(argv[1], connect_option) == 0) {
        Clients(number).run();
        return true;
    }
    return false;
}

void measure_scale(bool smoke)
{
    std::fflush(stdout);
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const pid_t clients = start_part(connect_option, smoke ? 20 : 1000, nothing);
    close(nothing);
    int status = -1;
    while (waitpid(clients, &status, 0) < 0 && errno == EINTR) {
    }
    require(status == 0, "the connections of the scale did not come to their end");
}
