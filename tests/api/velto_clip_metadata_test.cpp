#include "support/clip_script.h"

#include <gtest/gtest.h>

namespace
{

constexpr VeltoChar untouched = 0x2A2A;

const std::string some_metadata = metadata_pair("take", "one") + metadata_pair("shot", "12") +
                                  metadata_pair("take", "two") + metadata_pair("", "nameless") +
                                  metadata_pair("empty", "");

class MetadataOfAClip : public ClipScript
{
protected:
    VeltoRecordHandle open_with(const std::string& metadata)
    {
        return open({{"MetadataList", metadata}});
    }

    Outcome set(VeltoRecordHandle record, const std::string& key, const std::string& value,
                const std::string& answer = "<ok />")
    {
        const Units key_units(key);
        const Units value_units(value);
        return written([&] { return velto_clip_set_meta(record, key_units, value_units); },
                       {"<MetadataList>", "<Metadata>", "<Key>" + key + "</Key>",
                        "<Value>" + value + "</Value>", "</Metadata>", "</MetadataList>"},
                       answer);
    }

    Outcome erase(VeltoRecordHandle record, const std::string& key,
                  const std::string& answer = "<ok />")
    {
        const Units key_units(key);
        return written([&] { return velto_clip_delete_meta(record, key_units); },
                       {"<KeyList>", "<Key>" + key + "</Key>", "</KeyList>"}, answer);
    }
};

VeltoListHandle open_keys(VeltoRecordHandle record)
{
    VeltoListHandle keys = 0; // which is no handle
    EXPECT_EQ(outcome_of([&] { return velto_clip_open_metakeys(record, &keys); }), succeeded);
    EXPECT_NE(keys, 0u);
    return keys;
}

// All keys of a record up to the first empty one.
std::string keys_of(VeltoRecordHandle record)
{
    const VeltoListHandle keys = open_keys(record);
    const std::string names = take_all(keys);
    EXPECT_EQ(outcome_of([&] { return velto_close_metakeys(keys); }), succeeded);
    return names;
}

TEST_F(MetadataOfAClip, IsFoundByItsExactKey)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    EXPECT_EQ(read_meta(record, "shot"), read_to("12"));
    EXPECT_EQ(has_meta(record, "shot"), read_to("1"));
    for (const std::string key : {"Shot", "sho", "shots", " shot", "shot "}) {
        EXPECT_EQ(read_meta(record, key), read_to("")) << key;
        EXPECT_EQ(has_meta(record, key), read_to("0")) << key;
    }
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, IsTheFirstPairWithTheKey)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    EXPECT_EQ(read_meta(record, "take"), read_to("one"));
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, CanHaveAnEmptyKeyOrValue)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    EXPECT_EQ(read_meta(record, ""), read_to("nameless"));
    EXPECT_EQ(has_meta(record, ""), read_to("1"));
    EXPECT_EQ(read_meta(record, "empty"), read_to(""));
    EXPECT_EQ(has_meta(record, "empty"), read_to("1"));
    EXPECT_EQ(read_meta(record, "absent"), read_to("")); // as the empty one; has_meta tells
    EXPECT_EQ(has_meta(record, "absent"), read_to("0"));
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, IsTakenWithANullKeyAsTheEmptyOne)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    const AssertWatch watch;
    EXPECT_EQ(text_reading([&](VeltoTextBuffer value) {
                  return velto_clip_get_meta(record, nullptr, value);
              }),
              read_to("nameless"));
    std::uint32_t has = 77;
    EXPECT_EQ(velto_clip_has_meta(record, nullptr, &has), VELTO_RESULT_OK);
    EXPECT_EQ(has, 1u);
    EXPECT_EQ(watch.count("astring"), 2u);
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, NeedsNoOutputToBeAskedFor)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    EXPECT_EQ(outcome_of([&] { return velto_clip_has_meta(record, VELTO_TEXT("take"), nullptr); }),
              succeeded);
    velto_close_clip_metadata(record);
    EXPECT_EQ(outcome_of([&] { return velto_clip_has_meta(record, VELTO_TEXT("take"), nullptr); }),
              invalid_handle);
}

TEST_F(MetadataOfAClip, IsCutToTheBuffer)
{
    const VeltoRecordHandle record = open_with(metadata_pair("take", "one"));
    VeltoChar units[] = {untouched, untouched, untouched, untouched, untouched};
    const auto get = [&](std::uint32_t size) {
        return velto_clip_get_meta(record, VELTO_TEXT("take"), {units, size});
    };
    EXPECT_EQ(get(0), VELTO_RESULT_OK);
    EXPECT_EQ(units[0], untouched);
    EXPECT_EQ(get(1), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "");
    EXPECT_EQ(units[1], untouched);
    EXPECT_EQ(get(3), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "on");
    EXPECT_EQ(units[3], untouched);
    EXPECT_EQ(get(4), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "one");
    velto_close_clip_metadata(record);
}

