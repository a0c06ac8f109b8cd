#include "support/metadata_server.h"
#include "support/store_script.h"

#include <deque>
#include <random>

#include <gtest/gtest.h>

// Many small things in a random order, against a model: whatever is written, refused, changed by
// others, and lost with a link, in the end the server has what was written, and each reader knows
// what the server has.
namespace
{

constexpr int steps = 2000;
constexpr int steps_between_checks = 250;
constexpr std::size_t doors = 2;
const std::string folder = "notes";

using Table = MetadataServer::Table;

// A connection through one door.
struct Connection {
    explicit Connection(std::uint32_t address) : handle(velto_connect(address)) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { velto_close(handle); }

    VeltoHandle handle;
};

// A store, and all that its changes have said so far.
struct Reader {
    std::size_t door;
    std::uint32_t mode;
    std::string prefix;
    std::optional<Store> store = {};
    Table picture = {};

    void open(VeltoHandle connection)
    {
        store.reset();
        picture.clear();
        store.emplace(connection, mode, prefix, folder);
    }

    // False when there is none. Keys are whole in the picture.
    bool take_change(std::uint32_t timeout_ms)
    {
        std::uint32_t kind = 0;
        std::vector<VeltoChar> key(64), value(64);
        const VeltoResult result = velto_kvstore_get_change(store->handle, timeout_ms, &kind,
                                                            {key.data(), 64}, {value.data(), 64});
        if (result != VELTO_RESULT_OK) {
            return false;
        }
        if (kind == VELTO_STORE_CHANGE_SET) {
            picture[prefix + ascii(key.data())] = ascii(value.data());
        } else {
            picture.erase(prefix + ascii(key.data()));
        }
        return true;
    }
};

class StoresModel : public testing::TestWithParam<unsigned>
{
protected:
    StoresModel()
    {
        for (std::size_t door = 0; door < doors; ++door) {
            connections.emplace_back(server.address(door));
        }
        for (Reader& reader : readers) {
            reader.open(connections[reader.door].handle);
        }
    }
    ~StoresModel() override
    {
        for (Reader& reader : readers) {
            reader.store.reset();
        }
        for (std::size_t door = 0; door < doors; ++door) {
            server.close_door(door); // their workers end at once
        }
    }

    int random(int count) { return static_cast<int>(generator() % static_cast<unsigned>(count)); }

    // Each writer has keys of its own, so that it is known which write to a key is the last.
    std::string key(const std::string& beginning, int count)
    {
        return beginning + std::to_string(random(count));
    }

    // A key that belongs to this store, without the store's prefix.
    void write(const Reader& writer, const std::string& own_key)
    {
        if (random(3) == 0) {
            EXPECT_EQ(writer.store->erase(own_key), succeeded);
            model.erase(writer.prefix + own_key);
        } else {
            const std::string value = std::to_string(++last_value);
            EXPECT_EQ(writer.store->set(own_key, value), succeeded);
            model[writer.prefix + own_key] = value;
        }
    }

    void change_elsewhere()
    {
        const std::string changed = key(random(2) == 0 ? "s" : "p/s", 10);
        if (random(3) == 0) {
            server.erase(folder, changed);
            model.erase(changed);
        } else {
            const std::string value = std::to_string(++last_value);
            server.set(folder, changed, value);
            model[changed] = value;
        }
    }

    void take_some_changes(Reader& reader)
    {
        for (int i = random(30); i != 0 && reader.take_change(0); --i) {
        }
    }

    void step()
    {
        const int choice = random(1000);
        if (choice < 420) {
            write(everything, key("a", 30));
        } else if (choice < 800) {
            write(writing_part, key("c", 20));
        } else if (choice < 920) {
            change_elsewhere();
        } else if (choice < 960) {
            take_some_changes(readers[static_cast<std::size_t>(random(3))]);
        } else if (choice < 988) {
            EXPECT_EQ(everything.store->flush(long_ms), succeeded);
            EXPECT_EQ(writing_part.store->flush(long_ms), succeeded);
        } else if (choice < 992) {
            server.refuse(1 + random(2));
        } else if (choice < 994) {
            reading_part.open(connections[reading_part.door].handle);
        } else {
            constexpr MetadataServer::Loss losses[] = {MetadataServer::Loss::now,
                                                       MetadataServer::Loss::before_next_write,
                                                       MetadataServer::Loss::behind_next_write};
            server.lose_links(static_cast<std::size_t>(random(doors)), losses[random(3)]);
        }
    }

    void check()
    {
        server.refuse(0);
        for (const Reader* writer : {&everything, &writing_part}) {
            ASSERT_EQ(writer->store->flush(long_ms), succeeded);
        }
        for (std::size_t door = 0; door < doors; ++door) {
            server.await_scan(door, folder);
        }
        for (const Reader& reader : readers) {
            ASSERT_EQ(reader.store->wait_scan(long_ms), succeeded);
        }
        // A key that is new comes last, of what is on its way and of what is pending.
        const std::string last = "p/~" + std::to_string(++last_value);
        server.set(folder, last, "");
        model[last] = "";
        EXPECT_EQ(server.table(folder), model);
        for (Reader& reader : readers) {
            while (reader.picture.count(last) == 0) {
                ASSERT_TRUE(reader.take_change(long_ms));
            }
            check_picture(reader);
        }
    }

    void check_picture(const Reader& reader)
    {
        Table wanted;
        for (const auto& [each, value] : model) {
            if (each.starts_with(reader.prefix)) {
                wanted.emplace(each, value);
            }
        }
        Table known = reader.picture;
        for (const std::string& missed : server.missed(reader.door, folder)) {
            known.erase(missed);
        }
        EXPECT_EQ(known, wanted) << "of the store with the prefix \"" << reader.prefix << '"';
        EXPECT_EQ(reader.store->change(), "Timeout");
    }

    MetadataServer server{doors};
    std::deque<Connection> connections;
    std::array<Reader, 3> readers{Reader{0, VELTO_STORE_READ_WRITE, ""},
                                  Reader{0, VELTO_STORE_READ, "p/"},
                                  Reader{1, VELTO_STORE_READ_WRITE, "p/"}};
    Reader& everything = readers[0];
    Reader& reading_part = readers[1];
    Reader& writing_part = readers[2];
    Table model;
    int last_value = 0;
    std::mt19937 generator{GetParam()};
};

TEST_P(StoresModel, InTheEndAllKnowTheSame)
{
    for (int i = 1; i <= steps && !HasFatalFailure(); ++i) {
        step();
        if (i % steps_between_checks == 0) {
            check();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StoresModel, testing::Values(1u, 2u, 3u));

} // namespace
