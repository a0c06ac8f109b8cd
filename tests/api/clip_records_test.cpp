#include "api/clip_records.h"

#include "support/outcome.h"

#include <gtest/gtest.h>

namespace
{

ZAVL3::ClipInfo titled(const char* title)
{
    ZAVL3::ClipInfo info;
    info.set<"Title">(AString(title));
    return info;
}

std::string title_of(const ClipRecord& record)
{
    return record.get().get<"Title">().to_utf8();
}

TEST(ClipRecords, AreSharedUntilOneIsWrittenTo)
{
    ClipRecord record(7, titled("a"));
    const ClipRecord copy = record;
    EXPECT_EQ(copy.connection, 7u);
    EXPECT_EQ(&copy.get(), &record.get());
    record.get_writable().set<"Title">(AString("b"));
    EXPECT_NE(&copy.get(), &record.get());
    EXPECT_EQ(title_of(copy), "a");
    EXPECT_EQ(title_of(record), "b");
}

TEST(ClipRecords, AreNotCopiedForTheirOnlyOwner)
{
    ClipRecord record(7, titled("a"));
    const ZAVL3::ClipInfo* before = &record.get();
    EXPECT_EQ(&record.get_writable(), before);
    {
        const ClipRecord copy = record;
    }
    EXPECT_EQ(&record.get_writable(), before);
}

// What a reader has copied does not change under it.
TEST(ClipRecords, StayAsTheyWereForWhoeverReadsThem)
{
    const VeltoRecordHandle handle = clip_records().add(ClipRecord(0, titled("a")));
    EXPECT_EQ(read_record(handle,
                          [&](const ZAVL3::ClipInfo& info) {
                              clip_records().change(handle, [](ClipRecord& record) {
                                  record.get_writable().set<"Title">(AString("b"));
                              });
                              EXPECT_EQ(info.get<"Title">().to_utf8(), "a");
                          }),
              VELTO_RESULT_OK);
    EXPECT_EQ(title_of(*clip_records().find(handle)), "b");
    clip_records().remove(handle);
}

TEST(ClipRecords, AreNeitherReadNorWrittenByAnUnknownHandle)
{
    const auto never = [](const auto&) { ADD_FAILURE(); };
    EXPECT_EQ(outcome_of([&] { return read_record(0, never); }), invalid_handle);
    EXPECT_EQ(outcome_of([&] { return update_record(0, never, never); }), invalid_handle);
}

// The change is made up, but there is nobody to send it to.
TEST(ClipRecords, AreNotChangedOnAConnectionThatHasGone)
{
    const VeltoRecordHandle handle = clip_records().add(ClipRecord(0, titled("a")));
    const auto never = [](ZAVL3::ClipInfo&) { ADD_FAILURE(); };
    EXPECT_EQ(outcome_of([&] {
                  return update_record(
                      handle, [](ZAVL3::ClipAttrChange&) {}, never);
              }),
              invalid_handle);
    clip_records().remove(handle);
}

} // namespace
