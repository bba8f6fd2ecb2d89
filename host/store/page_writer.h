// The tree of pages of one table, written from its rows in rising order of their keys: every page is filled and
// written once. See https://www.sqlite.org/fileformat2.html; pages.h reads the same.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

// The values of a row, in the order of its columns.
class RowBytes {
public:
    void start() { m_types.clear(), m_values.clear(); }
    void null() { m_types.push_back('\0'); }
    void number(std::int64_t value);
    void text(std::string_view value) { bytes(value, 13); } // nothing is NULL
    void blob(std::string_view value) { bytes(value, 12); }

    std::size_t size() const { return m_types.size() + m_values.size(); }
    // Behind what `out` holds.
    void appendTo(std::string &out) const;

private:
    void bytes(std::string_view value, unsigned type);

    std::string m_types;
    std::string m_values;
};

// `file` holds the tables' first pages already; all others are added at its end.
class PageWriter {
public:
    using Number = std::uint32_t; // of a page, from 1
    enum class Kind { table, index };

    // `root` is the table's first page.
    PageWriter(std::string &file, Number root, Kind kind);

    // Of a table, by its number; an index has the key in the row and no use for it.
    void add(std::int64_t key, const RowBytes &row);
    void finish(); // after the last row, or none

private:
    // A page that is being filled: cells from its end, their places from its beginning.
    struct Page {
        std::string cells; // one after the other
        std::vector<std::uint16_t> sizes;
    };
    static void append(Page &page, std::string_view cell);
    static std::string takeLast(Page &page);
    static bool fits(const Page &page, std::size_t size, bool inner);
    void ascend(std::size_t level, Number below, std::string_view key);
    void put(Number number, const Page &page, bool inner, Number right = 0);
    Number putNew(const Page &page, bool inner, Number right = 0);
    Number newPage();
    Number putRest(std::string_view rest);

    std::string &m_file;
    const Number m_root;
    const Kind m_kind;
    Page m_leaf;
    std::int64_t m_lastKey = 0;
    std::vector<Page> m_inner; // the lowest level first; a cell is a page and the key behind it
    std::string m_row, m_cell; // room that is used again
};

} // namespace host::store
