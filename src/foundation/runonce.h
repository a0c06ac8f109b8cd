#pragma once

#include "foundation/atomic_win32_impl.h"

// A global that calls a function exactly once, at load.
class RunOnce
{
public:
    using Function = void (*)(RunOnce* object, std::uint32_t value);

    explicit RunOnce(Function run_function);
};

// The library's one 128-bit cell: 0 is stored in it once, at load.
AtomicCell128& run_once_cell();
