#include "api/connection_registry.h"

#include "support/outcome.h"

#include <atomic>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

// Makes the first calls of the program, before any test: two threads at once.
class FirstCalls : public testing::Environment
{
public:
    void SetUp() override
    {
        std::atomic<int> arrived{0};
        const auto first_call = [&] {
            for (++arrived; arrived < 2;) { // not by a barrier: that of MinGW loses a wake-up
                std::this_thread::yield();
            }
            velto_connected(1);
            return &connection_registry();
        };
        auto one = in_thread(first_call);
        auto other = in_thread(first_call);
        registries[0] = await(std::move(one));
        registries[1] = await(std::move(other));
    }

    ConnectionRegistry* registries[2] = {};
};

const auto* first_calls =
    static_cast<FirstCalls*>(testing::AddGlobalTestEnvironment(new FirstCalls));

// A registry with connections that are never started.
class Registry : public testing::Test
{
protected:
    void TearDown() override { last_handle = handle_before; } // as the other tests left it

    static std::uint32_t references(const ARef<VeltoConnObject>& reference)
    {
        return ARefBlock<VeltoConnObject>::of(reference.get())->reference_count;
    }

    ConnectionRegistry registry;
    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
    const std::uint32_t handle_before = last_handle;
};

TEST_F(Registry, TheFirstCallsOfTwoThreadsMakeOneRegistry)
{
    EXPECT_EQ(first_calls->registries[0], first_calls->registries[1]);
    EXPECT_EQ(first_calls->registries[0], &connection_registry());
}

TEST_F(Registry, HandlesCountUp)
{
    last_handle = 41;
    EXPECT_EQ(next_handle(), 42u);
    EXPECT_EQ(next_handle(), 43u);
}

TEST_F(Registry, ZeroIsSkippedWhenTheCounterWraps)
{
    last_handle = 0xFFFFFFFE;
    EXPECT_EQ(next_handle(), 0xFFFFFFFFu);
    EXPECT_EQ(next_handle(), 1u);
    EXPECT_EQ(next_handle(), 2u);
}

TEST_F(Registry, AHandleInUseIsSkippedWhenTheCounterWraps)
{
    last_handle = 0;
    EXPECT_EQ(registry.add_connection(connection), 1u);
    EXPECT_EQ(registry.add_connection(connection), 2u);
    last_handle = 0xFFFFFFFF;
    EXPECT_EQ(registry.add_connection(connection), 3u);
}

TEST_F(Registry, AnEntryHoldsItsConnection)
{
    const VeltoHandle handle = registry.add_connection(connection);
    EXPECT_EQ(references(connection), 2u);
    {
        const ARef<VeltoConnObject> found = registry.find_connection(handle);
        EXPECT_EQ(found.get(), connection.get());
        EXPECT_EQ(references(connection), 3u);
    }
    registry.remove_connection(handle);
    EXPECT_EQ(references(connection), 1u);
    EXPECT_FALSE(registry.find_connection(handle));
}

TEST_F(Registry, AFoundConnectionOutlivesItsEntry)
{
    const VeltoHandle handle = registry.add_connection(connection);
    connection.clear();
    const ARef<VeltoConnObject> found = registry.find_connection(handle);
    registry.remove_connection(handle);
    EXPECT_EQ(references(found), 1u);
    EXPECT_FALSE(found->is_connected());
}

TEST_F(Registry, RemovingAnUnknownHandleDoesNothing)
{
    const VeltoHandle handle = registry.add_connection(connection);
    registry.remove_connection(0);
    registry.remove_connection(handle + 1);
    EXPECT_TRUE(registry.find_connection(handle));
    registry.remove_connection(handle);
    registry.remove_connection(handle);
    EXPECT_FALSE(registry.find_connection(handle));
}

TEST_F(Registry, ResolvingRecordsTheFailureAlone)
{
    const VeltoHandle handle = registry.add_connection(connection);
    ARef<VeltoConnObject> reference;
    set_last_error_text("before");
    EXPECT_EQ(outcome_of([&] { return registry.resolve_connection(handle, reference); }),
              (Outcome{0, "before"}));
    EXPECT_EQ(reference.get(), connection.get());

    EXPECT_EQ(outcome_of([&] { return registry.resolve_connection(handle + 1, reference); }),
              invalid_handle);
    EXPECT_FALSE(reference);
}

TEST_F(Registry, ManyThreadsGetHandlesOfTheirOwn)
{
    constexpr std::size_t handles_each = 500;
    std::vector<std::future<std::vector<VeltoHandle>>> adding;
    for (int i = 0; i < 4; ++i) {
        adding.push_back(in_thread([this] {
            std::vector<VeltoHandle> handles;
            for (std::size_t k = 0; k < handles_each; ++k) {
                handles.push_back(registry.add_connection(connection));
            }
            return handles;
        }));
    }
    std::set<VeltoHandle> all;
    for (auto& handles : adding) {
        for (const VeltoHandle handle : await(std::move(handles))) {
            all.insert(handle);
            EXPECT_TRUE(registry.find_connection(handle));
        }
    }
    EXPECT_EQ(all.size(), 4 * handles_each);
}

} // namespace
