#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// Sees every check that is reported while it lives, from whatever thread. The innermost watch gets
// a report; an outer one goes on when the inner one has ended.
class AssertWatch
{
public:
    struct Report {
        std::string source;
        int line;
        std::string expression;
    };

    AssertWatch();
    AssertWatch(const AssertWatch&) = delete;
    AssertWatch& operator=(const AssertWatch&) = delete;
    ~AssertWatch();

    std::size_t count() const;
    std::size_t count(std::string_view source) const;
    bool saw(std::string_view source, int line) const;
    std::vector<Report> reports() const;

private:
    struct Stack;
    static void on_report(const char* source, int line, const char* expression);

    mutable std::mutex lock;
    std::vector<Report> seen; // under `lock`
};
