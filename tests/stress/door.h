#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <asio.hpp>

namespace stress
{

class Doors;
class Link;

enum class Cut { end_of_stream, close, reset };

// A way to the simulator with an address of its own, on which things go wrong on purpose. Every
// call may come from any thread; it is carried out on the thread of the doors.
class Door : public std::enable_shared_from_this<Door>
{
public:
    Door(Doors& all_doors, std::uint32_t own_address);

    std::uint32_t address() const { return host; }

    void cut(Cut how);
    // What is under way waits so long, and then goes on.
    void stall(std::chrono::milliseconds duration);
    // Everything comes in pieces of a few bytes.
    void trickle(std::chrono::milliseconds duration);
    // Is sent to the client between two blocks, and the link ends soon after it: what was to be
    // read there may be lost, and with it a reply that somebody waits for.
    void garbage(const std::string& bytes);
    // Links are cut, and nobody listens.
    void refuse(std::chrono::milliseconds duration);
    // Connections are let in, but nothing reads them.
    void ignore(std::chrono::milliseconds duration);
    // Nothing goes wrong any more.
    void heal();
    // Nobody listens any more, and all links have been closed by the client when it returns; false
    // when one has not in ten seconds.
    bool shut();
    void open();
    // Nobody comes here any more; waits for nothing.
    void retire();

private:
    friend class Doors;
    friend class Link;

    void post(std::function<void()> work);
    void listen();
    void listen_after(std::chrono::milliseconds duration);
    void stop_listening();
    void accept();
    void take_in(asio::ip::tcp::socket client);
    void for_each_link(const std::function<void(Link&)>& act);
    void gone(const std::shared_ptr<Link>& link);
    void tell_when_empty();

    Doors& doors;
    const std::uint32_t host;
    asio::ip::tcp::acceptor acceptor;
    asio::steady_timer pause;      // until it listens again
    asio::steady_timer waiting_in; // until it lets in who waits
    bool is_open = false;
    bool is_ignoring = false;
    std::set<std::shared_ptr<Link>> links;
    std::vector<std::promise<void>> shutting;
};

// All doors of a run, and the one thread that they work on.
class Doors
{
public:
    // Doors get the addresses from `first` on.
    Doors(std::uint32_t first, std::uint32_t simulator);
    Doors(const Doors&) = delete;
    Doors& operator=(const Doors&) = delete;
    ~Doors();

    std::shared_ptr<Door> open();

    std::uint32_t server() const { return simulator_host; }
    bool is_door(std::uint32_t address) const
    {
        return address >= first_host && address < next_host;
    }

    std::atomic<std::uint64_t> reports{0};
    std::atomic<std::uint64_t> links{0};

private:
    friend class Door;
    friend class Link;

    asio::io_context context{1};
    const std::uint32_t first_host;
    const std::uint32_t simulator_host;
    std::atomic<std::uint32_t> next_host;
    asio::executor_work_guard<asio::io_context::executor_type> work;
    std::thread thread;
};

} // namespace stress
