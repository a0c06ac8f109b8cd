#pragma once

#include "foundation/afunctionext.h"
#include "protocol/zavl3_client_win32.h"
#include "support/event_log.h"
#include "support/script_server.h"

#include <deque>
#include <optional>
#include <thread>

// What became of one command.
class Completion
{
public:
    Completion() = default;
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;

    // The delegates of a command that is answered with a plain ok.
    ZAVL3::ReplyDelegates<ZAVL3::Answers<ZAVL3::reply::ok>> delegates()
    {
        return {bind<&Completion::on_ok>(this), bind<&Completion::on_error>(this)};
    }

    void on_ok() { end("ok"); }
    void on_error(AString text, ZAVL3::ErrorCode code)
    {
        end(text.to_utf8() + " (" + ZAVL3::to_wire(code).to_utf8() + ")");
    }

    bool is_over() const { return !log.all().empty(); }
    // How it ended: `ok`, or the text and the code of the error. More than one end is told as such.
    std::string outcome()
    {
        log.await("over");
        const std::vector<std::string> events = log.all();
        return events.size() == 2 ? events.front() : "ended more than once";
    }
    std::thread::id thread() const { return ended_on; }

private:
    void end(const std::string& how)
    {
        ended_on = std::this_thread::get_id();
        log.note(how);
        log.note("over");
    }

    EventLog log;
    std::thread::id ended_on;
};

// What makes the client give its link up. The broken message alone does not: that shows when the
// next bytes arrive, so more follow than it receives at a time.
inline std::string broken_stream(const std::string& message = "<reply></oops></reply>")
{
    return message + std::string(2048, ' ');
}

inline const std::string link_loss = "Failing all outstanding commands (general)";

// Stands in for a client's wait for input, where it holds the worker until the test lets it go. One
// at a time.
class PumpGate
{
public:
    PumpGate() { current = this; }
    PumpGate(const PumpGate&) = delete;
    PumpGate& operator=(const PumpGate&) = delete;
    ~PumpGate() { current = nullptr; }

    // Waits until the worker has come to its wait for input.
    void await_worker()
    {
        std::unique_lock guard(lock);
        if (!changed.wait_for(guard, hang_bound, [&] { return waiting; })) {
            report_hang("the worker's wait for input");
        }
    }

    // Ends the worker's wait with this result.
    void let_go(int result)
    {
        const std::lock_guard guard(lock);
        given = result;
        waiting = false;
        changed.notify_all();
    }

    // From now on the real wait is made.
    void open()
    {
        const std::lock_guard guard(lock);
        opened = true;
        changed.notify_all();
    }

    static int wait(platform::SocketHandle socket, std::uint32_t time_ms)
    {
        return current.load()->pass(socket, time_ms);
    }

private:
    int pass(platform::SocketHandle socket, std::uint32_t time_ms)
    {
        std::unique_lock guard(lock);
        waiting = true;
        changed.notify_all();
        changed.wait(guard, [&] { return given.has_value() || opened; });
        waiting = false;
        if (given.has_value()) {
            const int result = *given;
            given.reset();
            return result;
        }
        guard.unlock();
        return platform::wait_readable(socket, time_ms);
    }

    static inline std::atomic<PumpGate*> current{nullptr};

    std::mutex lock;
    std::condition_variable changed;
    bool waiting = false;
    bool opened = false;
    std::optional<int> given;
};

// A client that notes what happens to its link. Made before the server of its test, it outlives the
// link, and so ends without waiting for input.
class TestClient : public ZAVL3::Client
{
public:
    ~TestClient() override
    {
        if (gate) {
            gate->open();
        }
        stop_worker();
    }

    void start(const ScriptServer& server)
    {
        set_server_address(server.address().number);
        start_worker(0);
    }

    // Before the start: the worker waits at the gate.
    PumpGate& hold_at_gate()
    {
        wait_for_input = &PumpGate::wait;
        return gate.emplace();
    }

    // Starts, and waits until the link is up.
    ScriptLink connect(ScriptServer& server)
    {
        start(server);
        ScriptLink link = server.accept();
        events.await("up");
        return link;
    }

    void on_connection_up() override
    {
        worker = std::this_thread::get_id();
        events.note("up");
    }
    void on_connection_down() override { events.note("down"); }

    void issue_stop(Completion& completion)
    {
        issue(ZAVL3::command::stop{}, completion.delegates());
    }
    Completion& issue_stop()
    {
        Completion& completion = completions.emplace_back();
        issue_stop(completion);
        return completion;
    }
    Completion& issue_delete_clip(const AString& clip)
    {
        Completion& completion = completions.emplace_back();
        ZAVL3::command::delete_clip command;
        command.set<"ClipID">(clip);
        issue(command, completion.delegates());
        return completion;
    }

    using Client::connected;
    using Client::keepalive_hook;
    using Client::keepalive_period;
    using Client::last_keepalive;
    using Client::send_block;
    using Client::send_failed;
    using Client::server_address;
    using Client::socket_handle;
    using Client::wait_for_input;

    EventLog events;
    std::thread::id worker;

private:
    std::optional<PumpGate> gate;
    std::deque<Completion> completions; // those of the test's thread; outlive the worker
};
