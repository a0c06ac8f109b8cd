#include "support/assert_watch.h"
#include "support/store_script.h"

#include <gtest/gtest.h>

// What the exported functions of the stores say and write at their boundary.
namespace
{

constexpr std::uint32_t reading = VELTO_STORE_READ;
constexpr std::uint32_t both = VELTO_STORE_READ_WRITE;
constexpr std::uint32_t writing = VELTO_STORE_WRITE;

constexpr VeltoStoreHandle untouched_handle = 77;
constexpr VeltoChar untouched = 0x2A2A;

class StoreFunctions : public testing::Test
{
protected:
    ScriptLink& link() { return *session.link; }

    Outcome open(std::uint32_t mode)
    {
        opened = untouched_handle;
        return outcome_of([&] {
            return velto_open_kvstore(session.handle, VELTO_TEXT("notes"), VELTO_TEXT("p/"), mode,
                                      &opened);
        });
    }

    Session session;
    VeltoStoreHandle opened = untouched_handle;
};

TEST_F(StoreFunctions, OpeningOnAnUnknownConnectionFails)
{
    for (const std::uint32_t mode : {reading, 0u}) { // the connection is looked at first
        EXPECT_EQ(outcome_of([&] {
                      return velto_open_kvstore(0, VELTO_TEXT("notes"), VELTO_TEXT(""), mode,
                                                &opened);
                  }),
                  invalid_handle);
        EXPECT_EQ(opened, untouched_handle);
    }
    session.settle();
}

TEST_F(StoreFunctions, OpeningInNoModeFailsAndCreatesNothing)
{
    EXPECT_EQ(open(writing), succeeded);
    const VeltoStoreHandle last = opened;
    velto_close_key_value_store(last);
    for (const std::uint32_t mode : {0u, 4u, 5u, 0x80000001u, 0xFFFFFFFFu}) {
        EXPECT_EQ(open(mode), invalid_argument);
        EXPECT_EQ(opened, untouched_handle);
    }
    session.settle(); // nothing was sent
    EXPECT_EQ(open(writing), succeeded);
    EXPECT_EQ(opened, last + 1); // and no handle was used
    velto_close_key_value_store(opened);
}

TEST_F(StoreFunctions, HandlesAreTheirOwnAndAreNotUsedAgain)
{
    EXPECT_EQ(open(reading), succeeded);
    const VeltoStoreHandle first = opened;
    velto_close_key_value_store(first);
    EXPECT_EQ(open(reading), succeeded);
    EXPECT_EQ(opened, first + 1);
    const VeltoHandle connection = velto_connect(0x7F000001);
    velto_close(connection);
    velto_close_key_value_store(opened);
    EXPECT_EQ(open(reading), succeeded);
    EXPECT_EQ(opened, first + 2);
    velto_close_key_value_store(opened);
}

TEST_F(StoreFunctions, NeitherSideTakesTheOthersHandles)
{
    EXPECT_EQ(outcome_of([&] { return velto_kvstore_flush(0xFFFFFFF0 + session.handle, 0); }),
              invalid_handle);
    velto_close_key_value_store(0xFFFFFFF0 + session.handle);
    EXPECT_EQ(velto_connected(session.handle), VELTO_LINK_UP);
}

TEST_F(StoreFunctions, AnUnknownHandleIsInvalidAndNothingIsWritten)
{
    AssertWatch watch;
    for (const VeltoStoreHandle handle : {0u, 0xFFFFFFFFu}) {
        std::uint32_t kind = 77;
        VeltoChar text = untouched;
        const VeltoTextBuffer buffer{&text, 1};
        EXPECT_EQ(outcome_of([&] {
                      return velto_kvstore_get_change(handle, 0xFFFFFFFF, &kind, buffer, buffer);
                  }),
                  invalid_handle);
        EXPECT_EQ(kind, 77u);
        EXPECT_EQ(text, untouched);
        EXPECT_EQ(
            outcome_of([&] { return velto_kvstore_set(handle, VELTO_TEXT("a"), VELTO_TEXT("1")); }),
            invalid_handle);
        EXPECT_EQ(outcome_of([&] { return velto_kvstore_erase(handle, VELTO_TEXT("a")); }),
                  invalid_handle);
        EXPECT_EQ(outcome_of([&] { return velto_kvstore_flush(handle, 0xFFFFFFFF); }),
                  invalid_handle);
        EXPECT_EQ(outcome_of([&] { return velto_kvstore_wait_scan(handle, 0xFFFFFFFF); }),
                  invalid_handle);
        velto_close_key_value_store(handle);
    }
    EXPECT_EQ(watch.count(), 0u);
}

TEST_F(StoreFunctions, WritingToAStoreOpenedForReadingFailsAndSendsNothing)
{
    const Store store(session.handle, reading);
    expect_watch(link());
    link().reply_ok(expect_download(link()));
    EXPECT_EQ(store.set("a", "1"), read_only);
    EXPECT_EQ(store.erase("a"), read_only);
    EXPECT_EQ(store.flush(0), read_only);
    EXPECT_EQ(store.flush(0xFFFFFFFF), read_only);
    EXPECT_EQ(store.wait_scan(long_ms), succeeded);
    session.settle();
}

TEST_F(StoreFunctions, ReadingFromAStoreOpenedForWritingFailsAtOnce)
{
    const Store store(session.handle, writing);
    std::uint32_t kind = 77;
    VeltoChar text = untouched;
    const VeltoTextBuffer buffer{&text, 1};
    EXPECT_EQ(outcome_of([&] {
                  return velto_kvstore_get_change(store.handle, 0xFFFFFFFF, &kind, buffer, buffer);
              }),
              write_only);
    EXPECT_EQ(kind, 77u);
    EXPECT_EQ(text, untouched);
}

TEST_F(StoreFunctions, AStoreForBothDoesBoth)
{
    const Store store(session.handle, both);
    expect_watch(link());
    link().reply_ok(expect_download(link()));
    EXPECT_EQ(store.change(), "Timeout");
    EXPECT_EQ(store.set("a", "1"), succeeded);
    link().reply_ok(expect_bytes(link(), set_command("p/a", "1")));
    EXPECT_EQ(store.flush(long_ms), succeeded);
}

TEST_F(StoreFunctions, ANullTextIsReportedAndIsTheEmptyOne)
{
    AssertWatch watch;
    VeltoStoreHandle store = 0;
    EXPECT_EQ(velto_open_kvstore(session.handle, nullptr, nullptr, writing, &store),
              VELTO_RESULT_OK);
    EXPECT_EQ(velto_kvstore_set(store, nullptr, nullptr), VELTO_RESULT_OK);
    const std::string empty_set = "<metadata_set>\r\n<MetadataDatabase />\r\n<MetadataList>\r\n"
                                  "<Metadata>\r\n<Key />\r\n<Value />\r\n</Metadata>\r\n"
                                  "</MetadataList>\r\n</metadata_set>";
    link().reply_ok(expect_bytes(link(), empty_set));
    EXPECT_EQ(velto_kvstore_flush(store, long_ms), VELTO_RESULT_OK);
    EXPECT_EQ(velto_kvstore_erase(store, nullptr), VELTO_RESULT_OK);
    const std::string empty_erase = "<metadata_erase>\r\n<MetadataDatabase />\r\n<KeyList>\r\n"
                                    "<Key />\r\n</KeyList>\r\n</metadata_erase>";
    link().reply_ok(expect_bytes(link(), empty_erase));
    EXPECT_EQ(velto_kvstore_flush(store, long_ms), VELTO_RESULT_OK);
    velto_close_key_value_store(store);
    EXPECT_EQ(watch.count("astring"), 5u);
}

// A change as its buffers show it: each with the given size, and the unit behind.
class StoreBuffers : public StoreFunctions
{
protected:
    StoreBuffers()
    {
        expect_watch(link());
        link().reply_ok(expect_download(link()));
    }

