#include "sim/metadata.h"

#include <cstddef>

#include <fmt/format.h>

#include "sim/message.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// So much fills a message. One entry alone may be longer, up to the most.
constexpr std::size_t full_message = 16384;
constexpr std::size_t most_of_entry = largest_message - 2048;

// The tags around a pair, or a key alone, which has fewer.
constexpr std::size_t tags_of_entry = 64;

std::size_t escaped_size(std::string_view text)
{
    std::size_t size = text.size();
    for (const char c : text) {
        size += c == '&' ? 4 : c == '<' || c == '>' ? 3 : 0;
    }
    return size;
}

void add_pair(const pugi::xml_node& list, std::string_view key, std::string_view value)
{
    const pugi::xml_node pair = add_element(list, "Metadata");
    add_text(pair, "Key", key);
    add_text(pair, "Value", value);
}

void add_key(const pugi::xml_node& list, std::string_view key, std::string_view)
{
    add_text(list, "Key", key);
}

using AddEntry = void (*)(const pugi::xml_node& list, std::string_view key, std::string_view value);

void add(std::string_view database, std::string_view prefix, const MetadataEntries& entries,
         const std::function<pugi::xml_node()>& begin, std::string_view list_tag,
         AddEntry add_entry)
{
    const std::size_t frame = escaped_size(database) + escaped_size(prefix);
    pugi::xml_node list;
    std::size_t size = 0;
    for (const auto& [whole_key, value] : entries) {
        if (!whole_key.starts_with(prefix)) {
            continue;
        }
        const std::string_view key = whole_key.substr(prefix.size());
        const std::size_t needed = escaped_size(key) + escaped_size(value) + tags_of_entry;
        if (!list || size + needed > full_message) {
            const pugi::xml_node content = begin();
            add_text(content, "MetadataDatabase", database);
            add_text(content, "MetadataPrefix", prefix);
            list = add_element(content, list_tag);
            size = frame;
        }
        add_entry(list, key, value);
        size += needed;
    }
}

} // namespace

const MetadataTable& MetadataTables::table(std::string_view database) const
{
    static const MetadataTable empty;
    const auto found = tables.find(database);
    return found == tables.end() ? empty : found->second;
}

void MetadataTables::apply(const MetadataChange& change)
{
    if (change.value) {
        tables[change.database].insert_or_assign(change.key, *change.value);
        return;
    }
    const auto table = tables.find(change.database);
    if (table != tables.end()) {
        table->second.erase(change.key);
        if (table->second.empty()) {
            tables.erase(table);
        }
    }
}

MetadataEntries entries_in(const MetadataTable& table, std::string_view prefix)
{
    MetadataEntries entries;
    for (auto entry = table.lower_bound(prefix);
         entry != table.end() && entry->first.starts_with(prefix); ++entry) {
        entries.emplace_back(entry->first, entry->second);
    }
    return entries;
}

void check_entry_size(std::string_view database, std::string_view key, std::string_view value)
{
    const std::size_t size =
        escaped_size(database) + escaped_size(key) + escaped_size(value) + tags_of_entry;
    if (size > most_of_entry) {
        throw Refusal(fmt::format("key {} would take {} bytes with its value; a message holds {}",
                                  quote(key), size, most_of_entry));
    }
}

void add_entries(std::string_view database, std::string_view prefix, const MetadataEntries& entries,
                 const std::function<pugi::xml_node()>& begin)
{
    add(database, prefix, entries, begin, "MetadataList", add_pair);
}

void add_keys(std::string_view database, std::string_view prefix, const MetadataEntries& entries,
              const std::function<pugi::xml_node()>& begin)
{
    add(database, prefix, entries, begin, "KeyList", add_key);
}

} // namespace veltosim
