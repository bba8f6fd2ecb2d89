// Tables of a sheet and the values of their rows.
#pragma once

#include "app/field_fit.h"
#include "app/values.h"

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

class TrEntryBase;
class TrFieldBase;
class TrTableBase;

namespace app {

struct TableName {
    std::string block;
    std::string table;
};

std::string display(const TableName &name); // "TITLE.REV"
std::vector<TableName> tablesOf(const SheetRef &sheet);
// "BLOCK.TABLE", or a table's name alone when one block of the sheet has it; an empty text is the only
// table there is. Else a Problem that lists what there is.
TableName findTable(const Workspace &work, const SheetRef &sheet, const std::string &text);

// A row whose fields were looked up once. It holds until rows come, go or move.
struct TableRow {
    int index;
    boost::shared_ptr<TrEntryBase> entry;
    std::vector<std::pair<std::string, boost::shared_ptr<TrFieldBase>>> fields; // by their names
};

// One table of the open sheet. Rows count from 0, hidden ones too.
class TableRows {
public:
    TableRows(const Workspace &work, const SheetRef &sheet, const TableName &name);

    const TableName &name() const { return m_name; }
    std::string place() const; // "a.qdraw, sheet S1, TITLE.REV"
    TrTableBase &record() const { return *m_table; }

    int count() const;
    const std::vector<std::string> &fields() const { return m_fields; } // in their order
    boost::shared_ptr<TrEntryBase> row(int index) const; // a Problem when there is none
    void requireRow(int index) const;
    void requireField(const std::string &field) const;

    Lines value(int row, const std::string &field) const;
    // What sticks out of the cell, if anything. Locked fields are a Problem unless `force`.
    std::optional<Misfit> set(const TableRow &row, const std::string &field, const Lines &lines,
                              bool force = false) const;
    TableRow at(int index) const; // a Problem when there is none
    TableRow append() const;
    void remove(std::vector<int> rows) const; // the others close up

private:
    std::string placeOf(int row, const std::string &field) const;
    static TableRow lookedUp(int index, boost::shared_ptr<TrEntryBase> entry);

    const Workspace &m_work;
    SheetRef m_sheet;
    TableName m_name;
    boost::shared_ptr<TrTableBase> m_table;
    std::vector<std::string> m_fields;
};

} // namespace app
