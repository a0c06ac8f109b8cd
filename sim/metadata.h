#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pugixml.hpp>

namespace veltosim
{

// The metadata databases: tables of texts, each under its name. One is there as soon as it is asked
// for.
using MetadataTable = std::map<std::string, std::string, std::less<>>;

// One key gets a value, or goes.
struct MetadataChange {
    std::string database;
    std::string key;
    std::optional<std::string> value;
};

class MetadataTables
{
public:
    const MetadataTable& table(std::string_view database) const;
    const std::map<std::string, MetadataTable, std::less<>>& all() const { return tables; }
    void apply(const MetadataChange& change);

private:
    std::map<std::string, MetadataTable, std::less<>> tables;
};

// Keys with their values, or without where only keys are told.
using MetadataEntry = std::pair<std::string_view, std::string_view>;
using MetadataEntries = std::vector<MetadataEntry>;

// The entries of a table whose keys begin with the prefix.
MetadataEntries entries_in(const MetadataTable& table, std::string_view prefix);

// Throws a Refusal for an entry that no message can hold. `key` is the whole key.
void check_entry_size(std::string_view database, std::string_view key, std::string_view value);

// Tells the entries whose keys begin with `prefix`, which is told by itself and cut off their keys.
// Each message that is needed begins with the element that `begin` gives, and none grows too large.
void add_entries(std::string_view database, std::string_view prefix, const MetadataEntries& entries,
                 const std::function<pugi::xml_node()>& begin);
void add_keys(std::string_view database, std::string_view prefix, const MetadataEntries& entries,
              const std::function<pugi::xml_node()>& begin);

} // namespace veltosim
