#pragma once

#include "stress/text.h"
#include "stress/watchdog.h"
#include "stress/world.h"

#include <map>
#include <optional>

namespace stress
{

constexpr unsigned bit(VeltoResult code)
{
    return 1u << code;
}

// What a call may give, and which text it then leaves.
struct Rule {
    enum class Failure { keeps_text, loses_text, has_own_text };

    unsigned codes; // without VELTO_RESULT_INVALID_HANDLE, which the model knows by itself
    Failure failure = Failure::keeps_text;
    bool records_success = true;
    bool needs_connection = false; // a part that is as good as closed when its connection is
};

constexpr unsigned done_or_failed = bit(VELTO_RESULT_OK) | bit(VELTO_RESULT_FAILED);
constexpr Rule command{done_or_failed};
constexpr Rule question{done_or_failed, Rule::Failure::loses_text};
constexpr Rule getter{done_or_failed, Rule::Failure::loses_text};
constexpr Rule always_fails{bit(VELTO_RESULT_FAILED), Rule::Failure::loses_text};
constexpr Rule never_fails{bit(VELTO_RESULT_OK)};
constexpr Rule record_writer{done_or_failed, Rule::Failure::keeps_text, true, true};
constexpr Rule wait_with_limit{bit(VELTO_RESULT_OK) | bit(VELTO_RESULT_TIMEOUT)};
constexpr Rule notification{bit(VELTO_RESULT_OK), Rule::Failure::keeps_text, false};

// What a clip of a thread's own is known to be.
enum class Existence { unknown, there, gone };

// A thread's own key of a store: the number that was last given to it, and the last one that a
// flush has told to be on the server.
struct OwnKey {
    std::uint64_t set = 0;
    std::uint64_t confirmed = 0;
    bool is_of_this_store = false;
};

constexpr std::uint32_t own_clips = 4;

// A thread of the run: what it draws, what it alone knows, and how it calls the library.
class Actor
{
public:
    Actor(World& shared, std::uint32_t number, std::uint64_t seed, Progress& told)
        : world(shared), id(number), chance(seed, number), progress(told)
    {
    }

    // Calls a function of the library, whose first argument is the thing's handle, and holds what
    // it gives and leaves against the rule and the life of the thing.
    template <typename Function, typename Kind, typename... Arguments>
    VeltoResult call(const char* name, Function function, const Rule& rule, const Kind& thing,
                     Arguments... arguments)
    {
        const Thing* const connection = connection_of(thing);
        const Before before = begin(name, rule, thing, connection);
        const VeltoResult result = function(thing.handle, arguments...);
        judge(name, rule, thing, connection, before, result);
        return result;
    }
    // One without a result.
    template <typename Function, typename... Arguments>
    auto run(const char* name, Function function, Arguments... arguments)
    {
        progress.step(name);
        ++world.calls;
        return function(arguments...);
    }

    void finding(std::string_view text) const;
    void check(bool good, std::string_view text) const
    {
        if (!good) {
            finding(text);
        }
    }

    // A text that nobody else writes, for a place.
    std::string new_value(std::string_view place);
    // Whether somebody has written that text for the place; its number.
    std::optional<std::uint64_t> number_of(std::string_view place, const std::string& value) const;

    // Things to use; null when there is none. Some are closed, and some never were.
    std::shared_ptr<Connection> a_connection();
    std::shared_ptr<Record> a_record() { return a_part(world.records); }
    std::shared_ptr<Part> a_list() { return a_part(world.lists); }
    std::shared_ptr<Store> a_store() { return a_part(world.stores); }
    // One that is open when it is drawn, and whose commands wait.
    std::shared_ptr<Connection> a_waiting_connection();

    std::uint32_t channel() { return chance.below(12); }
    std::string a_clip();
    std::string own_clip(std::uint32_t index) const;
    bool is_clip_name(const std::string& name) const;

    World& world;
    const std::uint32_t id;
    Chance chance;
    Progress& progress;

    std::array<Existence, own_clips> clips{};
    std::shared_ptr<Store> own_store;
    std::map<std::string, OwnKey> own_keys;

private:
    static const Thing* connection_of(const Connection&) { return nullptr; }
    static const Thing* connection_of(const Part& part) { return part.connection.get(); }

    struct Before {
        bool is_closed = false;
        std::string text;
    };

    Before begin(const char* name, const Rule& rule, const Thing& thing, const Thing* connection);
    void judge(const char* name, const Rule& rule, const Thing& thing, const Thing* connection,
               const Before& before, VeltoResult result);
    void judge_text(const char* name, const Rule& rule, const Before& before, VeltoResult result);
    std::uint32_t a_wrong_handle();

    template <typename Kind>
    std::shared_ptr<Kind> a_part(Pool<Kind>& pool)
    {
        if (chance.one_in(32)) {
            auto unknown = std::make_shared<Kind>(a_wrong_handle(), nullptr);
            unknown->closing = unknown->closed = true;
            return unknown;
        }
        return pool.pick(chance);
    }
};

// A function and its name, for Actor::call.
#define NAMED(function) #function, function

} // namespace stress
