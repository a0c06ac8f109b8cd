#pragma once

#include "velto/velto.h"

#include <span>
#include <string_view>

namespace fuzz
{

// Calls the exported functions that read what a connection has been told, and checks what they
// give: in range, and texts whole and ended.
void read_channel(VeltoHandle handle, std::uint32_t channel);
void read_notices(VeltoHandle handle);
void read_changes(VeltoHandle handle);
void read_store(VeltoStoreHandle store);

// An exported function that waits, and the reply that it waits for.
struct Question {
    std::string_view reply;
    void (*ask)(VeltoHandle handle);
};

std::span<const Question> questions();

} // namespace fuzz
