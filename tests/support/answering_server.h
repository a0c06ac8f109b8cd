#pragma once

#include "support/script_server.h"

#include <functional>
#include <vector>

// A server for tests that are not scripts: it answers each command at once, on a thread of its own,
// and takes whoever comes.
class AnsweringServer
{
public:
    // `content` is that of the replies to a command, in order: the element inside of each. It is
    // called on the server's thread, as is `begin`, before all.
    using Contents = std::vector<std::string>;
    using Answer = std::function<Contents(const ReceivedCommand&)>;

    explicit AnsweringServer(
        Answer content = &ok, std::function<void()> begin = [] {});
    AnsweringServer(const AnsweringServer&) = delete;
    AnsweringServer& operator=(const AnsweringServer&) = delete;
    ~AnsweringServer();

    std::uint32_t address() const;
    std::uint64_t commands() const; // that have been answered
    // To every client that is there.
    void tell(std::string bytes);

    static Contents ok(const ReceivedCommand&) { return {"<ok />"}; }

private:
    struct Inside;

    std::unique_ptr<Inside> inside;
};
