#include "sim/sqlite.h"

#include <sqlite3.h>

namespace veltosim
{

namespace
{

[[noreturn]] void fail(sqlite3* database, int code)
{
    throw SqliteError(code, database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

} // namespace

void Statement::Finalizer::operator()(sqlite3_stmt* used) const
{
    sqlite3_finalize(used);
}

Statement::Statement(sqlite3* used_database, std::string_view sql) : database(used_database)
{
    sqlite3_stmt* made = nullptr;
    check(sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &made, nullptr));
    statement.reset(made);
}

void Statement::check(int code) const
{
    if (code != SQLITE_OK) {
        fail(database, code);
    }
}

Statement& Statement::bind(std::int64_t value)
{
    check(sqlite3_bind_int64(statement.get(), ++bound, value));
    return *this;
}

Statement& Statement::bind(std::string_view value)
{
    check(sqlite3_bind_text64(statement.get(), ++bound, value.data(), value.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

bool Statement::step()
{
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        fail(database, code);
    }
    return code == SQLITE_ROW;
}

void Statement::run()
{
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW) {
        code = sqlite3_step(statement.get());
    }
    const SqliteError problem(code, sqlite3_errmsg(database));
    sqlite3_reset(statement.get());
    bound = 0;
    if (code != SQLITE_DONE) {
        throw problem;
    }
}

std::int64_t Statement::number(int column) const
{
    return sqlite3_column_int64(statement.get(), column);
}

std::string Statement::text(int column) const
{
    const auto* const bytes =
        static_cast<const char*>(sqlite3_column_blob(statement.get(), column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column));
    return bytes ? std::string(bytes, size) : std::string();
}

void Sqlite::Closer::operator()(sqlite3* opened) const
{
    sqlite3_close(opened);
}

Sqlite::Sqlite(const std::string& file)
{
    sqlite3* opened = nullptr;
    const int code =
        sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    database.reset(opened);
    if (code != SQLITE_OK) {
        fail(opened, code);
    }
}

void Sqlite::execute(const std::string& sql)
{
    const int code = sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(database.get(), code);
    }
}

std::int64_t Sqlite::number(const std::string& sql)
{
    Statement statement = prepare(sql);
    return statement.step() ? statement.number(0) : 0;
}

Transaction::Transaction(Sqlite& used_database) : database(used_database)
{
    database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (open) {
        try {
            database.execute("ROLLBACK");
        } catch (const SqliteError&) { // it has rolled back by itself
        }
    }
}

void Transaction::commit()
{
    database.execute("COMMIT");
    open = false;
}

} // namespace veltosim
