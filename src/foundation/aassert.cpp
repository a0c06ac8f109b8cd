#include "foundation/aassert.h"

std::atomic<AssertHook> assert_hook{nullptr};

void assert_failed(const char* source, int line, const char* expression)
{
    if (AssertHook hook = assert_hook.load(std::memory_order_acquire)) {
        hook(source, line, expression);
    }
}
