#include "responder.h"

#include <array>
#include <system_error>

using asio::ip::tcp;

namespace
{

constexpr std::uint16_t port = 8913;
constexpr std::uint32_t first_host = 0x7F0B0001; // 127.11.0.1, away from what else may listen
constexpr std::string_view end_tag = "</cmd>";

// Never destroyed: clients that the library leaves open are served until the process ends.
asio::io_context& context()
{
    static auto* const shared = new asio::io_context;
    return *shared;
}

} // namespace

struct Responder::Client {
    explicit Client(tcp::socket accepted) : socket(std::move(accepted)) {}

    void send(const std::string& bytes)
    {
        const std::lock_guard guard(sending);
        std::error_code gone;
        asio::write(socket, asio::buffer(bytes), gone);
    }

    tcp::socket socket;
    std::mutex sending;
};

std::string text_of(const std::string& command, std::string_view name)
{
    const std::string open = '<' + std::string(name) + '>';
    const std::size_t begin = command.find(open) + open.size();
    return command.substr(begin, command.find('<', begin) - begin);
}

std::string ok_reply_to(const std::string& command)
{
    return "<reply><xid>" + text_of(command, "xid") + "</xid><ok/></reply>";
}

Responder::Responder(Answer answer_to)
    : host(first_host), answer(std::move(answer_to)), acceptor(context())
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
    tcp::socket last(context());
    last.connect(endpoint(), ignored); // ends the waiting for one more
    thread.join();
}

tcp::endpoint Responder::endpoint() const
{
    return {asio::ip::address_v4(host), port};
}

void Responder::send(const std::string& bytes) const
{
    newest_client()->send(bytes);
}

void Responder::hang_up() const
{
    std::error_code ignored;
    newest_client()->socket.shutdown(tcp::socket::shutdown_both, ignored);
}

std::shared_ptr<Responder::Client> Responder::newest_client() const
{
    const std::lock_guard guard(lock);
    return last_client;
}

void Responder::accept_clients()
{
    for (;;) {
        std::error_code error;
        tcp::socket socket(context());
        acceptor.accept(socket, error);
        if (error || stopping) {
            return;
        }
        socket.set_option(tcp::no_delay(true));
        const auto client = std::make_shared<Client>(std::move(socket));
        {
            const std::lock_guard guard(lock);
            last_client = client;
        }
        std::thread([client, answer_to = answer] { serve(client, answer_to); }).detach();
    }
}

void Responder::serve(const std::shared_ptr<Client>& client, const Answer& answer_to)
{
    std::string pending;
    std::array<char, 65536> block;
    std::error_code error;
    for (;;) {
        const std::size_t received = client->socket.read_some(asio::buffer(block), error);
        if (error) {
            return;
        }
        pending.append(block.data(), received);
        std::string replies;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = pending.find(end_tag, begin)) != std::string::npos;) {
            end += end_tag.size();
            replies += answer_to(pending.substr(begin, end - begin));
            begin = end;
        }
        pending.erase(0, begin);
        client->send(replies);
    }
}
