#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "sim/clip_store.h"
#include "sim/metadata.h"
#include "sim/words.h"

namespace veltosim
{

// Something that happened once, other than the state of a channel: each client that has registered
// its kind is told.
struct StoreNews {
    ReportType type;
    std::string message; // the report
};

// Changes of one metadata database: each client is told what its watches see of them.
class MetadataNews
{
public:
    // They are all of one database, and either all set a value or all erase.
    explicit MetadataNews(std::vector<MetadataChange> all_changes);

    const std::string& database() const { return changes.front().database; }
    // The reports to a watch on keys that begin so.
    const std::vector<std::string>& reports(const std::string& prefix) const;

private:
    std::vector<MetadataChange> changes;
    mutable std::map<std::string, std::vector<std::string>> reports_by_prefix; // made so far
};

using News = std::variant<StoreNews, MetadataNews>;

StoreNews to_news(const StoreEvent& event);

} // namespace veltosim
