// How much room the rows of a table take, remembered from row to row of one process: appending and
// filling a long table then costs one look at each row, not one pass over the table for each row.
#pragma once

#include "uf_defs.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace QelFmt {

// Every change made through the library keeps it true, and every pass over the whole table begins
// with a new one, so that what was changed behind the library's back is seen then at the latest.
class RowMemo {
public:
    using Measure = std::function<double(tag_t entry)>; // the room a row takes; none when hidden

    // Where the table begins, and +1 or -1 for the way its rows grow.
    struct Origin {
        double x, y;
        int direction;
    };

    static RowMemo *find(tag_t table); // null when nothing is known of the table
    static RowMemo &start(tag_t table, std::vector<tag_t> entries);
    static void forget(tag_t table);
    static void rowChanged(tag_t entry); // its height, or whether it is hidden
    static void symbolsChanged(tag_t entry, bool hasSome);
    static bool isLast(tag_t entry); // in the rows of a table that is known

    void append(tag_t entry);
    void remove(tag_t entry); // the rows after it move up; what is known of the others is kept
    const std::vector<tag_t> &entries() const { return m_entries; }
    std::optional<std::size_t> indexOf(tag_t entry) const;
    // The room of all rows before the one at the index. Rows not measured since they changed are
    // measured; the others are not asked.
    double roomBefore(std::size_t index, const Measure &measure);

    std::optional<Origin> origin;
    std::optional<std::set<std::size_t>> withSymbols; // the rows that have some, when asked for

private:
    explicit RowMemo(tag_t table) : m_table(table) {}
    void measureChanged(std::size_t end, const Measure &measure);

    tag_t m_table;
    std::vector<tag_t> m_entries;
    std::unordered_map<tag_t, std::size_t> m_index;
    std::vector<double> m_room;        // of the first rows, as far as they were measured
    std::vector<double> m_before{0.0}; // sums of m_room, as far as they are valid
    std::set<std::size_t> m_changed;   // measured rows whose room may be another by now
};

} // namespace QelFmt
