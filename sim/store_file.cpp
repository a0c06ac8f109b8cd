#include "sim/store_file.h"

#include <optional>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "sim/record_json.h"
#include "sim/refusal.h"
#include "sim/sqlite.h"

namespace veltosim
{

namespace
{

// What tells our files from others, and which of their forms this program knows.
constexpr std::int64_t application = 0x76737472;
constexpr std::int64_t version = 1;

constexpr const char* schema = R"(
CREATE TABLE clips (number INTEGER PRIMARY KEY, record TEXT NOT NULL);
CREATE TABLE virtual_clips (name TEXT PRIMARY KEY, record TEXT NOT NULL);
CREATE TABLE playlists (name TEXT PRIMARY KEY, record TEXT NOT NULL);
CREATE TABLE directories (name TEXT PRIMARY KEY);
CREATE TABLE metadata (folder TEXT, key TEXT, value TEXT NOT NULL,
                       PRIMARY KEY (folder, key)) WITHOUT ROWID;
CREATE TABLE disk (total INTEGER, field_size INTEGER);
)";

// Each commit waits for the disk, so that a reply that follows it is never taken back.
constexpr const char* settings = "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;";

[[noreturn]] void fail(const std::string& file, const std::string& reason)
{
    throw StoreError(fmt::format("{}: {}", file, reason));
}

std::string reason_of(const SqliteError& error)
{
    switch (error.code & 0xFF) {
    case SQLITE_NOTADB:
        return "is no store of this simulator";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "is in use by another process";
    default:
        return fmt::format("cannot be used as a store: {}", error.what());
    }
}

template <class Action>
void with_reason(const std::string& file, const Action& action)
{
    try {
        action();
    } catch (const SqliteError& error) {
        fail(file, reason_of(error));
    } catch (const LocatedError& error) {
        fail(file, fmt::format("holds a damaged record: {}", error.what()));
    } catch (const Refusal& refusal) {
        fail(file, fmt::format("holds a damaged record: {}", refusal.what()));
    }
}

// Whether the file is empty. Throws a StoreError for another program's.
bool check_kind(const std::string& file, Sqlite& database)
{
    const std::int64_t owner = database.number("PRAGMA application_id");
    const std::int64_t form = database.number("PRAGMA user_version");
    const bool empty = database.number("SELECT count(*) FROM sqlite_master") == 0;
    if (owner == 0 && empty) {
        return true;
    }
    if (owner != application) {
        fail(file, "is no store of this simulator");
    }
    if (form > version) {
        fail(file, fmt::format("was written by a newer version of the simulator: its form is {}, "
                               "and this one knows up to {}",
                               form, version));
    }
    return false;
}

} // namespace

// The statements that every change goes by.
struct StoreFile::Tables {
    explicit Tables(const std::string& file) : database(file) {}

    void prepare()
    {
        put_clip.emplace(database.prepare("INSERT OR REPLACE INTO clips VALUES (?, ?)"));
        drop_clip.emplace(database.prepare("DELETE FROM clips WHERE number = ?"));
        put_virtual_clip.emplace(
            database.prepare("INSERT OR REPLACE INTO virtual_clips VALUES (?, ?)"));
        drop_virtual_clip.emplace(database.prepare("DELETE FROM virtual_clips WHERE name = ?"));
        put_entry.emplace(database.prepare("INSERT OR REPLACE INTO metadata VALUES (?, ?, ?)"));
        drop_entry.emplace(database.prepare("DELETE FROM metadata WHERE folder = ? AND key = ?"));
        put_directory.emplace(database.prepare("INSERT OR IGNORE INTO directories VALUES (?)"));
    }

    void put(const MetadataChange& entry)
    {
        if (entry.value) {
            put_entry->bind(entry.database).bind(entry.key).bind(*entry.value).run();
        } else {
            drop_entry->bind(entry.database).bind(entry.key).run();
        }
    }

    template <class Action>
    void for_each(const char* sql, const Action& action)
    {
        Statement rows = database.prepare(sql);
        while (rows.step()) {
            action(rows);
        }
    }

    void put(const Clip& clip)
    {
        put_clip->bind(static_cast<std::int64_t>(clip.number)).bind(to_json(clip)).run();
    }
    void put(const VirtualClip& virtual_clip)
    {
        put_virtual_clip->bind(virtual_clip.name).bind(to_json(virtual_clip)).run();
    }

