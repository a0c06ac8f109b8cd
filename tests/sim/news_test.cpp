#include "sim/news.h"

#include <gtest/gtest.h>

namespace veltosim
{

TEST(News, EachEventIsAReportOfItsKind)
{
    using Kind = StoreEvent::Kind;
    struct Case {
        Kind kind;
        ReportType type;
        const char* message;
    };
    const Case cases[] = {
        {Kind::clip_created, ReportType::clip_change,
         "<report><clip_created><ClipID>a&amp;b</ClipID></clip_created></report>"},
        {Kind::clip_changed, ReportType::clip_change,
         "<report><clip_changed><ClipID>a&amp;b</ClipID></clip_changed></report>"},
        {Kind::clip_deleted, ReportType::clip_change,
         "<report><clip_deleted><ClipID>a&amp;b</ClipID></clip_deleted></report>"},
        {Kind::directory_created, ReportType::directory_change,
         "<report><directory_created><DirectoryName>a&amp;b</DirectoryName></directory_created>"
         "</report>"},
        {Kind::directory_deleted, ReportType::directory_change,
         "<report><directory_deleted><DirectoryName>a&amp;b</DirectoryName></directory_deleted>"
         "</report>"},
    };
    for (const Case& row : cases) {
        const StoreNews news = to_news({row.kind, "a&b"});
        EXPECT_EQ(news.type, row.type);
        EXPECT_EQ(news.message, row.message);
    }
}

} // namespace veltosim
