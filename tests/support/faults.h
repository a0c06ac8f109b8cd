#pragma once

#include "platform/faults.h"
#include "support/await.h"

#include <initializer_list>
#include <ostream>
#include <thread>

namespace platform
{

inline void PrintTo(Call call, std::ostream* out)
{
    *out << call_names[static_cast<std::size_t>(call)];
}

} // namespace platform

// Faults of the system for the rest of a test: the system is whole again when this goes.
class Faults
{
public:
    using Fault = platform::faults::Fault;
    using Effect = platform::faults::Effect;
    using Threads = platform::faults::Threads;
    static constexpr auto for_good = platform::faults::for_good;

    Faults(std::initializer_list<Fault> faults = {})
    {
        for (const Fault& fault : faults) {
            arm(fault);
        }
    }
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;
    ~Faults() { end(); }

    void arm(const Fault& fault) { platform::faults::arm(fault); }
    void end() { platform::faults::disarm_all(); }
    static std::uint64_t struck(platform::Call call) { return platform::faults::struck(call); }

    // Waits until faults of the call have struck so often.
    static void await(platform::Call call, std::uint64_t times = 1)
    {
        const auto bound = std::chrono::steady_clock::now() + hang_bound;
        while (struck(call) < times) {
            if (std::chrono::steady_clock::now() > bound) {
                report_hang("a fault of the system");
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
};
