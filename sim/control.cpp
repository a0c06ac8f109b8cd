#include "sim/control.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace veltosim
{

namespace
{

constexpr std::size_t longest_line = 65536;

} // namespace

Control::Control(asio::io_context& used_context, int used_input, Obey obey_line)
    : context(used_context), input(used_input), obey(std::move(obey_line))
{
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    stop_reader = ends[0];
    stop_writer = ends[1];
    // In the background of a terminal reading fails then, instead of stopping the program.
    std::signal(SIGTTIN, SIG_IGN);
    thread = std::thread([this] { read(); });
}

Control::~Control()
{
    close(stop_writer);
    thread.join();
    close(stop_reader);
}

// Whether there is something to read, or the end of it.
bool Control::wait() const
{
    std::array<pollfd, 2> watched{pollfd{input, POLLIN, 0}, pollfd{stop_reader, POLLIN, 0}};
    while (poll(watched.data(), watched.size(), -1) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return watched[1].revents == 0;
}

void Control::read()
{
    std::string line;
    std::array<char, 4096> block;
    while (wait()) {
        const ssize_t count = ::read(input, block.data(), block.size());
        if (count <= 0) {
            return;
        }
        for (ssize_t i = 0; i < count; ++i) {
            const char c = block[static_cast<std::size_t>(i)];
            if (c == '\n') {
                asio::post(context, [this, complete = std::exchange(line, {})] { obey(complete); });
            } else if (line.size() < longest_line) {
                line += c;
            }
        }
    }
}

} // namespace veltosim