    void write(const StoreChange& change)
    {
        for (const std::string& directory : change.directories) {
            put_directory->bind(directory).run();
        }
        for (const auto& [before, after, told] : change.clips) {
            if (after) {
                put(*after);
            } else {
                drop_clip->bind(static_cast<std::int64_t>(before->number)).run();
            }
        }
        for (const auto& [before, after, told] : change.virtual_clips) {
            if (after) {
                put(*after);
            } else {
                drop_virtual_clip->bind(before->name).run();
            }
        }
        for (const MetadataChange& entry : change.metadata) {
            put(entry);
        }
    }

    void seed(const ClipStore& store)
    {
        for (const auto& [name, clip] : store.clips()) {
            put(*clip);
        }
        for (const auto& [name, virtual_clip] : store.virtual_clips()) {
            put(*virtual_clip);
        }
        for (const std::string& directory : store.made_directories()) {
            put_directory->bind(directory).run();
        }
        for (const auto& [folder, table] : store.metadata().all()) {
            for (const auto& [key, value] : table) {
                put(MetadataChange{folder, key, value});
            }
        }
        Statement put_list = database.prepare("INSERT INTO playlists VALUES (?, ?)");
        for (const auto& [name, list] : store.playlists()) {
            put_list.bind(name).bind(to_json(list)).run();
        }
        database.prepare("INSERT INTO disk VALUES (?, ?)")
            .bind(static_cast<std::int64_t>(store.disk().total))
            .bind(std::int64_t{store.disk().field_size})
            .run();
    }

    ClipStore load()
    {
        ClipStore store;
        for_each("SELECT total, field_size FROM disk", [&](const Statement& row) {
            store.set_disk({static_cast<std::uint64_t>(row.number(0)),
                            static_cast<std::uint32_t>(row.number(1))});
        });
        for_each("SELECT number, record FROM clips", [&](const Statement& row) {
            Clip clip = read_clip(parse_json(row.text(1)));
            clip.number = static_cast<std::uint64_t>(row.number(0));
            store.add_clip(std::move(clip));
        });
        for_each("SELECT record FROM virtual_clips", [&](const Statement& row) {
            store.add_virtual_clip(read_virtual_clip(parse_json(row.text(0))));
        });
        for_each("SELECT record FROM playlists", [&](const Statement& row) {
            store.add_playlist(read_playlist(parse_json(row.text(0))));
        });
        for_each("SELECT folder, key, value FROM metadata", [&](const Statement& row) {
            store.add_metadata({row.text(0), row.text(1), row.text(2)});
        });
        for_each("SELECT name FROM directories",
                 [&](const Statement& row) { store.add_directory(row.text(0)); });
        return store;
    }

    Sqlite database;
    std::optional<Statement> put_clip;
    std::optional<Statement> drop_clip;
    std::optional<Statement> put_virtual_clip;
    std::optional<Statement> drop_virtual_clip;
    std::optional<Statement> put_directory;
    std::optional<Statement> put_entry;
    std::optional<Statement> drop_entry;
};

StoreFile::StoreFile(const std::string& file_name) : path(file_name)
{
    with_reason(path, [&] {
        tables = std::make_unique<Tables>(path);
        tables->database.execute("PRAGMA locking_mode = EXCLUSIVE");
        fresh = check_kind(path, tables->database);
        tables->database.execute(settings);
        if (!fresh) {
            tables->database.execute("BEGIN IMMEDIATE; COMMIT"); // takes the lock
            tables->prepare();
        }
    });
}

StoreFile::~StoreFile() = default;

void StoreFile::seed(const ClipStore& store)
{
    with_reason(path, [&] {
        Transaction transaction(tables->database);
        tables->database.execute(schema);
        tables->database.execute(fmt::format("PRAGMA application_id = {}; PRAGMA user_version = {}",
                                             application, version));
        tables->prepare();
        tables->seed(store);
        transaction.commit();
        fresh = false;
    });
}

ClipStore StoreFile::load()
{
    ClipStore store;
    with_reason(path, [&] { store = tables->load(); });
    return store;
}

void StoreFile::write(const StoreChange& change)
{
    try {
        Transaction transaction(tables->database);
        tables->write(change);
        transaction.commit();
    } catch (const SqliteError& error) {
        throw Refusal(fmt::format("the store {} cannot be written: {}", path, error.what()));
    }
}

} // namespace veltosim
