#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <asio.hpp>

#include "sim/log.h"
#include "sim/report_source.h"
#include "sim/session.h"
#include "sim/station.h"

namespace veltosim
{

inline constexpr std::uint16_t server_port = 8913;

// Listens, and keeps a session for each client. All runs on the one thread of `context`.
class Server
{
public:
    // Listens at once. Positions are reported at `report_rate`, otherwise at the station's field
    // rate. Throws asio::system_error if the address cannot be had.
    Server(asio::io_context& used_context, const asio::ip::address_v4& address,
           Station& served_station, const Log& used_log,
           const std::optional<FieldRate>& report_rate = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Listens no more and closes all connections; the context then runs out of work.
    void stop();

private:
    void accept();
    void on_accept(const std::error_code& error, asio::ip::tcp::socket connection);
    bool reports_wanted() const;
    void report(ReportRound round);
    std::size_t for_each_session(const std::function<void(Session&)>& action);
    void tell(const std::vector<News>& news);
    void note_use(TimePoint now);
    void report_command(TimePoint now);
    void wait_for_field(TimePoint now);
    void on_field();

    asio::io_context& context;
    Station& station;
    const Log& log;
    asio::ip::tcp::acceptor acceptor;
    asio::steady_timer retry;
    ReportSource source;
    asio::steady_timer field_timer; // runs while some client wants reports
    bool field_awaited = false;
    std::map<std::uint64_t, std::shared_ptr<Session>> sessions;
    std::uint64_t last_number = 0;
};

} // namespace veltosim
