#include "sim/log.h"

#include <chrono>
#include <cstdio>
#include <string>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "sim/text.h"

namespace veltosim
{

namespace
{

void write_line(std::string_view text)
{
    const auto now = std::chrono::system_clock::now();
    const auto second = std::chrono::floor<std::chrono::seconds>(now);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(now - second).count();
    const std::string line = fmt::format(
        "{:%H:%M:%S}.{:03} {}\n", fmt::localtime(std::chrono::system_clock::to_time_t(second)),
        milliseconds, text);
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void write_line(std::uint64_t client, std::string_view sign, std::string_view text)
{
    write_line(fmt::format("client {} {} {}", client, sign, on_one_line(text)));
}

} // namespace

void Log::connected(std::uint64_t client, std::string_view address) const
{
    if (tracing) {
        write_line(client, "connected from", address);
    }
}

void Log::disconnected(std::uint64_t client, std::string_view reason) const
{
    if (tracing) {
        write_line(client, "disconnected:", reason);
    }
}

void Log::dropped(std::uint64_t client, std::string_view reason) const
{
    write_line(client, "dropped:", reason);
}

void Log::received(std::uint64_t client, std::string_view message) const
{
    if (tracing) {
        write_line(client, "->", message);
    }
}

void Log::sent(std::uint64_t client, std::string_view message) const
{
    if (tracing) {
        write_line(client, "<-", message);
    }
}

void Log::accept_failed(std::string_view reason) const
{
    write_line(fmt::format("a client could not be accepted: {}", reason));
}

} // namespace veltosim
