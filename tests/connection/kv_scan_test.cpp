#include "connection/kv_scan.h"

#include "support/assert_watch.h"
#include "support/await.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr std::uint32_t longest_wait = 0xFFFFFFFF;

class Scan : public testing::Test
{
protected:
    void begin() { scan->begin(scan); }
    bool is_good() { return scan->wait(0); }

    std::shared_ptr<KVScan> scan = std::make_shared<KVScan>();
};

TEST_F(Scan, IsNotGoodBeforeItHasBegun)
{
    EXPECT_FALSE(is_good());
}

TEST_F(Scan, EndsAsItsDownloadDoes)
{
    begin();
    EXPECT_FALSE(is_good());
    scan->ok_delegate();
    EXPECT_TRUE(is_good());
    begin();
    EXPECT_FALSE(is_good());
    scan->error_delegate("refused", {});
    EXPECT_FALSE(is_good());
}

TEST_F(Scan, TheLastDownloadToEndDecides)
{
    begin();
    begin();
    scan->scan_end(false);
    EXPECT_FALSE(is_good());
    scan->scan_end(true);
    EXPECT_TRUE(is_good());
    begin();
    begin();
    scan->scan_end(true);
    EXPECT_FALSE(is_good());
    scan->scan_end(false);
    EXPECT_FALSE(is_good());
}

TEST_F(Scan, KeepsItselfAliveWhileADownloadIsUnderWay)
{
    const std::weak_ptr<KVScan> record = scan;
    KVScan* const plain = scan.get();
    begin();
    begin();
    scan.reset();
    plain->scan_end(true);
    EXPECT_FALSE(record.expired());
    plain->scan_end(true);
    EXPECT_TRUE(record.expired());
}

TEST_F(Scan, AnEndTooManyIsReportedAndIgnored)
{
    AssertWatch watch;
    begin();
    scan->scan_end(true);
    scan->scan_end(false);
    EXPECT_TRUE(is_good());
    ASSERT_EQ(watch.count(), 1u);
    EXPECT_EQ(watch.reports()[0].source, "velto");
    EXPECT_EQ(watch.reports()[0].expression, "scans_in_process > 0");
}

TEST_F(Scan, WaitsTheTimeGiven)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(scan->wait(100));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
}

TEST_F(Scan, TheWaitEndsWithAGoodEnd)
{
    begin();
    auto first = in_thread([&] { return scan->wait(longest_wait); });
    auto second = in_thread([&] { return scan->wait(longest_wait); });
    EXPECT_EQ(first.wait_for(20ms), std::future_status::timeout);
    scan->scan_end(false);
    EXPECT_EQ(first.wait_for(20ms), std::future_status::timeout);
    begin();
    scan->scan_end(true);
    EXPECT_TRUE(await(std::move(first)));
    EXPECT_TRUE(await(std::move(second)));
}

TEST(Scans, LetGoOfTheRecordsOfDownloadsThatNeverEnd)
{
    const auto scan = std::make_shared<KVScan>();
    {
        KVScans scans;
        scans.byFolder.emplace(u"notes", scan);
        scan->begin(scan);
        EXPECT_EQ(scan.use_count(), 3);
    }
    EXPECT_EQ(scan.use_count(), 1);
}

} // namespace
