#pragma once

#include <asio.hpp>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

// The text of the first element `name` of a command; none of them is nested.
std::string text_of(const std::string& command, std::string_view name);
// A plain ok, as the responder gives it by itself.
std::string ok_reply_to(const std::string& command);

// A server that answers every command as fast as it can, on one thread for each client. All
// competitors of a measurement talk to the same one, or to one each of the same kind.
class Responder
{
public:
    using Answer = std::function<std::string(const std::string& command)>;

    explicit Responder(Answer answer_to = ok_reply_to);
    Responder(const Responder&) = delete;
    Responder& operator=(const Responder&) = delete;
    ~Responder();

    std::uint32_t address() const { return host; }
    asio::ip::tcp::endpoint endpoint() const;
    // Sends what no command has asked for, to the client that came last.
    void send(const std::string& bytes) const;
    // Ends the link to the client that came last.
    void hang_up() const;

private:
    struct Client;

    void accept_clients();
    std::shared_ptr<Client> newest_client() const;
    static void serve(const std::shared_ptr<Client>& client, const Answer& answer_to);

    std::uint32_t host;
    const Answer answer;
    std::atomic<bool> stopping{false};
    asio::ip::tcp::acceptor acceptor;
    mutable std::mutex lock;
    std::shared_ptr<Client> last_client; // guarded by lock
    std::thread thread;
};
