// The seal of a part file, computed from its description in docs/part-file.md and not by the code that
// it checks: checksums of all rows, the counts and sums in the part's row, then its checksum.
#pragma once

#include <algorithm>
#include <cstring>
#include <sqlite3.h>
#include <string>

namespace store_test {

class Sealer {
public:
    explicit Sealer(sqlite3 *database) : m_database(database) {}

    bool sealAll()
    {
        for (const char *table : {"object", "attribute", "pattern_master"})
            if (!sealRows(table) || !sealTally(table)) return false;
        return sealRows("part");
    }
    bool sealRows(const std::string &table)
    {
        const std::string key = table == "object"      ? "ordinal=?1"
                                : table == "attribute" ? "object=?1 AND position=?2"
                                                       : "id=?1";
        sqlite3_stmt *update = prepared("UPDATE " + table + " SET checksum=?3 WHERE " + key);
        sqlite3_stmt *select = prepared("SELECT * FROM " + table);
        bool good = update && select;
        while (good && sqlite3_step(select) == SQLITE_ROW) {
            sqlite3_bind_value(update, 1, sqlite3_column_value(select, 0));
            if (table == "attribute")
                sqlite3_bind_value(update, 2, sqlite3_column_value(select, 1));
            sqlite3_bind_int64(update, 3, checksum(table, select));
            good = sqlite3_step(update) == SQLITE_DONE;
            sqlite3_reset(update);
        }
        good = sqlite3_finalize(select) == SQLITE_OK && good;
        return sqlite3_finalize(update) == SQLITE_OK && good;
    }

private:
    sqlite3_stmt *prepared(const std::string &sql)
    {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(m_database, sql.c_str(), -1, &statement, nullptr);
        return statement;
    }
    bool sealTally(const std::string &table)
    {
        sqlite3_uint64 sum = 0;
        sqlite3_stmt *select = prepared("SELECT checksum FROM " + table);
        while (select && sqlite3_step(select) == SQLITE_ROW)
            sum += static_cast<sqlite3_uint64>(sqlite3_column_int64(select, 0));
        const bool read = select && sqlite3_finalize(select) == SQLITE_OK;
        const std::string sql = "UPDATE part SET " + table + "s=(SELECT count(*) FROM " + table +
                                ")," + table +
                                "s_sum=" + std::to_string(static_cast<sqlite3_int64>(sum));
        return read &&
               sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
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

    sqlite3 *m_database;
};

} // namespace store_test
