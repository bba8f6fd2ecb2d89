// One database connection for many files, one after another: what it has learnt of the tables, and the
// statements that it keeps, serve all files that have the same tables.
#pragma once

#include "database.h"

#include <memory>
#include <string>
#include <string_view>

namespace host::store {

class SuccessiveDatabase {
public:
    // The database that these bytes are, to be read; they must live until the next exchange. No statement
    // of the one before may be in the middle of its rows.
    Database &exchange(std::string_view bytes);
    // After any trouble with a file: nothing is left that could be in the middle of something.
    void forget() { m_database.reset(); }

private:
    bool takes(std::string_view bytes);

    std::unique_ptr<Database> m_database;
    std::string m_tables; // what it says of them, with the places of their first pages
};

} // namespace host::store
