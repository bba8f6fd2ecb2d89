// Field values of a sheet through the C interface, and data files that hold them.
#pragma once

#include "app/output.h"
#include "app/workspace.h"

#include <string>
#include <vector>

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

std::vector<std::string> blocksOf(const Workspace &work, const SheetRef &sheet);
Lines valueOf(const Workspace &work, const SheetRef &sheet, const FieldName &name);
void setValue(const Workspace &work, const SheetRef &sheet, const FieldName &name,
              const Lines &lines);
// Every field of every block, in their order.
std::vector<FieldName> fieldsOf(const SheetRef &sheet);
std::vector<FieldValue> valuesOf(const Workspace &work, const SheetRef &sheet);

// "BLOCK.FIELD", or a field's name alone when one block of the sheet has it; else a Problem that lists
// what there is.
FieldName findField(const Workspace &work, const SheetRef &sheet, const std::string &text);

// A JSON file: an object of field names to texts, numbers or lists of lines, nested by block where one
// likes. `record` picks a member of the file's object, or an index of its list.
struct DataFile {
    std::string path;
    Json values;
};
DataFile readData(const std::string &path, const std::string &record);
// Sets everything that the file holds. Names that the sheet lacks are a Problem that lists them all;
// nothing is set then.
void fillIn(const Workspace &work, const SheetRef &sheet, const DataFile &data);

Json toJson(const Lines &lines); // one line: a text; else a list

} // namespace app
