#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <fmt/format.h>

#include "sim/located_json.h"
#include "sim/motion.h"
#include "sim/refusal.h"
#include "sim/words.h"

namespace veltosim
{

// What a JSON value means. Whatever is wrong with it is thrown as a LocatedError.

[[noreturn]] void refuse(const LocatedJson& json, std::string_view allowed);

std::string to_text(const LocatedJson& json);
std::string to_name(const LocatedJson& json);
bool to_flag(const LocatedJson& json);
std::size_t to_word(const LocatedJson& json, Words words);
Speed to_speed(const LocatedJson& json);
const std::vector<LocatedJson>& to_array(const LocatedJson& json);

template <class T>
T to_number(const LocatedJson& json, T lowest, T highest = std::numeric_limits<T>::max())
{
    const nlohmann::json& value = json.value;
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        if (number <= static_cast<std::uint64_t>(highest) &&
            (lowest <= T{0} || number >= static_cast<std::uint64_t>(lowest))) {
            return static_cast<T>(number);
        }
    } else if (std::is_signed_v<T> && value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        if (number >= static_cast<std::int64_t>(lowest)) {
            return static_cast<T>(number);
        }
    }
    refuse(json, fmt::format("a whole number from {} to {}", lowest, highest));
}

// Runs `action`, with whose refusal `line` has something to do.
template <class Action>
void at_line(std::size_t line, const Action& action)
{
    try {
        action();
    } catch (const Refusal& refusal) {
        throw LocatedError(line, refusal.what());
    }
}

using Keys = std::vector<std::string_view>;

// One object, of which it is known what it holds.
class Entry
{
public:
    // Throws if it is no object, or holds another key.
    Entry(const LocatedJson& object, std::string_view entry_kind, const Keys& keys);

    std::size_t line() const { return json.line; }
    std::size_t line(std::string_view key) const { return required(key).line; }
    bool has(std::string_view key) const { return find(key) != nullptr; }
    const LocatedJson* find(std::string_view key) const { return json.find(key); }
    const LocatedJson& required(std::string_view key) const;

    std::string name(std::string_view key) const { return to_name(required(key)); }
    template <class T>
    std::optional<T> number(std::string_view key, T lowest = 0,
                            T highest = std::numeric_limits<T>::max()) const
    {
        const LocatedJson* member = find(key);
        return member ? std::optional(to_number<T>(*member, lowest, highest)) : std::nullopt;
    }
    template <class E>
    std::optional<E> word(std::string_view key, Words words) const
    {
        const LocatedJson* member = find(key);
        return member ? std::optional(static_cast<E>(to_word(*member, words))) : std::nullopt;
    }
    bool flag(std::string_view key) const;
    std::optional<Speed> speed(std::string_view key) const;
    // The elements of an array, none if it is not there.
    const std::vector<LocatedJson>& array(std::string_view key) const;
    // The one of several keys that is there.
    std::string_view one_of(const Keys& keys) const;

private:
    const LocatedJson& json;
    std::string_view kind;
};

} // namespace veltosim
