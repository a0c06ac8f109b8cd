#pragma once

#include "sim/posix/program.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace stress
{

// A simulator of the run's own, at full report rate, which keeps its store when it is killed.
class Simulator
{
public:
    Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;
    ~Simulator();

    // The first of a network that nobody else uses.
    std::uint32_t address() const { return host; }
    // A line of control; its answer.
    std::string control(const std::string& line);
    void kill_and_start();
    // For a process that ends without destructors.
    void kill_for_good();

private:
    void start();
    void find_network();

    std::uint32_t host = 0;
    const std::filesystem::path directory;
    std::mutex lock;
    std::unique_ptr<veltosim::Program> program;
};

} // namespace stress
