#pragma once

#include "data/Database.h"

namespace corvane::server {

/// Everything between its construction and `commit` happens, or nothing does. Takes the writer's lock at once, so that
/// what is read inside cannot change before it is written. Not nested.
class Transaction {
public:
    explicit Transaction(Database& database) : database_(database) { database_.run("BEGIN IMMEDIATE"); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction()
    {
        if (!committed_)
            sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }

    void commit()
    {
        database_.run("COMMIT");
        committed_ = true;
    }

private:
    Database& database_;
    bool committed_ = false;
};

} // namespace corvane::server
