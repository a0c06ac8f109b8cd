#pragma once

#include "protocol/zavl3_api.h"
#include "support/describe.h"

#include <deque>
#include <string>
#include <vector>

// Delegates that write what they are called with into one log, each line with the name of its
// command: "a: ok", "a: clipid news_open", "a: error No such clip (1)".
class CompletionLog
{
public:
    template <typename Reply>
    typename Reply::Delegate on(const std::string& command, const std::string& kind)
    {
        return make<Reply>(static_cast<typename Reply::Delegate*>(nullptr), command, kind);
    }

    AFunction<> on_ok(const std::string& command) { return on<ZAVL3::reply::ok>(command, "ok"); }

    AFunction<AString, ZAVL3::ErrorCode> on_error(const std::string& command)
    {
        return on<ZAVL3::reply::error>(command, "error");
    }

    std::vector<std::string> lines;

private:
    struct Entry {
        CompletionLog* log;
        std::string prefix;
    };

    template <typename Reply, typename... Arguments>
    AFunction<Arguments...> make(AFunction<Arguments...>*, const std::string& command,
                                 const std::string& kind)
    {
        entries.push_back({this, command + ": " + kind});
        const auto write = [](void* entry, Arguments... arguments) {
            const Entry& self = *static_cast<Entry*>(entry);
            std::string line = self.prefix;
            ((line += " " + describe(arguments)), ...);
            self.log->lines.push_back(line);
        };
        return AFunction<Arguments...>(write, &entries.back());
    }

    std::deque<Entry> entries; // stay where they are
};
