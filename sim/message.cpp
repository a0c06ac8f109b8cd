#include "sim/message.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "sim/text.h"

namespace veltosim
{

namespace
{

// A longer one would not leave room for an answer.
constexpr std::size_t longest_xid = 1000;

// White space is kept where it is the text of a leaf; line ends are left as they came.
constexpr unsigned parse_flags = pugi::parse_escapes | pugi::parse_ws_pcdata_single |
                                 pugi::parse_comments | pugi::parse_cdata | pugi::parse_pi |
                                 pugi::parse_declaration | pugi::parse_doctype;

struct PlainChecker : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override
    {
        const bool plain = node.type() == pugi::node_element || node.type() == pugi::node_pcdata;
        if (!plain || node.first_attribute()) {
            throw Junk("a command holds elements and text, and no attributes, comments, CDATA or "
                       "declarations");
        }
        return true;
    }
};

bool is_element(const pugi::xml_node& node)
{
    return node.type() == pugi::node_element;
}

std::string field_names(std::span<const FieldRule> rules)
{
    if (rules.empty()) {
        return "it has no fields";
    }
    std::string names = "its fields are ";
    for (std::size_t i = 0; i < rules.size(); ++i) {
        names += fmt::format("{}{}", i == 0 ? "" : ", ", rules[i].name);
    }
    return names;
}

[[noreturn]] void refuse(const FieldRule& rule, std::string_view value, std::string_view allowed)
{
    throw Refusal(fmt::format("{} holds {}; allowed is {}", rule.name, quote(value), allowed));
}

std::optional<std::int64_t> to_integer(std::string_view text)
{
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

std::int64_t read_number(const FieldRule& rule, std::string_view text)
{
    const auto number = to_integer(text);
    if (!number || *number < rule.lowest || *number > rule.highest) {
        refuse(rule, text, fmt::format("a number from {} to {}", rule.lowest, rule.highest));
    }
    return *number;
}

// The fraction of a speed in 1/65536, cut. `digits` are what stands behind the point.
std::optional<std::int64_t> to_fraction(std::string_view digits)
{
    std::uint64_t fraction = 0; // scaled by 2 to the power 60
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit < '0' || *digit > '9') {
            return std::nullopt;
        }
        fraction = ((static_cast<std::uint64_t>(*digit - '0') << 60) + fraction) / 10;
    }
    return static_cast<std::int64_t>(fraction >> 44);
}

std::optional<std::int64_t> to_speed(std::string_view text)
{
    if (!text.ends_with('X')) {
        return to_integer(text);
    }
    text.remove_suffix(1);
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view whole_digits = text.substr(0, point);
    const auto whole = to_integer(whole_digits);
    const auto fraction = to_fraction(text.substr(std::min(point + 1, text.size())));
    if (!whole || whole_digits.starts_with('-') || *whole > 0x7FFF || !fraction) {
        return std::nullopt;
    }
    const std::int64_t magnitude = *whole * 0x10000 + *fraction;
    return negative ? -magnitude : magnitude;
}

// The digits behind the point of a speed, as many as the fraction has.
std::string fraction_text(std::uint32_t fraction)
{
    std::string digits;
    for (; fraction != 0; fraction &= 0xFFFF) {
        fraction *= 10;
        digits += static_cast<char>('0' + (fraction >> 16));
    }
    return digits;
}

struct StringWriter : pugi::xml_writer {
    std::string bytes;
    void write(const void* data, std::size_t count) override
    {
        bytes.append(static_cast<const char*>(data), count);
    }
};

std::string bytes_of(const pugi::xml_node& root)
{
    StringWriter writer;
    // The XML of clients has no numeric references, with which control characters would go out.
    root.print(writer, "", pugi::format_raw | pugi::format_skip_control_chars, pugi::encoding_utf8);
    return std::move(writer.bytes);
}

std::int64_t read_speed(const FieldRule& rule, std::string_view text)
{
    const auto speed = to_speed(text);
    if (!speed || *speed < rule.lowest || *speed > rule.highest) {
        refuse(rule, text,
               fmt::format("a speed such as 1.5X, from {}X to {}X", rule.lowest / 0x10000,
                           rule.highest / 0x10000));
    }
    return *speed;
}

std::int64_t read_word(const FieldRule& rule, std::string_view text)
{
    const auto found = std::find(rule.words.begin(), rule.words.end(), text);
    if (found == rule.words.end()) {
        refuse(rule, text, any_of(rule.words));
    }
    return std::distance(rule.words.begin(), found);
}

std::string leaf_text(const pugi::xml_node& element)
{
    const auto children = element.children();
    if (std::any_of(children.begin(), children.end(), is_element)) {
        throw Refusal(
            fmt::format("{} holds elements where a value is expected", quote(element.name())));
    }
    return element.child_value();
}

void check_no_text(const pugi::xml_node& element)
{
    for (const pugi::xml_node& child : element.children()) {
        const std::string_view text = child.value();
        if (!is_element(child) && text.find_first_not_of(" \t\r\n") != text.npos) {
            throw Refusal(fmt::format("{} stands where only elements are expected", quote(text)));
        }
    }
}

FieldValue read_field(const pugi::xml_node& element, const FieldRule& rule);

std::vector<FieldValue> read_list(const pugi::xml_node& element, const FieldRule& rule)
{
    check_no_text(element);
    const FieldRule& item = rule.parts.front();
    std::vector<FieldValue> items;
    for (const pugi::xml_node& child : element.children()) {
        if (is_element(child) && child.name() != item.name) {
            throw Refusal(fmt::format("{} holds {}; allowed are elements {}", rule.name,
                                      quote(child.name()), item.name));
        }
        if (is_element(child)) {
            items.push_back(read_field(child, item));
        }
    }
    return items;
}

