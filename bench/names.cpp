#include "names.h"

#include "library_link.h"
#include "measure.h"
#include "peer_link.h"

#include <condition_variable>
#include <cstdio>
#include <future>
#include <iterator>
#include <optional>
#include <vector>

#include <fmt/format.h>

namespace
{

constexpr std::size_t send_block_bytes = 65536;

std::string clip_name(std::uint32_t number)
{
    return fmt::format("news/day_07/item_{:06}", number);
}

// Has so many clips. What it sends is made and sent on a thread of the measurement's own, so that
// its CPU time can be told from the client's.
class NameServer
{
public:
    explicit NameServer(std::uint32_t names)
        : count(names), responder([this](const std::string& command) { return note(command); })
    {
    }

    const Responder& link() const { return responder; }

    // Answers the next command; gives the CPU time that this has taken.
    double serve()
    {
        const std::string xid = asked.get_future().get();
        asked = {};
        const double start = cpu_seconds(CLOCK_THREAD_CPUTIME_ID);
        std::string block;
        for (std::uint32_t number = 0; number != count; ++number) {
            fmt::format_to(std::back_inserter(block),
                           "<reply><xid>{}</xid><clipid><ClipID>{}</ClipID></clipid></reply>", xid,
                           clip_name(number));
            if (block.size() >= send_block_bytes) {
                responder.send(block);
                block.clear();
            }
        }
        responder.send(block + "<reply><xid>" + xid + "</xid><ok/></reply>");
        return cpu_seconds(CLOCK_THREAD_CPUTIME_ID) - start;
    }

private:
    std::string note(const std::string& command)
    {
        asked.set_value(text_of(command, "xid"));
        return {};
    }

    const std::uint32_t count;
    std::promise<std::string> asked;
    const Responder responder;
};

// The competitors, with one interface: `list` gets all names, `forget` lets go of them.

class LibraryLister
{
public:
    explicit LibraryLister(const Responder& responder) : link(responder) {}

    void list()
    {
        require(velto_open_clip_list(link.handle, &names) == VELTO_RESULT_OK,
                "velto_open_clip_list failed");
    }
    void forget() { velto_close_clip_list(names); }

    std::string take()
    {
        VeltoChar text[64];
        require(velto_get_clip_name(names, {text, 64}) == VELTO_RESULT_OK,
                "velto_get_clip_name failed");
        return {text, text + std::char_traits<VeltoChar>::length(text)};
    }

private:
    LibraryLink link;
    VeltoListHandle names = 0;
};

class PeerLister
{
public:
    explicit PeerLister(const Responder& responder)
        : link(responder, "</reply>",
               [this](const pugi::xml_document& message) { handle(message.child("reply")); })
    {
    }

    void list()
    {
        link.send("<cmd><xid>1</xid><download_clipids/></cmd>");
        std::unique_lock guard(lock);
        done.wait(guard, [this] { return complete; });
    }
    void forget()
    {
        names = std::vector<std::string>();
        complete = false;
    }

    std::string take() { return names[taken++]; }

private:
    void handle(const pugi::xml_node& reply)
    {
        const std::lock_guard guard(lock);
        if (const pugi::xml_node clip = reply.child("clipid")) {
            names.emplace_back(clip.child_value("ClipID"));
        } else if (reply.child("ok")) {
            complete = true;
            done.notify_one();
        }
    }

    std::mutex lock;
    std::condition_variable done;
    std::vector<std::string> names; // guarded by lock
    bool complete = false;          // guarded by lock
    std::size_t taken = 0;
    PeerLink link; // last: its thread uses all the others
};

template <typename Lister>
class Contestant
{
public:
    explicit Contestant(std::uint32_t names) : count(names), server(names), lister(server.link())
    {
        list(); // for what is made once
        lister.forget();
        seconds = cpu = 0;
        turns = 0;
    }

    // The client's CPU time is that of the process without this thread, which serves.
    void list()
    {
        const double process_start = cpu_seconds(CLOCK_PROCESS_CPUTIME_ID);
        const auto start = Clock::now();
        auto listing = std::async(std::launch::async, [this] { lister.list(); });
        const double served = server.serve();
        listing.get();
        seconds += seconds_since(start);
        cpu += cpu_seconds(CLOCK_PROCESS_CPUTIME_ID) - process_start - served;
        ++turns;
    }

    void take_turn()
    {
        list();
        lister.forget();
    }

    void measure_memory()
    {
        const double before = allocated_bytes();
        list();
        bytes_a_name = (allocated_bytes() - before) / count;
    }

    void drain()
    {
        const auto start = Clock::now();
        for (std::uint32_t number = 0; number != count; ++number) {
            last_name = lister.take();
        }
        drain_ns = seconds_since(start) * 1e9 / count;
        require(last_name == clip_name(count - 1), "the last name is another than was sent");
        lister.forget();
    }

    double cpu_us() const { return cpu * 1e6 / (double{1} * turns * count); }
    void print(const char* name, double base_us) const
    {
        fmt::print("  {:38} {:14.0f} {:14.2f} {:12.2f} {:14.0f} {:14.0f}\n", name,
                   double{1} * turns * count / seconds, cpu_us(), cpu_us() / base_us, bytes_a_name,
                   drain_ns);
    }

private:
    const std::uint32_t count;
    NameServer server;
    Lister lister;
    std::uint32_t turns = 0;
    double seconds = 0;
    double cpu = 0;
    double bytes_a_name = 0;
    double drain_ns = 0;
    std::string last_name;
};

} // namespace

// The two take turns, so that whatever else the machine does meets them alike.
void measure_names(bool smoke)
{
    const std::uint32_t names = smoke ? 1000 : 100000;
    const int turns = smoke ? 1 : 5;

    Contestant<PeerLister> peer(names);
    Contestant<LibraryLister> library(names);
    for (int turn = 0; turn < turns; ++turn) {
        peer.take_turn();
        library.take_turn();
    }
    peer.measure_memory();
    library.measure_memory();
    peer.drain();
    library.drain();

    fmt::print("clip list of {} names of {} characters, {} times each\n", names,
               clip_name(0).size(), turns + 1);
    fmt::print("  {:38} {:>14} {:>14} {:>12} {:>14} {:>14}\n", "", "names a second",
               "CPU us a name", "of the peer", "bytes a name", "ns to take one");
    peer.print("asio, pugixml and a vector of strings", peer.cpu_us());
    library.print("velto", peer.cpu_us());
}