    Outcome take(std::uint32_t key_size, std::uint32_t value_size)
    {
        key.assign(key_size + 1, untouched);
        value.assign(value_size + 1, untouched);
        kind = 77;
        return outcome_of([&] {
            return velto_kvstore_get_change(store.handle, long_ms, &kind, {key.data(), key_size},
                                            {value.data(), value_size});
        });
    }

    const Store store{session.handle, reading};
    std::uint32_t kind = 77;
    Units key;
    Units value;
};

TEST_F(StoreBuffers, HoldATextAndItsZero)
{
    link().send(change_report({{"p/key", "value"}}));
    EXPECT_EQ(take(5, 7), succeeded);
    EXPECT_EQ(kind, 1u);
    EXPECT_EQ(key, (Units{'k', 'e', 'y', 0, untouched, untouched}));
    EXPECT_EQ(value, (Units{'v', 'a', 'l', 'u', 'e', 0, untouched, untouched}));
}

TEST_F(StoreBuffers, GetTheEmptyValueOfAnErasedKey)
{
    link().send(removal_report({"p/key"}));
    EXPECT_EQ(take(4, 2), succeeded);
    EXPECT_EQ(kind, 2u);
    EXPECT_EQ(key, (Units{'k', 'e', 'y', 0, untouched}));
    EXPECT_EQ(value, (Units{0, untouched, untouched}));
}

TEST_F(StoreBuffers, CutWhatDoesNotFit)
{
    link().send(change_report({{"p/key", "value"}}));
    EXPECT_EQ(take(3, 1), succeeded);
    EXPECT_EQ(key, (Units{'k', 'e', 0, untouched}));
    EXPECT_EQ(value, (Units{0, untouched}));
    EXPECT_EQ(store.change(), "Timeout"); // it is taken all the same
}

TEST_F(StoreBuffers, WithoutRoomStayAsTheyAreAndTheChangeIsTaken)
{
    link().send(change_report({{"p/key", "value"}}));
    EXPECT_EQ(take(0, 7), succeeded);
    EXPECT_EQ(kind, 1u);
    EXPECT_EQ(key, Units{untouched});
    EXPECT_EQ(value, (Units{'v', 'a', 'l', 'u', 'e', 0, untouched, untouched}));
    EXPECT_EQ(store.change(), "Timeout");
    link().send(change_report({{"p/key", "value"}}));
    EXPECT_EQ(outcome_of([&] {
                  return velto_kvstore_get_change(store.handle, long_ms, &kind, {nullptr, 0},
                                                  {nullptr, 0});
              }),
              succeeded);
}

TEST_F(StoreBuffers, NeverHoldHalfAPair)
{
    link().send(change_report({{"p/a\xF0\x9F\x8E\xAC", "\xF0\x9F\x8E\xAC\xF0\x9F\x8E\xAC"}}));
    EXPECT_EQ(take(3, 4), succeeded);
    EXPECT_EQ(key, (Units{'a', 0, untouched, untouched}));
    EXPECT_EQ(value, (Units{0xD83C, 0xDFAC, 0, untouched, untouched}));
}

// 16-bit units on both sides of the server's UTF-8.
TEST_F(StoreFunctions, TextsGoAsUtf8)
{
    const VeltoChar key[] = {'k', 0xE9, 0xD83C, 0xDFAC, 0};
    const VeltoChar value[] = {0x20AC, 0};
    const Store store(session.handle, writing);
    EXPECT_EQ(velto_kvstore_set(store.handle, key, value), VELTO_RESULT_OK);
    link().reply_ok(
        expect_bytes(link(), set_command("p/k\xC3\xA9\xF0\x9F\x8E\xAC", "\xE2\x82\xAC")));
    EXPECT_EQ(store.flush(long_ms), succeeded);
}

} // namespace
