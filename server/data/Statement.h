#pragma once

#include "data/Database.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// One prepared statement; values from outside reach SQL through its parameters only. Throws DatabaseError.
class Statement {
public:
    /// `values` fill the statement's parameters from left to right.
    template <typename... Values>
    Statement(Database& database, std::string_view sql, const Values&... values) : Statement(database, sql)
    {
        int index = 0;
        (bind(++index, values), ...);
    }
    Statement(Database& database, std::string_view sql);

    /// Goes to the next row; false after the last one.
    bool step();

    /// Runs a statement that gives no rows.
    void run();

    /// Makes the statement ready to be run once more with the same values.
    void reset();

    // Columns of the row, counted from 0.
    std::int64_t integer(int column) const;
    std::string text(int column) const;
    std::chrono::sys_seconds time(int column) const;
    bool isNull(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);
    void bind(int index, std::chrono::sys_seconds value);
    void bind(int index, std::optional<std::int64_t> value);
    void check(int status) const;

    sqlite3* database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

} // namespace corvane::server
