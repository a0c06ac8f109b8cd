#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include <asio/ip/address_v4.hpp>

#include "sim/clip_store.h"
#include "sim/standards.h"

namespace veltosim
{

// What the program ends with.
enum ExitCode : int {
    exit_ok = 0,
    exit_bad_option = 2,
    exit_address_in_use = 3,
    exit_network = 4,
    exit_scenario = 5,
    exit_store = 6
};

struct Options {
    asio::ip::address_v4 address;
    const Standard* standard = nullptr;
    std::string name;
    std::string scenario; // a file; empty: the one that is built in
    std::string store;    // a file; empty: in memory
    std::vector<Clip> clips;
    std::optional<FieldRate> report_rate;
    std::vector<std::string> faults; // lines of control
    bool trace = false;
};

// Reads the command line. Without a result the program is to end with `exit_code`: what the user
// needs to read has been written.
std::optional<Options> read_options(int argc, const char* const* argv, std::ostream& out,
                                    std::ostream& err, int& exit_code);

} // namespace veltosim
