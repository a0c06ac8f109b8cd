#include "fuzz/check.h"

#include "foundation/aassert.h"

#include <cstdio>
#include <cstdlib>

namespace
{

// The checks that bad input is meant to reach: they are how it is refused.
struct Refusal {
    std::string_view source;
    std::string_view expression;
};

constexpr Refusal refusals[] = {
    {"achar", "lead byte"},    // a continuation byte stands first
    {"achar", "row != end"},   // a character above 0x10FFFF, which four bytes can spell, is written
    {"anumber", "digit >= 0"}, // a fraction that is no number
    {"typehelp", "field rate class is known"}, // a clip of a standard whose rate is not known
};

void on_report(const char* source, int line, const char* expression)
{
    for (const Refusal& refusal : refusals) {
        if (refusal.source == source && refusal.expression == expression) {
            return;
        }
    }
    fuzz::fail(source, line, expression);
}

} // namespace

namespace fuzz
{

void fail(const char* file, int line, const char* expression)
{
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, expression);
    std::abort();
}

} // namespace fuzz

// Not declared in any header: libFuzzer calls it once if it is there.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    assert_hook = &on_report;
    return 0;
}
