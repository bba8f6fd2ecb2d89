// One database connection for many files, one after another: what it has learnt of the tables, and its
// prepared statements, serve all files that have the same tables.
#pragma once

#include "database.h"

#include <string>
#include <string_view>

namespace host::store {

class SuccessiveDatabase : public Database {
public:
    // Read only. `bytes` are the first file; they must live until the next takes their place.
    explicit SuccessiveDatabase(std::string_view bytes);

    // No statement may be in the middle of its rows. The tables may be others: compare tables().
    void exchange(std::string_view bytes);
    // What the database says of its tables, with the places of their first pages.
    const std::string &tables(); // until the next call

private:
    Statement m_select;
    std::string m_tables;
};

} // namespace host::store
