#include "support/metadata_server.h"
#include "support/store_script.h"

#include <random>

#include <gtest/gtest.h>

// Everything at once: eight threads open, write, read, flush and close, partly the same stores,
// while the links go up and down. The sanitizers look on; here it must end, and every store must
// still work afterwards.
namespace
{

constexpr std::size_t doors = 2;
constexpr int threads = 8;
constexpr int rounds = 100;
constexpr int shared_stores = 3;
const std::string folder = "notes";

class Chance
{
public:
    explicit Chance(unsigned seed) : generator(seed) {}

    std::uint32_t below(std::uint32_t count)
    {
        return static_cast<std::uint32_t>(generator()) % count;
    }

private:
    std::mt19937 generator;
};

class StoresStress : public testing::Test
{
protected:
    StoresStress()
    {
        for (std::size_t door = 0; door < doors; ++door) {
            connections[door] = velto_connect(server.address(door));
        }
        for (auto& store : shared) {
            store = open(0, VELTO_STORE_READ_WRITE);
        }
    }
    ~StoresStress() override
    {
        for (const auto& store : shared) {
            velto_close_key_value_store(store);
        }
        for (std::size_t door = 0; door < doors; ++door) {
            server.close_door(door); // their workers end at once
            velto_close(connections[door]);
        }
    }

    VeltoStoreHandle open(std::size_t door, std::uint32_t mode)
    {
        VeltoStoreHandle store = 0;
        EXPECT_EQ(velto_open_kvstore(connections[door], units(folder).c_str(), VELTO_TEXT("p/"),
                                     mode, &store),
                  VELTO_RESULT_OK);
        return store;
    }

    static void use(VeltoStoreHandle store, Chance& chance)
    {
        for (int i = 0; i < 12; ++i) {
            const Units key = units("k" + std::to_string(chance.below(20)));
            switch (chance.below(6)) {
            case 0:
            case 1:
                velto_kvstore_set(store, key.c_str(), units(std::to_string(i)).c_str());
                break;
            case 2:
                velto_kvstore_erase(store, key.c_str());
                break;
            case 3:
                velto_kvstore_flush(store, chance.below(20));
                break;
            case 4:
                velto_kvstore_wait_scan(store, chance.below(20));
                break;
            default:
                change_of(store, chance.below(5));
            }
        }
    }

    // One of the threads. Now and then it replaces a store that others are using.
    void live(unsigned seed)
    {
        Chance chance(seed);
        for (int round = 0; round < rounds; ++round) {
            const std::uint32_t mode = 1 + chance.below(3);
            const VeltoStoreHandle own = open(chance.below(doors), mode);
            use(own, chance);
            std::atomic<VeltoStoreHandle>& common = shared[chance.below(shared_stores)];
            use(common, chance);
            if (chance.below(4) == 0) {
                velto_close_key_value_store(common.exchange(open(1, VELTO_STORE_READ_WRITE)));
            }
            velto_close_key_value_store(own);
        }
        ++ended;
    }

    MetadataServer server{doors};
    std::array<VeltoHandle, doors> connections{};
    std::array<std::atomic<VeltoStoreHandle>, shared_stores> shared{};
    std::atomic<int> ended{0};
};

TEST_F(StoresStress, EndsAndLeavesStoresThatWork)
{
    std::vector<std::future<void>> lives;
    for (unsigned seed = 0; seed < threads; ++seed) {
        lives.push_back(in_thread([this, seed] { live(seed); }));
    }
    for (std::size_t turn = 0; ended < threads; ++turn) {
        const std::size_t door = turn % doors;
        server.close_door(door);
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        server.open_door(door);
        server.set(folder, "p/elsewhere", std::to_string(turn));
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
    }
    for (std::future<void>& life : lives) {
        life.get();
    }

    for (std::size_t door = 0; door < doors; ++door) {
        const Store store(connections[door], VELTO_STORE_READ_WRITE, "p/", folder);
        const std::string value = "of " + std::to_string(door);
        EXPECT_EQ(store.set("last", value), succeeded);
        EXPECT_EQ(store.flush(long_ms), succeeded);
        std::string change;
        while (change != "last = " + value) {
            change = store.change(long_ms);
            ASSERT_NE(change, "Timeout");
        }
        EXPECT_EQ(server.table(folder)["p/last"], value);
    }
}

// A store holds its connection, which is closed under it while others are in calls on the store.
TEST(StoresStressOfLifetimes, ConnectionsThatAreClosedUnderTheirStores)
{
    constexpr int lifetimes = 12;
    MetadataServer server;
    for (int i = 0; i < lifetimes; ++i) {
        const VeltoHandle connection = velto_connect(server.address(0));
        velto_wait_until_connected(connection);
        Store store(connection, VELTO_STORE_READ_WRITE, "p/", folder);
        std::vector<std::future<void>> users;
        for (int user = 0; user < 3; ++user) {
            users.push_back(in_thread([&store, user] {
                for (int write = 0; write < 5; ++write) {
                    velto_kvstore_set(store.handle, units(std::to_string(user)).c_str(),
                                      units(std::to_string(write)).c_str());
                    change_of(store.handle, 5);
                }
            }));
        }
        velto_close(connection);
        for (std::future<void>& user : users) {
            await(std::move(user));
        }
        EXPECT_EQ(store.flush(long_ms), succeeded);
        if (i % 2 == 0) {
            server.lose_links(0, MetadataServer::Loss::now); // or the end of the link comes later
        }
        store.close();
        server.lose_links(0, MetadataServer::Loss::now);
    }
    EXPECT_EQ(server.table(folder).size(), 3u);
}

} // namespace
