#pragma once

#include <atomic>

// Called for every check that does not hold. It returns, and the code behind a check is a defined
// fallback, so nothing may depend on it. A test can hook it to see which checks were reported.
void assert_failed(const char* source, int line, const char* expression);

using AssertHook = void (*)(const char* source, int line, const char* expression);
extern std::atomic<AssertHook> assert_hook;

// Reports where `condition` does not hold; the value is that of the condition.
#define A_CHECK(source, condition)                                                                 \
    ((condition) ? true : (assert_failed(source, __LINE__, #condition), false))

// Reports without a condition.
#define A_REPORT(source, expression) assert_failed(source, __LINE__, expression)
