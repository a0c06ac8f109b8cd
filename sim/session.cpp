#include "sim/session.h"

#include <exception>
#include <utility>

#include "sim/commands.h"
#include "sim/refusal.h"

namespace veltosim
{

namespace
{

// A client that sends without reading is read no further while this much waits for it, and gets no
// reports.
constexpr std::size_t most_waiting = 256 * 1024;

// While this much waits it gets no positions: they would be old when it reads them.
constexpr std::size_t most_before_positions = 16 * 1024;

// What a client misses of the news cannot be made up for: one that lets so much wait is dropped.
constexpr std::size_t most_news = 16 * 1024 * 1024;

} // namespace

Session::Session(asio::ip::tcp::socket connection, std::uint64_t client_number,
                 Station& served_station, const Log& used_log, Listener session_listener)
    : socket(std::move(connection)), number(client_number), station(served_station), log(used_log),
      listener(std::move(session_listener))
{
}

void Session::start()
{
    std::error_code ignored;
    socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    read();
}

void Session::close()
{
    listener.gone = nullptr;
    std::error_code ignored;
    socket.close(ignored);
}

void Session::send(std::string_view message)
{
    log.sent(number, message);
    queued += message;
    if (sending.empty()) {
        write();
    }
}

bool Session::wants_reports() const
{
    return !finishing && !registrations.channel_reports.empty();
}

void Session::report(ReportRound& round)
{
    if (!wants_reports() || waiting() > most_waiting) {
        return;
    }
    const Positions offered = round.positions;
    if (waiting() > most_before_positions) {
        round.positions = Positions::none;
    }
    for (const std::string& message : registrations.channel_reports.news(round, station.standard)) {
        send(message);
    }
    round.positions = offered;
}

void Session::tell(const std::vector<News>& news)
{
    for (const News& item : news) {
        if (!finishing && registrations.reports.count(item.type) != 0) {
            send(item.message);
        }
    }
    if (waiting() > most_news) {
        log.dropped(number, "it does not read its reports");
        leave("too many reports wait for it");
    }
}

void Session::read()
{
    socket.async_read_some(
        asio::buffer(block),
        [self = shared_from_this()](const std::error_code& error, std::size_t count) {
            self->on_read(error, count);
        });
}

void Session::on_read(const std::error_code& error, std::size_t count)
{
    if (error == asio::error::eof) {
        finish_when_sent();
        return;
    }
    if (error) {
        leave(error.message());
        return;
    }
    stream.feed({block.data(), count});
    try {
        obey_all();
    } catch (const std::exception& problem) {
        log.dropped(number, problem.what());
        finish_when_sent();
        return;
    }
    reading_paused = waiting() > most_waiting;
    if (!reading_paused) {
        read();
    }
}

void Session::obey_all()
{
    while (const auto command = stream.next()) {
        log.received(number, *command);
        const auto now = std::chrono::steady_clock::now();
        for (const std::string& message : answer(station, registrations, *command, now)) {
            send(message);
        }
        listener.obeyed(now);
    }
}

void Session::write()
{
    sending.swap(queued);
    asio::async_write(socket, asio::buffer(sending),
                      [self = shared_from_this()](const std::error_code& error, std::size_t) {
                          self->on_written(error);
                      });
}

void Session::on_written(const std::error_code& error)
{
    sending.clear();
    if (error) {
        leave(error.message());
        return;
    }
    if (!queued.empty()) {
        write();
    } else if (finishing) {
        leave("end of its commands");
        return;
    }
    // Reports may keep the queue from ever being empty.
    if (reading_paused && waiting() <= most_waiting) {
        reading_paused = false;
        read();
    }
}

void Session::finish_when_sent()
{
    finishing = true;
    if (sending.empty()) {
        leave("end of its commands");
    }
}

// A lost connection can show at a read and at a write: only the first counts.
void Session::leave(std::string_view reason)
{
    if (listener.gone) {
        log.disconnected(number, reason);
        const auto gone = std::move(listener.gone);
        close();
        gone(number);
    }
}

} // namespace veltosim
