// Field values of a sheet through the C interface.
#pragma once

#include "app/output.h"
#include "app/problem.h"
#include "app/workspace.h"

#include "api/trv_fmt.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

class TrFieldBase;

namespace app {

using Lines = std::vector<std::string>;

struct FieldName {
    std::string block;
    std::string field;
};

struct FieldValue {
    FieldName name;
    Lines lines;
};

std::string display(const FieldName &name); // "TITLE.number"

std::vector<std::string> blocksOf(const Workspace &work, const SheetRef &sheet);
Lines valueOf(const Workspace &work, const SheetRef &sheet, const FieldName &name);
void setValue(const Workspace &work, const SheetRef &sheet, const FieldName &name,
              const Lines &lines);
bool isEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name);
void setEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name,
                 bool editable);
// A Problem that names the remedy when the field is locked.
void requireEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name);

// Every field of every block, in their order.
std::vector<FieldName> fieldsOf(const SheetRef &sheet);
std::vector<FieldValue> valuesOf(const Workspace &work, const SheetRef &sheet);
// The record itself, for what the C interface does not tell.
boost::shared_ptr<TrFieldBase> recordOf(const SheetRef &sheet, const FieldName &name);

// No block of the sheet has such a field.
class UnknownField : public Problem {
public:
    using Problem::Problem;
};

// "BLOCK.FIELD", or a field's name alone when one block of the sheet has it; else a Problem that lists
// what there is.
FieldName findField(const Workspace &work, const SheetRef &sheet, const std::string &text);

// A value is never emptied by leaving it out: a usage Problem that names the verb.
void requireLines(const std::string &verb, const Lines &lines, bool clear);

Json toJson(const Lines &lines); // one line: a text; else a list
Lines splitLines(const std::string &text);

// A list that the library fills.
class FilledList {
public:
    FilledList() = default;
    ~FilledList() { TRV_FMT_free_value(&list); }
    FilledList(const FilledList &) = delete;
    FilledList &operator=(const FilledList &) = delete;

    Lines lines() const { return {list.values, list.values + list.num_values}; }

    TRV_FMT_value_list_t list{0, nullptr};
};

// A list that the library reads; it lives no longer than the lines.
class ReadList {
public:
    explicit ReadList(const Lines &lines)
    {
        for (const std::string &line : lines) m_texts.push_back(const_cast<char *>(line.c_str()));
        m_list = {static_cast<int>(m_texts.size()), m_texts.data()};
    }
    operator const TRV_FMT_value_list_t *() const { return &m_list; }

private:
    std::vector<char *> m_texts;
    TRV_FMT_value_list_t m_list;
};

} // namespace app
