#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <asio.hpp>

#include "sim/command_stream.h"
#include "sim/log.h"
#include "sim/station.h"

namespace veltosim
{

// One connected client: reads its commands, obeys them in their order and sends the replies, and
// the reports that it has registered. It lives as long as an operation of its own is under way.
class Session : public std::enable_shared_from_this<Session>
{
public:
    // What the session tells its server.
    struct Listener {
        std::function<void(TimePoint now)> obeyed; // a command, whose reply has been queued
        std::function<void(std::uint64_t number)> gone;
    };

    Session(asio::ip::tcp::socket connection, std::uint64_t client_number, Station& served_station,
            const Log& used_log, Listener session_listener);

    void start();
    // Ends the connection at once. `gone` is not called.
    void close();
    // Queues one message. What is to go wrong behind it does.
    void send(std::string_view message);
    // The same with what is none.
    void send_garbage(std::string_view text);
    // Ends the connection when all that is queued has been sent.
    void drop();
    bool wants_reports() const;
    // Sends what is news to the client. One that is slow to read gets no positions meanwhile, and
    // one that does not read gets nothing: what it missed follows as far as it is still true then.
    void report(ReportRound& round);
    // Sends what the client has registered. None of it may be missed: a client that does not read
    // is dropped in the end.
    void tell(const std::vector<News>& news);

private:
    void tell(const StoreNews& news);
    void tell(const MetadataNews& news);
    void read();
    void on_read(const std::error_code& error, std::size_t count);
    void obey_all();
    void enqueue(std::string_view bytes);
    void wait_for_delayed();
    void release_delayed(TimePoint now);
    void write();
    void write_piece();
    void on_written(const std::error_code& error, std::size_t count);
    void finish_when_sent();
    void finish();
    void drain();
    void leave(std::string_view reason);
    std::size_t waiting() const { return queued.size() + sending.size() + delayed_size; }

    asio::ip::tcp::socket socket;
    std::uint64_t number;
    Station& station;
    const Log& log;
    Listener listener;

    CommandStream stream;
    Registrations registrations;
    std::array<char, 4096> block{};
    struct Delayed {
        TimePoint due;
        std::string bytes;
    };
    std::deque<Delayed> delayed; // waits for `queued`
    std::size_t delayed_size = 0;
    asio::steady_timer delay_timer;
    std::string queued;   // waits for `sending`
    std::string sending;  // empty when nothing is on its way
    std::size_t sent = 0; // of it
    std::uint64_t messages = 0;
    bool reading_paused = false;
    bool finishing = false; // no more is read; what is queued still goes out
    bool dropped = false;   // on purpose: nothing more is queued
};

} // namespace veltosim
