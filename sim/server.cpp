#include "sim/server.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "sim/refusal.h"

namespace veltosim
{

namespace
{

// When no descriptor is left the next attempt would fail at once.
constexpr std::chrono::milliseconds accept_pause{100};

std::string address_of(const asio::ip::tcp::socket& connection)
{
    std::error_code error;
    const auto peer = connection.remote_endpoint(error);
    return error ? error.message() : peer.address().to_string() + ":" + std::to_string(peer.port());
}

} // namespace

Server::Server(asio::io_context& used_context, const asio::ip::address_v4& address,
               Station& served_station, const Log& used_log,
               const std::optional<FieldRate>& report_rate)
    : context(used_context), station(served_station), log(used_log),
      acceptor(used_context, {address, server_port}), retry(used_context),
      source(served_station, report_rate.value_or(served_station.standard.field_rate)),
      field_timer(used_context)
{
    station.faults.drop_links = [this] {
        return for_each_session([](Session& session) { session.drop(); });
    };
    station.faults.send_to_links = [this](const std::string& text) {
        return for_each_session([&](Session& session) { session.send_garbage(text); });
    };
    // The acceptor's constructor reuses an address at which old connections still wait for their
    // end.
    accept();
}

Server::~Server()
{
    station.faults.drop_links = nullptr;
    station.faults.send_to_links = nullptr;
}

void Server::stop()
{
    std::error_code ignored;
    acceptor.close(ignored);
    retry.cancel();
    field_timer.cancel();
    for (const auto& [number, session] : sessions) {
        session->close();
    }
    sessions.clear();
}

void Server::accept()
{
    acceptor.async_accept(context,
                          [this](const std::error_code& error, asio::ip::tcp::socket connection) {
                              on_accept(error, std::move(connection));
                          });
}

void Server::on_accept(const std::error_code& error, asio::ip::tcp::socket connection)
{
    if (!acceptor.is_open()) {
        return;
    }
    if (error) {
        log.accept_failed(error.message());
        retry.expires_after(accept_pause);
        retry.async_wait([this](const std::error_code& cancelled) {
            if (!cancelled) {
                accept();
            }
        });
        return;
    }
    const std::uint64_t number = ++last_number;
    log.connected(number, address_of(connection));
    const Session::Listener listener{[this](TimePoint now) { report_command(now); },
                                     [this](std::uint64_t gone) { sessions.erase(gone); }};
    const auto session =
        std::make_shared<Session>(std::move(connection), number, station, log, listener);
    sessions.emplace(number, session);
    session->start();
    accept();
}

bool Server::reports_wanted() const
{
    return std::any_of(sessions.begin(), sessions.end(),
                       [](const auto& entry) { return entry.second->wants_reports(); });
}

void Server::report(ReportRound round)
{
    for (const auto& [number, session] : sessions) {
        session->report(round);
    }
}

std::size_t Server::for_each_session(const std::function<void(Session&)>& action)
{
    const std::size_t count = sessions.size();
    for (auto entry = sessions.begin(); entry != sessions.end();) {
        const auto session = (entry++)->second; // it may leave the sessions
        action(*session);
    }
    return count;
}

void Server::tell(const std::vector<News>& news)
{
    if (!news.empty()) {
        for_each_session([&](Session& session) { session.tell(news); });
    }
}

void Server::report_command(TimePoint now)
{
    tell(station.take_news());
    if (reports_wanted()) {
        report(source.after_command(now));
        wait_for_field(now);
    }
}

void Server::wait_for_field(TimePoint now)
{
    if (field_awaited) {
        return;
    }
    field_awaited = true;
    field_timer.expires_at(next_field(now, station.standard.field_rate));
    field_timer.async_wait([this](const std::error_code& cancelled) {
        if (!cancelled) {
            field_awaited = false;
            on_field();
        }
    });
}

// What the channels have done by themselves. A store that cannot be written is told to whoever
// sends the next command.
void Server::note_use(TimePoint now)
{
    try {
        station.note_use(now);
    } catch (const Refusal&) {
        return;
    }
    tell(station.take_news());
}

void Server::on_field()
{
    if (reports_wanted()) {
        const auto now = std::chrono::steady_clock::now();
        note_use(now);
        report(source.at_field(now));
        wait_for_field(now);
    }
}

} // namespace veltosim
