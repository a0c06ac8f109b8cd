#include "sim/news.h"

#include <array>
#include <cstddef>
#include <list>
#include <utility>

#include "sim/message.h"

namespace veltosim
{

namespace
{

struct Kind {
    ReportType type;
    std::string_view report;
    std::string_view field;
};

// In the order of the events' kinds.
constexpr std::array kinds{
    Kind{ReportType::clip_change, "clip_created", "ClipID"},
    Kind{ReportType::clip_change, "clip_changed", "ClipID"},
    Kind{ReportType::clip_change, "clip_deleted", "ClipID"},
    Kind{ReportType::directory_change, "directory_created", "DirectoryName"},
    Kind{ReportType::directory_change, "directory_deleted", "DirectoryName"},
};

} // namespace

StoreNews to_news(const StoreEvent& event)
{
    const Kind& kind = kinds.at(static_cast<std::size_t>(event.kind));
    const Report report(kind.report);
    add_text(report.content(), kind.field, event.name);
    return {kind.type, report.message()};
}

MetadataNews::MetadataNews(std::vector<MetadataChange> all_changes)
    : changes(std::move(all_changes))
{
}

const std::vector<std::string>& MetadataNews::reports(const std::string& prefix) const
{
    const auto [made, is_new] = reports_by_prefix.try_emplace(prefix);
    if (is_new) {
        const bool sets = changes.front().value.has_value();
        MetadataEntries entries;
        for (const MetadataChange& change : changes) {
            entries.emplace_back(change.key, sets ? std::string_view(*change.value) : "");
        }
        std::list<Report> reports;
        const auto begin = [&] {
            return reports.emplace_back(sets ? "metadata_change" : "metadata_remove").content();
        };
        (sets ? add_entries : add_keys)(database(), prefix, entries, begin);
        for (const Report& report : reports) {
            made->second.push_back(report.message());
        }
    }
    return made->second;
}

} // namespace veltosim
