// The pages of a database file, read one by one. A database gives up at the first page that is not in
// order; here the others are still read. Nothing is trusted: what a page says is a guess until the
// checksum of the row that stands there confirms it. See https://www.sqlite.org/fileformat2.html.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

// How much of a row of this size stands on its own page.
std::size_t localSize(std::uint64_t size, bool table);

class Pages {
public:
    using Number = std::uint32_t; // of a page, from 1

    // The bytes must outlive the object and the records that it gives.
    explicit Pages(std::string_view bytes);

    Number count() const { return m_count; }

    struct Value {
        enum class Type { null, integer, real, text, blob } type = Type::null;
        std::int64_t number = 0;
        std::string_view bytes;
    };
    struct Record {
        std::int64_t key = 0; // of a table's row; 0 in an index
        std::vector<Value> values;
        bool whole = false; // false: some of it cannot be read
    };

    enum class Kind { other, tableInner, tableLeaf, indexInner, indexLeaf };
    Kind kind(Number page) const;

    // The pages of a tree from its root on, in order of keys. What cannot be a page of it goes into
    // `damaged`; everything below is then missing.
    std::vector<Number> tree(Number root, std::vector<Number> &damaged) const;
    // Of the list of free pages as far as it can be followed; nothing when it contradicts itself.
    std::vector<Number> freePages() const;

    // Every row that stands on the page; inner pages of a table have none.
    void forEachRecord(Number page, const std::function<void(const Record &)> &visit);

private:
    std::string_view bytesOf(Number page) const;
    std::size_t startOf(Number page) const { return page == 1 ? 100 : 0; }
    std::vector<std::size_t> cellsOf(Number page) const;
    std::vector<Number> childrenOf(Number page) const;
    bool payload(Number page, std::size_t at, bool table, Record &record, std::string_view &bytes);
    bool assemble(std::string_view local, std::uint64_t size, Number next, std::string_view &bytes);

    std::string m_padded; // the file as whole pages, when its end is missing
    std::string_view m_bytes;
    Number m_count = 0;
    std::deque<std::string> m_assembled; // rows that go over several pages
    std::size_t m_budget = 0;            // of bytes for them: rows that share pages are damage
};

} // namespace host::store
