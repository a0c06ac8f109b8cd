#include "support/script_server.h"

#include "support/await.h"

#include <array>
#include <atomic>
#include <random>
#include <stdexcept>

#include <asio.hpp>
#include <gtest/gtest.h>

namespace
{

using asio::ip::tcp;

constexpr std::uint16_t server_port = 8913;
constexpr int addresses_to_try = 100;

// Starts at random, so that programs that run side by side rarely meet, and leaves out 127.0.x.x.
LoopbackAddress next_address()
{
    static std::atomic<std::uint32_t> counter{std::random_device()()};
    const std::uint32_t number = counter++;
    const auto part = [](std::uint32_t value) { return 1 + value % 250; };
    const std::uint32_t address =
        0x7F000000u + (part(number / 250 / 250) << 16) + (part(number / 250) << 8) + part(number);
    return {address, asio::ip::address_v4(address).to_string()};
}

// Runs an operation of asio, given as what starts it, to its end.
template <typename Start>
std::size_t run(asio::io_context& context, const char* awaited, asio::error_code& error,
                Start start)
{
    std::size_t result = 0;
    start([&](asio::error_code outcome, std::size_t count = 0) {
        error = outcome;
        result = count;
    });
    context.restart();
    context.run_for(hang_bound);
    if (!context.stopped()) {
        report_hang(awaited);
    }
    return result;
}

std::string between(const std::string& text, std::string_view begin, std::string_view end)
{
    const std::size_t first = text.find(begin);
    if (first == std::string::npos) {
        return {};
    }
    const std::size_t start = first + begin.size();
    return text.substr(start, text.find_first_of(end, start) - start);
}

} // namespace

std::optional<ReceivedCommand> take_command(std::string& unread)
{
    constexpr std::string_view begin = "<cmd>";
    constexpr std::string_view end = "</cmd>";
    const std::size_t found = unread.find(end);
    if (found == std::string::npos) {
        return std::nullopt;
    }
    if (!unread.starts_with(begin)) {
        throw std::runtime_error("this is no command: " + unread);
    }
    const std::string text = unread.substr(0, found + end.size());
    unread.erase(0, text.size());
    return ReceivedCommand{text, between(text, "<xid>", "<"),
                           between(text, "</xid>\r\n<", " />\r\n")};
}

std::string reply_message(std::string_view xid, std::string_view content)
{
    return "<reply><xid>" + std::string(xid) + "</xid>" + std::string(content) + "</reply>";
}

std::string error_content(std::string_view text, std::string_view code)
{
    return "<error><ErrorMessage>" + std::string(text) + "</ErrorMessage><ErrorCode>" +
           std::string(code) + "</ErrorCode></error>";
}

struct ScriptLink::Side {
    asio::io_context context;
    tcp::socket socket{context};
    std::string unread;
};

ScriptLink::ScriptLink(std::unique_ptr<Side> accepted) : side(std::move(accepted)) {}
ScriptLink::ScriptLink(ScriptLink&&) noexcept = default;
ScriptLink& ScriptLink::operator=(ScriptLink&&) noexcept = default;
ScriptLink::~ScriptLink() = default;

std::string ScriptLink::receive()
{
    if (!side->unread.empty()) {
        return std::exchange(side->unread, {});
    }
    std::array<char, 65536> block;
    asio::error_code error;
    const std::size_t count =
        run(side->context, "what the server is to receive", error,
            [&](auto done) { side->socket.async_read_some(asio::buffer(block), done); });
    return std::string(block.data(), count);
}

ReceivedCommand ScriptLink::expect_command()
{
    std::string text = receive();
    for (;;) {
        if (auto command = take_command(text)) {
            side->unread = std::move(text);
            return *command;
        }
        const std::string piece = receive();
        if (piece.empty()) {
            throw std::runtime_error("the link ended in place of a command, with: " + text);
        }
        text += piece;
    }
}

ReceivedCommand ScriptLink::expect(std::string_view name)
{
    ReceivedCommand command = expect_command();
    EXPECT_EQ(command.name, name);
    return command;
}

void ScriptLink::expect_end()
{
    while (!receive().empty()) {
    }
}

bool ScriptLink::is_open()
{
    if (!side->unread.empty()) {
        return true;
    }
    char next = 0;
    asio::error_code error;
    side->socket.non_blocking(true);
    const std::size_t count =
        side->socket.receive(asio::buffer(&next, 1), tcp::socket::message_peek, error);
    side->socket.non_blocking(false);
    return count != 0 || error == asio::error::would_block;
}

void ScriptLink::send(std::string_view bytes)
{
    asio::error_code error;
    run(side->context, "the end of what the server sends", error,
        [&](auto done) { asio::async_write(side->socket, asio::buffer(bytes), done); });
    if (error) {
        throw std::runtime_error("the server cannot send: " + error.message());
    }
}

void ScriptLink::send_byte_by_byte(std::string_view bytes)
{
    for (const char& byte : bytes) {
        send({&byte, 1});
    }
}

void ScriptLink::reply(std::string_view xid, std::string_view content)
{
    send(reply_message(xid, content));
}

void ScriptLink::close()
{
    asio::error_code ignored; // the client may have gone before
    side->socket.shutdown(tcp::socket::shutdown_both, ignored);
    side->socket.close(ignored);
}

void ScriptLink::reset()
{
    side->socket.set_option(asio::socket_base::linger(true, 0));
    side->socket.close();
}

struct ScriptServer::Door {
    asio::io_context context;
    tcp::acceptor acceptor{context};
};

ScriptServer::ScriptServer() : door(std::make_unique<Door>())
{
    for (int i = 1;; ++i) {
        own_address = next_address();
        try {
            listen();
            return;
        } catch (const std::system_error&) { // somebody else has it
            door->acceptor.close();
            if (i == addresses_to_try) {
                throw;
            }
        }
    }
}

ScriptServer::~ScriptServer() = default;

void ScriptServer::listen()
{
    const tcp::endpoint endpoint(asio::ip::address_v4(own_address.number), server_port);
    door->acceptor.open(endpoint.protocol());
    door->acceptor.set_option(tcp::acceptor::reuse_address(true)); // past links do not matter
    door->acceptor.bind(endpoint);
    door->acceptor.listen();
}

void ScriptServer::stop_listening()
{
    door->acceptor.close();
}

ScriptLink ScriptServer::accept()
{
    auto side = std::make_unique<ScriptLink::Side>();
    asio::error_code error;
    run(door->context, "a link to the server", error,
        [&](auto done) { door->acceptor.async_accept(side->socket, done); });
    if (error) {
        throw std::runtime_error("the server cannot accept: " + error.message());
    }
    side->socket.set_option(tcp::no_delay(true)); // each step of a script is on its way at once
    return ScriptLink(std::move(side));
}
