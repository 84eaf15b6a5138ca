#pragma once

#include "base/Error.h"

#include <cstdint>
#include <filesystem>
#include <memory>

#include <sqlite3.h>

namespace corvane::server {

/// One SQLite file with the tables of this server. Several processes may have it open at the same time; a writer waits
/// for another one for at most `busyTimeout`. Used on one thread.
class Database {
public:
    enum class Opening { createWhenMissing, existingOnly };

    static constexpr int busyTimeout = 2000; // milliseconds
    static constexpr std::int64_t schemaVersion = 2;

    /// Opens the file for reading and writing and brings its tables to `schemaVersion`. The failure's text names the
    /// file.
    static Result<Database> open(const std::filesystem::path& file, Opening opening);

    /// An empty database that ends with this object.
    static Database inMemory();

    /// Runs SQL that takes no values, such as a pragma.
    void run(const char* sql);

    /// The number of rows that the last statement inserted, changed or deleted.
    std::int64_t changedRows() const;

    /// The key of the row inserted last.
    std::int64_t lastInsertedId() const;

    sqlite3* handle() const { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    using Handle = std::unique_ptr<sqlite3, Close>;

    explicit Database(Handle handle) : handle_(std::move(handle)) {}

    static Database openHandle(const std::string& name, int flags);
    void prepare();

    Handle handle_;
};

} // namespace corvane::server