FieldValue read_field(const pugi::xml_node& element, const FieldRule& rule)
{
    FieldValue value;
    value.name = rule.name;
    if (rule.kind == FieldKind::list) {
        value.items = read_list(element, rule);
        return value;
    }
    if (rule.kind == FieldKind::composite) {
        value.parts = Fields(element, rule.parts);
        return value;
    }
    value.text = leaf_text(element);
    switch (rule.kind) {
    case FieldKind::number:
        value.number = read_number(rule, value.text);
        break;
    case FieldKind::speed:
        value.number = read_speed(rule, value.text);
        break;
    case FieldKind::word:
        value.number = read_word(rule, value.text);
        break;
    case FieldKind::flag:
        if (!value.text.empty()) {
            refuse(rule, value.text, "nothing, since it is a flag");
        }
        break;
    default:
        if (static_cast<std::int64_t>(value.text.size()) > rule.highest) {
            refuse(rule, value.text, fmt::format("a text of {} bytes", rule.highest));
        }
    }
    return value;
}

} // namespace

CommandMessage::CommandMessage(std::string_view bytes)
{
    if (!is_utf8(bytes)) {
        throw Junk("a command is not UTF-8");
    }
    const auto result =
        document.load_buffer(bytes.data(), bytes.size(), parse_flags, pugi::encoding_utf8);
    if (!result) {
        throw Junk(fmt::format("a command is not well formed: {}", result.description()));
    }
    PlainChecker checker;
    document.traverse(checker);
    if (xid().size() > longest_xid) {
        throw Junk(fmt::format("an xid is longer than {} bytes", longest_xid));
    }
}

std::string CommandMessage::xid() const
{
    return document.first_child().child_value("xid");
}

pugi::xml_node CommandMessage::content() const
{
    check_no_text(document.first_child());
    leaf_text(document.first_child().child("xid"));
    pugi::xml_node content;
    int identifiers = 0;
    for (const pugi::xml_node& child : document.first_child().children()) {
        if (!is_element(child)) {
            continue;
        }
        if (std::string_view(child.name()) == "xid") {
            ++identifiers;
        } else if (content) {
            throw Refusal(fmt::format("one message holds two commands, {} and {}",
                                      quote(content.name()), quote(child.name())));
        } else {
            content = child;
        }
    }
    if (identifiers != 1) {
        throw Refusal(
            fmt::format("a message holds {} elements xid; it must hold one", identifiers));
    }
    if (!content) {
        throw Refusal("a message holds no command");
    }
    return content;
}

Fields::Fields(const pugi::xml_node& element, std::span<const FieldRule> rules)
{
    check_no_text(element);
    for (const pugi::xml_node& child : element.children()) {
        if (!is_element(child)) {
            continue;
        }
        const auto rule = std::find_if(rules.begin(), rules.end(), [&](const FieldRule& candidate) {
            return candidate.name == child.name();
        });
        if (rule == rules.end()) {
            throw Refusal(
                fmt::format("there is no field {}; {}", quote(child.name()), field_names(rules)));
        }
        if (has(rule->name)) {
            throw Refusal(fmt::format("{} is given twice", rule->name));
        }
        values.push_back(read_field(child, *rule));
    }
    for (const FieldRule& rule : rules) {
        if (rule.required && !has(rule.name)) {
            throw Refusal(fmt::format("{} is missing", rule.name));
        }
    }
}

const FieldValue* Fields::find(std::string_view name) const
{
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const FieldValue& value) { return value.name == name; });
    return found == values.end() ? nullptr : &*found;
}

const std::string& Fields::text(std::string_view name) const
{
    static const std::string absent;
    const FieldValue* value = find(name);
    return value ? value->text : absent;
}

std::size_t Fields::size() const
{
    return values.size();
}

void Replies::finish()
{
    if (!empty()) {
        finished.push_back(bytes_of(document.first_child()));
        document.reset();
    }
}

void Replies::clear()
{
    document.reset();
    finished.clear();
}

pugi::xml_node Replies::add(std::string_view kind)
{
    finish();
    pugi::xml_node root = document.append_child("reply");
    add_text(root, "xid", xid);
    return add_element(root, kind);
}

std::vector<std::string> Replies::messages()
{
    finish();
    return std::exchange(finished, {});
}

Report::Report(std::string_view kind)
{
    add_element(document.append_child("report"), kind);
}

std::string Report::message() const
{
    return bytes_of(document.first_child());
}

pugi::xml_node add_element(pugi::xml_node parent, std::string_view name)
{
    return parent.append_child(std::string(name).c_str());
}

void add_text(pugi::xml_node parent, std::string_view name, std::string_view text)
{
    add_element(parent, name).append_child(pugi::node_pcdata).set_value(std::string(text).c_str());
}

void add_number(pugi::xml_node parent, std::string_view name, std::int64_t number)
{
    add_text(parent, name, std::to_string(number));
}

void add_bool(pugi::xml_node parent, std::string_view name, bool value)
{
    add_text(parent, name, bool_words[value ? 1 : 0]);
}

void add_speed(pugi::xml_node parent, std::string_view name, std::int32_t speed)
{
    const std::int64_t value = speed;
    const auto magnitude = static_cast<std::uint32_t>(value < 0 ? -value : value);
    const std::string digits = fraction_text(magnitude & 0xFFFF);
    add_text(parent, name,
             fmt::format("{}{}{}{}X", value < 0 ? "-" : "", magnitude >> 16,
                         digits.empty() ? "" : ".", digits));
}

} // namespace veltosim
