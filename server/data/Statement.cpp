#include "data/Statement.h"

#include "data/DatabaseError.h"

namespace corvane::server {

Statement::Statement(Database& database, std::string_view sql) : database_(database.handle())
{
    sqlite3_stmt* prepared = nullptr;
    check(sqlite3_prepare_v2(database_, sql.data(), static_cast<int>(sql.size()), &prepared, nullptr));
    statement_.reset(prepared);
}

bool Statement::step()
{
    const int status = sqlite3_step(statement_.get());
    if (status != SQLITE_ROW && status != SQLITE_DONE)
        check(status);
    return status == SQLITE_ROW;
}

void Statement::run()
{
    while (step()) {
    }
}

void Statement::reset()
{
    check(sqlite3_reset(statement_.get()));
}

std::int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

std::string Statement::text(int column) const
{
    const void* bytes = sqlite3_column_blob(statement_.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

std::chrono::sys_seconds Statement::time(int column) const
{
    return std::chrono::sys_seconds(std::chrono::seconds(integer(column)));
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

void Statement::bind(int index, std::int64_t value)
{
    check(sqlite3_bind_int64(statement_.get(), index, value));
}

void Statement::bind(int index, std::string_view value)
{
    // A view without storage would bind NULL.
    const char* bytes = value.data() == nullptr ? "" : value.data();
    check(sqlite3_bind_text64(statement_.get(), index, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int index, std::chrono::sys_seconds value)
{
    bind(index, std::int64_t{value.time_since_epoch().count()});
}

void Statement::bind(int index, std::optional<std::int64_t> value)
{
    if (value)
        bind(index, *value);
    else
        check(sqlite3_bind_null(statement_.get(), index));
}

void Statement::check(int status) const
{
    if (status != SQLITE_OK)
        throw DatabaseError(sqlite3_errmsg(database_));
}

} // namespace corvane::server
