#include "support/assert_watch.h"

#include "foundation/aassert.h"

#include <algorithm>

// Every living watch, the innermost last. A report holds `lock` while it is handed on, so that a
// watch cannot end meanwhile.
struct AssertWatch::Stack {
    std::mutex lock;
    std::vector<AssertWatch*> watches;
    AssertHook hook_before = nullptr;

    static Stack& instance()
    {
        static Stack stack;
        return stack;
    }
};

AssertWatch::AssertWatch()
{
    Stack& stack = Stack::instance();
    const std::lock_guard guard(stack.lock);
    stack.watches.push_back(this);
    if (stack.watches.size() == 1) {
        stack.hook_before = assert_hook.exchange(&on_report);
    }
}

AssertWatch::~AssertWatch()
{
    Stack& stack = Stack::instance();
    const std::lock_guard guard(stack.lock);
    std::erase(stack.watches, this);
    if (stack.watches.empty()) {
        assert_hook.store(stack.hook_before);
    }
}

void AssertWatch::on_report(const char* source, int line, const char* expression)
{
    Stack& stack = Stack::instance();
    const std::lock_guard guard(stack.lock);
    if (stack.watches.empty()) {
        return; // the last one ended after the hook was read
    }
    AssertWatch& watch = *stack.watches.back();
    const std::lock_guard watch_guard(watch.lock);
    watch.seen.push_back({source, line, expression});
}

std::size_t AssertWatch::count() const
{
    const std::lock_guard guard(lock);
    return seen.size();
}

std::size_t AssertWatch::count(std::string_view source) const
{
    const std::lock_guard guard(lock);
    return static_cast<std::size_t>(std::count_if(
        seen.begin(), seen.end(), [&](const Report& report) { return report.source == source; }));
}

bool AssertWatch::saw(std::string_view source, int line) const
{
    const std::lock_guard guard(lock);
    return std::any_of(seen.begin(), seen.end(), [&](const Report& report) {
        return report.source == source && report.line == line;
    });
}

std::vector<AssertWatch::Report> AssertWatch::reports() const
{
    const std::lock_guard guard(lock);
    return seen;
}
