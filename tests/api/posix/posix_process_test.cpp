#include "velto/velto.h"

#include "platform/posix/descriptors.h"
#include "support/answering_server.h"
#include "support/outcome.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

// What an application does to its own process, with a connection open.
namespace
{

constexpr int clips = 500;

std::string clip_name(int number)
{
    return "clip " + std::to_string(number);
}

AnsweringServer::Contents answer(const ReceivedCommand& command)
{
    AnsweringServer::Contents contents;
    for (int clip = 0; command.name == "download_clipids" && clip != clips; ++clip) {
        contents.push_back("<clipid><ClipID>" + clip_name(clip) + "</ClipID></clipid>");
    }
    contents.push_back("<ok />");
    return contents;
}

// The server is not what is tested: its thread sees no signal.
void block_signals()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

class PosixProcess : public testing::Test
{
protected:
    void connect()
    {
        handle = velto_connect(server.address());
        velto_wait_until_connected(handle);
    }
    ~PosixProcess() override { velto_close(handle); }

    VeltoResult stop() { return velto_cmd_stop1(handle, VELTO_CHANNEL_A); }
    void expect_good_link()
    {
        EXPECT_EQ(velto_connected(handle), 1u);
        EXPECT_EQ(outcome_of([&] { return stop(); }), succeeded);
    }

    // So many names of the list come, in their order.
    int count_listed_clips()
    {
        VeltoListHandle list = 0;
        EXPECT_EQ(velto_open_clip_list(handle, &list), VELTO_RESULT_OK);
        std::array<VeltoChar, 32> name{};
        int count = 0;
        do {
            velto_get_clip_name(list, {name.data(), 32});
        } while (std::string(name.data(), name.data() + clip_name(count).size()) ==
                     clip_name(count) &&
                 ++count != clips);
        velto_close_clip_list(list);
        return count;
    }

    // Those of the connection: their peer is the server.
    std::vector<int> sockets_of_connection() const
    {
        std::vector<int> found;
        for (int descriptor = 3; descriptor != sysconf(_SC_OPEN_MAX); ++descriptor) {
            sockaddr_in peer{};
            socklen_t size = sizeof peer;
            if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
                ntohl(peer.sin_addr.s_addr) == server.address() && ntohs(peer.sin_port) == 8913) {
                found.push_back(descriptor);
            }
        }
        return found;
    }

    // How the child ends that runs `body`.
    template <typename Body>
    static int code_of_child(Body body)
    {
        const pid_t child = fork();
        if (child == 0) {
            body();
            _exit(99);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    AnsweringServer server{&answer, &block_signals};
    VeltoHandle handle = 0;
};

// Interrupts whatever the process does, a thousand times a second, and asks for no restart.
class IntervalTimer
{
public:
    IntervalTimer()
    {
        fired = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { ++fired; };
        sigaction(SIGALRM, &action, &before);
        set(1000);
    }
    IntervalTimer(const IntervalTimer&) = delete;
    IntervalTimer& operator=(const IntervalTimer&) = delete;
    ~IntervalTimer()
    {
        set(0);
        sigaction(SIGALRM, &before, nullptr);
    }

    static inline std::atomic<int> fired{0};

private:
    static void set(suseconds_t microseconds)
    {
        itimerval interval{};
        interval.it_interval.tv_usec = microseconds;
        interval.it_value.tv_usec = microseconds;
        setitimer(ITIMER_REAL, &interval, nullptr);
    }

    struct sigaction before = {};
};

TEST_F(PosixProcess, TimersThatFireAllTheTimeLoseNothing)
{
    const IntervalTimer timer;
    connect();
    std::uint64_t commands = 0;
    while (commands < 500 || IntervalTimer::fired < 100) {
        ASSERT_EQ(outcome_of([&] { return stop(); }), succeeded);
        ++commands;
    }
    EXPECT_EQ(server.commands(), commands);
    EXPECT_EQ(count_listed_clips(), clips);
    std::uint32_t kind = 77;
    velto_get_notification(handle, 50, &kind, nullptr);
    EXPECT_EQ(kind, 0u);
}

TEST_F(PosixProcess, DescriptorsMayHaveNumbersThatNoSetHolds)
{
    constexpr int in_use = 2000;
    constexpr int enough = in_use + 200;
    const DescriptorLimit limit(enough);
    ASSERT_TRUE(limit.allows(enough)) << "raise the hard limit of descriptors, ulimit -Hn";
    std::vector<int> taken;
    for (int i = 0; i != in_use; ++i) {
        taken.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
    }
    EXPECT_EQ(std::count(taken.begin(), taken.end(), -1), 0);
    connect();
    const std::vector<int> sockets = sockets_of_connection();
    EXPECT_EQ(sockets.size(), 1u);
    EXPECT_GE(sockets.at(0), in_use);
    expect_good_link();
    EXPECT_EQ(count_listed_clips(), clips);
    for (const int descriptor : taken) {
        close(descriptor);
    }
}

TEST_F(PosixProcess, AChildThatEndsLeavesTheConnection)
{
    connect();
    EXPECT_EQ(code_of_child([] { _exit(7); }), 7);
    expect_good_link();
}

TEST_F(PosixProcess, AProgramThatAChildBecomesHasNoneOfTheSockets)
{
    connect();
    const std::vector<int> sockets = sockets_of_connection();
    ASSERT_EQ(sockets.size(), 1u);
    const std::string number = std::to_string(sockets.at(0));
    const int code = code_of_child([&] {
        execl("/bin/sh", "sh", "-c", "test ! -e /proc/self/fd/$0", number.c_str(), nullptr);
    });
    EXPECT_EQ(code, 0) << "it has descriptor " << number;
    expect_good_link();
}

TEST_F(PosixProcess, WhileProgramsAreStartedCommandsGoOn)
{
    connect();
    for (int child = 0; child != 20; ++child) {
        EXPECT_EQ(code_of_child([] { execl("/bin/true", "true", nullptr); }), 0);
        expect_good_link();
    }
    EXPECT_EQ(count_listed_clips(), clips);
}

} // namespace