TEST(MetadataOfAnUnknownRecord, IsEmptyAndTheHandleInvalid)
{
    EXPECT_EQ(read_meta(0, "take"), (Reading{invalid_handle, ""}));
    EXPECT_EQ(has_meta(0, "take"), (Reading{invalid_handle, "0"}));
    VeltoListHandle keys = 77;
    EXPECT_EQ(outcome_of([&] { return velto_clip_open_metakeys(0, &keys); }), invalid_handle);
    EXPECT_EQ(keys, 77u);
    EXPECT_EQ(outcome_of([] { return velto_clip_open_metakeys(0, nullptr); }), invalid_handle);
}

TEST_F(MetadataOfAClip, IsNoneOnARecordWithoutAList)
{
    for (const ClipFields& fields : {ClipFields(), ClipFields{{"MetadataList", ""}}}) {
        const VeltoRecordHandle record = open(fields);
        EXPECT_EQ(read_meta(record, "take"), read_to(""));
        EXPECT_EQ(has_meta(record, "take"), read_to("0"));
        EXPECT_EQ(keys_of(record), "");
        velto_close_clip_metadata(record);
    }
}

TEST_F(MetadataOfAClip, GetsANewPairAtItsEnd)
{
    const VeltoRecordHandle record = open_with(metadata_pair("z", "1") + metadata_pair("a", "2"));
    EXPECT_EQ(set(record, "m", "3"), succeeded);
    EXPECT_EQ(read_meta(record, "m"), read_to("3"));
    EXPECT_EQ(has_meta(record, "m"), read_to("1"));
    EXPECT_EQ(keys_of(record), "z|a|m|");
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, GetsANewPairAlsoInAListWithoutAny)
{
    const VeltoRecordHandle record = open_with("");
    EXPECT_EQ(set(record, "m", "3"), succeeded);
    EXPECT_EQ(read_meta(record, "m"), read_to("3"));
    EXPECT_EQ(keys_of(record), "m|");
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, GetsANewValueForAKeyInItsPlace)
{
    const VeltoRecordHandle record =
        open_with(metadata_pair("a", "1") + metadata_pair("b", "2") + metadata_pair("a", "3"));
    EXPECT_EQ(set(record, "a", "4"), succeeded);
    EXPECT_EQ(read_meta(record, "a"), read_to("4"));
    EXPECT_EQ(keys_of(record), "a|b|a|");
    EXPECT_EQ(erase(record, "a"), succeeded); // only the first is ever changed
    EXPECT_EQ(read_meta(record, "a"), read_to("3"));
    EXPECT_EQ(keys_of(record), "b|a|");
    EXPECT_EQ(erase(record, "a"), succeeded);
    EXPECT_EQ(has_meta(record, "a"), read_to("0"));
    EXPECT_EQ(keys_of(record), "b|");
    velto_close_clip_metadata(record);
}

// Wanted: without a list the clip has to be opened again.
TEST_F(MetadataOfAClip, StaysUnseenOnARecordThatCameWithoutAList)
{
    const VeltoRecordHandle record = open();
    EXPECT_EQ(set(record, "take", "one"), succeeded);
    EXPECT_EQ(read_meta(record, "take"), read_to(""));
    EXPECT_EQ(has_meta(record, "take"), read_to("0"));
    EXPECT_EQ(keys_of(record), "");
    EXPECT_EQ(erase(record, "take"), succeeded);
    EXPECT_EQ(has_meta(record, "take"), read_to("0"));
    velto_close_clip_metadata(record);

    const VeltoRecordHandle again = open_with(metadata_pair("take", "one"));
    EXPECT_EQ(read_meta(again, "take"), read_to("one"));
    velto_close_clip_metadata(again);
}

