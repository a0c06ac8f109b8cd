#pragma once

#include "responder.h"

#include <pugixml.hpp>

#include <functional>
#include <string>
#include <thread>

// The link of a client written on common libraries: reads messages of one kind on a thread of its
// own, parses each and hands it on. What stands between them goes by.
class PeerLink
{
public:
    using Handler = std::function<void(const pugi::xml_document& message)>;

    // `end_tag` ends a message: "</report>".
    PeerLink(const Responder& responder, std::string end_tag, Handler handle_message);
    PeerLink(const PeerLink&) = delete;
    PeerLink& operator=(const PeerLink&) = delete;
    ~PeerLink();

    void send(const std::string& command);

private:
    void read_messages();
    std::size_t handle_messages(char* bytes, std::size_t count);

    const std::string message_end;
    const Handler handle;
    asio::io_context context;
    asio::ip::tcp::socket socket;
    pugi::xml_document document;
    std::thread reader;
};
