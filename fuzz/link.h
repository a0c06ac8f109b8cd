#pragma once

#include "connection/velto.h"
#include "fuzz/exports.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz
{

// A connection whose server is the input. Its link is up without a socket: what it writes is
// dropped, and commands of every kind of reply wait for what is fed. One at a time.
class Link
{
public:
    Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link();

    void feed(std::string_view bytes);
    bool is_broken() const { return connection->is_stream_broken(); }
    // The link is lost, with all commands, and comes back.
    void lose();

    // `answer` runs once the command is written; what it leaves without an answer fails.
    void ask(const Question& question, const std::function<void()>& answer);

    // Calls all exported functions that read what the connection has been told.
    void read_back();

    // The transaction that each command waiting from the start has, by the tag of a reply to it,
    // and that of the first question.
    static std::string waiting_xid(std::string_view reply);
    static std::string question_xid();

private:
    static std::ptrdiff_t take_bytes(platform::SocketHandle socket, const void* bytes,
                                     std::size_t count);
    void issue_commands();
    void on_written(std::string_view bytes);
    void before_dispatch(XMLTree message);

    static Link* current;

    ARef<VeltoConnObject> connection;
    VeltoHandle handle;
    VeltoStoreHandle store = 0;
    std::string written_tail;
    std::vector<CBBaseObject*> completions; // a share of each
    std::string_view expected_reply;
    std::function<void()> answer_to_question;
    AString asked_xid;
};

} // namespace fuzz
