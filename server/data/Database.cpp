#include "data/Database.h"

#include "data/DatabaseError.h"
#include "data/Schema.h"
#include "data/Statement.h"
#include "data/Transaction.h"

#include <fmt/format.h>

namespace corvane::server {

Database Database::openHandle(const std::string& name, int flags)
{
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(name.c_str(), &opened, flags, nullptr);
    Handle handle(opened);
    if (status != SQLITE_OK)
        throw DatabaseError(sqlite3_errstr(status));
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_timeout(opened, busyTimeout);
    return Database(std::move(handle));
}

Result<Database> Database::open(const std::filesystem::path& file, Opening opening)
{
    try {
        const int create = opening == Opening::createWhenMissing ? SQLITE_OPEN_CREATE : 0;
        auto database = openHandle(file.string(), SQLITE_OPEN_READWRITE | create);
        if (sqlite3_db_readonly(database.handle(), "main") == 1)
            throw DatabaseError("the file is read-only");
        database.run("PRAGMA journal_mode = WAL");
        database.prepare();
        return database;
    } catch (const DatabaseError& error) {
        return std::unexpected(Error{fmt::format("cannot open the database {}: {}", file.string(), error.what())});
    }
}

Database Database::inMemory()
{
    auto database = openHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.prepare();
    return database;
}

void Database::prepare()
{
    run("PRAGMA foreign_keys = ON");
    run("PRAGMA secure_delete = ON");
    Transaction transaction(*this);
    Statement version(*this, "PRAGMA user_version");
    version.step();
    const auto found = version.integer(0);
    version.reset();
    if (found > schemaVersion)
        throw DatabaseError(fmt::format("it was written by a newer version of this server (schema {})", found));
    if (found < 1)
        run(schemaOne);
    if (found < 2)
        run(schemaTwo);
    if (found < schemaVersion)
        run(fmt::format("PRAGMA user_version = {}", schemaVersion).c_str());
    transaction.commit();
}

void Database::run(const char* sql)
{
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw DatabaseError(sqlite3_errmsg(handle()));
}

std::int64_t Database::changedRows() const
{
    return sqlite3_changes64(handle());
}

std::int64_t Database::lastInsertedId() const
{
    return sqlite3_last_insert_rowid(handle());
}

} // namespace corvane::server
