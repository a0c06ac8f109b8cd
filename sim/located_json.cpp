#include "sim/located_json.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "sim/text.h"

namespace veltosim
{

namespace
{

using nlohmann::json;

constexpr std::size_t deepest = 16;

// Counts what the parser has taken, as its events do not say where they stand.
class CountingIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* start, std::size_t& taken_count) : at(start), taken(&taken_count)
    {
    }
    reference operator*() const { return *at; }
    CountingIterator& operator++()
    {
        ++at;
        ++*taken;
        return *this;
    }
    CountingIterator operator++(int)
    {
        CountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountingIterator& other) const { return at == other.at; }
    bool operator!=(const CountingIterator& other) const { return at != other.at; }

private:
    const char* at;
    std::size_t* taken;
};

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..." without
// what is said elsewhere.
std::string reason_in(std::string_view what)
{
    what.remove_prefix(std::min(what.find("] ") + 2, what.size()));
    if (what.starts_with("parse error at ")) {
        what.remove_prefix(std::min(what.find(": ") + 2, what.size()));
    }
    return std::string(what);
}

class TreeBuilder : public nlohmann::json_sax<json>
{
public:
    explicit TreeBuilder(std::string_view parsed_text) : text(parsed_text) {}

    std::size_t taken = 0;

    LocatedJson result() { return std::move(root); }

    bool null() override { return add(json()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override { return add(value); }
    bool number_float(double value, const std::string&) override { return add(value); }
    bool string(std::string& value) override { return add(value); }
    bool binary(json::binary_t&) override { return false; } // not in a text
    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(std::string& name) override
    {
        if (!open_keys.back().insert(name).second) {
            throw LocatedError(line(), fmt::format("the key {} is given twice", quote(name)));
        }
        next_key = name;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const json::exception& problem) override
    {
        throw LocatedError(line(), reason_in(problem.what()));
    }

private:
    // The line of the last token. The parser has read one character behind it at most, and it
    // holds no line end.
    std::size_t line()
    {
        const std::size_t end = taken == 0 ? 0 : taken - 1;
        for (; counted < end; ++counted) {
            lines += text[counted] == '\n' ? 1 : 0;
        }
        return lines;
    }

    LocatedJson& place(json value)
    {
        LocatedJson& added = open_values.empty() ? root : open_values.back()->items.emplace_back();
        added.line = line();
        added.key = std::exchange(next_key, {});
        added.value = std::move(value);
        return added;
    }
    bool add(json value)
    {
        place(std::move(value));
        return true;
    }
    // A value stays where it is as long as it is open: only then its parent gets another one.
    bool open(json value)
    {
        if (open_values.size() == deepest) {
            throw LocatedError(line(), fmt::format("more than {} levels are nested", deepest));
        }
        open_values.push_back(&place(std::move(value)));
        open_keys.emplace_back();
        return true;
    }
    bool close()
    {
        open_values.pop_back();
        open_keys.pop_back();
        return true;
    }

    std::string_view text;
    std::size_t counted = 0;
    std::size_t lines = 1;
    LocatedJson root;
    std::vector<LocatedJson*> open_values;
    std::vector<std::unordered_set<std::string>> open_keys; // of each, so far
    std::string next_key;
};

} // namespace

const LocatedJson* LocatedJson::find(std::string_view wanted_key) const
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const LocatedJson& item) {
        return item.key == wanted_key;
    });
    return found == items.end() ? nullptr : &*found;
}

LocatedJson parse_json(std::string_view text)
{
    TreeBuilder builder(text);
    const CountingIterator begin(text.data(), builder.taken);
    const CountingIterator end(text.data() + text.size(), builder.taken);
    json::sax_parse(begin, end, &builder);
    return builder.result();
}

} // namespace veltosim
