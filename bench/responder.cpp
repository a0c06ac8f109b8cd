#include "responder.h"

#include <array>
#include <system_error>

namespace
{

using asio::ip::tcp;

constexpr std::uint16_t port = 8913;
constexpr std::uint32_t first_host = 0x7F0B0001; // 127.11.0.1, away from what else may listen

void serve(tcp::socket client)
{
    static const std::string end_tag = "</cmd>";
    std::string pending;
    std::array<char, 65536> block;
    std::error_code error;
    for (;;) {
        const std::size_t received = client.read_some(asio::buffer(block), error);
        if (error) {
            return;
        }
        pending.append(block.data(), received);
        std::string replies;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = pending.find(end_tag, begin)) != std::string::npos;) {
            end += end_tag.size();
            replies += ok_reply_to(pending.substr(begin, end - begin));
            begin = end;
        }
        pending.erase(0, begin);
        asio::write(client, asio::buffer(replies), error);
    }
}

} // namespace

std::string ok_reply_to(const std::string& command)
{
    static const std::string open = "<xid>";
    const std::size_t begin = command.find(open) + open.size();
    const std::string xid = command.substr(begin, command.find('<', begin) - begin);
    return "<reply><xid>" + xid + "</xid><ok/></reply>";
}

Responder::Responder() : host(first_host), acceptor(context)
{
    acceptor.open(tcp::v4());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    std::error_code error;
    while (acceptor.bind(endpoint(), error)) {
        if (++host == first_host + 100) {
            throw std::system_error(error, "no free loopback address");
        }
    }
    acceptor.listen();
    thread = std::thread([this] { accept_clients(); });
}

// Clients are served until they or the process end.
Responder::~Responder()
{
    stopping = true;
    std::error_code ignored;
    tcp::socket last(context);
    last.connect(endpoint(), ignored); // ends the waiting for one more
    thread.join();
}

tcp::endpoint Responder::endpoint() const
{
    return {asio::ip::address_v4(host), port};
}

void Responder::accept_clients()
{
    for (;;) {
        std::error_code error;
        tcp::socket client(context);
        acceptor.accept(client, error);
        if (error || stopping) {
            return;
        }
        client.set_option(tcp::no_delay(true));
        std::thread(serve, std::move(client)).detach();
    }
}
