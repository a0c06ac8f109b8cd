#include "support/answering_server.h"

#include <array>
#include <atomic>
#include <list>
#include <thread>

#include <asio.hpp>

using asio::ip::tcp;

struct AnsweringServer::Inside {
    struct Client {
        explicit Client(tcp::socket accepted) : socket(std::move(accepted)) {}

        tcp::socket socket;
        std::array<char, 4096> block{};
        std::string unread;
    };
    using Place = std::list<Client>::iterator;

    void listen()
    {
        const tcp::endpoint endpoint(asio::ip::address_v4(finder.address().number), 8913);
        finder.stop_listening();
        acceptor.open(endpoint.protocol());
        acceptor.set_option(tcp::acceptor::reuse_address(true));
        acceptor.bind(endpoint);
        acceptor.listen();
        accept();
    }

    void accept()
    {
        acceptor.async_accept([this](asio::error_code error, tcp::socket socket) {
            if (error) {
                return;
            }
            socket.set_option(tcp::no_delay(true));
            read(clients.emplace(clients.end(), std::move(socket)));
            accept();
        });
    }

    void read(Place client)
    {
        client->socket.async_read_some(asio::buffer(client->block),
                                       [this, client](asio::error_code error, std::size_t count) {
                                           if (error) {
                                               clients.erase(client);
                                               return;
                                           }
                                           client->unread.append(client->block.data(), count);
                                           take_commands(*client);
                                           read(client);
                                       });
    }

    void take_commands(Client& client)
    {
        while (const auto command = take_command(client.unread)) {
            std::string replies;
            for (const std::string& content : answer(*command)) {
                replies += reply_message(command->xid, content);
            }
            ++answered;
            send(client, replies);
        }
    }

    void send(Client& client, const std::string& bytes)
    {
        asio::error_code gone; // shows when it is read from
        asio::write(client.socket, asio::buffer(bytes), gone);
    }

    ScriptServer finder; // of a free address
    Answer answer;
    asio::io_context context;
    tcp::acceptor acceptor{context};
    std::list<Client> clients;
    std::atomic<std::uint64_t> answered{0};
    std::thread thread;
};

AnsweringServer::AnsweringServer(Answer content, std::function<void()> begin)
    : inside(std::make_unique<Inside>())
{
    inside->answer = std::move(content);
    inside->listen();
    inside->thread = std::thread([this, begin = std::move(begin)] {
        begin();
        inside->context.run();
    });
}

AnsweringServer::~AnsweringServer()
{
    inside->context.stop();
    inside->thread.join();
}

std::uint32_t AnsweringServer::address() const
{
    return inside->finder.address().number;
}

std::uint64_t AnsweringServer::commands() const
{
    return inside->answered;
}

void AnsweringServer::tell(std::string bytes)
{
    asio::post(inside->context, [this, bytes = std::move(bytes)] {
        for (Inside::Client& client : inside->clients) {
            inside->send(client, bytes);
        }
    });
}
