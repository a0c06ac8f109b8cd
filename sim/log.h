#pragma once

#include <cstdint>
#include <string_view>

namespace veltosim
{

// What the program tells on its standard error, a line each. The messages and the comings and
// goings of clients are told with `tracing` only, that a client was dropped always.
class Log
{
public:
    explicit Log(bool with_trace) : tracing(with_trace) {}

    void connected(std::uint64_t client, std::string_view address) const;
    void disconnected(std::uint64_t client, std::string_view reason) const;
    void dropped(std::uint64_t client, std::string_view reason) const;
    void received(std::uint64_t client, std::string_view message) const;
    void sent(std::uint64_t client, std::string_view message) const;
    void accept_failed(std::string_view reason) const;

private:
    bool tracing;
};

} // namespace veltosim
