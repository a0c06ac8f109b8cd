#include "sim/server.h"

#include <chrono>
#include <string>
#include <utility>

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
               Station& served_station, const Log& used_log)
    : context(used_context), station(served_station), log(used_log),
      acceptor(used_context, {address, server_port}), retry(used_context)
{
    // The acceptor's constructor reuses an address at which old connections still wait for their
    // end.
    accept();
}

void Server::stop()
{
    std::error_code ignored;
    acceptor.close(ignored);
    retry.cancel();
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
    const auto session =
        std::make_shared<Session>(std::move(connection), number, station, log,
                                  [this](std::uint64_t gone) { sessions.erase(gone); });
    sessions.emplace(number, session);
    session->start();
    accept();
}

} // namespace veltosim
