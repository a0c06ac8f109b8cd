#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace veltosim
{

// What SQLite says of a call that failed.
struct SqliteError : std::runtime_error {
    SqliteError(int error_code, const std::string& text)
        : std::runtime_error(text), code(error_code)
    {
    }
    int code;
};

// One prepared statement. Everything throws a SqliteError.
class Statement
{
public:
    Statement(sqlite3* used_database, std::string_view sql);

    Statement& bind(std::int64_t value);
    Statement& bind(std::string_view value);
    // Whether there is a row.
    bool step();
    // Runs it to its end, and makes it ready for the next time.
    void run();

    std::int64_t number(int column) const;
    std::string text(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* used) const;
    };
    void check(int code) const;

    sqlite3* database;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement;
    int bound = 0;
};

// An open database file, for this process alone.
class Sqlite
{
public:
    explicit Sqlite(const std::string& file);

    void execute(const std::string& sql);
    // The first column of the first row.
    std::int64_t number(const std::string& sql);
    Statement prepare(std::string_view sql) { return {database.get(), sql}; }

private:
    struct Closer {
        void operator()(sqlite3* opened) const;
    };
    std::unique_ptr<sqlite3, Closer> database;
};

// All changes until commit, or none.
class Transaction
{
public:
    explicit Transaction(Sqlite& used_database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Sqlite& database;
    bool open = true;
};

} // namespace veltosim