TEST_F(MetadataOfAClip, IsDeletedAtTheServerAlsoWhereTheRecordHasNoSuchKey)
{
    const VeltoRecordHandle record = open_with(metadata_pair("a", "1"));
    EXPECT_EQ(erase(record, "b"), succeeded);
    EXPECT_EQ(erase(record, "b", error_content("No such key")), (Outcome{2, "No such key"}));
    EXPECT_EQ(keys_of(record), "a|");
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, StaysWhereTheServerRefuses)
{
    const VeltoRecordHandle record = open_with(metadata_pair("a", "1"));
    EXPECT_EQ(set(record, "a", "2", error_content("no")), (Outcome{2, "no"}));
    EXPECT_EQ(set(record, "b", "2", error_content("no")), (Outcome{2, "no"}));
    EXPECT_EQ(erase(record, "a", error_content("no")), (Outcome{2, "no"}));
    EXPECT_EQ(read_meta(record, "a"), read_to("1"));
    EXPECT_EQ(keys_of(record), "a|");
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, GivesItsKeysInOrderWithDoublesAndEmptyOnes)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    const VeltoListHandle keys = open_keys(record);
    for (const char* key : {"take", "shot", "take", "", "empty", "", ""}) {
        EXPECT_EQ(read_text<velto_get_metakey>(keys), read_to(key));
    }
    EXPECT_EQ(outcome_of([&] { return velto_close_metakeys(keys); }), succeeded);
    EXPECT_EQ(read_text<velto_get_metakey>(keys), (Reading{invalid_handle, ""}));
    velto_close_clip_metadata(record);
}

TEST_F(MetadataOfAClip, ListsItsKeysAsTheyWere)
{
    const VeltoRecordHandle record = open_with(metadata_pair("a", "1") + metadata_pair("b", "2"));
    const VeltoListHandle keys = open_keys(record);
    EXPECT_EQ(erase(record, "a"), succeeded);
    EXPECT_EQ(set(record, "c", "3"), succeeded);
    velto_close_clip_metadata(record);
    velto_close(session.handle);
    EXPECT_EQ(take_all(keys), "a|b|");
    EXPECT_EQ(velto_close_metakeys(keys), VELTO_RESULT_OK);
}

TEST_F(MetadataOfAClip, ListsNoKeysForNobody)
{
    const VeltoRecordHandle record = open_with(some_metadata);
    VeltoListHandle before = open_keys(record);
    EXPECT_EQ(outcome_of([&] { return velto_clip_open_metakeys(record, nullptr); }), succeeded);
    VeltoListHandle after = open_keys(record);
    EXPECT_EQ(after, before + 1);
    velto_close_metakeys(before);
    velto_close_metakeys(after);
    velto_close_clip_metadata(record);
}

TEST(MetadataKeys, CloseOftenEnough)
{
    for (const VeltoListHandle never_issued : {0u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        EXPECT_EQ(outcome_of([&] { return velto_close_metakeys(never_issued); }), succeeded);
    }
}

// As many as a reply can bring, and more that are set.
TEST_F(MetadataOfAClip, CanBeTwoThousandPairs)
{
    constexpr int pairs_at_first = 400;
    constexpr int pairs = 2000;
    const auto key = [](int i) { return "key " + std::to_string(i); };
    const auto value = [](int i) { return "\u00E9\U0001F3AC " + std::to_string(i * 7); };
    std::string metadata;
    std::string keys;
    for (int i = 0; i < pairs; ++i) {
        metadata += i < pairs_at_first ? metadata_pair(key(i), value(i)) : "";
        keys += key(i) + "|";
    }
    const VeltoRecordHandle record = open_with(metadata);
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    for (int i = pairs_at_first; i < pairs; ++i) {
        ASSERT_EQ(velto_clip_set_meta(record, Units(key(i)), Units(value(i))), VELTO_RESULT_OK);
        session.link->reply_ok(session.link->expect("modify_clip_attributes").xid);
    }
    velto_synchronous(session.handle, VELTO_COMMANDS_WAIT);
    for (int i = 0; i < pairs; i += 7) {
        ASSERT_EQ(read_meta(record, key(i)), read_to(value(i)));
    }
    EXPECT_EQ(read_meta(record, key(pairs - 1)), read_to(value(pairs - 1)));
    EXPECT_EQ(has_meta(record, key(pairs)), read_to("0"));
    EXPECT_EQ(keys_of(record), keys);

    EXPECT_EQ(set(record, "last", "x"), succeeded);
    EXPECT_EQ(erase(record, key(0)), succeeded);
    EXPECT_EQ(keys_of(record), keys.substr(key(0).size() + 1) + "last|");
    velto_close_clip_metadata(record);
}

// A reply that is longer than any message ends the link.
TEST_F(MetadataOfAClip, CannotBeMoreThanAMessageHolds)
{
    std::string metadata;
    while (metadata.size() < 33'000) {
        metadata += metadata_pair("key", "value");
    }
    const Opened refused = opened(clip_info({{"MetadataList", metadata}}));
    EXPECT_EQ(refused.outcome, link_failed);
    EXPECT_EQ(refused.record, 77u);
}

} // namespace
