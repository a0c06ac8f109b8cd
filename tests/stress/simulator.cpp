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

Simulator::Simulator(std::uint32_t own_address) : host(own_address), directory(own_directory())
{
    start();
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

} // namespace stress
