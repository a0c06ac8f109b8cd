#include "api/kv_stores.h"

#include <gtest/gtest.h>

namespace
{

// One without a server: it knows nobody and does nothing.
std::shared_ptr<KVStore> some_store()
{
    static const auto connection = ARef<VeltoConnObject>::create();
    const auto deleter = [](KVStore* store) {
        store->close();
        delete store;
    };
    return {new KVStore(connection, u"notes", u"", kv_read), deleter};
}

TEST(KVStoreTable, TheFirstHandleIsOneAndTheyRiseByOne)
{
    KVStoreTable table;
    for (std::uint32_t handle = 1; handle <= 3; ++handle) {
        EXPECT_EQ(table.add(some_store()), handle);
    }
}

TEST(KVStoreTable, FindsWhatWasAdded)
{
    KVStoreTable table;
    const auto first = some_store();
    const auto second = some_store();
    table.add(first);
    table.add(second);
    EXPECT_EQ(table.find(1), first);
    EXPECT_EQ(table.find(2), second);
    EXPECT_EQ(table.find(0), std::nullopt);
    EXPECT_EQ(table.find(3), std::nullopt);
}

TEST(KVStoreTable, TakesOut)
{
    KVStoreTable table;
    const auto store = some_store();
    table.add(store);
    EXPECT_EQ(table.take(1), store);
    EXPECT_EQ(table.find(1), std::nullopt);
    EXPECT_EQ(table.take(1), std::nullopt);
    EXPECT_EQ(store.use_count(), 1);
}

TEST(KVStoreTable, AHandleIsNotGivenOutAgain)
{
    KVStoreTable table;
    for (int i = 0; i < 7; ++i) {
        table.add(some_store());
    }
    table.take(7);
    EXPECT_EQ(table.add(some_store()), 8u);
}

TEST(KVStoreTable, BehindTheLastNumberComesTheFirstThatIsFree)
{
    KVStoreTable table;
    table.add(some_store());
    table.add(some_store());
    table.add(some_store());
    table.take(2);
    table.counter.last = 0xFFFFFFFE;
    EXPECT_EQ(table.add(some_store()), 0xFFFFFFFF);
    EXPECT_EQ(table.add(some_store()), 2u); // over 0 and 1
    EXPECT_EQ(table.add(some_store()), 4u); // over 3
}

TEST(KVStoreTable, ThereIsOneForTheProcess)
{
    EXPECT_EQ(&kv_stores(), &kv_stores());
}

} // namespace
