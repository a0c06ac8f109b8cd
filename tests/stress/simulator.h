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
    explicit Simulator(std::uint32_t own_address);
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;
    ~Simulator();

    std::uint32_t address() const { return host; }
    // A line of control; its answer.
    std::string control(const std::string& line);
    void kill_and_start();

private:
    void start();

    const std::uint32_t host;
    const std::filesystem::path directory;
    std::mutex lock;
    std::unique_ptr<veltosim::Program> program;
};

} // namespace stress
