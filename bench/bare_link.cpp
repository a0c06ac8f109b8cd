#include "bare_link.h"

#include <array>
#include <cerrno>

std::string stop_command(std::uint32_t xid)
{
    return "<cmd>\r\n<xid>" + std::to_string(xid) +
           "</xid>\r\n<stop>\r\n<Channel>A</Channel>\r\n</stop>\r\n</cmd>";
}

BareLink::BareLink(const Responder& responder) : socket(context)
{
    socket.connect(responder.endpoint());
    socket.set_option(asio::ip::tcp::no_delay(true));
}

void BareLink::send(const std::string& command)
{
    asio::write(socket, asio::buffer(command));
}

void BareLink::receive(std::size_t count)
{
    std::array<char, 2048> block;
    while (count != 0) {
        count -= std::min(count, socket.read_some(asio::buffer(block)));
    }
}

ThreadedLink::ThreadedLink(const Responder& responder, std::size_t reply_bytes)
    : BareLink(responder), size_of_reply(reply_bytes)
{
    sem_init(&arrived, 0, 0);
    reader = std::thread([this] { read_replies(); });
}

ThreadedLink::~ThreadedLink()
{
    std::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    reader.join();
    sem_destroy(&arrived);
}

void ThreadedLink::wait_for_reply()
{
    while (sem_wait(&arrived) != 0 && errno == EINTR) {
    }
}

void ThreadedLink::read_replies()
{
    std::array<char, 2048> block;
    std::size_t pending = 0;
    std::error_code error;
    for (;;) {
        pending += socket.read_some(asio::buffer(block), error);
        if (error) {
            return;
        }
        for (; pending >= size_of_reply; pending -= size_of_reply) {
            sem_post(&arrived);
        }
    }
}
