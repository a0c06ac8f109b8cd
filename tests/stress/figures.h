#pragma once

#include "stress/door.h"

#include <cstddef>
#include <vector>

namespace stress
{

// What the process has at the moment.
struct Figures {
    std::size_t resident_kb = 0;
    std::size_t heap_kb = 0; // given out by the allocator; none with a sanitizer
    std::size_t threads = 0;
    std::size_t descriptors = 0;
};

Figures figures();

// The descriptors of sockets that end at a door, or nowhere any more.
std::vector<int> link_descriptors(const Doors& doors);

// As many descriptors as the system lets it have.
void raise_descriptor_limit();

} // namespace stress
