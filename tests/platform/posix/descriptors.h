#pragma once

#include <algorithm>

#include <sys/resource.h>

// Raises the number of descriptors that the process may have, for as long as it lives.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(rlim_t wanted)
    {
        getrlimit(RLIMIT_NOFILE, &before);
        rlimit raised = before;
        raised.rlim_cur = std::max(before.rlim_cur, std::min(wanted, before.rlim_max));
        setrlimit(RLIMIT_NOFILE, &raised);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before); }

    // Whether the system lets the process have that many.
    bool allows(rlim_t count) const { return count <= before.rlim_max; }

private:
    rlimit before{};
};
