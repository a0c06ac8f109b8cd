#pragma once

#include "foundation/csem.h"

// A binary semaphore; signalling one that is set is harmless.
class BSem : public CSem
{
public:
    explicit BSem(bool initially_set) : CSem(initially_set ? 1 : 0, 1) {}

    void signal();
};
