#include "sim/json_entry.h"

#include "sim/channel.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

const std::vector<LocatedJson> no_elements;

} // namespace

void refuse(const LocatedJson& json, std::string_view allowed)
{
    const std::string what = json.key.empty() ? "this" : quote(json.key);
    throw LocatedError(json.line, fmt::format("{} holds {}; allowed is {}", what,
                                              quote(json.value.dump()), allowed));
}

std::string to_text(const LocatedJson& json)
{
    const auto text = json.value.is_string() ? json.value.get<std::string>() : std::string(1, 0);
    if (text.find('\0') != text.npos) {
        refuse(json, "a text");
    }
    return text;
}

std::string to_name(const LocatedJson& json)
{
    if (!json.value.is_string() || !is_name(json.value.get<std::string>())) {
        refuse(json, fmt::format("a name; {}", name_rule));
    }
    return json.value.get<std::string>();
}

bool to_flag(const LocatedJson& json)
{
    if (!json.value.is_boolean()) {
        refuse(json, "true or false");
    }
    return json.value.get<bool>();
}

std::size_t to_word(const LocatedJson& json, Words words)
{
    const auto text = json.value.is_string() ? json.value.get<std::string>() : "";
    const auto found = std::find(words.begin(), words.end(), text);
    if (found == words.end()) {
        refuse(json, any_of(words));
    }
    return static_cast<std::size_t>(std::distance(words.begin(), found));
}

Speed to_speed(const LocatedJson& json)
{
    constexpr double most = double{fastest} / normal_speed;
    const double number = json.value.is_number() ? json.value.get<double>() : 2 * most;
    if (number < -most || number > most) {
        refuse(json, fmt::format("a speed from {} to {}, 1 being normal", -most, most));
    }
    return static_cast<Speed>(number * normal_speed);
}

const std::vector<LocatedJson>& to_array(const LocatedJson& json)
{
    if (!json.value.is_array()) {
        refuse(json, "an array");
    }
    return json.items;
}

Entry::Entry(const LocatedJson& object, std::string_view entry_kind, const Keys& keys)
    : json(object), kind(entry_kind)
{
    if (!json.value.is_object()) {
        refuse(json, fmt::format("an object, {}", kind));
    }
    for (const LocatedJson& member : json.items) {
        if (std::find(keys.begin(), keys.end(), member.key) == keys.end()) {
            throw LocatedError(member.line,
                               fmt::format("there is no key {} in {}; its keys are {}",
                                           quote(member.key), kind, fmt::join(keys, ", ")));
        }
    }
}

const LocatedJson& Entry::required(std::string_view key) const
{
    const LocatedJson* member = find(key);
    if (!member) {
        throw LocatedError(json.line, fmt::format("{} has no {}", kind, quote(key)));
    }
    return *member;
}

bool Entry::flag(std::string_view key) const
{
    const LocatedJson* member = find(key);
    return member && to_flag(*member);
}

std::optional<Speed> Entry::speed(std::string_view key) const
{
    const LocatedJson* member = find(key);
    return member ? std::optional(to_speed(*member)) : std::nullopt;
}

const std::vector<LocatedJson>& Entry::array(std::string_view key) const
{
    const LocatedJson* member = find(key);
    return member ? to_array(*member) : no_elements;
}

std::string_view Entry::one_of(const Keys& keys) const
{
    const auto present = [&](std::string_view key) { return has(key); };
    if (std::count_if(keys.begin(), keys.end(), present) != 1) {
        throw LocatedError(line(), fmt::format("{} has one of the keys {}, and only one", kind,
                                               fmt::join(keys, ", ")));
    }
    return *std::find_if(keys.begin(), keys.end(), present);
}

} // namespace veltosim
