#include "stress/simulator.h"

#include <csignal>
#include <stdexcept>

#include <asio/ip/address_v4.hpp>
#include <unistd.h>

namespace stress
{

namespace
{

std::filesystem::path own_directory()
{
    std::string name = (std::filesystem::temp_directory_path() / "velto_stress.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no directory for the simulator's store");
    }
    return name;
}

} // namespace

Simulator::Simulator() : directory(own_directory())
{
    find_network();
}

// Runs side by side, of several builds say, have a network each. The simulator ends when another
// one listens there.
void Simulator::find_network()
{
    constexpr std::uint32_t first = 0x7F800001; // 127.128.0.1
    constexpr std::uint32_t networks = 96;
    const auto own = static_cast<std::uint32_t>(getpid());
    for (std::uint32_t number = 0;; ++number) {
        host = first + ((own + number) % networks << 16);
        try {
            return start();
        } catch (const std::runtime_error&) {
            if (number + 1 == networks) {
                throw;
            }
        }
    }
}

Simulator::~Simulator()
{
    program.reset();
    std::filesystem::remove_all(directory);
}

void Simulator::start()
{
    program = std::make_unique<veltosim::Program>(
        std::vector<std::string>{"--address", asio::ip::address_v4(host).to_string(), "--store",
                                 (directory / "store").string()});
}

std::string Simulator::control(const std::string& line)
{
    const std::lock_guard guard(lock);
    program->write(line + "\n");
    return program->line();
}

void Simulator::kill_and_start()
{
    const std::lock_guard guard(lock);
    program->end(SIGKILL);
    start();
}

void Simulator::kill_for_good()
{
    if (const std::unique_lock guard(lock, std::try_to_lock); guard) {
        program->end(SIGKILL);
        std::filesystem::remove_all(directory);
    }
}

} // namespace stress
