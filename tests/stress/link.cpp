#include "stress/link.h"

#include <string_view>
#include <utility>

namespace stress
{

using asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace
{

constexpr std::uint16_t port = 8913;
constexpr std::string_view end_of_report = "</report>";
constexpr std::size_t trickle_bytes = 7;
constexpr auto after_garbage = 50ms;

} // namespace

Link::Link(std::shared_ptr<Door> through, tcp::socket accepted)
    : door(std::move(through)), client(std::move(accepted)),
      server(client.get_executor()), up{client, server, asio::steady_timer(client.get_executor())},
      down{server, client, asio::steady_timer(client.get_executor())}
{
}

void Link::start()
{
    std::error_code ignored;
    client.set_option(tcp::no_delay(true), ignored);
    server.async_connect({asio::ip::address_v4(door->doors.server()), port},
                         [self = shared_from_this()](const std::error_code& error) {
                             if (error || self->is_ending) {
                                 return self->close();
                             }
                             std::error_code not_set;
                             self->server.set_option(tcp::no_delay(true), not_set);
                             self->read(self->up);
                             self->read(self->down);
                         });
}

void Link::read(Way& way)
{
    const std::size_t most = trickles_until > Clock::now() ? trickle_bytes : way.block.size();
    way.from.async_read_some(
        asio::buffer(way.block.data(), most),
        [self = shared_from_this(), &way](const std::error_code& error, std::size_t count) {
            if (self->is_ending) {
                return;
            }
            if (error) {
                return self->cut(Cut::end_of_stream);
            }
            way.held = count;
            self->hold(way);
        });
}

void Link::hold(Way& way)
{
    if (stalled_until <= Clock::now()) {
        return deliver(way);
    }
    way.timer.expires_at(stalled_until);
    way.timer.async_wait([self = shared_from_this(), &way](const std::error_code&) {
        if (!self->is_ending) {
            self->hold(way);
        }
    });
}

void Link::deliver(Way& way)
{
    if (&way == &down) {
        count_reports(way.block.data(), way.held);
    }
    asio::async_write(way.to, asio::buffer(way.block.data(), way.held),
                      [self = shared_from_this(), &way](const std::error_code& error, std::size_t) {
                          if (self->is_ending) {
                              return;
                          }
                          if (error) {
                              return self->cut(Cut::end_of_stream);
                          }
                          self->delivered(way);
                      });
}

void Link::delivered(Way& way)
{
    if (&way == &down && !garbage.empty()) {
        send_garbage(way);
    } else {
        read(way);
    }
}

void Link::send_garbage(Way& way)
{
    asio::async_write(way.to, asio::buffer(garbage),
                      [self = shared_from_this(), &way](const std::error_code&, std::size_t) {
                          way.timer.expires_after(after_garbage);
                          way.timer.async_wait(
                              [self](const std::error_code&) { self->cut(Cut::end_of_stream); });
                      });
}

// What was on its way to the server and is not there yet never comes there: the client takes it
// for lost and may send something else on another link.
void Link::cut(Cut how)
{
    if (is_ending && how == Cut::end_of_stream) {
        return;
    }
    is_ending = true;
    std::error_code ignored;
    server.close(ignored);
    up.timer.cancel();
    down.timer.cancel();
    if (how == Cut::reset) {
        client.set_option(asio::socket_base::linger(true, 0), ignored);
    }
    if (how != Cut::end_of_stream) {
        return close();
    }
    client.cancel(ignored);
    client.shutdown(tcp::socket::shutdown_send, ignored);
    drain();
}

// Until the client has seen the end, and closed the link as well.
void Link::drain()
{
    client.async_read_some(asio::buffer(up.block),
                           [self = shared_from_this()](const std::error_code& error, std::size_t) {
                               if (!error || error == asio::error::operation_aborted) {
                                   if (self->client.is_open()) {
                                       return self->drain();
                                   }
                               }
                               self->close();
                           });
}

void Link::close()
{
    is_ending = true;
    std::error_code ignored;
    client.close(ignored);
    server.close(ignored);
    up.timer.cancel();
    down.timer.cancel();
    door->gone(shared_from_this());
}

void Link::count_reports(const char* bytes, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (bytes[i] != end_of_report[matched]) {
            matched = 0;
        }
        if (bytes[i] == end_of_report[matched] && ++matched == end_of_report.size()) {
            matched = 0;
            ++door->doors.reports;
        }
    }
}

} // namespace stress
