#include "application.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

std::string printable(const VeltoChar* text)
{
    const std::u8string bytes = std::filesystem::path(text).u8string();
    return {bytes.begin(), bytes.end()};
}

std::basic_string<VeltoChar> units(const std::string& text)
{
    const std::u8string bytes(text.begin(), text.end());
    const std::u16string wide = std::filesystem::path(bytes).u16string();
    return {wide.begin(), wide.end()};
}

std::string last_error()
{
    VeltoChar text[512] = {};
    velto_get_last_error({text, 512});
    return printable(text);
}

void check(VeltoResult result, const std::string& what)
{
    if (result != VELTO_RESULT_OK) {
        throw std::runtime_error(what + ": " + last_error());
    }
}

uint32_t host_order(const std::string& address)
{
    uint32_t value = 0;
    std::istringstream parts(address);
    for (std::string part; std::getline(parts, part, '.');) {
        value = value << 8 | static_cast<uint32_t>(std::stoul(part));
    }
    return value;
}

Server::Server(const std::string& address)
    : name(address), handle(velto_connect(host_order(address)))
{
}

void Server::wait_for_link(std::chrono::milliseconds limit) const
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (velto_connected(handle) == VELTO_LINK_DOWN) {
        if (std::chrono::steady_clock::now() >= end) {
            throw std::runtime_error("no server answers at " + name + ", port 8913");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}
