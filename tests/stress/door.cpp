#include "stress/door.h"

#include "stress/link.h"

#include <utility>

namespace stress
{

using asio::ip::tcp;
using Clock = std::chrono::steady_clock;

namespace
{

constexpr std::uint16_t port = 8913;
// A simulator that is being started holds all descriptors of this process for a moment, those that
// have just been closed here too.
constexpr auto bind_again = std::chrono::milliseconds(5);
constexpr auto longest_shutting = std::chrono::seconds(10);

} // namespace

Doors::Doors(std::uint32_t first, std::uint32_t simulator)
    : first_host(first), simulator_host(simulator), next_host(first), work(context.get_executor())
{
    const tcp::acceptor first_use(context); // descriptors of its own are there from now on
    thread = std::thread([this] { context.run(); });
}

Doors::~Doors()
{
    context.stop();
    thread.join();
}

std::shared_ptr<Door> Doors::open()
{
    const auto door = std::make_shared<Door>(*this, next_host++);
    door->open();
    return door;
}

Door::Door(Doors& all_doors, std::uint32_t own_address)
    : doors(all_doors), host(own_address), acceptor(doors.context), pause(doors.context),
      waiting_in(doors.context)
{
}

void Door::post(std::function<void()> work)
{
    asio::post(doors.context, [self = shared_from_this(), work = std::move(work)] { work(); });
}

void Door::open()
{
    post([this] {
        is_open = true;
        listen();
    });
}

void Door::listen()
{
    if (!is_open || acceptor.is_open()) {
        return;
    }
    acceptor.open(tcp::v4());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    std::error_code error;
    acceptor.bind({asio::ip::address_v4(host), port}, error);
    if (error) {
        stop_listening();
        return listen_after(bind_again);
    }
    acceptor.listen();
    accept();
}

void Door::stop_listening()
{
    std::error_code ignored;
    acceptor.close(ignored);
}

void Door::accept()
{
    acceptor.async_accept(
        [self = shared_from_this()](const std::error_code& error, tcp::socket client) {
            if (!self->acceptor.is_open()) {
                return;
            }
            if (!error) {
                self->take_in(std::move(client));
            }
            if (!self->is_ignoring) {
                self->accept();
            }
        });
}

void Door::take_in(tcp::socket client)
{
    ++doors.links;
    const auto link = std::make_shared<Link>(shared_from_this(), std::move(client));
    links.insert(link);
    link->start();
}

// Links leave the set as they are cut.
void Door::for_each_link(const std::function<void(Link&)>& act)
{
    const std::vector<std::shared_ptr<Link>> now(links.begin(), links.end());
    for (const auto& link : now) {
        act(*link);
    }
}

void Door::gone(const std::shared_ptr<Link>& link)
{
    links.erase(link);
    tell_when_empty();
}

void Door::tell_when_empty()
{
    if (links.empty()) {
        for (auto& waiting : std::exchange(shutting, {})) {
            waiting.set_value();
        }
    }
}

void Door::cut(Cut how)
{
    post([=, this] { for_each_link([=](Link& link) { link.cut(how); }); });
}

void Door::stall(std::chrono::milliseconds duration)
{
    post([=, this] {
        for_each_link([=](Link& link) { link.stalled_until = Clock::now() + duration; });
    });
}

void Door::trickle(std::chrono::milliseconds duration)
{
    post([=, this] {
        for_each_link([=](Link& link) { link.trickles_until = Clock::now() + duration; });
    });
}

void Door::garbage(const std::string& bytes)
{
    post([=, this] { for_each_link([&](Link& link) { link.garbage = bytes; }); });
}

void Door::refuse(std::chrono::milliseconds duration)
{
    post([=, this] {
        stop_listening();
        for_each_link([](Link& link) { link.cut(Cut::close); });
        listen_after(duration);
    });
}

void Door::listen_after(std::chrono::milliseconds duration)
{
    pause.expires_after(duration);
    pause.async_wait([self = shared_from_this()](const std::error_code&) { self->listen(); });
}

void Door::ignore(std::chrono::milliseconds duration)
{
    post([=, this] {
        if (std::exchange(is_ignoring, true)) {
            return;
        }
        std::error_code ignored;
        acceptor.cancel(ignored);
        for_each_link([](Link& link) { link.cut(Cut::close); });
        waiting_in.expires_after(duration);
        waiting_in.async_wait([self = shared_from_this()](const std::error_code&) {
            self->is_ignoring = false;
            if (self->acceptor.is_open()) {
                self->accept();
            }
        });
    });
}

void Door::heal()
{
    post([this] {
        pause.cancel();
        waiting_in.cancel();
        for_each_link([](Link& link) {
            link.garbage.clear();
            link.stalled_until = {};
            link.trickles_until = {};
        });
        listen();
    });
}

void Door::retire()
{
    post([this] {
        is_open = false;
        stop_listening();
        for_each_link([](Link& link) { link.cut(Cut::close); });
    });
}

bool Door::shut()
{
    std::promise<void> done;
    auto ended = done.get_future();
    asio::post(doors.context, [self = shared_from_this(), promise = std::move(done)]() mutable {
        self->is_open = false;
        self->stop_listening();
        self->shutting.push_back(std::move(promise));
        self->for_each_link([](Link& link) { link.cut(Cut::end_of_stream); });
        self->tell_when_empty();
    });
    return ended.wait_for(longest_shutting) == std::future_status::ready;
}

} // namespace stress
