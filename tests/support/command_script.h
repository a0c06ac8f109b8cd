#pragma once

#include "support/assert_watch.h"
#include "support/session.h"
#include "support/wire_row.h"

#include <gtest/gtest.h>

// The exact bytes of a command with this xid.
inline std::string wire_bytes(const std::vector<std::string>& lines, const std::string& xid)
{
    std::string bytes = "<cmd>\r\n<xid>" + xid + "</xid>\r\n";
    for (const std::string& line : lines) {
        bytes += line + "\r\n";
    }
    return bytes + "</cmd>";
}

inline bool is_number(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

// The xid of the command that comes next, which is this one.
inline std::string expect_lines(Session& session, const std::vector<std::string>& lines)
{
    const ReceivedCommand command = session.link->expect_command();
    EXPECT_TRUE(is_number(command.xid)) << command.xid;
    EXPECT_EQ(command.bytes, wire_bytes(lines, command.xid));
    return command.xid;
}

// The server goes away. When it returns, the link is down and stays so.
inline void lose_link(Session& session)
{
    session.server.stop_listening();
    auto stopping = calling([&] { return velto_cmd_stop1(session.handle, 0); });
    session.link->expect("stop");
    session.link->close();
    EXPECT_EQ(await(std::move(stopping)), link_failed);
}

// And back.
inline void restore_link(Session& session)
{
    session.server.listen();
    session.accept();
}

// A command without what is around it in every command.
inline std::string element_of(const ReceivedCommand& command)
{
    const std::size_t begin = command.bytes.find("<" + command.name);
    return command.bytes.substr(begin, command.bytes.find("\r\n</cmd>") - begin);
}

// What the client sends by itself when the link is back after a loss.
inline std::vector<std::string> registrations_after_loss(Session& session)
{
    session.replace_link();
    std::vector<std::string> registrations;
    // The first command may overtake the worker, the second one cannot.
    for (int round = 0; round < 2; ++round) {
        auto stopping = calling([&] { return velto_cmd_stop1(session.handle, 0); });
        ReceivedCommand command = session.link->expect_command();
        for (; command.name != "stop"; command = session.link->expect_command()) {
            registrations.push_back(element_of(command));
            session.link->reply_error(command.xid, "nobody hears it");
        }
        session.link->reply_ok(command.xid);
        EXPECT_EQ(await(std::move(stopping)), succeeded);
    }
    return registrations;
}

// Calls the rows of a table while the test plays the server.
class CommandScript : public testing::Test
{
protected:
    // Makes the call, and has the server answer with `content`.
    Outcome answered(const WireRow& row, const std::string& content)
    {
        auto call = calling([&] { return row.call(session.handle); });
        session.link->reply(expect_lines(session, row.lines), content);
        return await(std::move(call));
    }

    void expect_bytes(WireRows rows)
    {
        for (const WireRow& row : rows) {
            SCOPED_TRACE(row.function);
            const AssertWatch watch;
            EXPECT_EQ(answered(row, "<ok />"), succeeded);
            EXPECT_EQ(watch.count(), row.reports);
        }
    }

    void expect_refusals(WireRows rows)
    {
        for (const WireRow& row : rows) {
            SCOPED_TRACE(row.function);
            EXPECT_EQ(answered(row, error_content("Channel is in use", "clipnotfound")),
                      (Outcome{2, "Channel is in use"}));
        }
    }

    void expect_no_wait(WireRows rows)
    {
        velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
        for (const WireRow& row : rows) {
            SCOPED_TRACE(row.function);
            EXPECT_EQ(outcome_of([&] { return row.call(session.handle); }), succeeded);
            expect_lines(session, row.lines);
        }
    }

    // All at once, and then the link goes.
    void expect_failure_at_loss(WireRows rows)
    {
        std::vector<std::future<Outcome>> calls;
        for (const WireRow& row : rows) {
            calls.push_back(calling([&] { return row.call(session.handle); }));
            session.link->expect_command();
        }
        session.link->close();
        for (std::future<Outcome>& call : calls) {
            EXPECT_EQ(await(std::move(call)), link_failed);
        }
    }

    Session session;
};

inline void expect_invalid_handle(WireRows rows)
{
    for (const WireRow& row : rows) {
        SCOPED_TRACE(row.function);
        EXPECT_EQ(outcome_of([&] { return row.call(0); }), invalid_handle);
    }
}

inline void expect_failure_without_link(WireRows rows)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    for (const WireRow& row : rows) {
        SCOPED_TRACE(row.function);
        EXPECT_EQ(outcome_of([&] { return row.call(handle); }), link_failed);
    }
    velto_close(handle);
}
