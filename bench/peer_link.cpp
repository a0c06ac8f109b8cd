#include "peer_link.h"

#include <cstring>
#include <vector>

namespace
{
constexpr std::size_t block_bytes = 65536;
}

PeerLink::PeerLink(const Responder& responder, std::string end_tag, Handler handle_message)
    : message_end(std::move(end_tag)), handle(std::move(handle_message)), socket(context)
{
    socket.connect(responder.endpoint());
    socket.set_option(asio::ip::tcp::no_delay(true));
    reader = std::thread([this] { read_messages(); });
}

PeerLink::~PeerLink()
{
    std::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    reader.join();
}

void PeerLink::send(const std::string& command)
{
    asio::write(socket, asio::buffer(command));
}

void PeerLink::read_messages()
{
    std::vector<char> buffer(2 * block_bytes);
    std::size_t pending = 0;
    std::error_code error;
    for (;;) {
        if (buffer.size() - pending < block_bytes) {
            buffer.resize(buffer.size() * 2);
        }
        pending += socket.read_some(asio::buffer(buffer.data() + pending, block_bytes), error);
        if (error) {
            return;
        }
        const std::size_t handled = handle_messages(buffer.data(), pending);
        pending -= handled;
        std::memmove(buffer.data(), buffer.data() + handled, pending);
    }
}

// Gives how many bytes are done with. They are parsed in place: they are not needed afterwards. A
// message that is not XML is handed on as an empty one.
std::size_t PeerLink::handle_messages(char* bytes, std::size_t count)
{
    const std::string_view text(bytes, count);
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find(message_end, begin)) != std::string_view::npos;) {
        end += message_end.size();
        if (!document.load_buffer_inplace(bytes + begin, end - begin, pugi::parse_default,
                                          pugi::encoding_utf8)) {
            document.reset();
        }
        handle(document);
        begin = end;
    }
    return begin;
}
