#include "stress/actor.h"

#include <charconv>

#include <fmt/format.h>

namespace stress
{

namespace
{

// Of every length in UTF-8, and what XML has to escape.
constexpr std::string_view tail = "|\xC3\xA9 \xE2\x82\xAC \xF0\x9D\x84\x9E <&>\"'";

constexpr const char* text_of_code[] = {
    "OK", "", "", "Invalid handle", "Read only", "Timeout", "Invalid argument", "Write only"};

bool is_closed(const Rule& rule, const Thing& thing, const Thing* connection)
{
    return thing.closed || (rule.needs_connection && connection && connection->closed);
}

bool may_be_closed(const Rule& rule, const Thing& thing, const Thing* connection)
{
    return thing.closing || (rule.needs_connection && connection && connection->closing);
}

} // namespace

bool World::may_close_hot(Chance& chance)
{
    if (!chance.one_in(4)) {
        return false;
    }
    std::uint32_t left = hot_closes_left;
    while (left != 0 && !hot_closes_left.compare_exchange_weak(left, left - 1)) {
    }
    return left != 0;
}

void Actor::finding(std::string_view text) const
{
    world.verdict.finding(
        fmt::format("thread {}, action '{}': {}", id, progress.action.load(), text));
}

Actor::Before Actor::begin(const char* name, const Rule& rule, const Thing& thing,
                           const Thing* connection)
{
    Before before;
    before.is_closed = is_closed(rule, thing, connection);
    if (!rule.records_success) {
        before.text = last_error();
    }
    progress.step(name);
    ++world.calls;
    return before;
}

void Actor::judge(const char* name, const Rule& rule, const Thing& thing, const Thing* connection,
                  const Before& before, VeltoResult result)
{
    progress.step(name);
    if (result == VELTO_RESULT_INVALID_HANDLE) {
        check(may_be_closed(rule, thing, connection),
              fmt::format("{} takes the open handle {} for unknown", name, thing.handle));
    } else if (before.is_closed) {
        finding(fmt::format("{} gives {} for the closed handle {}", name, result, thing.handle));
    } else if (result < 0 || result > VELTO_RESULT_WRITE_ONLY || (rule.codes & bit(result)) == 0) {
        return finding(fmt::format("{} gives {}, '{}'", name, result, last_error()));
    }
    ++world.results[static_cast<std::size_t>(result)];
    judge_text(name, rule, before, result);
}

void Actor::judge_text(const char* name, const Rule& rule, const Before& before, VeltoResult result)
{
    const std::string text = last_error();
    bool good = false;
    if (result == VELTO_RESULT_OK && !rule.records_success) {
        good = text == before.text;
    } else if (result != VELTO_RESULT_FAILED) {
        good = text == text_of_code[result];
    } else if (rule.failure == Rule::Failure::loses_text) {
        good = text == "OK";
    } else {
        good = !text.empty() && text != "OK";
    }
    check(good, fmt::format("{} gives {} and leaves the text '{}'", name, result, text));
}

std::string Actor::new_value(std::string_view place)
{
    return fmt::format("{}|{}|{}{}", place, id, ++world.issued[id], tail);
}

std::optional<std::uint64_t> Actor::number_of(std::string_view place,
                                              const std::string& value) const
{
    const std::string head = std::string(place) + "|";
    if (!value.starts_with(head) || !value.ends_with(tail)) {
        return std::nullopt;
    }
    const char* const end = value.data() + value.size() - tail.size();
    std::uint32_t writer = 0;
    std::uint64_t number = 0;
    const auto first = std::from_chars(value.data() + head.size(), end, writer);
    if (first.ec != std::errc{} || first.ptr == end || writer >= most_threads) {
        return std::nullopt;
    }
    const auto second = std::from_chars(first.ptr + 1, end, number);
    const bool is_known =
        second.ec == std::errc{} && second.ptr == end && number <= world.issued[writer];
    return is_known ? std::optional(number) : std::nullopt;
}

// Never given out, or that of a thing of another kind: lists and records are numbered along with
// connections.
std::uint32_t Actor::a_wrong_handle()
{
    constexpr std::uint32_t highest = 0xFFFFFFFF;
    return chance.one_in(4) ? 0 : highest - chance.below(1000);
}

std::shared_ptr<Connection> Actor::a_connection()
{
    if (chance.one_in(32)) {
        const auto list = world.lists.pick(chance);
        const bool wrong_kind = list && chance.one_in(2);
        auto unknown = std::make_shared<Connection>(wrong_kind ? list->handle : a_wrong_handle(),
                                                    nullptr, false);
        unknown->closing = unknown->closed = true;
        return unknown;
    }
    return world.connections.pick(chance);
}

std::shared_ptr<Connection> Actor::a_waiting_connection()
{
    for (int tries = 0; tries < 10; ++tries) {
        const auto connection = world.connections.pick(chance);
        if (connection && !connection->may_not_wait && !connection->closing) {
            return connection;
        }
    }
    return nullptr;
}

std::string Actor::a_clip()
{
    if (chance.one_in(16)) {
        return "there is no such clip";
    }
    return chance.one_in(3) ? own_clip(chance.below(own_clips)) : chance.of(world.first_clips);
}

std::string Actor::own_clip(std::uint32_t index) const
{
    return fmt::format("x/t{}-{}", id, index);
}

bool Actor::is_clip_name(const std::string& name) const
{
    return name.starts_with("x/t") || name.starts_with("v/t") || name.starts_with("end/") ||
           world.first_clips.contains(name);
}

} // namespace stress
