#include "sim/news.h"

#include <array>
#include <cstddef>

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

News to_news(const StoreEvent& event)
{
    const Kind& kind = kinds.at(static_cast<std::size_t>(event.kind));
    const Report report(kind.report);
    add_text(report.content(), kind.field, event.name);
    return {kind.type, report.message()};
}

} // namespace veltosim
