// Forged part files: changed by SQL and sealed again, so that every checksum and count is right and
// only the meaning is wrong.
#pragma once

#include "store_seal.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <string>

namespace store_test {

class Forge {
public:
    explicit Forge(const std::string &path)
    {
        EXPECT_EQ(sqlite3_open(path.c_str(), &m_database), SQLITE_OK);
        run("PRAGMA synchronous=OFF;PRAGMA journal_mode=MEMORY");
    }
    ~Forge() { sqlite3_close(m_database); }
    Forge(const Forge &) = delete;
    Forge &operator=(const Forge &) = delete;

    void run(const std::string &sql)
    {
        char *message = nullptr;
        EXPECT_EQ(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
            << sql << ": " << message;
        sqlite3_free(message);
    }
    void seal() { EXPECT_TRUE(Sealer(m_database).sealAll()); }
    void sealPartRow() { EXPECT_TRUE(Sealer(m_database).sealRows("part")); }

private:
    sqlite3 *m_database = nullptr;
};

} // namespace store_test
