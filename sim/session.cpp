#include "sim/session.h"

#include <algorithm>
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
      listener(std::move(session_listener)), delay_timer(socket.get_executor())
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
    delay_timer.cancel();
}

void Session::send(std::string_view message)
{
    if (dropped) {
        return;
    }
    log.sent(number, message);
    enqueue(message);
    const Faults::Aftermath aftermath = station.faults.message_sent(++messages);
    if (aftermath.garbage) {
        send_garbage(*aftermath.garbage);
    }
    if (aftermath.drop) {
        drop();
    }
}

void Session::send_garbage(std::string_view text)
{
    log.sent(number, text);
    enqueue(text);
}

void Session::drop()
{
    if (!dropped) {
        dropped = true;
        finish_when_sent();
    }
}

void Session::enqueue(std::string_view bytes)
{
    const std::chrono::milliseconds delay = station.faults.delay;
    if (delay.count() == 0 && delayed.empty()) {
        queued += bytes;
        if (sending.empty()) {
            write();
        }
        return;
    }
    // Nothing overtakes what waits already.
    const TimePoint due = std::chrono::steady_clock::now() + delay;
    delayed.push_back(
        {delayed.empty() ? due : std::max(due, delayed.back().due), std::string(bytes)});
    delayed_size += bytes.size();
    if (delayed.size() == 1) {
        wait_for_delayed();
    }
}

void Session::wait_for_delayed()
{
    delay_timer.expires_at(delayed.front().due);
    delay_timer.async_wait([self = shared_from_this()](const std::error_code& cancelled) {
        if (!cancelled) {
            self->release_delayed(std::chrono::steady_clock::now());
        }
    });
}

void Session::release_delayed(TimePoint now)
{
    while (!delayed.empty() && delayed.front().due <= now) {
        queued += delayed.front().bytes;
        delayed_size -= delayed.front().bytes.size();
        delayed.pop_front();
    }
    if (!delayed.empty()) {
        wait_for_delayed();
    }
    if (sending.empty() && !queued.empty()) {
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

void Session::tell(const StoreNews& news)
{
    if (registrations.reports.count(news.type) != 0) {
        send(news.message);
    }
}

void Session::tell(const MetadataNews& news)
{
    auto watch = registrations.metadata.lower_bound({news.database(), ""});
    for (; watch != registrations.metadata.end() && watch->first == news.database(); ++watch) {
        for (const std::string& report : news.reports(watch->second)) {
            send(report);
        }
    }
}

void Session::tell(const std::vector<News>& news)
{
    for (const News& item : news) {
        if (!finishing) {
            std::visit([this](const auto& kind) { tell(kind); }, item);
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
    if (!reading_paused && !finishing) {
        read();
    }
}

void Session::obey_all()
{
    while (!dropped) {
        const auto command = stream.next();
        if (!command) {
            return;
        }
        log.received(number, *command);
        const auto now = std::chrono::steady_clock::now();
        const std::vector<std::string> messages_back =
            answer(station, registrations, *command, now);
        if (messages_back.empty()) {
            drop();
        }
        for (const std::string& message : messages_back) {
            send(message);
        }
        listener.obeyed(now);
    }
}

void Session::write()
{
    sending.swap(queued);
    sent = 0;
    write_piece();
}

void Session::write_piece()
{
    const std::size_t piece = station.faults.piece;
    const std::size_t left = sending.size() - sent;
    asio::async_write(
        socket, asio::buffer(sending.data() + sent, piece == 0 ? left : std::min(piece, left)),
        [self = shared_from_this()](const std::error_code& error, std::size_t count) {
            self->on_written(error, count);
        });
}

void Session::on_written(const std::error_code& error, std::size_t count)
{
    if (error) {
        sending.clear();
        leave(error.message());
        return;
    }
    sent += count;
    if (sent < sending.size()) {
        write_piece();
        return;
    }
    sending.clear();
    if (!queued.empty()) {
        write();
    } else if (finishing && delayed.empty()) {
        finish();
        return;
    }
    // Reports may keep the queue from ever being empty.
    if (reading_paused && !finishing && waiting() <= most_waiting) {
        reading_paused = false;
        read();
    }
}

void Session::finish_when_sent()
{
    finishing = true;
    if (sending.empty() && delayed.empty()) {
        finish();
    }
}

// A connection that is closed before all has been read of it is reset, and the client may lose what
// it was sent before. So one that is dropped is read until the client has seen the end.
void Session::finish()
{
    if (!dropped) {
        leave("end of its commands");
        return;
    }
    std::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    drain();
}

void Session::drain()
{
    socket.async_read_some(asio::buffer(block),
                           [self = shared_from_this()](const std::error_code& error, std::size_t) {
                               if (error) {
                                   self->leave("dropped on purpose");
                               } else {
                                   self->drain();
                               }
                           });
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
