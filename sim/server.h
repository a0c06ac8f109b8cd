#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include <asio.hpp>

#include "sim/log.h"
#include "sim/session.h"
#include "sim/station.h"

namespace veltosim
{

inline constexpr std::uint16_t server_port = 8913;

// Listens, and keeps a session for each client. All runs on the one thread of `context`.
class Server
{
public:
    // Listens at once. Throws asio::system_error if the address cannot be had.
    Server(asio::io_context& used_context, const asio::ip::address_v4& address,
           Station& served_station, const Log& used_log);

    // Listens no more and closes all connections; the context then runs out of work.
    void stop();

private:
    void accept();
    void on_accept(const std::error_code& error, asio::ip::tcp::socket connection);

    asio::io_context& context;
    Station& station;
    const Log& log;
    asio::ip::tcp::acceptor acceptor;
    asio::steady_timer retry;
    std::map<std::uint64_t, std::shared_ptr<Session>> sessions;
    std::uint64_t last_number = 0;
};

} // namespace veltosim
