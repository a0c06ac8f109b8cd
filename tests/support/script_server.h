#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// An address of 127.0.0.0/8, which are all this machine.
struct LoopbackAddress {
    std::uint32_t number; // in host byte order
    std::string text;
};

// A command as it arrived.
struct ReceivedCommand {
    std::string bytes; // `<cmd>` to `</cmd>`
    std::string xid;
    std::string name;
};

// The first command of `unread`, which it leaves, if that is whole. Nothing may stand before it.
std::optional<ReceivedCommand> take_command(std::string& unread);

// A message to the client: `content` is the element inside.
std::string reply_message(std::string_view xid, std::string_view content);
std::string error_content(std::string_view text, std::string_view code = "general");

// The server's end of one link. Every step waits until it is done; where the link ends in place of
// what is expected it throws, and a hang ends the program. For one thread at a time.
class ScriptLink
{
public:
    ScriptLink(ScriptLink&&) noexcept;
    ScriptLink& operator=(ScriptLink&&) noexcept;
    ~ScriptLink(); // closes

    // The next command. Nothing may stand before it.
    ReceivedCommand expect_command();
    // The same, checking its name.
    ReceivedCommand expect(std::string_view name);
    // Bytes as they come; none at the end of the link.
    std::string receive();
    // Waits until the client has ended the link, whatever still comes before.
    void expect_end();
    // False once the client has ended the link and all it sent has been received.
    bool is_open();

    void send(std::string_view bytes);
    void send_byte_by_byte(std::string_view bytes);
    void reply(std::string_view xid, std::string_view content);
    void reply_ok(std::string_view xid) { reply(xid, "<ok />"); }
    void reply_error(std::string_view xid, std::string_view text, std::string_view code = "general")
    {
        reply(xid, error_content(text, code));
    }

    void close();
    void reset(); // without a farewell

private:
    friend class ScriptServer;
    struct Side;
    explicit ScriptLink(std::unique_ptr<Side> accepted);

    std::unique_ptr<Side> side;
};

// A server that does what the test tells it, step by step. It listens on the port of all servers,
// at an address of its own, so that tests can run side by side.
class ScriptServer
{
public:
    ScriptServer(); // listens
    ~ScriptServer();

    const LoopbackAddress& address() const { return own_address; }
    ScriptLink accept();
    void stop_listening();
    void listen();

private:
    struct Door;

    std::unique_ptr<Door> door;
    LoopbackAddress own_address;
};
