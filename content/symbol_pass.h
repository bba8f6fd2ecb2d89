// The symbols of rows that leave their field empty say what a row before them says. A pass over the
// rows of a table, first to last, looks back at each of them once.
#pragma once

#include "uf_defs.h"

#include <cstddef>
#include <limits>
#include <map>
#include <string>

namespace QelFmt {

// Lives as long as the pass. The passes are the process's, since any number of wrappers view one
// table.
class SymbolPass {
public:
    explicit SymbolPass(tag_t table);
    ~SymbolPass();
    SymbolPass(SymbolPass &&) = delete;

    static SymbolPass *over(tag_t table); // the innermost one; null when none is going on
    static void rowsChanged(tag_t table); // came, went, or changed places

    // The rows before this one have been brought up to date. A pass that never says so does not
    // bring up to date any.
    void arriveAt(std::size_t row) { m_position = row; }
    // A value has changed in a row: symbols that this pass has left behind may be out of date.
    void valueChanged(std::size_t row);
    bool leftSymbolsBehind() const { return m_leftBehind; }

    // What a field said last in the rows before one; null when that is not known.
    const std::string *saidBefore(tag_t row, const std::string &field) const;
    void remember(std::size_t index, tag_t row, const std::string &field, std::string text);

private:
    struct Said {
        std::size_t index; // of the row, and the row
        tag_t row;
        std::string text;
    };

    tag_t m_table;
    std::size_t m_position = std::numeric_limits<std::size_t>::max();
    bool m_leftBehind = false;
    std::map<std::string, Said> m_said; // by field
};

} // namespace QelFmt
