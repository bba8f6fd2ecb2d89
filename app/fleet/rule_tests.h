// What a rule can ask of a value, and what it sees of the drawing for that.
#pragma once

#include "app/field_fit.h"
#include "app/workspace.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class TrFieldBase;

namespace app::fleet {

// A value on a sheet: of a field in a block, or in a visible row of a table.
struct SeenValue {
    std::string block;
    std::string table; // empty: a field of the block itself
    int row = 0;       // of the table, from 0, hidden ones too
    std::string field;
    std::string text; // lines with line breaks between them
    boost::shared_ptr<TrFieldBase> record;

    std::string fieldName() const; // "number", "REVISIONS[2].date"
};

struct SeenSheet {
    SheetRef ref;
    std::string format;
    std::string size;
    bool legacy = false;             // before anybody looked at it
    std::vector<std::string> tables; // "BLOCK.TABLE"
    std::vector<SeenValue> values;   // in the order of the sheet's blocks
    bool hasFormat() const { return !format.empty(); }
    const SeenValue *find(const std::string &block, const std::string &field) const;
};

struct SeenDrawing {
    std::string stem; // of the file's name
    std::vector<SeenSheet> sheets;
};

struct Place {
    const SeenDrawing &drawing;
    const SeenSheet &sheet; // the current one
    const SeenValue &value;
};

class Test {
public:
    virtual ~Test() = default;
    // What is wrong, to be read after the value: "is empty". Nothing when the value is right.
    virtual std::optional<std::string> complaint(const Place &place) const = 0;
    virtual std::string remedy() const = 0;
    virtual bool takesRows() const { return true; } // of tables
};
using TestPtr = std::unique_ptr<const Test>;

// Those that read a text raise std::invalid_argument with what would be right. An empty value passes
// pattern, one of and date: whether it may be empty is a matter of `filled` alone.
TestPtr filledTest();
TestPtr patternTest(const std::string &pattern); // of the whole value; Perl's regular expressions
TestPtr oneOfTest(std::vector<std::string> choices);
TestPtr dateTest(std::vector<std::string> forms); // of strptime: written so, and in the calendar
TestPtr fitsTest();                               // text inside its cell

// Comparisons; an empty value is a value there.
// `pattern` empty: the file's name without its ending; else the pattern's first group of it.
TestPtr fileNameTest(const std::string &pattern);
TestPtr equalsTest(const std::string &other); // "BLOCK.FIELD", or a field of the same block
TestPtr sameOnAllSheetsTest();
// `column` is "BLOCK.TABLE.COLUMN", of the last visible row; on the sheet itself, or else on the first
// one that has the table. Without visible rows the value is `withoutRows`, or anything.
TestPtr newestRevisionTest(const std::string &column, std::optional<std::string> withoutRows);
// `form` as in "{n} of {m}"; empty: any two numbers.
TestPtr sheetCountTest(const std::string &form);

} // namespace app::fleet
