#pragma once

#include "platform/platform.h"

#include <cstdint>

#include <asio.hpp>

// The listening side of a socket test, on a free port of 127.0.0.1.
class Loopback
{
public:
    static constexpr std::uint32_t address = 0x7F000001;

    std::uint16_t port() const { return acceptor.local_endpoint().port(); }

    // The server's end of a connection that stands already or comes later.
    asio::ip::tcp::socket accept() { return acceptor.accept(); }

    void stop_listening() { acceptor.close(); }

private:
    asio::io_context context;
    asio::ip::tcp::acceptor acceptor{
        context, asio::ip::tcp::endpoint(asio::ip::address_v4(Loopback::address), 0)};
};

// A socket of the platform, closed at its end.
class TestSocket
{
public:
    TestSocket()
    {
        platform::start_sockets();
        handle = platform::open_socket();
    }
    TestSocket(const TestSocket&) = delete;
    TestSocket& operator=(const TestSocket&) = delete;
    ~TestSocket() { close(); }

    void close()
    {
        if (handle != platform::invalid_socket) {
            platform::close_socket(handle);
            handle = platform::invalid_socket;
        }
    }

    platform::SocketHandle handle;
};

// Both ends of one connection: the platform's and the server's.
class Connection
{
public:
    Connection()
        : connected(platform::connect_socket(client.handle, Loopback::address, listener.port())),
          server(connected ? listener.accept() : asio::ip::tcp::socket(spare))
    {
    }

    // The server's end vanishes without a farewell: what it still receives is answered by a reset.
    void reset_server()
    {
        server.set_option(asio::socket_base::linger(true, 0));
        server.close();
    }

    Loopback listener;
    asio::io_context spare;
    TestSocket client;
    bool connected;
    asio::ip::tcp::socket server;
};
