#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "sim/refusal.h"
#include "sim/words.h"

namespace veltosim
{

// No client takes a longer message.
inline constexpr std::size_t largest_message = 32768;

// One complete command as it came: `cmd` holding `xid` and the command's own element. The
// constructor throws Junk for what is not the small XML that the protocol knows: elements and text,
// UTF-8, without attributes, comments, CDATA, declarations.
class CommandMessage
{
public:
    explicit CommandMessage(std::string_view bytes);

    // The transaction identifier, empty if there is none.
    std::string xid() const;
    // The command's own element. Throws a Refusal if `cmd` does not hold one xid and one command.
    pugi::xml_node content() const;

private:
    pugi::xml_document document;
};

enum class FieldKind : std::uint8_t {
    text,      // at most `highest` bytes
    number,    // decimal, from `lowest` to `highest`
    speed,     // 16.16: 1.5X, or the raw number without X
    word,      // one of `words`, as its number
    flag,      // an element that stands for itself
    list,      // any number of the one part
    composite, // the parts
};

// What a field of a command must look like.
struct FieldRule {
    std::string_view name;
    FieldKind kind = FieldKind::text;
    bool required = true;
    std::int64_t lowest = 0;
    std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    Words words{};
    std::span<const FieldRule> parts{};
};

struct FieldValue;

// The fields of one command, read and checked.
class Fields
{
public:
    Fields() = default;
    // Throws a Refusal if a field is missing, doubled, unknown or bad.
    Fields(const pugi::xml_node& element, std::span<const FieldRule> rules);

    const FieldValue* find(std::string_view name) const;
    bool has(std::string_view name) const { return find(name) != nullptr; }
    std::size_t size() const; // of those that are there
    // The text of a field that is there.
    const std::string& text(std::string_view name) const;

    // A number, speed, bool or enumeration as `T`, if the field is there.
    template <class T>
    std::optional<T> optional(std::string_view name) const;
    // The same of a required field.
    template <class T>
    T get(std::string_view name) const
    {
        return optional<T>(name).value();
    }

private:
    std::vector<FieldValue> values;
};

struct FieldValue {
    std::string_view name;
    std::string text;
    std::int64_t number = 0;
    std::vector<FieldValue> items;
    Fields parts;
};

template <class T>
std::optional<T> Fields::optional(std::string_view name) const
{
    const FieldValue* value = find(name);
    return value ? std::optional(static_cast<T>(value->number)) : std::nullopt;
}

// The replies to one command: any number that stream, and the last one that ends it.
class Replies
{
public:
    explicit Replies(std::string_view command_xid) : xid(command_xid) {}

    // Begins another reply. The fields become children of the element returned, which the next one
    // ends.
    pugi::xml_node add(std::string_view kind);
    bool empty() const { return document.first_child().empty(); }
    void clear();
    // Each as the bytes of one message.
    std::vector<std::string> messages();

private:
    void finish();

    std::string xid;
    pugi::xml_document document; // its root is the last reply
    std::vector<std::string> finished;
};

// One report, unasked for by any command.
class Report
{
public:
    explicit Report(std::string_view kind);

    // The fields become children of this element.
    pugi::xml_node content() const { return document.first_child().first_child(); }
    // The bytes of the message.
    std::string message() const;

private:
    pugi::xml_document document;
};

pugi::xml_node add_element(pugi::xml_node parent, std::string_view name);
void add_text(pugi::xml_node parent, std::string_view name, std::string_view text);
void add_number(pugi::xml_node parent, std::string_view name, std::int64_t number);
void add_bool(pugi::xml_node parent, std::string_view name, bool value);
// 16.16, in the form 1.5X.
void add_speed(pugi::xml_node parent, std::string_view name, std::int32_t speed);

} // namespace veltosim
