#pragma once

#include "stress/door.h"

#include <array>

namespace stress
{

// A client of a door and its link to the simulator, between which bytes go to and fro.
//
// Thread: that of the doors.
class Link : public std::enable_shared_from_this<Link>
{
public:
    Link(std::shared_ptr<Door> through, asio::ip::tcp::socket accepted);

    void start();
    void cut(Cut how);
    void close();

    asio::steady_timer::time_point stalled_until;
    asio::steady_timer::time_point trickles_until;
    std::string garbage;

private:
    struct Way {
        asio::ip::tcp::socket& from;
        asio::ip::tcp::socket& to;
        asio::steady_timer timer;
        std::array<char, 8192> block{};
        std::size_t held = 0;
    };

    void read(Way& way);
    void hold(Way& way);
    void deliver(Way& way);
    void delivered(Way& way);
    void send_garbage(Way& way);
    void drain();
    void count_reports(const char* bytes, std::size_t count);

    std::shared_ptr<Door> door;
    asio::ip::tcp::socket client;
    asio::ip::tcp::socket server;
    Way up;
    Way down;
    bool is_ending = false;
    std::size_t matched = 0;
};

} // namespace stress
