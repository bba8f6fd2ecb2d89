// What is left of a part's file, whatever happened to it: every row whose checksum is right.
#pragma once

#include "pages.h"
#include "rows.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

class Remains {
public:
    // The bytes must outlive the object: its rows point into them.
    explicit Remains(std::string_view bytes);
    Remains(const Remains &) = delete;
    Remains &operator=(const Remains &) = delete;

    // Verified rows by key. Of several with one key the one that the file's own order of pages leads to.
    std::optional<PartRow> part;
    std::map<std::int64_t, MasterRow> masters;
    std::map<std::int64_t, ObjectRow> objects;
    std::map<std::pair<std::int64_t, std::int64_t>, AttributeRow> attributes;

    // The part's own row although its checksum is wrong: better than no values at all.
    std::optional<PartRow> doubtfulPart;
    // Rows that are there and wrong, with what stands in them: not to be relied upon.
    struct Spoiled {
        std::string_view table;
        std::int64_t key = 0; // its first column
        std::optional<ObjectRow> object;
    };
    std::vector<Spoiled> spoiled;
    std::vector<Pages::Number> damagedPages; // where pages of the part should be and are not

    // More rows than the file's own order of pages led to.
    std::size_t strayRows = 0;

    bool empty() const { return !part && masters.empty() && objects.empty() && attributes.empty(); }

private:
    struct Taken {
        std::string_view table; // empty: a row of no table
        bool good = false;
    };
    void takeTrees();
    void takeStrayPages();
    void take(Pages::Number page, std::string_view tableOfPage, bool stray);
    Taken take(const Pages::Record &record, bool stray);
    template <class Row> bool takeAs(const Pages::Record &record, bool stray);
    void keep(const PartRow &row, bool stray);
    void keep(const MasterRow &row, bool stray);
    void keep(const ObjectRow &row, bool stray);
    void keep(const AttributeRow &row, bool stray);
    bool complete() const; // the part's own row says so

    Pages m_pages;
    std::vector<char> m_used; // pages of the trees, by number
};

} // namespace host::store
