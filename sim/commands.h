#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/message.h"
#include "sim/motion.h"
#include "sim/station.h"

namespace veltosim
{

// All that the handler of a command works on.
struct Call {
    Station& station;
    Registrations& registrations;
    const Fields& fields;
    TimePoint now;
    Replies& replies; // left empty, it becomes `ok`
};

using Handler = void (*)(Call&);

// One command of the protocol: its name, its fields in their order, and who obeys it.
struct CommandRule {
    std::string_view name;
    std::vector<FieldRule> fields;
    Handler handler;
};

std::span<const CommandRule> commands();

// Obeys or refuses one complete command, and gives the messages that go back: none if the link is
// to be dropped instead. Throws Junk if it is no command.
std::vector<std::string> answer(Station& station, Registrations& registrations,
                                std::string_view command, TimePoint now);

} // namespace veltosim
