// Forged part files: changed by SQL and sealed again, so that every checksum and count is right and
// only the meaning is wrong. The seal is computed here from its description in docs/part-file.md.
#pragma once

#include <cstring>
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

    // Checksums of all rows, then the counts and sums in the part's row, then its checksum.
    void seal()
    {
        for (const char *table : {"object", "attribute", "pattern_master"}) {
            sealRows(table);
            const std::string name = table;
            run("UPDATE part SET " + name + "s=(SELECT count(*) FROM " + name + ")," + name +
                "s_sum=" + std::to_string(sumOf(name)));
        }
        sealRows("part");
    }
    void sealRows(const std::string &table)
    {
        const std::string key = table == "object"      ? "ordinal=?1"
                                : table == "attribute" ? "object=?1 AND position=?2"
                                                       : "id=?1";
        sqlite3_stmt *update = prepared("UPDATE " + table + " SET checksum=?3 WHERE " + key);
        sqlite3_stmt *select = prepared("SELECT * FROM " + table);
        while (sqlite3_step(select) == SQLITE_ROW) {
            sqlite3_bind_value(update, 1, sqlite3_column_value(select, 0));
            if (table == "attribute")
                sqlite3_bind_value(update, 2, sqlite3_column_value(select, 1));
            sqlite3_bind_int64(update, 3, checksum(table, select));
            EXPECT_EQ(sqlite3_step(update), SQLITE_DONE);
            sqlite3_reset(update);
        }
        sqlite3_finalize(select);
        sqlite3_finalize(update);
    }

private:
    sqlite3_stmt *prepared(const std::string &sql)
    {
        sqlite3_stmt *statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(m_database, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sql << ": " << sqlite3_errmsg(m_database);
        return statement;
    }
    sqlite3_int64 sumOf(const std::string &table)
    {
        sqlite3_uint64 sum = 0;
        sqlite3_stmt *select = prepared("SELECT checksum FROM " + table);
        while (sqlite3_step(select) == SQLITE_ROW)
            sum += static_cast<sqlite3_uint64>(sqlite3_column_int64(select, 0));
        sqlite3_finalize(select);
        return static_cast<sqlite3_int64>(sum);
    }
    static sqlite3_int64 checksum(const std::string &table, sqlite3_stmt *row)
    {
        sqlite3_uint64 state = 0x716566706172740au;
        mixText(state, table.data(), table.size());
        for (int i = 0; i + 1 < sqlite3_column_count(row); ++i)
            if (sqlite3_column_type(row, i) == SQLITE_INTEGER)
                mix(state, static_cast<sqlite3_uint64>(sqlite3_column_int64(row, i)));
            else
                mixText(state, static_cast<const char *>(sqlite3_column_blob(row, i)),
                        static_cast<std::size_t>(sqlite3_column_bytes(row, i)));
        return static_cast<sqlite3_int64>(state);
    }
    static void mix(sqlite3_uint64 &state, sqlite3_uint64 word)
    {
        state = (state ^ word) * 0x9e3779b97f4a7c15u;
        state ^= state >> 32;
    }
    static void mixText(sqlite3_uint64 &state, const char *text, std::size_t size)
    {
        mix(state, size);
        for (std::size_t at = 0; at < size; at += 8) {
            sqlite3_uint64 word = 0;
            std::memcpy(&word, text + at, std::min<std::size_t>(8, size - at));
            mix(state, word);
        }
    }

    sqlite3 *m_database = nullptr;
};

} // namespace store_test
